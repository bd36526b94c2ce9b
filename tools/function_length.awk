# Prints function bodies that are too long. A body opens with a brace on a line of its own and closes
# with one at the same indentation, as the layout requires. A flat switch may be long.
FNR == 1 { depth = -1; why = 0 }
/\/\/ Kept whole:/ { why = FNR }
/^ *\{$/ && depth < 0 {
    depth = index($0, "{")
    start = FNR
    cases = 0
}
/^ *(case .*|default):/ { cases++ }
depth > 0 && /^ *\};?$/ && index($0, "}") == depth {
    lines = FNR - start - 1
    excused = why >= start - 3 && why > 0
    if (lines >= 100 && cases * 2 < lines / 2)
        print FILENAME ":" start ": " lines " lines"
    else if (lines >= 60 && !excused && cases * 2 < lines / 2)
        print FILENAME ":" start ": " lines " lines"
    depth = -1
}
