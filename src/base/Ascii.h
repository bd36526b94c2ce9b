#pragma once

#include <cstddef>

// Case folding and comparison of `a` to `z` and `A` to `Z` only. The C library's own functions depend on
// the locale and the host; names in scene files must compare alike everywhere.

/// Upper case of an ASCII letter; returns every other character as it is.
constexpr char ToUpperAscii(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Lower case of an ASCII letter; returns every other character as it is.
constexpr char ToLowerAscii(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Orders two texts as `strcmp` does, with upper case folded to lower: below 0, 0 or above 0.
/// Neither may be null.
int CompareNoCase(const char* left, const char* right);

/// The same for at most `count` characters; 0 if that many agree.
int CompareNoCase(const char* left, const char* right, size_t count);
