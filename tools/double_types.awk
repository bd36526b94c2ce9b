# Reads sources; prints each type that two files define in the same namespace. One of them alone
# compiles; together they break the one definition rule, and no linker says so.
FNR == 1 { space = ""; hidden = 0 }
/^namespace( [A-Za-z_:]+)? \{$/ {
    if ($2 == "{") hidden = 1
    else space = $2 "::"
}
/^\} \/\/ namespace$/ { hidden = 0 }
/^\} \/\/ namespace [A-Za-z_:]+$/ { space = "" }
/^(class|struct|union|enum|enum class) [A-Za-z_]/ && !/;/ && !hidden {
    name = $0
    sub(/^(class|struct|union|enum class|enum) /, "", name)
    sub(/^alignas\([0-9A-Za-z_]*\) /, "", name)
    if (name ~ /^[A-Za-z0-9_]+::/) next
    sub(/[^A-Za-z0-9_<>].*/, "", name)
    if (name == "") next
    name = space name
    if (name in home && home[name] != FILENAME)
        print name ": " home[name] " and " FILENAME
    home[name] = FILENAME
}
