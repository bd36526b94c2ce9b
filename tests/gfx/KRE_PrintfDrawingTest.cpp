#include "tests/gfx/TextTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

using KRE_PrintfDrawingTest = TextTest;

// The target is 64 x 48 pixels. Letters are a quarter pixel left of and above the pen, so that the
// centres of 5 x 5 pixels are inside, and 0.02 smaller.

TEST_F(KRE_PrintfDrawingTest, LettersAreRectanglesOfTheSheet)
{
    Lay("AB");
    gfx.printf.Draw(10.0f, 20.0f);
    const std::vector<GlyphQuad> quads = Quads(2);
    for (int i : {0, 1}) {
        const GlyphQuad& quad = quads[static_cast<size_t>(i)];
        const float shift = 6.0f * static_cast<float>(i);
        EXPECT_FLOAT_EQ(quad.left, 9.75f + shift);
        EXPECT_FLOAT_EQ(quad.top, 19.75f);
        EXPECT_FLOAT_EQ(quad.right, 14.73f + shift); // 9.75 + 5 - 0.02
        EXPECT_FLOAT_EQ(quad.bottom, 24.73f);
        // A is glyph 33, its cell at (72, 6); B is next to it. The sheet is 128 x 32.
        EXPECT_FLOAT_EQ(quad.u, (72.01f + shift) / 128.0f);
        EXPECT_FLOAT_EQ(quad.v, 6.01f / 32.0f);
        EXPECT_FLOAT_EQ(quad.uEnd, (76.99f + shift) / 128.0f); // 72.01 + 5 - 0.02
        EXPECT_FLOAT_EQ(quad.vEnd, 10.99f / 32.0f);
        EXPECT_EQ(quad.color, 0xFFFFFFFFu);
    }
}

TEST_F(KRE_PrintfDrawingTest, LetterIsTwoTriangles)
{
    Lay("A");
    gfx.printf.Draw(0.0f, 0.0f);
    const KRE_TLVertex* vertex = gfx.printf.quadList.LockVertices(0, 6, D3DLOCK_READONLY);
    // Top left, top right, bottom left; bottom left, top right, bottom right.
    static constexpr bool kRight[] = {false, true, false, false, true, true};
    static constexpr bool kDown[] = {false, false, true, true, false, true};
    for (int i = 0; i < 6; ++i) {
        EXPECT_FLOAT_EQ(vertex[i].x, kRight[i] ? 4.73f : -0.25f) << i;
        EXPECT_FLOAT_EQ(vertex[i].y, kDown[i] ? 4.73f : -0.25f) << i;
        EXPECT_FLOAT_EQ(vertex[i].tu * 128.0f, kRight[i] ? 76.99f : 72.01f) << i;
        EXPECT_FLOAT_EQ(vertex[i].tv * 32.0f, kDown[i] ? 10.99f : 6.01f) << i;
        EXPECT_EQ(vertex[i].rhw, 1.0f) << i;
        EXPECT_EQ(vertex[i].specular, 0xFF000000u) << i;
    }
    gfx.printf.quadList.Unlock();
}

TEST_F(KRE_PrintfDrawingTest, LowerCaseDrawsAsSpacesOfTheRightWidth)
{
    Lay("aZ");
    gfx.printf.Draw(0.0f, 0.0f);
    const std::vector<GlyphQuad> quads = Quads(2);
    EXPECT_FLOAT_EQ(quads[0].u, 0.01f / 128.0f) << "the blank's cell";
    EXPECT_FLOAT_EQ(quads[0].v, 0.01f / 32.0f);
    EXPECT_FLOAT_EQ(quads[1].left, 5.75f) << "6 pixels further";
}

TEST_F(KRE_PrintfDrawingTest, ScaleIsTheFontsTimesTheTexts)
{
    font.scale = 2.0f;
    Lay("|S1510AB");
    gfx.printf.Draw(10.0f, 20.0f);
    const std::vector<GlyphQuad> quads = Quads(2);
    EXPECT_FLOAT_EQ(quads[0].right, 24.73f);  // 9.75 + 5 * 3 - 0.02
    EXPECT_FLOAT_EQ(quads[0].bottom, 29.73f); // 19.75 + 5 * 2 - 0.02
    EXPECT_FLOAT_EQ(quads[1].left, 27.75f);   // 6 * 3 further
}

