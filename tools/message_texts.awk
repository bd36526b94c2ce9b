# Prints FILE: TEXT for each literal of C++ sources that users may see: it has words and a
# blank, or it is the first argument of a reporting call. Adjacent literals are joined; blanks around a text
# are removed, and a line end or a tab counts as a blank.
function flush(  bare) {
    if (!have)
        return
    have = 0
    gsub(/\\[nt]/, " ", text)
    gsub(/\\"/, "\"", text)
    bare = text
    gsub(/%[-+ #0-9.]*l*[a-zA-Z]/, "", bare)
    if (bare !~ /[A-Za-z][A-Za-z]/ || (text !~ / / && !reports))
        return
    gsub(/ +/, " ", text)
    gsub(/^ | $/, "", text)
    print place ": " text
}
function literal(at,  end) {
    for (end = at + 1; substr($0, end, 1) != "\"" && end <= length($0); ++end)
        if (substr($0, end, 1) == "\\")
            ++end
    if (!have) {
        place = FILENAME
        reports = code ~ /(Error|Warning|Fail|printf|LogWrite) ?\($/
        text = ""
    }
    have = 1
    text = text substr($0, at + 1, end - at - 1)
    return end
}
FNR == 1 {
    flush()
    inComment = 0
    code = ""
}
/^[ \t]*#/ { next }
{
    for (i = 1; i <= length($0); ++i) {
        two = substr($0, i, 2)
        c = substr(two, 1, 1)
        if (inComment) {
            if (two == "*/") {
                inComment = 0
                ++i
            }
        } else if (two == "//") {
            break
        } else if (two == "/*") {
            inComment = 1
            ++i
        } else if (c == "\"") {
            i = literal(i)
        } else if (match(substr($0, i), /^'(\\.[^']*|[^\\'])'/)) {
            flush()
            i += RLENGTH - 1
        } else if (c != " " && c != "\t") {
            flush()
            code = substr(code c, length(code) > 12 ? 2 : 1)
        }
    }
}
END { flush() }
