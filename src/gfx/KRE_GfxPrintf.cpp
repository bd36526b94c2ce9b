#include "gfx/KRE_Gfx.h"

#include <cstdarg>
#include <cstdio>

#include "gfx/KRE_Font.h"

void KRE_Gfx::Printf(int32_t x, int32_t y, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(scratch.Get(), kScratchBytes, format, arguments);
    va_end(arguments);
    if (length < 0)
        scratch[0] = 0; // a conversion failed, and the buffer may not hold a valid text
    if (length >= kScratchBytes)
        Warning("String too long for Printf()");
    if (!currentFont || !currentFont->ready)
        Error("Tried to set invalid font");

    KRE_PrintfOptions options;
    options.font = currentFont;
    options.color = currentFont->color;
    options.alpha = static_cast<float>(currentFont->color >> 24) / 255.0f;
    printf.Clear();
    printf.PushOptions(options);
    printf.AddText(scratch.Get());
    printf.PopOptions();
    printf.Draw(static_cast<float>(x), static_cast<float>(y));
    printf.Clear();
}
