#include "gfx/KRE_Font.h"

#include <algorithm>
#include <iterator>

KRE_Font* gFont = nullptr;

KRE_Font::KRE_Font() : texture(std::make_unique<KRE_Texture>())
{
    SetClassName("KRE_Font");
}

void KRE_Font::SetMetrics(float newScale, D3DCOLOR newColor, float newCharSpacing,
                          float newLineSpacing, float newFactor)
{
    scale = newScale;
    color = newColor;
    if (newCharSpacing != kKeep)
        charSpacing = newCharSpacing;
    if (newLineSpacing != kKeep)
        lineSpacing = newLineSpacing;
    lineSpacingFactor = newFactor;
}

const KRE_Font::GlyphRect* KRE_Font::FindGlyph(uint8_t c) const
{
    return c >= kFirstGlyph ? &glyphRects[c - kFirstGlyph] : nullptr;
}

float KRE_Font::CharWidth(uint8_t c) const
{
    const GlyphRect* glyph = FindGlyph(c);
    if (!glyph)
        return 0.0f;
    const int32_t index = c - kFirstGlyph;
    const float spacing = charSpacing - rightBearing[index] - leftBearing[index];
    return (spacing + static_cast<float>(glyph->right) - static_cast<float>(glyph->left)) * scale;
}

float KRE_Font::LineHeight() const
{
    return (static_cast<float>(glyphRects[0].bottom - glyphRects[0].top) + lineSpacing) * scale;
}

float KRE_Font::GlyphHeight() const
{
    return static_cast<float>(glyphRects[0].bottom - glyphRects[0].top) * scale;
}

void KRE_Font::Free()
{
    texture->Free();
    std::fill(std::begin(glyphRects), std::end(glyphRects), GlyphRect());
    firstChar = kGlyphs;
    lastChar = kGlyphs;
    ready = 0;
}
