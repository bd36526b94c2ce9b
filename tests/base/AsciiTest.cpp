#include "base/Ascii.h"

#include <gtest/gtest.h>

namespace {

TEST(Ascii, FoldsLettersAndNothingElse)
{
    for (int c = 0; c < 256; ++c) {
        const char byte = static_cast<char>(c);
        const bool lower = c >= 'a' && c <= 'z';
        const bool upper = c >= 'A' && c <= 'Z';
        EXPECT_EQ(ToUpperAscii(byte), lower ? static_cast<char>(c - 32) : byte) << c;
        EXPECT_EQ(ToLowerAscii(byte), upper ? static_cast<char>(c + 32) : byte) << c;
    }
}

TEST(Ascii, ComparesWithoutRegardToCase)
{
    static const struct {
        const char* what;
        const char* left;
        const char* right;
        int sign;
    } cases[] = {
        {"equal but for case", "aBc9", "AbC9", 0},
        {"both empty", "", "", 0},
        {"prefix is less", "ab", "ABC", -1},
        {"longer is more", "abc", "AB", 1},
        {"letter order", "b", "A", 1},
        {"folded to lower: underscore is less than a letter", "_", "A", -1},
        {"bytes above 127 are unsigned", "\xE4", "z", 1},
        {"umlauts do not fold", "\xE4", "\xC4", 1},
    };
    for (const auto& c : cases) {
        const int result = CompareNoCase(c.left, c.right);
        EXPECT_EQ((result > 0) - (result < 0), c.sign) << c.what;
    }
}

TEST(Ascii, ComparesNoMoreThanTheGivenNumber)
{
    EXPECT_EQ(CompareNoCase("texture2", "TEXTURE", 7), 0);
    EXPECT_NE(CompareNoCase("texture2", "TEXTURE", 8), 0);
    EXPECT_EQ(CompareNoCase("ab", "AB", 10), 0) << "stops at the end of the texts";
    EXPECT_EQ(CompareNoCase("x", "y", 0), 0);
}

} // namespace
