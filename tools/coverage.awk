# Reads a tracefile of lcov; prints for each folder below `root` its share of lines that were run, as a
# sort key, a tab and a line of the table; the last line is the total.
BEGIN { split("base scene qsa qsb", names, " "); for (i in names) goal[names[i]] = 90 }
/^SF:/ { folder = substr($0, 4 + length(root)); sub(/\/[^\/]*$/, "", folder) }
/^LF:/ { lines[folder] += substr($0, 4); lines["all"] += substr($0, 4) }
/^LH:/ { run[folder] += substr($0, 4); run["all"] += substr($0, 4) }
END {
    for (folder in lines) {
        if (lines[folder] == 0)
            continue
        least = folder in goal ? goal[folder] : 80
        share = 100 * run[folder] / lines[folder]
        key = folder == "all" ? 101 : share
        printf "%.3f\t%6.1f %%  %5d of %5d  %-28s%s\n", key, share, run[folder], lines[folder],
            folder, share < least ? " below " least " %" : ""
    }
}
