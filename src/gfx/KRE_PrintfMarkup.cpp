#include "gfx/KRE_PrintfMarkup.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "base/FormatText.h"
#include "gfx/KRE_PrintfContainer.h"
#include "gfx/KRE_PrintfLayout.h"

namespace {

/// The result of a command.
enum class Outcome { done, noCommand, cutOff };

/// Value of a digit in base 10 or 16, or -1 for a character that is not one.
int32_t DigitValue(char c, int32_t base)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (base == 16 && c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return base == 16 && c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

D3DCOLOR OpaqueColor(int32_t red, int32_t green, int32_t blue)
{
    return 0xFF000000 | static_cast<D3DCOLOR>(red << 16 | green << 8 | blue);
}

/// Scales a hexadecimal digit, 0 to 15, to 0 to 255.
int32_t WidenDigit(int32_t digit)
{
    return static_cast<int32_t>(std::lround(digit * (255.0 / 15.0)));
}

class Scanner {
public:
    Scanner(const char* text, KRE_PrintfContainer& containerIn, KRE_PrintfLayout& layoutIn)
        : at(text),
          container(containerIn),
          layout(layoutIn)
    {}

    void Run();

private:
    struct Command {
        char letter;
        Outcome (Scanner::*run)(int32_t argument);
        int32_t argument;
    };
    static const Command kCommands[];

    bool RunCommand();
    bool ReadDigits(int32_t count, int32_t base, Outcome& outcomeOut);
    void SetColor(D3DCOLOR color);
    void NotFound(const std::string& name);

    Outcome Bar(int32_t);
    Outcome LongColor(int32_t);
    Outcome ShortColor(int32_t);
    Outcome Alignment(int32_t mode);
    Outcome LineFeed(int32_t);
    Outcome Reset(int32_t);
    Outcome Move(int32_t digitCount);
    Outcome BothScales(int32_t);
    Outcome OneScale(int32_t);
    Outcome Image(int32_t);

    const char* at; // after the command's letter while the command runs
    KRE_PrintfContainer& container;
    KRE_PrintfLayout& layout;
    int32_t digits[6]{}; // of the last ReadDigits
};

const Scanner::Command Scanner::kCommands[] = {
    {'|', &Scanner::Bar, 0},
    {'C', &Scanner::LongColor, 0},
    {'c', &Scanner::ShortColor, 0},
    {'Z', &Scanner::Alignment, kAlignLeft},
    {'z', &Scanner::Alignment, kAlignLeft},
    {'L', &Scanner::Alignment, kAlignCentred},
    {'l', &Scanner::Alignment, kAlignCentred},
    {'T', &Scanner::Alignment, kAlignRight},
    {'t', &Scanner::Alignment, kAlignRight},
    {'J', &Scanner::Alignment, kAlignJustified},
    {'j', &Scanner::Alignment, kAlignJustified},
    {'N', &Scanner::LineFeed, 0},
    {'n', &Scanner::LineFeed, 0},
    {'R', &Scanner::Reset, 0},
    {'r', &Scanner::Reset, 0},
    {'P', &Scanner::Move, 3},
    {'p', &Scanner::Move, 2},
    {'S', &Scanner::BothScales, 0},
    {'s', &Scanner::OneScale, 0},
    {'i', &Scanner::Image, 0},
};

void Scanner::Run()
{
    while (*at) {
        const char c = *at++;
        if (c != '|')
            layout.AddCharacter(c);
        else if (!RunCommand())
            return;
    }
}

/// False when the text ends inside the command.
bool Scanner::RunCommand()
{
    const char* const letter = at;
    if (!*letter)
        return false;
    Outcome outcome = Outcome::noCommand;
    for (const Command& command : kCommands) {
        if (command.letter != *letter)
            continue;
        at = letter + 1;
        outcome = (this->*command.run)(command.argument);
        break;
    }
    if (outcome == Outcome::noCommand) {
        layout.AddCharacter('|');
        at = letter;
    }
    return outcome != Outcome::cutOff;
}

bool Scanner::ReadDigits(int32_t count, int32_t base, Outcome& outcomeOut)
{
    for (int32_t i = 0; i < count; ++i) {
        digits[i] = DigitValue(*at, base);
        if (digits[i] < 0) {
            outcomeOut = *at ? Outcome::noCommand : Outcome::cutOff;
            return false;
        }
        ++at;
    }
    outcomeOut = Outcome::done;
    return true;
}

void Scanner::SetColor(D3DCOLOR color)
{
    layout.EndPiece();
    layout.options.color = color;
    layout.options.alpha = 1.0f;
}

Outcome Scanner::Bar(int32_t)
{
    layout.AddCharacter('|');
    layout.EndPiece();
    return Outcome::done;
}

Outcome Scanner::LongColor(int32_t)
{
    Outcome outcome;
    if (ReadDigits(6, 16, outcome))
        SetColor(OpaqueColor(digits[0] * 16 + digits[1], digits[2] * 16 + digits[3],
                             digits[4] * 16 + digits[5]));
    return outcome;
}

Outcome Scanner::ShortColor(int32_t)
{
    Outcome outcome;
    if (ReadDigits(3, 16, outcome))
        SetColor(OpaqueColor(WidenDigit(digits[0]), WidenDigit(digits[1]), WidenDigit(digits[2])));
    return outcome;
}

Outcome Scanner::Alignment(int32_t mode)
{
    layout.SetAlignment(mode);
    return Outcome::done;
}

Outcome Scanner::LineFeed(int32_t)
{
    layout.AddCharacter('\n');
    return Outcome::done;
}

Outcome Scanner::Reset(int32_t)
{
    layout.EndPiece();
    layout.Reset();
    return Outcome::done;
}

Outcome Scanner::Move(int32_t digitCount)
{
    Outcome outcome;
    if (!ReadDigits(digitCount, 10, outcome))
        return outcome;
    int32_t distance = 0;
    for (int32_t i = 0; i < digitCount; ++i)
        distance = distance * 10 + digits[i];
    layout.EndPiece();
    layout.MoveRight(static_cast<float>(distance));
    return outcome;
}

Outcome Scanner::BothScales(int32_t)
{
    Outcome outcome;
    if (!ReadDigits(4, 10, outcome))
        return outcome;
    layout.EndPiece();
    layout.options.scaleX = static_cast<float>(digits[0] * 10 + digits[1]) / 10.0f;
    layout.options.scaleY = static_cast<float>(digits[2] * 10 + digits[3]) / 10.0f;
    return outcome;
}

Outcome Scanner::OneScale(int32_t)
{
    Outcome outcome;
    if (!ReadDigits(2, 10, outcome))
        return outcome;
    layout.EndPiece();
    layout.options.scaleX = static_cast<float>(digits[0] * 10 + digits[1]) / 10.0f;
    layout.options.scaleY = layout.options.scaleX;
    return outcome;
}

void Scanner::NotFound(const std::string& name)
{
    static constexpr char kFormat[] = "<not found:'%s'>";
    std::string message(name.size() + sizeof kFormat, '\0');
    FormatText(message.data(), message.size(), kFormat, name.c_str());
    for (const char* c = message.c_str(); *c; ++c)
        layout.AddCharacter(*c);
}

Outcome Scanner::Image(int32_t)
{
    if (!*at)
        return Outcome::cutOff;
    if (*at != '\'')
        return Outcome::done;
    const char* const name = at + 1;
    const char* const end = std::strchr(name, '\'');
    if (!end)
        return Outcome::cutOff;
    at = end + 1;
    if (end == name)
        return Outcome::done;
    const std::string imageName(name, end);
    if (KRE_Texture* image = container.FindImage(imageName.c_str())) {
        layout.AddImage(image);
        return Outcome::done;
    }
    NotFound(imageName);
    return Outcome::done;
}

} // namespace

void ScanPrintfMarkup(const char* text, KRE_PrintfContainer& container, KRE_PrintfLayout& layout)
{
    Scanner(text, container, layout).Run();
}
