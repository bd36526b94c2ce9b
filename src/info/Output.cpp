#include "info/Output.h"

static constexpr size_t kPieceBytes = 1 << 16;

void Output::Add(std::string_view bytes)
{
    text += bytes;
    if (stream && text.size() >= kPieceBytes)
        Flush();
}

void Output::Line(std::initializer_list<std::string_view> parts)
{
    for (const std::string_view part : parts)
        text += part;
    Add("\n");
}

bool Output::Flush()
{
    if (!stream)
        return true;
    if (std::fwrite(text.data(), 1, text.size(), stream) != text.size() || std::fflush(stream) != 0)
        hasFailed = true;
    text.clear();
    return !hasFailed;
}
