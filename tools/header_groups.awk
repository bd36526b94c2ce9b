# Reads names of headers. Writes the edges of tools/check_headers for ninja: each group of the library's
# headers that is used (written as a header to DIR), and each header with the first group in the list
# GROUPS of the environment whose members it includes, itself or through our headers.
BEGIN { count = split(ENVIRON["GROUPS"], groups, "\n") }
{ names[NR] = $0 }
END {
    for (i = 1; i <= NR; i++)
        write_header(names[i], first_group(names[i]))
}

# Fills `outside` with the headers that are not ours and that HEADER includes directly or indirectly.
function find_outside(header,    waiting, next_one, last, line, parts) {
    split("", outside)
    split("", seen)
    waiting[last = 1] = header
    seen[header]
    for (next_one = 1; next_one <= last; next_one++) {
        header = waiting[next_one]
        read_includes(header)
        split(includes[header], parts, "\n")
        for (line in parts) {
            if (sub(/^</, "", parts[line]))
                outside[parts[line]]
            else if (!(parts[line] in seen)) {
                seen[parts[line]]
                waiting[++last] = parts[line]
            }
        }
    }
}

# Fills includes[HEADER]: our headers by their place in the tree, others behind a "<", one a line.
function read_includes(header,    line, name, place, found) {
    if (header in includes)
        return
    found = ""
    while ((getline line <header) > 0)
        if (line ~ /^ *# *include/) {
            name = line
            sub(/^[^<"]*[<"]/, "", name)
            sub(/[>"].*/, "", name)
            place = place_of(name)
            found = found "\n" (place == "" ? "<" name : place)
        }
    close(header)
    includes[header] = substr(found, 2)
}

function place_of(name,    roots, i) {
    if (name in places)
        return places[name]
    split("src/ src/platform/headless/include/", roots, " ")
    roots[3] = ""
    for (i = 1; i <= 3; i++)
        if (is_file(roots[i] name))
            return places[name] = roots[i] name
    return places[name] = ""
}

function is_file(path,    line, result) {
    result = (getline line <path) >= 0
    close(path)
    return result
}

function first_group(header,    i, members, number, missing, j) {
    find_outside(header)
    for (i = 1; i <= count; i++) {
        number = split(groups[i], members, " ")
        missing = 0
        for (j = 1; j <= number; j++)
            missing += !(members[j] in outside)
        if (!missing)
            return i
    }
    return 0
}

function write_header(header, group,    precompiled) {
    if (!group) {
        printf "build %s/%s.ok: header %s\n", dir, header, header
        return
    }
    precompiled = dir "/group" group ".h"
    if (!(group in written)) {
        written[group]
        write_group(groups[group], precompiled)
        printf "build %s.gch: group %s\n", precompiled, precompiled
    }
    printf "build %s/%s.ok: header %s | %s.gch\n  group = -include %s\n", dir, header, header, precompiled, precompiled
}

# An unchanged file keeps its time, so that nothing is compiled again.
function write_group(members, path,    text, old, line) {
    text = members
    gsub(/ /, ">\n#include <", text)
    text = "#include <" text ">\n"
    text = substr(text, 1, 0) text
    old = ""
    while ((getline line <path) > 0)
        old = old line "\n"
    close(path)
    if (old != text)
        printf "%s", text >path
    close(path)
}
