#pragma once

#include <string_view>

/// Whether a text is exactly one JSON value by the grammar of RFC 8259, in UTF-8. Written for the
/// tests only, so that the JSON output is checked against an independent reading of the rules.
class JsonGrammar {
public:
    static bool IsValid(std::string_view text)
    {
        JsonGrammar reader(text);
        reader.SkipBlanks();
        return reader.Value(0) && (reader.SkipBlanks(), reader.rest.empty());
    }

private:
    explicit JsonGrammar(std::string_view text) : rest(text) {}

    static constexpr int kMostDepth = 100;

    void SkipBlanks()
    {
        while (!rest.empty() && std::string_view(" \t\r\n").find(rest[0]) != std::string_view::npos)
            rest.remove_prefix(1);
    }
    bool Take(std::string_view text)
    {
        if (rest.substr(0, text.size()) != text)
            return false;
        rest.remove_prefix(text.size());
        return true;
    }
    bool Value(int depth)
    {
        if (depth > kMostDepth || rest.empty())
            return false;
        switch (rest[0]) {
        case '{':
            return Members('}', depth, true);
        case '[':
            return Members(']', depth, false);
        case '"':
            return Text();
        default:
            return Take("true") || Take("false") || Take("null") || Number();
        }
    }
    bool Members(char end, int depth, bool areNamed)
    {
        rest.remove_prefix(1);
        SkipBlanks();
        if (Take({&end, 1}))
            return true;
        for (;;) {
            SkipBlanks();
            if (areNamed && !(Text() && (SkipBlanks(), Take(":"))))
                return false;
            SkipBlanks();
            if (!Value(depth + 1))
                return false;
            SkipBlanks();
            if (Take({&end, 1}))
                return true;
            if (!Take(","))
                return false;
        }
    }
    bool Text()
    {
        if (!Take("\""))
            return false;
        while (!rest.empty() && rest[0] != '"') {
            if (static_cast<unsigned char>(rest[0]) < 0x20 || !Character())
                return false;
        }
        return Take("\"");
    }
    bool Character()
    {
        if (Take("\\u")) {
            const bool isHex = rest.size() >= 4 && rest.substr(0, 4).find_first_not_of(
                                                       "0123456789abcdefABCDEF") == rest.npos;
            rest.remove_prefix(isHex ? 4 : 0);
            return isHex;
        }
        if (Take("\\")) {
            const bool isKnown =
                !rest.empty() && std::string_view("\"\\/bfnrt").find(rest[0]) != rest.npos;
            rest.remove_prefix(isKnown ? 1 : 0);
            return isKnown;
        }
        const auto lead = static_cast<unsigned char>(rest[0]);
        const size_t length = lead < 0x80   ? 1
                              : lead < 0xC2 ? 0
                              : lead < 0xE0 ? 2
                              : lead < 0xF0 ? 3
                                            : 4;
        if (length == 0 || lead > 0xF4 || rest.size() < length)
            return false;
        for (size_t i = 1; i < length; ++i) {
            if ((static_cast<unsigned char>(rest[i]) & 0xC0) != 0x80)
                return false;
        }
        rest.remove_prefix(length);
        return true;
    }
    bool Digits()
    {
        const size_t before = rest.size();
        while (!rest.empty() && rest[0] >= '0' && rest[0] <= '9')
            rest.remove_prefix(1);
        return rest.size() < before;
    }
    bool Number()
    {
        Take("-");
        if (!Take("0") && !Digits())
            return false;
        if (Take(".") && !Digits())
            return false;
        if (Take("e") || Take("E")) {
            if (!Take("+"))
                Take("-");
            return Digits();
        }
        return true;
    }

    std::string_view rest;
};
