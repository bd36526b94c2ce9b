#include "platform/headless/d3dx/effect/FxLexer.h"

#include <algorithm>
#include <utility>

namespace headless::fx {

namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsWordStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsWordPart(char c)
{
    return IsWordStart(c) || IsDigit(c);
}

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Longest first.
constexpr std::string_view kSigns[] = {
    "<<=", ">>=", "...", "##", "<<", ">>", "<=", ">=", "==", "!=", "&&", "||",
    "++",  "--",  "+=",  "-=", "*=", "/=", "%=", "&=", "|=", "^=", "::", "->"};
constexpr std::string_view kSingleSigns = "(){}[]<>;:,.=+-*/%!~&|^?#@";

class Lexer {
public:
    Lexer(const FxSourceText& source, uint32_t fileIndex, FxDiagnostics& log)
        : text(source.text),
          joints(source.joints),
          file(fileIndex),
          diagnostics(log)
    {}

    bool Run(size_t budget, std::vector<FxToken>& tokensOut);

private:
    bool SkipBlanks();
    bool SkipComment();
    void Advance(size_t bytes);
    void PassJoints();
    char At(size_t ahead) const
    {
        return position + ahead < text.size() ? text[position + ahead] : '\0';
    }
    FxPlace Place() const { return {file, line, static_cast<uint32_t>(position - lineStart + 1)}; }
    size_t WordLength() const;
    size_t NumberLength() const;
    size_t StringLength() const;
    size_t SignLength() const;
    FxTokenKind Classify(size_t& lengthOut) const;

    std::string_view text;
    const std::vector<uint32_t>& joints;
    size_t nextJoint = 0;
    uint32_t file;
    FxDiagnostics& diagnostics;
    size_t position = 0;
    size_t lineStart = 0;
    uint32_t line = 1;
    bool atLineStart = true;
    bool sawSpace = false;
};

/// Counts lines as in the file: at its line ends and at the joints.
void Lexer::Advance(size_t bytes)
{
    for (const size_t end = position + bytes; position < end;) {
        if (text[position] == '\n') {
            ++line;
            lineStart = position + 1;
        }
        ++position;
        PassJoints();
    }
}

void Lexer::PassJoints()
{
    for (; nextJoint < joints.size() && joints[nextJoint] <= position; ++nextJoint) {
        ++line;
        lineStart = joints[nextJoint];
    }
}

bool Lexer::SkipComment()
{
    if (At(1) == '/') {
        const size_t end = std::min(text.find('\n', position), text.size());
        Advance(end - position);
        return true;
    }
    const FxPlace start = Place();
    const size_t end = text.find("*/", position + 2);
    if (end == std::string_view::npos)
        return diagnostics.Fail(start, FxError::BadText, "the comment has no end");
    Advance(end + 2 - position);
    return true;
}

bool Lexer::SkipBlanks()
{
    while (position < text.size()) {
        const char c = text[position];
        if (c == '/' && (At(1) == '/' || At(1) == '*')) {
            if (!SkipComment())
                return false;
        } else if (c == '\n' || c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f') {
            atLineStart = atLineStart || c == '\n';
            Advance(1);
        } else {
            return true;
        }
        sawSpace = true;
    }
    return true;
}

size_t Lexer::WordLength() const
{
    size_t length = 0;
    while (position + length < text.size() && IsWordPart(text[position + length]))
        ++length;
    return length;
}

/// As in C: after an exponent letter, a sign belongs to the number.
size_t Lexer::NumberLength() const
{
    const bool isHex = At(0) == '0' && Lower(At(1)) == 'x';
    size_t length = 1;
    while (position + length < text.size()) {
        const char c = text[position + length];
        const bool isExponentSign =
            (c == '+' || c == '-') && !isHex && Lower(text[position + length - 1]) == 'e';
        if (!IsWordPart(c) && c != '.' && !isExponentSign)
            break;
        ++length;
    }
    return length;
}

/// 0 for a string that is not closed on its line.
size_t Lexer::StringLength() const
{
    for (size_t i = position + 1; i < text.size() && text[i] != '\n'; ++i) {
        if (text[i] == '"')
            return i + 1 - position;
        if (text[i] == '\\')
            ++i;
    }
    return 0;
}

size_t Lexer::SignLength() const
{
    const std::string_view rest = text.substr(position);
    for (const std::string_view sign : kSigns)
        if (rest.starts_with(sign))
            return sign.size();
    return kSingleSigns.find(rest.front()) == std::string_view::npos ? 0 : 1;
}

FxTokenKind Lexer::Classify(size_t& lengthOut) const
{
    const char c = text[position];
    if (IsWordStart(c)) {
        lengthOut = WordLength();
        return FxTokenKind::Identifier;
    }
    if (IsDigit(c) || (c == '.' && IsDigit(At(1)))) {
        lengthOut = NumberLength();
        return FxTokenKind::Number;
    }
    lengthOut = c == '"' ? StringLength() : SignLength();
    if (lengthOut > 0)
        return c == '"' ? FxTokenKind::String : FxTokenKind::Punctuation;
    lengthOut = 1;
    return FxTokenKind::Unknown;
}

bool Lexer::Run(size_t budget, std::vector<FxToken>& tokensOut)
{
    PassJoints();
    for (;;) {
        if (!SkipBlanks())
            return false;
        if (position >= text.size())
            return true;
        if (budget-- == 0)
            return diagnostics.Fail(Place(), FxError::Limit, "the effect's text is too long");
        FxToken token;
        token.place = Place();
        size_t length = 0;
        token.kind = Classify(length);
        token.text = text.substr(position, length);
        token.startsLine = std::exchange(atLineStart, false);
        token.spaceBefore = std::exchange(sawSpace, false);
        tokensOut.push_back(token);
        Advance(length);
    }
}

} // namespace

bool FxSameWord(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Lower(x) == Lower(y); });
}

bool FxToken::IsWord(std::string_view wanted) const
{
    return kind == FxTokenKind::Identifier && FxSameWord(text, wanted);
}

std::string FxDescribe(const FxToken& token)
{
    if (token.kind == FxTokenKind::End)
        return "the end of the file";
    return "'" + std::string(token.text) + "'";
}

FxSourceText FxSourceText::FromFile(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    FxSourceText source;
    source.text.reserve(bytes.size());
    for (size_t i = 0; i < bytes.size(); ++i) {
        const std::string_view rest = bytes.substr(i);
        if (rest.starts_with("\\\n") || rest.starts_with("\\\r\n")) {
            i += rest[1] == '\r' ? 2 : 1;
            source.joints.push_back(static_cast<uint32_t>(source.text.size()));
        } else {
            source.text += bytes[i];
        }
    }
    return source;
}

bool FxLex(const FxSourceText& source, uint32_t file, size_t budget, FxDiagnostics& diagnostics,
           std::vector<FxToken>& tokensOut)
{
    return Lexer(source, file, diagnostics).Run(budget, tokensOut);
}

} // namespace headless::fx
