#pragma once

#include <cstdint>
#include <memory>

#include <d3d9.h>

#include "base/KRE_Base.h"
#include "gfx/KRE_Texture.h"

/// A bitmap font: a sheet of glyphs, the place of each on it, and the spacing of letters. Lengths
/// are in pixels of the sheet; `scale` converts them to screen pixels. `KRE_Gfx::BuildFont` fills
/// it.
class KRE_Font : public KRE_Base {
public:
    /// Part of the sheet; right and bottom are exclusive.
    struct GlyphRect {
        int32_t left = 0;
        int32_t top = 0;
        int32_t right = 0;
        int32_t bottom = 0;
    };

    static constexpr int32_t kGlyphs = 256;
    static constexpr int32_t kFirstGlyph = 0x20;     ///< character of glyph 0, the space
    static constexpr float kKeep = -999.0f;          ///< leaves a spacing unchanged
    static constexpr float kDefaultFactor = 0.6666f; ///< share above the baseline

    KRE_Font();

    /// Spacings are in pixels of the sheet; `kKeep` keeps the old one. `newFactor` is the share of
    /// a letter's height above the baseline.
    void SetMetrics(float newScale, D3DCOLOR newColor, float newCharSpacing, float newLineSpacing,
                    float newFactor);
    /// How far a character advances the pen, in screen pixels. A character without a glyph advances
    /// it by the spacing, a control character not at all.
    float CharWidth(uint8_t c) const;
    /// Distance from line to line, in screen pixels.
    float LineHeight() const;
    /// Height of a letter, in screen pixels.
    float GlyphHeight() const;
    /// The rectangle of a character on the sheet, empty for one without a glyph; null for a control
    /// character.
    const GlyphRect* FindGlyph(uint8_t c) const;
    /// Releases the sheet and clears all glyphs. Metrics and colour stay.
    void Free();

    std::unique_ptr<KRE_Texture> texture; ///< owned, never null
    GlyphRect glyphRects[kGlyphs];        ///< indexed by character - `kFirstGlyph`
    float leftBearing[kGlyphs]{};         ///< subtracted before a glyph
    float rightBearing[kGlyphs]{};        ///< subtracted after it
    D3DCOLOR color = 0xFF000000;
    int32_t firstChar = kGlyphs; ///< informational; the value above all characters means none
    int32_t lastChar = kGlyphs;
    float scale = 1.0f;
    float charSpacing = 1.0f;
    float lineSpacing = 0.0f;
    float lineSpacingFactor = kDefaultFactor;
    int32_t ready = 0; ///< 1: can be used to draw
};

/// Created by graphics start-up and destroyed by shutdown; null outside that time.
extern KRE_Font* gFont;
