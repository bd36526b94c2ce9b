# Reads the list of exclusions and a tracefile in lcov's form; prints for each folder below `root` the share of its
# lines and branches that were run, as a sort key, a tab and a line of the table; the last line is the total. Writes
# each line and branch that was not run to the file `missed`.
BEGIN {
    split("base scene qsa qsb batch", names, " ")
    for (i in names)
        isStrict[names[i]]
}

# An exclusion: FILE, a tab, a pattern of the line's text, a tab, the reason.
FNR == NR {
    if ($0 !~ /^#/ && split($0, parts, "\t") == 3) {
        count++
        excludedFile[count] = parts[1]
        excludedText[count] = parts[2]
    }
    next
}

/^SF:/ {
    path = substr($0, 4)
    isOurs = index(path, root) == 1
    if (!isOurs)
        next
    file = substr(path, length(root) + 1)
    folder = file
    sub(/\/[^\/]*$/, "", folder)
    read_source(path)
}
!isOurs { next }
/^DA:/ {
    split(substr($0, 4), parts, ",")
    if (is_excluded(file, parts[1]))
        next
    add(lines, 1)
    if (parts[2] > 0)
        add(linesRun, 1)
    else
        print file ":" parts[1] ": line: " text[parts[1]] >missed
}
# The place of a branch and of each of its two ways. A branch that several instances of a template have counts as run
# if one of them runs it.
/^BRDA:/ {
    split(substr($0, 6), parts, ",")
    if (is_excluded(file, parts[1]))
        next
    key = parts[1] "," parts[2] "," parts[3]
    add(branches, 1)
    if (parts[4] != "-" && parts[4] > 0)
        add(branchesRun, 1)
    else
        print file ":" parts[1] ": branch " parts[3] ": " text[parts[1]] >missed
}

END {
    for (folder in lines) {
        leastLines = folder in isStrict ? 98 : 95
        leastBranches = folder in isStrict ? 95 : 0
        line = share(linesRun[folder], lines[folder])
        branch = share(branchesRun[folder], branches[folder])
        below = ""
        if (folder != "all" && (line < leastLines || branch < leastBranches))
            below = " below " leastLines " %" (leastBranches ? ", " leastBranches " %" : "")
        key = folder == "all" ? 101 : line
        printf "%.3f\t%6.1f %% of %5d lines  %6.1f %% of %5d branches  %-26s%s\n", key, line, lines[folder],
            branch, branches[folder], folder, below
    }
}

function add(sums, number) {
    sums[folder] += number
    sums["all"] += number
}

function share(part, whole) { return whole == 0 ? 100 : 100 * part / whole }

function read_source(path,    number, line) {
    split("", text)
    number = 0
    while ((getline line <path) > 0)
        text[++number] = line
    close(path)
}

function is_excluded(file, number,    i) {
    for (i = 1; i <= count; i++)
        if (excludedFile[i] == file && text[number] ~ excludedText[i])
            return 1
    return 0
}
