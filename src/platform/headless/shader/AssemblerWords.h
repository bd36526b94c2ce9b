#pragma once

#include <string_view>

namespace headless::shader {

enum class AsmKind { End, Name, Number, Sign };

/// A word of assembler text: a name, a number, or one sign such as a comma.
struct AsmWord {
    AsmKind kind = AsmKind::End;
    std::string_view text; ///< in the source
    int line = 1;
    int column = 1;

    bool Is(char sign) const { return kind == AsmKind::Sign && text[0] == sign; }
};

/// Takes text apart. Line breaks count as blanks; comments are `;` and `//` up to the end of the line,
/// and `/* */`.
class AsmWords {
public:
    explicit AsmWords(std::string_view source) : text(source) { Advance(); }

    const AsmWord& Peek() const { return word; }
    AsmWord Next();
    bool Accept(char sign);
    /// The version, the first word of a text: "vs_1_1" or "vs.1.1".
    AsmWord NextVersion();

private:
    void Advance();
    void SkipBlanks();
    void Step();
    char At(size_t offset) const
    {
        return next + offset < text.size() ? text[next + offset] : '\0';
    }

    std::string_view text;
    size_t next = 0;
    int line = 1;
    int column = 1;
    AsmWord word;
};

} // namespace headless::shader
