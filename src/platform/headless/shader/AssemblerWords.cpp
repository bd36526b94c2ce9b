#include "platform/headless/shader/AssemblerWords.h"

namespace headless::shader {

namespace {

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

void AsmWords::Step()
{
    if (text[next] == '\n') {
        ++line;
        column = 0;
    }
    ++column;
    ++next;
}

void AsmWords::SkipBlanks()
{
    while (next < text.size()) {
        const char c = At(0);
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
            Step();
        } else if (c == ';' || (c == '/' && At(1) == '/')) {
            while (next < text.size() && At(0) != '\n')
                Step();
        } else if (c == '/' && At(1) == '*') {
            Step();
            Step();
            while (next < text.size() && !(At(0) == '*' && At(1) == '/'))
                Step();
            for (int i = 0; i < 2 && next < text.size(); ++i)
                Step();
        } else {
            return;
        }
    }
}

/// A number may begin with a point and have an exponent and the suffix f; its sign is a word of its
/// own.
void AsmWords::Advance()
{
    SkipBlanks();
    word = {AsmKind::End, {}, line, column};
    if (next >= text.size())
        return;
    const size_t first = next;
    const char c = At(0);
    if (IsLetter(c)) {
        word.kind = AsmKind::Name;
        while (IsLetter(At(0)) || IsDigit(At(0)))
            Step();
    } else if (IsDigit(c) || (c == '.' && IsDigit(At(1)))) {
        word.kind = AsmKind::Number;
        while (IsDigit(At(0)) || At(0) == '.' || IsLetter(At(0)) ||
               ((At(0) == '-' || At(0) == '+') && (text[next - 1] == 'e' || text[next - 1] == 'E')))
            Step();
    } else {
        word.kind = AsmKind::Sign;
        Step();
    }
    word.text = text.substr(first, next - first);
}

AsmWord AsmWords::Next()
{
    const AsmWord last = word;
    Advance();
    return last;
}

bool AsmWords::Accept(char sign)
{
    if (!word.Is(sign))
        return false;
    Advance();
    return true;
}

AsmWord AsmWords::NextVersion()
{
    AsmWord version = word;
    if (version.kind == AsmKind::Name && version.text.size() == 2 && At(0) == '.') {
        while (IsLetter(At(0)) || IsDigit(At(0)) || At(0) == '.')
            Step();
        version.text = {version.text.data(),
                        static_cast<size_t>(text.data() + next - version.text.data())};
    }
    Advance();
    return version;
}

} // namespace headless::shader
