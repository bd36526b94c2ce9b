#include "gfx/KRE_Font.h"

#include <gtest/gtest.h>

#include <bit>

TEST(KRE_Font, NewOneIsEmpty)
{
    const KRE_Font font;
    EXPECT_EQ(font.color, 0xFF000000u);
    EXPECT_EQ(font.firstChar, 256);
    EXPECT_EQ(font.lastChar, 256);
    EXPECT_EQ(font.scale, 1.0f);
    EXPECT_EQ(font.charSpacing, 1.0f);
    EXPECT_EQ(font.lineSpacing, 0.0f);
    EXPECT_EQ(std::bit_cast<uint32_t>(font.lineSpacingFactor), 0x3F2AA64Cu);
    EXPECT_EQ(font.ready, 0);
    EXPECT_NE(font.texture, nullptr);
    for (const KRE_Font::GlyphRect& rect : font.glyphRects) {
        EXPECT_EQ(rect.right, 0);
        EXPECT_EQ(rect.bottom, 0);
    }
}

TEST(KRE_Font, MetricsTakeAllValuesButTheKeptSpacings)
{
    KRE_Font font;
    font.SetMetrics(2.0f, 0x80102030, 3.0f, 4.0f, 0.5f);
    EXPECT_EQ(font.scale, 2.0f);
    EXPECT_EQ(font.color, 0x80102030u);
    EXPECT_EQ(font.charSpacing, 3.0f);
    EXPECT_EQ(font.lineSpacing, 4.0f);
    EXPECT_EQ(font.lineSpacingFactor, 0.5f);
    font.SetMetrics(1.0f, 0xFFFFFFFF, -999.0f, -999.0f, 0.6666f);
    EXPECT_EQ(font.charSpacing, 3.0f);
    EXPECT_EQ(font.lineSpacing, 4.0f);
    EXPECT_EQ(font.scale, 1.0f);
    font.SetMetrics(1.0f, 0xFFFFFFFF, -998.0f, 0.0f, 0.6666f);
    EXPECT_EQ(font.charSpacing, -998.0f) << "an ordinary value";
    EXPECT_EQ(font.lineSpacing, 0.0f);
}

TEST(KRE_Font, WidthIsGlyphAndSpacingLessBearingsScaled)
{
    KRE_Font font;
    font.firstChar = 0x20;
    font.lastChar = 0x7F;
    font.glyphRects['A' - 0x20] = {10, 20, 17, 25};
    font.leftBearing['A' - 0x20] = 0.5f;
    font.rightBearing['A' - 0x20] = 1.0f;
    font.SetMetrics(2.0f, 0, 3.0f, 0.0f, 0.5f);
    EXPECT_EQ(font.CharWidth('A'), 17.0f); // ((3 - 1 - 0.5) + 17 - 10) * 2
    EXPECT_EQ(font.CharWidth('B'), 6.0f) << "without a rectangle: the spacing alone";
}

TEST(KRE_Font, LineHeightIsTheBlanksHeightAndSpacingScaled)
{
    KRE_Font font;
    font.glyphRects[0] = {0, 2, 5, 9};
    font.SetMetrics(1.5f, 0, 1.0f, 3.0f, 0.5f);
    EXPECT_EQ(font.LineHeight(), 15.0f);  // (7 + 3) * 1.5
    EXPECT_EQ(font.GlyphHeight(), 10.5f); // 7 * 1.5
}

TEST(KRE_Font, ControlCharactersAloneHaveNoGlyph)
{
    KRE_Font font;
    font.SetMetrics(2.0f, 0, 3.0f, 0.0f, 0.5f);
    EXPECT_EQ(font.FindGlyph(0x00), nullptr);
    EXPECT_EQ(font.FindGlyph(0x1F), nullptr);
    EXPECT_EQ(font.CharWidth(0x1F), 0.0f);
    EXPECT_EQ(font.FindGlyph(0x20), &font.glyphRects[0]);
    EXPECT_EQ(font.FindGlyph(0x7F), &font.glyphRects[0x5F]);
    EXPECT_EQ(font.FindGlyph(0xFF), &font.glyphRects[0xDF]);
    EXPECT_EQ(font.CharWidth(0xFF), 6.0f) << "the spacing 3 at scale 2";
}
