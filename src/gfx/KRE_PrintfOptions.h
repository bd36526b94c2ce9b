#pragma once

#include <cstdint>

#include <d3d9.h>

class KRE_Font;

/// How lines are aligned between the left and right edge of a text.
enum KRE_TextAlignment : int32_t {
    kAlignLeft = 1,
    kAlignCentred = 2,
    kAlignRight = 3,
    kAlignJustified = 4, ///< spaces are widened, except in the last line of a text
};

/// How a piece of text looks.
struct KRE_PrintfOptions {
    KRE_Font* font = nullptr;    ///< not owned; must outlive the text
    D3DCOLOR color = 0xFFFFFFFF; ///< the alpha in it is not used
    float alpha = 1.0f;          ///< 0 to 1
    float scaleX = 1.0f;         ///< on top of the font's scale; each text begins with 1
    float scaleY = 1.0f;
    int32_t alignment = kAlignLeft;    ///< a KRE_TextAlignment, for the line
    float tab = 0.0f;                  ///< pixels between tab stops; with 0 a tab is a space
    D3DCOLOR background = 0;           ///< painted behind the piece, unless its alpha is 0
    int32_t shadow = 0;                ///< 1: each letter has one
    D3DCOLOR shadowColor = 0xFF000000; ///< the alpha in it is not used
};