TEST_F(KRE_PrintfDrawingTest, PenIsRoundedButMovesByTheWholeWidth)
{
    font.charSpacing = 0.4f; // 5.4 pixels a letter
    Lay("ABC");
    gfx.printf.Draw(0.0f, 0.4f);
    const std::vector<GlyphQuad> quads = Quads(3);
    EXPECT_FLOAT_EQ(quads[0].top, -0.25f);
    EXPECT_FLOAT_EQ(quads[1].left, 4.75f);  // 5.4
    EXPECT_FLOAT_EQ(quads[2].left, 10.75f); // 10.8
}

TEST_F(KRE_PrintfDrawingTest, LeftBearingMovesTheLetterAndBothNarrowIt)
{
    font.scale = 2.0f;
    font.leftBearing['A' - 0x20] = 1.0f;
    font.rightBearing['A' - 0x20] = 0.5f;
    Lay("AB");
    gfx.printf.Draw(10.0f, 0.0f);
    const std::vector<GlyphQuad> quads = Quads(2);
    EXPECT_FLOAT_EQ(quads[0].left, 7.75f);  // 10 - 1 * 2 - 0.25
    EXPECT_FLOAT_EQ(quads[1].left, 18.75f); // 10 + ((1 - 0.5 - 1) + 5) * 2 - 0.25
}

TEST_F(KRE_PrintfDrawingTest, SmallPieceIsOnTheBaselineOfALargeOne)
{
    Lay("A|s20B");
    gfx.printf.Draw(0.0f, 10.0f);
    // The baseline is 6.666 below 10; the small letter's top 3.333 above it: 13.333.
    const std::vector<GlyphQuad> quads = Quads(2);
    EXPECT_FLOAT_EQ(quads[0].top, 12.75f);
    EXPECT_FLOAT_EQ(quads[1].top, 9.75f);
    EXPECT_FLOAT_EQ(quads[1].bottom, 19.73f); // 9.75 + 10 - 0.02
}

TEST_F(KRE_PrintfDrawingTest, ColorTakesTheAlphaOfTheOptions)
{
    static const struct {
        float alpha;
        D3DCOLOR expected;
    } cases[] = {
        {0.0f, 0x00112233},
        {0.5f, 0x80112233}, // 127.5 rounds to 128
        {1.0f, 0xFF112233},
        {7.0f, 0xFF112233},
    };
    options.color = 0x77112233;
    for (const auto& c : cases) {
        options.alpha = c.alpha;
        Lay("A");
        gfx.printf.Draw(0.0f, 0.0f);
        EXPECT_EQ(Quads(1)[0].color, c.expected) << c.alpha;
    }
}

TEST_F(KRE_PrintfDrawingTest, ShadowIsDrawnFirstAndThePenRestored)
{
    font.scale = 2.0f;
    options.shadow = 1;
    options.shadowColor = 0xFF101010;
    Lay("AB");
    gfx.printf.Draw(10.0f, 20.0f);
    const std::vector<GlyphQuad> quads = Quads(4);
    EXPECT_FLOAT_EQ(quads[0].left, 11.75f); // the scale to the right
    EXPECT_FLOAT_EQ(quads[0].top, 20.75f);  // a tenth of 10 pixels down
    EXPECT_EQ(quads[0].color, 0xFF101010u);
    EXPECT_FLOAT_EQ(quads[1].left, 9.75f);
    EXPECT_FLOAT_EQ(quads[1].top, 19.75f);
    EXPECT_EQ(quads[1].color, 0xFFFFFFFFu);
    EXPECT_FLOAT_EQ(quads[3].left, 21.75f) << "12 pixels further";
}

TEST_F(KRE_PrintfDrawingTest, ViewIsSavedAndRestored)
{
    gfx.SetCullMode(1);
    gfx.SetViewport(8, 4, 40, 30, 0.25f, 0.75f);
    Lay("A");
    Calls();
    gfx.printf.Draw(10.0f, 10.0f);
    EXPECT_THAT(
        ViewCalls(),
        ElementsAre("SetRenderState D3DRS_CULLMODE D3DCULL_NONE",
                    "SetRenderState D3DRS_ZENABLE D3DZB_FALSE", "SetViewport 8 4 32 26 0.25 0.75",
                    "SetTexture 0 texture#1", "DrawPrimitive D3DPT_TRIANGLELIST 0 2",
                    "SetViewport 8 4 32 26 0.25 0.75", "SetRenderState D3DRS_ZENABLE D3DZB_TRUE",
                    "SetRenderState D3DRS_CULLMODE D3DCULL_CW"));
}

