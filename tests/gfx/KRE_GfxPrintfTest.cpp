#include "tests/gfx/TextTest.h"

using testing::ElementsAre;
using testing::SizeIs;

using KRE_GfxPrintfTest = TextTest;

TEST_F(KRE_GfxPrintfTest, FormatsAndDrawsAtThePoint)
{
    gfx.Printf(10, 20, "%c%d", 'A', 7);
    EXPECT_THAT(CallsOf("DrawPrimitive"), ElementsAre("DrawPrimitive D3DPT_TRIANGLELIST 0 4"));
    const std::vector<GlyphQuad> quads = Quads(2);
    EXPECT_FLOAT_EQ(quads[0].left, 9.75f);
    EXPECT_FLOAT_EQ(quads[0].top, 19.75f);
    // 7 is glyph 23: ((23 mod 21) * 6, 6)
    EXPECT_FLOAT_EQ(quads[1].u, 12.01f / 128.0f);
    EXPECT_FLOAT_EQ(quads[1].v, 6.01f / 32.0f);
}

TEST_F(KRE_GfxPrintfTest, TakesColorAndAlphaOfTheCurrentFont)
{
    font.color = 0x80112233;
    gfx.Printf(0, 0, "A|CFFFFFFB|RC");
    const std::vector<GlyphQuad> quads = Quads(3);
    EXPECT_EQ(quads[0].color, 0x80112233u);
    EXPECT_EQ(quads[1].color, 0xFFFFFFFFu);
    EXPECT_EQ(quads[2].color, 0x80112233u);
}

TEST_F(KRE_GfxPrintfTest, EachCallIsIndependent)
{
    gfx.Printf(0, 0, "|CFF0000|s20AAA");
    gfx.Printf(10, 0, "B");
    EXPECT_FLOAT_EQ(Quads(1)[0].left, 9.75f);
    EXPECT_FLOAT_EQ(Quads(1)[0].bottom, 4.73f);
    EXPECT_EQ(Quads(1)[0].color, 0xFFFFFFFFu);
    EXPECT_EQ(gfx.printf.lines.Count(), 0);
}

TEST_F(KRE_GfxPrintfTest, TextOfMoreThan65535CharactersWarns)
{
    gfx.Printf(0, 0, "%s", std::string(65535, 'A').c_str());
    EXPECT_EQ(LastWarning(), "");
    // 255 full lists hold 65280 characters, 255 are left.
    EXPECT_THAT(CallsOf("DrawPrimitive"), SizeIs(256));
    EXPECT_EQ(CallsOf("DrawPrimitive").back(), "DrawPrimitive D3DPT_TRIANGLELIST 0 510");
    Calls();
    gfx.Printf(0, 0, "%s", std::string(65536, 'A').c_str());
    EXPECT_EQ(LastWarning(), "String too long for Printf()");
    EXPECT_THAT(CallsOf("DrawPrimitive"), SizeIs(256));
    EXPECT_EQ(CallsOf("DrawPrimitive").back(), "DrawPrimitive D3DPT_TRIANGLELIST 0 510")
        << "cut at 65535";
}

TEST_F(KRE_GfxPrintfTest, LineFeedsAloneDrawNothing)
{
    gfx.Printf(0, 0, "%s", std::string(65535, '\n').c_str());
    EXPECT_THAT(CallsOf("DrawPrimitive"), SizeIs(0));
    EXPECT_EQ(LastWarning(), "");
}

TEST_F(KRE_GfxPrintfTest, WithoutAFontItIsAnError)
{
    gfx.currentFont = nullptr;
    EXPECT_EQ(RaisedBy([&] { gfx.Printf(0, 0, "A"); }), "Tried to set invalid font");
}
