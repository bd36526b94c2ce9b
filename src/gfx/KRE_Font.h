#pragma once

#include <cstdint>
#include <memory>

#include <d3d9.h>

#include "base/KRE_Base.h"
#include "gfx/KRE_Texture.h"

/// A bitmap font: a sheet of glyphs, where each lies on it, and how letters stand beside each other.
/// Lengths are pixels of the sheet; `scale` takes them to the screen. `KRE_Gfx::BuildFont` fills it.
class KRE_Font : public KRE_Base {
public:
    /// Part of the sheet; right and bottom stand outside.
    struct GlyphRect {
        int32_t left = 0;
        int32_t top = 0;
        int32_t right = 0;
        int32_t bottom = 0;
    };

    static constexpr int32_t kGlyphs = 256;
    static constexpr int32_t kFirstGlyph = 0x20;     ///< character of glyph 0, the blank
    static constexpr float kKeep = -999.0f;          ///< leaves a spacing as it is
    static constexpr float kDefaultFactor = 0.6666f; ///< part of a letter above the baseline

    KRE_Font();

    /// Spacings are in pixels of the sheet; `kKeep` keeps the old one. `newFactor` is the part of a
    /// letter's height that stands above the baseline.
    void SetMetrics(float newScale, D3DCOLOR newColor, float newCharSpacing, float newLineSpacing,
                    float newFactor);
    /// How far a character moves the pen, in pixels of the screen. One without a picture moves it by
    /// the spacing, a control character not at all.
    float CharWidth(uint8_t c) const;
    /// From line to line, in pixels of the screen.
    float LineHeight() const;
    /// Height of a letter, in pixels of the screen.
    float GlyphHeight() const;
    /// Where a character lies on the sheet, an empty place for one without a picture; null for a
    /// control character.
    const GlyphRect* FindGlyph(uint8_t c) const;
    /// Gives the sheet back and forgets all glyphs. Metrics and colour stay.
    void Free();

    std::unique_ptr<KRE_Texture> texture; ///< owned, never null
    GlyphRect glyphRects[kGlyphs];        ///< by character, from `kFirstGlyph` on
    float leftBearing[kGlyphs]{};         ///< taken off in front of a glyph
    float rightBearing[kGlyphs]{};        ///< taken off behind it
    D3DCOLOR color = 0xFF000000;
    int32_t firstChar = kGlyphs; ///< told of the font only; above all characters: there are none
    int32_t lastChar = kGlyphs;
    float scale = 1.0f;
    float charSpacing = 1.0f;
    float lineSpacing = 0.0f;
    float lineSpacingFactor = kDefaultFactor;
    int32_t ready = 0; ///< 1: may be drawn with
};

/// Owned by graphics start-up and shutdown; null outside them.
extern KRE_Font* gFont;