TEST_F(KRE_PrintfDrawingTest, BlendsByAlpha)
{
    Lay("A");
    Calls();
    gfx.printf.Draw(0.0f, 0.0f);
    EXPECT_EQ(gfx.blendMode, 9);
    const std::vector<std::string> calls = Calls();
    for (const char* call : {"SetRenderState D3DRS_ALPHABLENDENABLE 1",
                             "SetTextureStageState 0 D3DTSS_ALPHAOP D3DTOP_MODULATE",
                             "SetTextureStageState 0 D3DTSS_ALPHAARG1 D3DTA_TEXTURE",
                             "SetTextureStageState 0 D3DTSS_ALPHAARG2 D3DTA_DIFFUSE",
                             "SetRenderState D3DRS_SRCBLEND D3DBLEND_SRCALPHA",
                             "SetRenderState D3DRS_DESTBLEND D3DBLEND_INVSRCALPHA"})
        EXPECT_THAT(calls, testing::Contains(call));
}

TEST_F(KRE_PrintfDrawingTest, LimitsNarrowTheClipBox)
{
    static const struct {
        const char* what;
        float x, y, maxWidth, maxHeight;
        const char* expected;
    } cases[] = {
        {"none", 10, 20, 0, 0, "SetViewport 0 0 64 48 0 1"},
        // from 4 pixels left of 10 to 10 + 20
        {"width, with a margin at the left", 10, 20, 20, 0, "SetViewport 6 0 24 48 0 1"},
        {"height, without a margin", 10, 20, 0, 12, "SetViewport 0 20 64 12 0 1"},
        {"both", 10, 20, 20, 12, "SetViewport 6 20 24 12 0 1"},
        {"not beyond the viewport", 2, 20, 100, 100, "SetViewport 0 20 64 28 0 1"},
        {"negative is none", 10, 20, -5, -5, "SetViewport 0 0 64 48 0 1"},
    };
    for (const auto& c : cases) {
        gfx.printf.maxWidth = c.maxWidth;
        gfx.printf.maxHeight = c.maxHeight;
        Lay("A");
        Calls();
        gfx.printf.Draw(c.x, c.y);
        EXPECT_THAT(CallsOf("SetViewport"), ElementsAre(c.expected, "SetViewport 0 0 64 48 0 1"))
            << c.what;
    }
}

TEST_F(KRE_PrintfDrawingTest, BoxOfZeroWidthDrawsNothingAndLeavesTheViewport)
{
    Lay("A");
    static const struct {
        const char* what;
        float x, y, maxWidth, maxHeight;
    } cases[] = {
        {"right of the viewport", 68, 0, 10, 0},
        {"left of the viewport", -10, 0, 10, 0},
        {"below the viewport", 0, 48, 0, 10},
        {"far away", 3e9f, -3e9f, 10, 10},
    };
    for (const auto& c : cases) {
        gfx.printf.maxWidth = c.maxWidth;
        gfx.printf.maxHeight = c.maxHeight;
        Calls();
        gfx.printf.Draw(c.x, c.y);
        EXPECT_THAT(ViewCalls(), ElementsAre("SetRenderState D3DRS_CULLMODE D3DCULL_NONE",
                                             "SetRenderState D3DRS_ZENABLE D3DZB_FALSE",
                                             "SetRenderState D3DRS_ZENABLE D3DZB_TRUE",
                                             "SetRenderState D3DRS_CULLMODE D3DCULL_CCW"))
            << c.what;
    }
    EXPECT_EQ(gfx.viewport.Width, 64u);
}

TEST_F(KRE_PrintfDrawingTest, LinesOutsideTheBoxAreLeftOut)
{
    gfx.printf.maxHeight = 12.0f;
    gfx.printf.scrollY = 12.0f;
    Lay("A|NBB|NCCC|NDDDD|NEEEEE");
    Calls();
    gfx.printf.Draw(0.0f, 20.0f);
    // Lines are 6 pixels high: 12 to 24 of the text are the third and the fourth, 7 letters.
    EXPECT_THAT(CallsOf("DrawPrimitive"), ElementsAre("DrawPrimitive D3DPT_TRIANGLELIST 0 14"));
    EXPECT_FLOAT_EQ(Quads(1)[0].top, 19.75f);
}

