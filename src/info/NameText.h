#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Names in scene files are bytes. Newer tools write UTF-8; the exporter wrote the code page of the
// artist's machine. A name that is not valid UTF-8 is read as Windows-1252.

/// A name on one line of text for people: UTF-8, with control characters and characters that change
/// the writing direction as `\x0A` or `\u202E`. A backslash stays as it is, since paths are full of
/// them.
std::string ShownName(std::string_view bytes);

/// A name in double quotes, otherwise as from `ShownName`.
std::string QuotedName(std::string_view bytes);

/// A name as UTF-8, with all its characters.
std::string Utf8Name(std::string_view bytes);
/// Whether a text has characters that `ShownName` escapes.
bool HasHiddenCharacters(std::string_view text);

/// The shortest decimal number that reads back as the same float; "nan", "inf", "-inf".
std::string ShortestText(float value);
/// At most `digits` digits after the point, and no trailing zeros.
std::string RoundedText(double value, int digits);
/// With a comma as thousands separator.
std::string CountText(int64_t count);
/// "1 mesh", "2 meshes".
std::string CountOf(int64_t count, const char* one, const char* many);
/// Columns that a UTF-8 text takes, one per character.
size_t ShownWidth(std::string_view text);
/// The text followed by blanks up to a width in columns.
std::string Padded(std::string text, size_t width);
