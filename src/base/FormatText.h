#pragma once

#include <cstdarg>
#include <cstddef>

/// Formats into a buffer of `size` bytes, at least 1. A result that does not fit is truncated; the buffer
/// always ends in a NUL. The arguments must not point into the buffer.
[[gnu::format(printf, 3, 4)]] void FormatText(char* bufferOut, size_t size, const char* format,
                                              ...);
void FormatTextV(char* bufferOut, size_t size, const char* format, va_list arguments);

/// Copies a text, truncated to `size` - 1 bytes; `size` is at least 1, null gives the empty text.
void CopyText(char* bufferOut, size_t size, const char* text);
