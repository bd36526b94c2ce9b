#include "tests/gfx/TextTest.h"

#include <bit>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr D3DCOLOR kFirst = 0xFF96DCFF;
constexpr D3DCOLOR kSecond = 0xFF006473;

class KRE_GfxFontTest : public TextTest {
protected:
    D3DCOLOR Pixel(int32_t x, int32_t y)
    {
        D3DCOLOR color = 0x12345678;
        font.texture->Lock(nullptr, D3DLOCK_READONLY);
        EXPECT_TRUE(font.texture->GetPixel(x, y, &color));
        font.texture->Unlock();
        return color;
    }
};

} // namespace

TEST_F(KRE_GfxFontTest, SheetIsManagedWithOneLevel)
{
    gfx.BuildFont(font, kFirst, kSecond);
    const std::vector<std::string> lines = CallsOf("CreateTexture");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(lines[0], HasSubstr("CreateTexture 128 32 1 0 D3DFMT_A8R8G8B8 D3DPOOL_MANAGED"));
    EXPECT_THAT(CallsOf("CheckDeviceFormat").at(0), HasSubstr("D3DFMT_A8R8G8B8"));
}

TEST_F(KRE_GfxFontTest, DeviceWithoutTheFormatGetsSixteenBits)
{
    FailNext("CheckDeviceFormat", D3DERR_NOTAVAILABLE);
    gfx.BuildFont(font, kFirst, kSecond);
    EXPECT_THAT(CallsOf("CreateTexture").at(0), HasSubstr(" D3DFMT_A4R4G4B4 "));
    EXPECT_EQ(LastWarning(), "Texture format 21 mode 0 not supported by device");
    // The corner of L, glyph 44 at ((44 mod 21) * 6, 12): the first colour truncated to four bits
    // per channel.
    EXPECT_EQ(Pixel(12, 12), 0xF090D0F0u);
}

TEST_F(KRE_GfxFontTest, CellsAreInRowsOfTwentyOne)
{
    static const struct {
        char what;
        int32_t left, top;
    } cases[] = {
        // glyph number: (number mod 21) * 6, (number / 21) * 6
        {' ', 0, 0},    // 0
        {'!', 6, 0},    // 1
        {'4', 120, 0},  // 20
        {'5', 0, 6},    // 21
        {'A', 72, 6},   // 33
        {'I', 120, 6},  // 41
        {'J', 0, 12},   // 42
        {']', 114, 12}, // 61
    };
    for (const auto& c : cases) {
        const KRE_Font::GlyphRect& rect = font.glyphRects[c.what - 0x20];
        EXPECT_EQ(rect.left, c.left) << c.what;
        EXPECT_EQ(rect.top, c.top) << c.what;
        EXPECT_EQ(rect.right, c.left + 5) << c.what;
        EXPECT_EQ(rect.bottom, c.top + 5) << c.what;
    }
}