TEST_F(KRE_PrintfDrawingTest, LinesThatReachIntoTheBoxAreDrawn)
{
    Lay("A|NBB|NCCC");
    struct {
        float scroll;
        const char* expected;
    } const cases[] = {
        {0.0f, "DrawPrimitive D3DPT_TRIANGLELIST 0 12"},
        {5.0f, "DrawPrimitive D3DPT_TRIANGLELIST 0 12"}, // a pixel of the first is left
        {7.0f, "DrawPrimitive D3DPT_TRIANGLELIST 0 10"},
        {-46.0f, "DrawPrimitive D3DPT_TRIANGLELIST 0 2"}, // the second begins at 52, outside
    };
    for (const auto& c : cases) {
        gfx.printf.scrollY = c.scroll;
        Calls();
        gfx.printf.Draw(0.0f, 0.0f);
        EXPECT_THAT(CallsOf("DrawPrimitive"), ElementsAre(c.expected)) << c.scroll;
    }
    gfx.printf.scrollY = 100.0f;
    Calls();
    gfx.printf.Draw(0.0f, 0.0f);
    EXPECT_THAT(CallsOf("DrawPrimitive"), IsEmpty()) << "all lines are above";
}

TEST_F(KRE_PrintfDrawingTest, ScrollMovesTheText)
{
    gfx.printf.scrollX = 3.0f;
    gfx.printf.scrollY = 2.0f;
    Lay("A");
    gfx.printf.Draw(10.0f, 20.0f);
    EXPECT_FLOAT_EQ(Quads(1)[0].left, 6.75f);
    EXPECT_FLOAT_EQ(Quads(1)[0].top, 17.75f);
}

TEST_F(KRE_PrintfDrawingTest, FullListIsDrawnBeforeTheNextCharacter)
{
    struct {
        size_t letters;
        std::vector<std::string> expected;
    } const cases[] = {
        // 256 characters of two triangles fill the list.
        {255, {"DrawPrimitive D3DPT_TRIANGLELIST 0 510"}},
        {256, {"DrawPrimitive D3DPT_TRIANGLELIST 0 512"}},
        {257, {"DrawPrimitive D3DPT_TRIANGLELIST 0 512", "DrawPrimitive D3DPT_TRIANGLELIST 0 2"}},
        {512, {"DrawPrimitive D3DPT_TRIANGLELIST 0 512", "DrawPrimitive D3DPT_TRIANGLELIST 0 512"}},
    };
    for (const auto& c : cases) {
        Lay(std::string(c.letters, 'A').c_str());
        Calls();
        gfx.printf.Draw(0.0f, 0.0f);
        EXPECT_EQ(CallsOf("DrawPrimitive"), c.expected) << c.letters;
    }
}

TEST_F(KRE_PrintfDrawingTest, PiecesOfOneFontAreDrawnAtOnce)
{
    Lay("A|CFF0000B|NC|s20D");
    Calls();
    gfx.printf.Draw(0.0f, 0.0f);
    EXPECT_THAT(ViewCalls(),
                ElementsAre("SetRenderState D3DRS_CULLMODE D3DCULL_NONE",
                            "SetRenderState D3DRS_ZENABLE D3DZB_FALSE", "SetViewport 0 0 64 48 0 1",
                            "SetTexture 0 texture#1", "DrawPrimitive D3DPT_TRIANGLELIST 0 8",
                            "SetViewport 0 0 64 48 0 1", "SetRenderState D3DRS_ZENABLE D3DZB_TRUE",
                            "SetRenderState D3DRS_CULLMODE D3DCULL_CCW"));
}

TEST_F(KRE_PrintfDrawingTest, AnotherFontStartsABatch)
{
    KRE_Font second;
    gfx.BuildFont(second, 0xFFFFFFFF, 0xFF000000);
    gfx.printf.PushOptions(options);
    gfx.printf.AddText("A|NB");
    options.font = &second;
    gfx.printf.PushOptions(options);
    gfx.printf.AddText("CCC");
    Calls();
    gfx.printf.Draw(0.0f, 0.0f);
    EXPECT_THAT(
        ViewCalls(),
        testing::IsSupersetOf({"SetTexture 0 texture#1", "DrawPrimitive D3DPT_TRIANGLELIST 0 4",
                               "SetTexture 0 texture#2", "DrawPrimitive D3DPT_TRIANGLELIST 0 6"}));
    gfx.SetTexture(nullptr); // the second font is destroyed
}

