#include "base/FormatText.h"

#include <gtest/gtest.h>

TEST(FormatText, TruncatesAndAlwaysEndsTheText)
{
    char buffer[8];
    FormatText(buffer, sizeof buffer, "%s-%i", "abc", 12);
    EXPECT_STREQ(buffer, "abc-12");
    FormatText(buffer, sizeof buffer, "%s-%i", "abcdef", 12);
    EXPECT_STREQ(buffer, "abcdef-");
}

TEST(CopyText, TruncatesAndTakesNullAsEmpty)
{
    char buffer[4] = "xyz";
    CopyText(buffer, sizeof buffer, "abcdef");
    EXPECT_STREQ(buffer, "abc");
    CopyText(buffer, sizeof buffer, buffer + 1);
    EXPECT_STREQ(buffer, "bc");
    CopyText(buffer, sizeof buffer, nullptr);
    EXPECT_STREQ(buffer, "");
}
