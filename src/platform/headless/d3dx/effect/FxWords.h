#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

/// The tokens of an effect with the parser's position.
class FxWords {
public:
    FxWords(std::vector<FxToken> all, FxDiagnostics& log) : words(std::move(all)), diagnostics(log)
    {
        end.place = words.empty() ? FxPlace() : words.back().place;
    }

    const std::vector<FxToken>& All() const { return words; }
    size_t Position() const { return position; }
    /// Goes on reading from a position that was passed before, or that another reader knows.
    void Seek(size_t to) { position = to; }
    bool AtEnd() const { return position >= words.size(); }
    /// Past the end: a token of kind `End` at the place of the last one.
    const FxToken& Peek(size_t ahead = 0) const
    {
        return position + ahead < words.size() ? words[position + ahead] : end;
    }
    FxToken Next()
    {
        FxToken word = Peek();
        position += AtEnd() ? 0 : 1;
        return word;
    }
    bool Is(std::string_view sign) const { return Peek().Is(sign); }
    bool Accept(std::string_view sign)
    {
        const bool fits = Is(sign);
        position += fits ? 1 : 0;
        return fits;
    }
    bool AcceptWord(std::string_view word)
    {
        const bool fits = Peek().IsWord(word);
        position += fits ? 1 : 0;
        return fits;
    }
    bool Expect(std::string_view sign)
    {
        return Accept(sign) || Unexpected("'" + std::string(sign) + "'");
    }
    bool ExpectName(std::string& nameOut)
    {
        if (Peek().kind != FxTokenKind::Identifier)
            return Unexpected("a name");
        nameOut = Next().text;
        return true;
    }
    /// A closing angle bracket, even if the lexer joined it to a following sign.
    bool AcceptClosingAngle()
    {
        if (Accept(">"))
            return true;
        if (!Is(">=") && !Is(">>") && !Is(">>="))
            return false;
        words[position].text.remove_prefix(1);
        ++words[position].place.column;
        return true;
    }
    /// Skips from an opening bracket to just after the matching one.
    bool SkipBrackets(std::string_view open, std::string_view close)
    {
        const FxToken first = Peek();
        size_t depth = 0;
        do {
            if (AtEnd())
                return NotClosed(first);
            const FxToken word = Next();
            depth += word.Is(open) ? 1 : 0;
            depth -= word.Is(close) ? 1 : 0;
        } while (depth > 0);
        return true;
    }

    /// Skips a block of assembler text, starting at its opening bracket. In it `;` begins a
    /// comment, in which brackets do not count. But some authors write a block on one line and
    /// separate instructions by `;`, so a bracket does count if the statement, or a list, continues
    /// after it on that line.
    /// Skips the rest of an assembler block from its `{` on; `blockOut` gets what is between the
    /// brackets, unless it is null.
    bool SkipAssembler(std::vector<FxToken>* blockOut = nullptr);
    /// Skips a value of any kind, including assembler text, up to the `;`, `,` or closing bracket
    /// that ends it.
    bool SkipValue();
    /// Skips the rest of a statement and its `;`.
    bool SkipStatement();
    /// The next token for which `fits` is true, before the end of the value as defined by
    /// `SkipValue`; null if there is none.
    template <typename Test>
    const FxToken* FindInValue(const Test& fits) const
    {
        int depth = 0;
        for (size_t ahead = 0; Peek(ahead).kind != FxTokenKind::End; ++ahead) {
            const FxToken& word = Peek(ahead);
            if (depth == 0 && EndsValue(word))
                return nullptr;
            if (fits(word))
                return &word;
            depth += IsOpening(word) ? 1 : IsClosing(word) ? -1 : 0;
        }
        return nullptr;
    }

    /// Reports that something else is expected here.
    bool Unexpected(const std::string& wanted)
    {
        return Fail(FxError::Syntax, wanted + " is expected, not " + FxDescribe(Peek()));
    }
    /// Reports an error at the next token.
    bool Fail(FxError error, const std::string& what)
    {
        return diagnostics.Fail(Peek().place, error, what);
    }
    bool FailAt(FxPlace place, FxError error, const std::string& what)
    {
        return diagnostics.Fail(place, error, what);
    }

private:
    static bool IsOpening(const FxToken& word)
    {
        return word.Is("{") || word.Is("(") || word.Is("[");
    }
    static bool IsClosing(const FxToken& word)
    {
        return word.Is("}") || word.Is(")") || word.Is("]");
    }
    static bool EndsValue(const FxToken& word)
    {
        return word.Is(";") || word.Is(",") || IsClosing(word);
    }
    bool NotClosed(const FxToken& opening)
    {
        return diagnostics.Fail(opening.place, FxError::Syntax,
                                FxDescribe(opening) + " is not closed");
    }

    std::vector<FxToken> words;
    FxToken end;
    size_t position = 0;
    FxDiagnostics& diagnostics;
};

} // namespace headless::fx
