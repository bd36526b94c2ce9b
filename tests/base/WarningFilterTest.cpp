#include "base/WarningFilter.h"

#include "tests/base/LogFixture.h"

namespace {

class WarningFilterTest : public LogFixture {
protected:
    int32_t count = 0;
    uint32_t repeat = 0;
    char lastText[16] = "";
    WarningState state{count, repeat, lastText, sizeof lastText, "That was the limit"};
};

TEST_F(WarningFilterTest, QuirkVeryFirstTextIsNotStored)
{
    FilterWarning(state, "a");
    EXPECT_STREQ(lastText, "");
    EXPECT_EQ(count, 1);
    FilterWarning(state, "a");
    EXPECT_STREQ(lastText, "a");
    EXPECT_EQ(count, 2);
    FilterWarning(state, "a");
    EXPECT_EQ(count, 2);
    EXPECT_EQ(repeat, 1u);
    EXPECT_EQ(LogText(), Entry("a") + Entry("a"));
}

TEST_F(WarningFilterTest, QuirkTextTruncatedWhenStoredIsNeverARepeat)
{
    FilterWarning(state, "first");
    FilterWarning(state, "0123456789abcde"); // 15 bytes fit
    FilterWarning(state, "0123456789abcde");
    EXPECT_EQ(repeat, 1u);
    FilterWarning(state, "0123456789abcdef");
    FilterWarning(state, "0123456789abcdef");
    EXPECT_EQ(repeat, 0u);
    EXPECT_EQ(count, 4);
    EXPECT_STREQ(lastText, "0123456789abcde");
}

TEST_F(WarningFilterTest, RepeatsAreLoggedBeforeTheNextText)
{
    count = 1;
    for (const char* text : {"a", "a", "a", "b"})
        FilterWarning(state, text);
    EXPECT_EQ(LogText(), Entry("a") + Entry("Warning Repeat: 2") + Entry("b"));
}

TEST_F(WarningFilterTest, LimitIsLoggedAfterTheLastWarning)
{
    count = kMaxWarnings - 1;
    FilterWarning(state, "last");
    EXPECT_EQ(LogText(), Entry("last") + Entry("That was the limit"));
}

TEST_F(WarningFilterTest, FlushLogsTheRepeatsOnceAndWithoutAGreaterSign)
{
    repeat = kMaxWarningRepeat;
    FlushWarningRepeat(repeat);
    FlushWarningRepeat(repeat);
    EXPECT_EQ(repeat, 0u);
    EXPECT_EQ(LogText(), Entry("Warning Repeat: 268435455")); // 0xFFFFFFF
}

} // namespace
