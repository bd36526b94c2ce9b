#include "gfx/KRE_FrameList.h"

#include <algorithm>

namespace {

bool IsBlank(char c)
{
    return static_cast<unsigned char>(c) <= ' ';
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Bytes of the line ending at the start of `text`; CR LF is one ending.
size_t LineEndBytes(std::string_view text)
{
    return text.substr(0, 2) == "\r\n" ? 2 : std::min<size_t>(text.size(), 1);
}

} // namespace

std::vector<KRE_FrameLine> SplitFrameList(std::string_view text)
{
    std::vector<KRE_FrameLine> lines;
    for (int32_t number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
        text.remove_prefix(line.size());
        text.remove_prefix(LineEndBytes(text));
        const std::string_view trimmed = Trimmed(line);
        if (!trimmed.empty())
            lines.push_back({trimmed, number});
    }
    return lines;
}

KRE_FrameRun SplitFrameCount(std::string_view line)
{
    const auto wordAt = std::find_if(line.rbegin(), line.rend(), IsBlank).base();
    const auto nameBytes = static_cast<size_t>(wordAt - line.begin());
    const std::string_view word = line.substr(nameBytes);
    const std::string_view name = Trimmed(line.substr(0, nameBytes));
    if (name.empty() || !std::all_of(word.begin(), word.end(), IsDigit))
        return {line, 1};
    int32_t count = 0;
    for (const char digit : word)
        count = std::min(count * 10 + (digit - '0'), kMostFrames + 1);
    if (count == 0)
        return {line, 1};
    return {name, count};
}
