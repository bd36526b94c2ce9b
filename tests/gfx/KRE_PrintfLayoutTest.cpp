#include "gfx/KRE_PrintfLayout.h"

#include "tests/gfx/TextTest.h"

namespace {

class Layout : public TextTest {
protected:
    const PrintfLine& Line(int32_t i) { return *gfx.printf.lines.Get(i); }
    const PrintfEntity& Piece(int32_t line, int32_t i) { return *Line(line).entities.Get(i); }
};

} // namespace

TEST(PrintfEntity, StartsAsATextWithoutLetters)
{
    const PrintfEntity entity;
    EXPECT_EQ(entity.kind, PrintfEntity::kText);
    EXPECT_TRUE(entity.text.IsEmpty());
    EXPECT_EQ(entity.length, 0);
    EXPECT_EQ(entity.x, 0.0f);
    EXPECT_EQ(entity.width, 0.0f);
    EXPECT_EQ(entity.wordSpacing, 0.0f);
    EXPECT_EQ(entity.image, nullptr);
}

TEST_F(Layout, LinesFollowAtTheFontsLineSpacing)
{
    const PrintfArea area = Lay("AB|NC|N");
    ASSERT_EQ(gfx.printf.lines.Count(), 3) << "a line feed at the end leaves an empty line";
    for (int32_t i = 0; i < 3; ++i) {
        EXPECT_FLOAT_EQ(Line(i).y, 6.0f * static_cast<float>(i)) << i;
        EXPECT_FLOAT_EQ(Line(i).ascent, 3.333f) << i;  // 0.6666 * 5
        EXPECT_FLOAT_EQ(Line(i).descent, 2.667f) << i; // 6 - 3.333
    }
    EXPECT_EQ(Line(0).width, 12.0f);
    EXPECT_EQ(Line(1).width, 6.0f);
    EXPECT_EQ(Line(2).width, 0.0f);
    EXPECT_EQ(area.left, 0.0f);
    EXPECT_EQ(area.top, 0.0f);
    EXPECT_EQ(area.right, 12.0f);
    EXPECT_FLOAT_EQ(area.bottom, 18.0f);
}

TEST_F(Layout, TextsAreBelowEachOther)
{
    gfx.printf.PushOptions(options);
    gfx.printf.AddText("A|NB");
    const PrintfArea area = gfx.printf.AddText("CCC");
    gfx.printf.PopOptions();
    EXPECT_EQ(gfx.printf.lines.Count(), 3);
    EXPECT_FLOAT_EQ(area.top, 12.0f);
    EXPECT_FLOAT_EQ(area.bottom, 18.0f);
    EXPECT_EQ(area.right, 18.0f);
    EXPECT_FLOAT_EQ(Line(2).y, 12.0f);
}

TEST_F(Layout, LargestPieceSetsTheLineHeight)
{
    Lay("A|s30B|RC|ND");
    EXPECT_FLOAT_EQ(Line(0).ascent, 9.999f);  // three times 0.6666 * 5
    EXPECT_FLOAT_EQ(Line(0).descent, 8.001f); // 18 - 9.999
    EXPECT_FLOAT_EQ(Line(1).y, 18.0f);
    EXPECT_EQ(Piece(0, 2).x, 24.0f); // 6 and 18
}

TEST_F(Layout, AlignedLinesAreWithinTheWidest)
{
    // The widest line is 24 pixels; one of 6 leaves 18.
    static const struct {
        const char* what;
        const char* text;
        float expected;
    } cases[] = {
        {"left", "AAAA|N|ZB", 0.0f},
        {"centred", "AAAA|N|LB", 9.0f},
        {"right", "AAAA|N|TB", 18.0f},
        {"justified, the last line", "AAAA|N|JB", 0.0f},
    };
    for (const auto& c : cases) {
        const PrintfArea area = Lay(c.text);
        EXPECT_EQ(Line(0).x, 0.0f) << c.what;
        EXPECT_EQ(Line(1).x, c.expected) << c.what;
        EXPECT_EQ(area.left, 0.0f) << c.what;
        EXPECT_EQ(area.right, 24.0f) << c.what;
    }
}

TEST_F(Layout, AlignedLinesAreWithinTheMaximumWidth)
{
    gfx.printf.maxWidth = 100.0f;
    const PrintfArea area = Lay("|LAA|N|TB|N|LCCCCCCCCCCCCCCCCCCCC");
    EXPECT_EQ(Line(0).x, 44.0f); // (100 - 12) / 2
    EXPECT_EQ(Line(1).x, 94.0f);
    EXPECT_EQ(Line(2).x, 0.0f) << "wider than there is room";
    EXPECT_EQ(area.left, 0.0f);
    EXPECT_EQ(area.right, 120.0f);
}

TEST_F(Layout, JustifiedLineWidensItsBlanks)
{
    // 5 characters are 30 pixels, 8 are 48: 18 for two spaces.
    Lay("|JA |CFF0000B C|NDDDDDDDD");
    EXPECT_EQ(Line(0).x, 0.0f);
    EXPECT_EQ(Line(0).width, 48.0f);
    EXPECT_EQ(Piece(0, 0).wordSpacing, 9.0f);
    EXPECT_EQ(Piece(0, 0).width, 21.0f); // 12 and 9 for one space
    EXPECT_EQ(Piece(0, 1).x, 21.0f);
    EXPECT_EQ(Piece(0, 1).width, 27.0f); // 18 and 9 for one space
    EXPECT_EQ(Piece(1, 0).wordSpacing, 0.0f) << "the last line";
    Lay("|JABC|NDDDDDDDD");
    EXPECT_EQ(Line(0).width, 18.0f) << "no blank to widen";
}

TEST_F(Layout, PiecesOfAJustifiedLineGrowByTheirBlanks)
{
    // 9 characters are 54 pixels, 12 are 72: 18 for three spaces, 6 for each.
    Lay("|JA B C|CFF0000DE|CFFFFFF F|NDDDDDDDDDDDD");
    EXPECT_EQ(Line(0).width, 72.0f);
    EXPECT_EQ(Piece(0, 0).width, 42.0f); // 30 and 12 for two spaces
    EXPECT_EQ(Piece(0, 1).x, 42.0f);
    EXPECT_EQ(Piece(0, 1).width, 12.0f) << "without a blank";
    EXPECT_EQ(Piece(0, 2).x, 54.0f);
    EXPECT_EQ(Piece(0, 2).width, 18.0f); // 12 and 6 for one space
}

TEST_F(Layout, TabsGoToTheNextStop)
{
    options.tab = 20.0f;
    Lay("A\tBCDE\tF\t\tG");
    EXPECT_EQ(Piece(0, 0).x, 0.0f);
    EXPECT_EQ(Piece(0, 1).x, 20.0f); // ends at 44
    EXPECT_EQ(Piece(0, 2).x, 60.0f); // ends at 66
    EXPECT_EQ(Piece(0, 3).x, 100.0f);
    EXPECT_STREQ(Piece(0, 3).text.c_str(), "G");
}

TEST_F(Layout, LayoutUsesTheFontsScale)
{
    font.scale = 4.0f;
    Lay("AB|NC");
    EXPECT_EQ(Line(0).width, 48.0f);
    EXPECT_FLOAT_EQ(Line(1).y, 24.0f);
}
