// Text as a real device draws it.

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "gfx/KRE_Font.h"
#include "gfx/KRE_FontGlyphs.h"
#include "tests/gfx/TextureEngine.h"
#include "tests/support/TestDevice.h"

namespace {

class KRE_GfxPrintfPictureTest : public TextureEngine {
protected:
    KRE_GfxPrintfPictureTest()
    {
        gfx->BuildFont(font, 0xFF96DCFF, 0xFF006473);
        gfx->SetFont(&font, 0.0f, 0);
        // Both filters: at one texel per pixel, rounding decides whether a letter counts as
        // magnified.
        gfx->SetTextureFilter(2, 0); // magnified: point
        gfx->SetTextureFilter(4, 0); // reduced: point
    }
    ~KRE_GfxPrintfPictureTest() override
    {
        gfx->SetTexture(nullptr);
        font.Free();
    }

    D3DCOLOR SheetPixel(uint8_t c, int32_t column, int32_t row)
    {
        const KRE_Font::GlyphRect& cell = *font.FindGlyph(c);
        return PixelOf(*font.texture, cell.left + column, cell.top + row);
    }

    KRE_Font font;
};

int Distance(D3DCOLOR a, D3DCOLOR b)
{
    int distance = 0;
    for (int shift : {16, 8, 0})
        distance = std::max(distance, std::abs(static_cast<int>(a >> shift & 0xFF) -
                                               static_cast<int>(b >> shift & 0xFF)));
    return distance;
}

} // namespace

TEST_F(KRE_GfxPrintfPictureTest, EachLetterCoversItsPixels)
{
    // Every glyph at (3, 3) and one after it: inside the cell the sheet's pixels, or the background
    // where the sheet is clear; around it the background.
    constexpr D3DCOLOR kBackground = 0xFF402010;
    for (int32_t glyph = 0; glyph < kFontGlyphCount; ++glyph) {
        const auto c = static_cast<uint8_t>(KRE_Font::kFirstGlyph + glyph);
        gfx->BeginScene();
        gfx->Clear(kBackground);
        gfx->Printf(3, 3, "%c", c);
        gfx->EndScene();
        const std::vector<DWORD> picture =
            ReadRenderTarget(gfx->device.Get(), gfx->renderTarget.Get());
        ASSERT_EQ(picture.size(), 64u * 64u);
        int wrong = 0;
        for (int32_t y = 0; y < 12; ++y) {
            for (int32_t x = 0; x < 12; ++x) {
                const bool isInCell = x >= 3 && x < 8 && y >= 3 && y < 8;
                const bool isSet =
                    isInCell && kFontGlyphs[glyph][(y - 3) * kFontGlyphSide + x - 3] == 'X';
                const D3DCOLOR expected = isSet ? SheetPixel(c, x - 3, y - 3) : kBackground;
                if (Distance(picture[static_cast<size_t>(y * 64 + x)], expected) > 1)
                    ++wrong;
            }
        }
        EXPECT_EQ(wrong, 0) << "pixels of " << c;
    }
}

TEST_F(KRE_GfxPrintfPictureTest, ClipBoxClipsLetters)
{
    gfx->printf.maxWidth = 3.0f;
    gfx->BeginScene();
    gfx->Clear(0xFF000000);
    gfx->Printf(10, 10, "T");
    gfx->EndScene();
    const std::vector<DWORD> picture = ReadRenderTarget(gfx->device.Get(), gfx->renderTarget.Get());
    for (int32_t x = 8; x < 18; ++x) {
        const bool isDrawn = x >= 10 && x < 13; // of the bar of T, which is 5 pixels long
        EXPECT_EQ(picture[static_cast<size_t>(10 * 64 + x)] != 0xFF000000u, isDrawn) << x;
    }
}

TEST_F(KRE_GfxPrintfPictureTest, HalfTransparentTextLetsTheBackgroundThrough)
{
    gfx->BuildFont(font, 0xFFFFFFFF, 0xFFFFFFFF);
    font.color = 0x80FF0000;
    gfx->BeginScene();
    gfx->Clear(0xFF0000FF);
    gfx->Printf(10, 10, "T");
    gfx->EndScene();
    // Red 255 * 128 / 255, blue 255 * (255 - 128) / 255.
    const D3DCOLOR pixel =
        ReadRenderTarget(gfx->device.Get(), gfx->renderTarget.Get())[10 * 64 + 12];
    EXPECT_LE(Distance(pixel, 0xFF80007F), 1) << std::hex << pixel;
}

TEST_F(KRE_GfxPrintfPictureTest, BackgroundIsPaintedBehindTheLetters)
{
    KRE_PrintfOptions options;
    options.font = &font;
    options.background = 0xFF00FF00;
    gfx->printf.PushOptions(options);
    gfx->printf.AddText("I");
    gfx->BeginScene();
    gfx->Clear(0xFF0000FF);
    gfx->printf.Draw(10.0f, 10.0f);
    gfx->EndScene();
    const std::vector<DWORD> picture = ReadRenderTarget(gfx->device.Get(), gfx->renderTarget.Get());
    // The piece is 6 x 6 pixels. The left column of I is clear, its middle one is not.
    EXPECT_EQ(picture[10 * 64 + 10], 0xFF00FF00u);
    EXPECT_LE(Distance(picture[12 * 64 + 12], SheetPixel('I', 2, 2)), 1);
    EXPECT_EQ(picture[15 * 64 + 15], 0xFF00FF00u);
    EXPECT_EQ(picture[15 * 64 + 16], 0xFF0000FFu);
    EXPECT_EQ(picture[16 * 64 + 15], 0xFF0000FFu);
}
