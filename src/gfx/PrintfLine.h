#pragma once

#include <cstdint>

#include "base/DynaMem.h"
#include "base/String.h"
#include "gfx/KRE_PrintfOptions.h"

class KRE_Texture;

/// One piece of a line: letters of one look, or a picture. Lengths are in pixels.
struct PrintfEntity {
    static constexpr int32_t kText = 1;
    static constexpr int32_t kImage = 2;

    int32_t kind = kText;
    String text;
    int32_t length = 0; ///< bytes of `text`
    float x = 0.0f;     ///< from the line's left end
    float width = 0.0f;
    float wordSpacing = 0.0f; ///< added to each space by justification
    KRE_PrintfOptions options;
    KRE_Texture* image = nullptr; ///< not owned, lives in the container or the catalogue
};

/// One line of a text, from the text's top left corner. The baseline is `ascent` below `y`.
struct PrintfLine {
    float Bottom() const { return y + (ascent + descent); }

    DynaMem<PrintfEntity, 32, 1> entities;
    float x = 0.0f;
    float y = 0.0f;
    float width = 0.0f;
    float ascent = 0.0f;
    float descent = 0.0f;
    int32_t alignment = kAlignLeft; ///< a KRE_TextAlignment
};

/// The rectangle that lines of text cover, in pixels from the text's top left corner.
struct PrintfArea {
    float left = 0.0f;
    float top = 0.0f;
    float right = 0.0f;
    float bottom = 0.0f;
};