TEST_F(KRE_GfxFontTest, PixelsFadeFromTheTopLeftCorner)
{
    // E is glyph 37, at ((37 mod 21) * 6, 6) = (96, 6). Its rows are full, one, four, one and five
    // pixels long. At row r and column c the fade is f = sqrt((r * r + c * c) / 32), and each
    // channel (second - first) * f + first, truncated: red 150 to 0, green 220 to 100, blue 255 to
    // 115.
    static const struct {
        const char* what;
        int32_t row, column;
        D3DCOLOR expected;
    } cases[] = {
        {"corner, f = 0", 0, 0, 0xFF96DCFF},
        // f = 0.707107: 150 - 106.066 = 43.93, 220 - 84.853 = 135.15, 255 - 98.995 = 156.005
        {"top right", 0, 4, 0xFF2B879C},
        {"bottom left, the same distance", 4, 0, 0xFF2B879C},
        {"bottom right, f = 1", 4, 4, 0xFF006473},
        // f = sqrt(5 / 32) = 0.395285: 90.71, 172.57, 199.66
        {"third row, second column", 2, 1, 0xFF5AACC7},
        {"beside the second row's pixel", 1, 1, 0},
        {"behind the third row", 2, 4, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Pixel(96 + c.column, 6 + c.row), c.expected) << c.what;
}

TEST_F(KRE_GfxFontTest, BlankAndTheGapsBetweenCellsAreClear)
{
    for (int32_t i = 0; i < 6; ++i) {
        EXPECT_EQ(Pixel(i, i), 0u) << i; // the space and its corner
        EXPECT_EQ(Pixel(101, 6 + i), 0u) << i << ", right of E";
        EXPECT_EQ(Pixel(96 + i, 11), 0u) << i << ", below E";
    }
}

TEST_F(KRE_GfxFontTest, EachCellOfTheSheetHoldsItsLetter)
{
    // H is glyph 40 at (114, 6): two posts and the bar in the third row.
    for (int32_t row = 0; row < 5; ++row) {
        for (int32_t column = 0; column < 5; ++column) {
            const bool isSet = column == 0 || column == 4 || row == 2;
            EXPECT_EQ(Pixel(114 + column, 6 + row) != 0, isSet) << row << " " << column;
        }
    }
}

TEST_F(KRE_GfxFontTest, LowerCaseLettersUseTheBlankCell)
{
    for (char c : {'^', '_', 'a', 'm', 'z', '{'}) {
        const KRE_Font::GlyphRect& rect = font.glyphRects[c - 0x20];
        EXPECT_EQ(rect.left, 0) << c;
        EXPECT_EQ(rect.top, 0) << c;
        EXPECT_EQ(rect.right, 5) << c;
        EXPECT_EQ(rect.bottom, 5) << c;
        EXPECT_EQ(font.CharWidth(static_cast<uint8_t>(c)), 6.0f) << c;
    }
    EXPECT_EQ(font.glyphRects['|' - 0x20].right, 0) << "behind them there is nothing";
}

TEST_F(KRE_GfxFontTest, BuildingResetsTheMetrics)
{
    font.leftBearing[5] = 3.0f;
    font.rightBearing[7] = 3.0f;
    font.SetMetrics(4.0f, 0, 9.0f, 9.0f, 0.1f);
    gfx.BuildFont(font, kFirst, kSecond);
    EXPECT_EQ(font.firstChar, 0x20);
    EXPECT_EQ(font.lastChar, 0x7F);
    EXPECT_EQ(font.ready, 1);
    EXPECT_EQ(font.scale, 1.0f);
    EXPECT_EQ(font.color, 0xFFFFFFFFu);
    EXPECT_EQ(font.charSpacing, 1.0f);
    EXPECT_EQ(font.lineSpacing, 1.0f);
    EXPECT_EQ(std::bit_cast<uint32_t>(font.lineSpacingFactor), 0x3F2AA64Cu);
    EXPECT_EQ(font.leftBearing[5], 0.0f);
    EXPECT_EQ(font.rightBearing[7], 0.0f);
}

TEST_F(KRE_GfxFontTest, FreedFontReleasesTheSheet)
{
    EXPECT_EQ(gfx.textureManager.GetCount(), 1);
    font.Free();
    EXPECT_EQ(gfx.textureManager.GetCount(), 0);
    EXPECT_FALSE(font.texture->IsValid());
    EXPECT_EQ(font.ready, 0);
    EXPECT_EQ(font.glyphRects['A' - 0x20].right, 0);
    font.Free();
}

TEST_F(KRE_GfxFontTest, SheetSurvivesAReset)
{
    IDirect3DTexture9* sheet = font.texture->current;
    gfx.ResetDevice(nullptr);
    EXPECT_EQ(font.texture->current, sheet);
    EXPECT_EQ(Pixel(114, 6), 0xFF96DCFFu) << "the first pixel of H";
    gfx.Printf(1, 1, "H");
    EXPECT_THAT(CallsOf("DrawPrimitive"), ElementsAre("DrawPrimitive D3DPT_TRIANGLELIST 0 2"));
}

TEST_F(KRE_GfxFontTest, CurrentFontTakesScaleAndColorIfTheyAreGiven)
{
    gfx.SetFont(&font, 2.5f, 0x80102030);
    EXPECT_EQ(gfx.currentFont, &font);
    EXPECT_EQ(font.scale, 2.5f);
    EXPECT_EQ(font.color, 0x80102030u);
    gfx.SetFont(&font, 0.0f, 0x00445566);
    EXPECT_EQ(font.scale, 2.5f);
    EXPECT_EQ(font.color, 0x80102030u) << "a colour without alpha";
}

TEST_F(KRE_GfxFontTest, FontThatIsNotReadyIsAnError)
{
    const KRE_Font* before = gfx.currentFont;
    EXPECT_EQ(RaisedBy([&] { gfx.SetFont(nullptr, 0.0f, 0); }), "Tried to set invalid font");
    KRE_Font empty;
    EXPECT_EQ(RaisedBy([&] { gfx.SetFont(&empty, 0.0f, 0); }), "Tried to set invalid font");
    EXPECT_EQ(gfx.currentFont, before);
    font.Free();
    EXPECT_EQ(RaisedBy([&] { gfx.Printf(0, 0, "A"); }), "Tried to set invalid font");
}
