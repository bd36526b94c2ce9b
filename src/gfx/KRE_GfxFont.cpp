#include "gfx/KRE_Gfx.h"

#include <cmath>

#include "gfx/KRE_Font.h"
#include "gfx/KRE_FontGlyphs.h"

namespace {

constexpr int32_t kSheetWidth = 128;
constexpr int32_t kSheetHeight = 32;
constexpr int32_t kCellSide = kFontGlyphSide + 1; // an empty row and column between neighbours
constexpr int32_t kCellsInRow = 21;
constexpr int32_t kLastBlankGlyph = 91; // the brace after the lower-case letters
constexpr int32_t kLastChar = 0x7F;
constexpr D3DCOLOR kOpaque = 0xFF000000;

KRE_Font::GlyphRect CellOf(int32_t glyph)
{
    const int32_t left = glyph % kCellsInRow * kCellSide;
    const int32_t top = glyph / kCellsInRow * kCellSide;
    return {left, top, left + kFontGlyphSide, top + kFontGlyphSide};
}

float ChannelOf(D3DCOLOR color, int32_t shift)
{
    return static_cast<float>(color >> shift & 0xFF);
}

/// The colour of a letter's pixel: it fades from the letter's top left corner to the bottom right.
D3DCOLOR FadedColor(int32_t row, int32_t column, D3DCOLOR first, D3DCOLOR second)
{
    const float distance = static_cast<float>(row * row + column * column) * 0.03125f; // 1 / 32
    const auto part = static_cast<float>(std::sqrt(static_cast<double>(distance)));
    D3DCOLOR color = kOpaque;
    for (int32_t shift : {16, 8, 0}) {
        const float from = ChannelOf(first, shift);
        color |= static_cast<D3DCOLOR>((ChannelOf(second, shift) - from) * part + from) << shift;
    }
    return color;
}

void PaintGlyph(KRE_Texture& sheet, const KRE_Font::GlyphRect& cell, const char* glyph,
                D3DCOLOR first, D3DCOLOR second)
{
    for (int32_t row = 0; row < kFontGlyphSide; ++row) {
        for (int32_t column = 0; column < kFontGlyphSide; ++column) {
            if (glyph[row * kFontGlyphSide + column] == 'X')
                sheet.PutPixel(cell.left + column, cell.top + row,
                               FadedColor(row, column, first, second));
        }
    }
}

} // namespace

void KRE_Gfx::BuildFont(KRE_Font& font, D3DCOLOR first, D3DCOLOR second)
{
    font.Free();
    const int32_t format =
        CheckFormat(D3DFMT_A8R8G8B8, kFormatOfTexture) ? D3DFMT_A8R8G8B8 : D3DFMT_A4R4G4B4;
    CreateTexture(font.texture.get(), kSheetWidth, kSheetHeight, kCreateTextureManaged, format, 1);
    font.texture->Fill(0); // also locks it
    for (int32_t glyph = 0; glyph < kFontGlyphCount; ++glyph) {
        font.glyphRects[glyph] = CellOf(glyph);
        PaintGlyph(*font.texture, font.glyphRects[glyph], kFontGlyphs[glyph], first, second);
    }
    font.texture->Unlock();
    // There are no lower-case letters: they and the characters around them are blank.
    for (int32_t glyph = kFontGlyphCount; glyph <= kLastBlankGlyph; ++glyph)
        font.glyphRects[glyph] = CellOf(0);
    for (int32_t glyph = 0; glyph < KRE_Font::kGlyphs; ++glyph)
        font.leftBearing[glyph] = font.rightBearing[glyph] = 0.0f;
    font.firstChar = KRE_Font::kFirstGlyph;
    font.lastChar = kLastChar;
    font.ready = 1;
    font.SetMetrics(1.0f, 0xFFFFFFFF, 1.0f, 1.0f, KRE_Font::kDefaultFactor);
}

void KRE_Gfx::SetFont(KRE_Font* font, float scale, D3DCOLOR color)
{
    if (!font || !font->ready)
        Error("Tried to set invalid font");
    currentFont = font;
    if (scale != 0.0f)
        font->scale = scale;
    if ((color & kOpaque) != 0)
        font->color = color;
}
