#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Names in scene files are bytes. Newer tools write UTF-8, the exporter wrote the code page of the
// artist's machine: a name that is no UTF-8 is read as Windows-1252.

/// A name in one line of text for people: UTF-8 with each control character, and each character that
/// turns the direction of writing, as `\x0A` or `\u202E`. A backslash stays as it is, since paths
/// are full of them.
std::string ShownName(std::string_view bytes);

/// A name in double quotes, as `ShownName`.
std::string QuotedName(std::string_view bytes);

/// A name as UTF-8, with every character that it has.
std::string Utf8Name(std::string_view bytes);
/// Whether a text holds characters that a line for people shows by their numbers.
bool HasHiddenCharacters(std::string_view text);

/// The shortest decimal number that gives the same float again; "nan", "inf", "-inf".
std::string ShortestText(float value);
/// With at most `digits` digits behind the point, and no zeros at the end.
std::string RoundedText(double value, int digits);
/// With a comma between thousands.
std::string CountText(int64_t count);
/// "1 mesh", "2 meshes".
std::string CountOf(int64_t count, const char* one, const char* many);
/// Columns that a text of UTF-8 takes, a column a character.
size_t ShownWidth(std::string_view text);
/// The text with blanks behind it up to a width in columns.
std::string Padded(std::string text, size_t width);
