#include "base/Paths.h"

#include <bit>
#include <cstring>
#include <utility>

#include "base/FileStream.h"
#include "base/FormatText.h"
#include "base/ParseNumber.h"
#include "platform/OpenFileStream.h"

static bool IsSeparator(char c)
{
    return c == '\\' || c == '/';
}

/// The leaf within `path`; `path` itself if there is no separator.
static const char* FindLeaf(const char* path)
{
    const char* leaf = path;
    for (const char* at = path; *at; ++at) {
        if (IsSeparator(*at))
            leaf = at + 1;
    }
    return leaf;
}

bool FileExists(const char* path)
{
    return path && *path && FileStream(OpenFileStream(path, "rb")) != nullptr;
}

void SplitDirectory(const char* path, String* directoryOut)
{
    const char* leaf = FindLeaf(path);
    directoryOut->Assign(path, leaf > path ? static_cast<int32_t>(leaf - path) - 1 : 0);
}

void SplitLeaf(const char* path, String* leafOut)
{
    leafOut->Assign(FindLeaf(path));
}

void GetLeafName(const String& path, String* leafOut)
{
    SplitLeaf(path.c_str(), leafOut);
}

void ReplaceDirectory(char (&path)[256], const char* directory)
{
    const String leaf(FindLeaf(path));
    FormatText(path, sizeof path, "%s\\%s", directory, leaf.c_str());
}

bool IsAbsolutePath(const String& path)
{
    return std::strchr(path.c_str(), ':') || IsSeparator(path.c_str()[0]);
}

void ChangeExtension(const String& name, String* nameOut, const char* extension)
{
    const char* text = name.c_str();
    const char* dot = std::strrchr(FindLeaf(text), '.');
    String changed;
    changed.Assign(text, dot ? static_cast<int32_t>(dot - text) : name.TextLength());
    changed.Append(".");
    changed.Append(extension);
    *nameOut = std::move(changed);
}

void EnsureTrailingSlash(String* path)
{
    const int32_t length = path->TextLength();
    if (length > 0 && !IsSeparator(path->c_str()[length - 1]))
        path->Append("\\");
}

void TrimString(String* text)
{
    const auto isBlank = [](char c) { return static_cast<signed char>(c) < 33; };
    const char* begin = text->c_str();
    while (*begin && isBlank(*begin))
        ++begin;
    // QUIRK: the search for the end starts after the first character, so an inner blank ends the text.
    const char* end = begin;
    while (*end && (end == begin || !isBlank(*end)))
        ++end;
    text->Assign(begin, static_cast<int32_t>(end - begin));
}

int32_t RoundToInt(float value)
{
    const float rounded = value < 0.0f ? value - 0.5f : value + 0.5f;
    return ToInt32(rounded);
}

bool IsPowerOfTwo(uint32_t number)
{
    return std::has_single_bit(number);
}

uint32_t NextPowerOfTwo(uint32_t number)
{
    constexpr uint32_t kHighest = 0x80000000u;
    return number == 0 || number > kHighest ? 0 : std::bit_ceil(number);
}
