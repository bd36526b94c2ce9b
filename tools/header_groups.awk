# Reads names of headers. Writes the edges of tools/check_headers for ninja: each group of the library's
# headers that is used (written as a header to DIR), and rows of headers. A row begins with the first group in the
# list GROUPS of the environment whose members its headers include, themselves or through our headers. Each header of
# a row includes the one before it, so nothing that it forgets to include is there.
BEGIN { count = split(ENVIRON["GROUPS"], groups, "\n") }
{ names[NR] = $0 }
END {
    for (i = 1; i <= NR; i++) {
        find_outside(names[i])
        group_of[names[i]] = first_group()
        size[names[i]] = last
        for (j in seen)
            within[names[i]] = within[names[i]] " " j
    }
    while ((header = largest_left()) != "")
        write_row(header, group_of[header])
}

# The header that includes most among those that are in no row yet.
function largest_left(    i, found) {
    found = ""
    for (i = 1; i <= NR; i++)
        if (!(names[i] in written) && (found == "" || size[names[i]] > size[found]))
            found = names[i]
    return found
}

# The one that includes most among those of the same group that HEADER includes and that are in no row yet.
function largest_within(header, group,    parts, number, i, found) {
    found = ""
    number = split(within[header], parts, " ")
    for (i = 1; i <= number; i++)
        if ((parts[i] in size) && !(parts[i] in written) && group_of[parts[i]] == group &&
            (found == "" || size[parts[i]] > size[found]))
            found = parts[i]
    return found
}

# Fills `outside` with the headers that are not ours and that HEADER includes directly or indirectly.
function find_outside(header,    waiting, next_one, line, parts) {
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

function first_group(    i, members, number, missing, j) {
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

# HEADER is the last of its row; each of the others is included by the next one.
function write_row(header, group,    top, inputs, row, precompiled) {
    top = header
    for (; header != ""; header = largest_within(header, group)) {
        written[header]
        inputs = header " " inputs
        row = "-include " header " " row
    }
    if (group) {
        precompiled = dir "/group" group ".h"
        if (!(group in precompiled_groups)) {
            precompiled_groups[group]
            write_group(groups[group], precompiled)
            printf "build %s.gch: group %s\n", precompiled, precompiled
        }
        row = "-include " precompiled " " row
        inputs = inputs "| " precompiled ".gch"
    }
    printf "build %s/%s.ok: header %s\n  row = %s\n", dir, top, inputs, row
}

# An unchanged file keeps its time, so that nothing is compiled again.
function write_group(members, path,    text, old, line) {
    text = members
    gsub(/ /, ">\n#include <", text)
    text = "#include <" text ">\n"
    old = ""
    while ((getline line <path) > 0)
        old = old line "\n"
    close(path)
    if (old != text)
        printf "%s", text >path
    close(path)
}
