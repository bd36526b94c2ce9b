# Reads sources; prints each type and each function that two files define in the same namespace. Each
# compiles alone; together they break the one definition rule, and no linker reports it if they are
# inline.
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

# Functions at the left margin followed by a body. A declaration ends with a semicolon, a member has a
# class before its name, and static functions and templates do not count.
pending != "" {
    if (/^\{$/) {
        if (pending in body && body[pending] != FILENAME)
            print pending ": " body[pending] " and " FILENAME
        body[pending] = FILENAME
    }
    pending = ""
}
/^[A-Za-z].*[ *&][A-Za-z_0-9]+\([^()]*\)( const)?( noexcept)?$/ && !hidden && before !~ /^template/ &&
        !/^(static|template|else|return|class|struct|namespace) / {
    name = $0
    sub(/\(.*/, "", name)
    sub(/.*[ *&]/, "", name)
    list = $0
    sub(/^[^(]*\(/, "", list)
    sub(/\).*/, "", list)
    count = split(list, parameter, ", ")
    for (i = 1; i <= count; ++i) {
        sub(/ = .*/, "", parameter[i])
        sub(/[A-Za-z_0-9]+$/, "", parameter[i])
        list = i == 1 ? parameter[i] : list "," parameter[i]
    }
    pending = space name "(" list ")"
}
{ before = $0 }
