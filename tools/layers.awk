# Reads tools/layers.txt and then lines of grep -n; prints each include that its folder must not have.
BEGIN {
    while ((getline line < "tools/layers.txt") > 0) {
        if (line ~ /^#/ || line !~ /:/)
            continue
        colon = index(line, ":")
        allowed[substr(line, 1, colon - 1)] = substr(line, colon + 1) " "
    }
}
{
    split($0, parts, ":")
    split(parts[1], path, "/")
    folder = path[2]
    match($0, /"[^"]*"/)
    target = substr($0, RSTART + 1, RLENGTH - 2)
    split(target, to, "/")
    if (target !~ /\// || to[1] == folder)
        next
    if (index(allowed[folder], " " to[1] " ") == 0 && index(allowed[folder], " " target " ") == 0)
        print parts[1] ":" parts[2] ": " target
}