TEST_F(KRE_PrintfDrawingTest, BackgroundIsAPlainRectangleBehindThePiece)
{
    options.background = 0x80204060;
    Lay("AB");
    Calls();
    gfx.printf.Draw(10.0f, 20.0f);
    EXPECT_THAT(CallsOf("DrawPrimitive"), ElementsAre("DrawPrimitive D3DPT_TRIANGLELIST 0 2",
                                                      "DrawPrimitive D3DPT_TRIANGLELIST 0 4"));
    options.background = 0x00204060;
    Lay("AB");
    Calls();
    gfx.printf.Draw(10.0f, 20.0f);
    EXPECT_THAT(CallsOf("DrawPrimitive"), ElementsAre("DrawPrimitive D3DPT_TRIANGLELIST 0 4"))
        << "a clear one";
}

TEST_F(KRE_PrintfDrawingTest, BackgroundIsAsHighAsTheLineAndHasNoPlaceOnTheSheet)
{
    options.background = 0x80204060;
    Lay("AB");
    FailNext("DrawPrimitive"); // the letters, which would take its place, are never put
    EXPECT_NE(RaisedBy([&] { gfx.printf.Draw(10.0f, 20.0f); }), "no error");
    const GlyphQuad quad = Quads(1)[0];
    EXPECT_FLOAT_EQ(quad.left, 9.75f);
    EXPECT_FLOAT_EQ(quad.top, 19.75f);
    EXPECT_FLOAT_EQ(quad.right, 21.73f);  // 9.75 + 12 - 0.02
    EXPECT_FLOAT_EQ(quad.bottom, 25.73f); // 19.75 + 6 - 0.02
    EXPECT_EQ(quad.u, 0.0f);
    EXPECT_EQ(quad.v, 0.0f);
    EXPECT_EQ(quad.uEnd, 0.0f);
    EXPECT_EQ(quad.vEnd, 0.0f);
    EXPECT_EQ(quad.color, 0x80204060u);
}

TEST_F(KRE_PrintfDrawingTest, WidenedBlanksMoveWhatFollows)
{
    Lay("|JA B|NDDDD"); // 18 and 24 pixels
    gfx.printf.Draw(0.0f, 0.0f);
    EXPECT_FLOAT_EQ(Quads(3)[2].left, 17.75f); // 12, 6 more, less a quarter
}

TEST_F(KRE_PrintfDrawingTest, CharacterWithoutAPictureOnlyMovesThePen)
{
    Lay("A||B");
    Calls();
    gfx.printf.Draw(0.0f, 0.0f);
    const std::vector<GlyphQuad> quads = Quads(3);
    // No pixel centre, at whole numbers, is in a rectangle of -0.02 pixels at 5.75.
    EXPECT_FLOAT_EQ(quads[1].left, 5.75f);
    EXPECT_FLOAT_EQ(quads[1].right, 5.73f);
    EXPECT_FLOAT_EQ(quads[2].left, 6.75f); // 6 for A, 1 for the bar
}

TEST_F(KRE_PrintfDrawingTest, BytesBeyondTheFontTakeTheSpacing)
{
    Lay("\x80\xFF"
        "A");
    gfx.printf.Draw(0.0f, 0.0f);
    EXPECT_FLOAT_EQ(Quads(3)[2].left, 1.75f); // 1 for each of the two
}

TEST_F(KRE_PrintfDrawingTest, ControlCharactersAreNotDrawn)
{
    gfx.printf.SetFont(&font);
    gfx.printf.penX = 5.0f;
    for (int c = 0; c < 0x20; ++c)
        gfx.printf.AddCharacter(static_cast<uint8_t>(c), 1.0f);
    EXPECT_EQ(gfx.printf.penX, 5.0f);
    gfx.printf.Flush();
    EXPECT_THAT(CallsOf("DrawPrimitive"), IsEmpty());
}

TEST_F(KRE_PrintfDrawingTest, FailuresOfTheDeviceAreErrors)
{
    Lay("A");
    FailNext("DrawPrimitive");
    EXPECT_EQ(RaisedBy([&] { gfx.printf.Draw(0.0f, 0.0f); }),
              "DrawPrimitive in DrawTriangleList failed: D3DERR_INVALIDCALL");
}
