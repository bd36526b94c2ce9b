#include "gfx/KRE_FontGlyphs.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

TEST(KRE_FontGlyphs, EachIsTwentyFiveMarks)
{
    for (const char* glyph : kFontGlyphs) {
        EXPECT_EQ(std::string(glyph).size(), 25u) << glyph;
        EXPECT_EQ(std::string(glyph).find_first_not_of("X "), std::string::npos) << glyph;
    }
}

TEST(KRE_FontGlyphs, NoTwoAreAlikeAndOnlyTheBlankIsEmpty)
{
    const std::set<std::string> different(std::begin(kFontGlyphs), std::end(kFontGlyphs));
    EXPECT_EQ(different.size(), 62u);
    EXPECT_EQ(kFontGlyphs[0], std::string(25, ' '));
}

TEST(KRE_FontGlyphs, LettersAreAtTheirCharacters)
{
    // Shapes that are nearly forced for a 5 x 5 capital.
    EXPECT_EQ(kFontGlyphs['L' - 0x20], std::string("X    "
                                                   "X    "
                                                   "X    "
                                                   "X    "
                                                   "XXXXX"));
    EXPECT_EQ(kFontGlyphs['T' - 0x20], std::string("XXXXX"
                                                   "  X  "
                                                   "  X  "
                                                   "  X  "
                                                   "  X  "));
    EXPECT_EQ(kFontGlyphs['+' - 0x20], std::string("  X  "
                                                   "  X  "
                                                   "XXXXX"
                                                   "  X  "
                                                   "  X  "));
    EXPECT_EQ(kFontGlyphs['H' - 0x20], std::string("X   X"
                                                   "X   X"
                                                   "XXXXX"
                                                   "X   X"
                                                   "X   X"));
    EXPECT_EQ(kFontGlyphs[']' - 0x20][2], 'X') << "the last one";
}
