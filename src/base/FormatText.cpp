#include "base/FormatText.h"

#include <cstdio>
#include <cstring>

void FormatText(char* bufferOut, size_t size, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(bufferOut, size, format, arguments);
    va_end(arguments);
}

void FormatTextV(char* bufferOut, size_t size, const char* format, va_list arguments)
{
    // A failing conversion would leave the buffer as it was, which may be no text at all.
    if (std::vsnprintf(bufferOut, size, format, arguments) < 0)
        bufferOut[0] = 0;
}

void CopyText(char* bufferOut, size_t size, const char* text)
{
    const size_t length = text ? strnlen(text, size - 1) : 0;
    if (length > 0)
        std::memmove(bufferOut, text, length);
    bufferOut[length] = 0;
}
