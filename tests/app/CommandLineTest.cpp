#include "app/CommandLine.h"

#include <gtest/gtest.h>
#include <string>

TEST(CmdCountTokens, SplitsAtBlanksOnly)
{
    static const struct {
        const char* what;
        const char* line;
        int expected;
    } cases[] = {
        {"nothing", "", 0},
        {"only blanks", "   ", 0},
        {"one", "a.qsa", 1},
        {"runs of blanks are one separator", "  a   /s  ", 2},
        {"a tab is an ordinary character", "a\tb /s", 2},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CmdCountTokens(c.line), c.expected) << c.what;
}

TEST(CmdCountTokens, QuirkQuotedNameWithBlanksIsSeveralTokens)
{
    EXPECT_EQ(CmdCountTokens("\"a b c.qsa\""), 3);
}

TEST(CmdGetToken, PointsIntoTheLine)
{
    const char* line = " ab  cd";
    EXPECT_EQ(CmdGetToken(0, line), line + 1);
    EXPECT_EQ(CmdGetToken(1, line), line + 5);
    EXPECT_EQ(CmdGetToken(2, line), nullptr);
    EXPECT_EQ(CmdGetToken(-1, line), nullptr);
}

TEST(CmdHasSwitch, ComparesWholeTokensWithoutCase)
{
    static const struct {
        const char* what;
        const char* line;
        int expected;
    } cases[] = {
        {"as it is", "a.qsa /s", 1}, {"other case", "a.qsa /S", 1},
        {"with a value", "/s:1", 0}, {"longer", "/sx", 0},
        {"shorter", "/", 0},         {"a tab belongs to the token", "/s\t", 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CmdHasSwitch(c.line, "/s"), c.expected) << c.what;
}

TEST(CmdHasSwitch, QuirkSwitchInsideAQuotedFileNameCounts)
{
    EXPECT_EQ(CmdHasSwitch("\"my /s scene.qsa\"", "/s"), 1);
}

TEST(CmdGetInt, ReadsBothSeparators)
{
    static const struct {
        const char* what;
        const char* line;
        int expected;
    } cases[] = {
        {"colon", "/resx:800", 800},
        {"equals sign", "/resx=800", 800},
        {"case does not matter", "/ResX:800", 800},
        {"negative", "/resx:-1", -1},
        {"empty value gives 0", "/resx:", 0},
        {"only a sign gives 0", "/resx:-", 0},
        {"largest", "/resx:2147483647", 2147483647},
    };
    for (const auto& c : cases) {
        int value = 77;
        EXPECT_EQ(CmdGetInt(c.line, "/resx", &value), 1) << c.what;
        EXPECT_EQ(value, c.expected) << c.what;
    }
}

TEST(CmdGetInt, LeavesTheValueAloneWhenAbsent)
{
    static const struct {
        const char* what;
        const char* line;
    } cases[] = {
        {"no such token", "a.qsa /s"},
        {"no separator", "/resx 800"},
        {"another character behind the name", "/resxy:800"},
        {"the first match has no separator", "/resx /resx:5"},
    };
    for (const auto& c : cases) {
        int value = 77;
        EXPECT_EQ(CmdGetInt(c.line, "/resx", &value), 0) << c.what;
        EXPECT_EQ(value, 77) << c.what;
    }
}

TEST(CmdGetInt, QuirkEarlierTokenWithTheSamePrefixHidesTheOption)
{
    int value = 77;
    EXPECT_EQ(CmdGetInt("/test /t:5", "/t", &value), 0);
    EXPECT_EQ(value, 77);
}

TEST(CmdGetInt, QuirkCharactersAreNotCheckedToBeDigits)
{
    // Each character counts as (code - 48) mod 256: '6' is 6, '4' is 4, 'x' (120) is 72.
    int value = 0;
    EXPECT_EQ(CmdGetInt("/resx:64x", "/resx", &value), 1);
    EXPECT_EQ(value, 6 * 100 + 4 * 10 + 72);
    // A dot (46) is 254.
    EXPECT_EQ(CmdGetInt("/resx:1.5", "/resx", &value), 1);
    EXPECT_EQ(value, 1 * 100 + 254 * 10 + 5);
}

TEST(CmdGetInt, QuirkOnlyTheLastTenCharactersCount)
{
    int value = 0;
    EXPECT_EQ(CmdGetInt("/resx:990000000042", "/resx", &value), 1);
    EXPECT_EQ(value, 42);
}

TEST(CmdGetInt, QuirkTokenLengthIsTakenModulo256)
{
    // A token of 6 + 256 characters has a length of 6, so its value is empty.
    const std::string line = "/resx:" + std::string(256, '7');
    int value = 77;
    EXPECT_EQ(CmdGetInt(line.c_str(), "/resx", &value), 1);
    EXPECT_EQ(value, 0);
}

TEST(CmdGetInt, QuirkNameLengthIsTakenModulo256)
{
    // A name of 256 characters has a length of 0, its token of 256 + 3 a length of 3: after the
    // separator two characters are left.
    const std::string name = "/" + std::string(255, 'r');
    const std::string line = name + ":42";
    int value = 77;
    EXPECT_EQ(CmdGetInt(line.c_str(), name.c_str(), &value), 1);
    EXPECT_EQ(value, 42);
}

TEST(CmdGetFloat, ReadsTheCNotation)
{
    static const struct {
        const char* what;
        const char* line;
        float expected;
    } cases[] = {
        {"/t=2.5", "/t=2.5", 2.5f},
        {"/T:2.5", "/T:2.5", 2.5f},
        {"exponent", "/t:1e3", 1000.0f},
        {"negative", "/t:-0.25", -0.25f},
        {"trailing text is ignored", "/t:3.5s", 3.5f},
        {"no number gives 0", "/t:x", 0.0f},
        {"empty value gives 0", "/t:", 0.0f},
    };
    for (const auto& c : cases) {
        float value = 77.0f;
        EXPECT_EQ(CmdGetFloat(c.line, "/t", &value), 1) << c.what;
        EXPECT_EQ(value, c.expected) << c.what;
    }
}

TEST(CmdGetFloat, First31CharactersCount)
{
    // 30 zeros after "1" make 31 characters: 1e30. The 32nd would make it 1e31.
    const std::string line = "/t:1" + std::string(31, '0');
    float value = 0.0f;
    EXPECT_EQ(CmdGetFloat(line.c_str(), "/t", &value), 1);
    EXPECT_EQ(value, 1e30f);
}

TEST(CmdFindFileToken, CountsTokensThatAreNotOptions)
{
    EXPECT_EQ(CmdFindFileToken("/s a.qsa /no b.qsa", 1), 1);
    EXPECT_EQ(CmdFindFileToken("/s a.qsa /no b.qsa", 2), 3);
    EXPECT_EQ(CmdFindFileToken("/s a.qsa /no b.qsa", 3), -1);
    EXPECT_EQ(CmdFindFileToken("/s /no", 1), -1);
}

TEST(CmdFindFileToken, QuirkNameThatStartsAbove127DoesNotCount)
{
    EXPECT_EQ(CmdFindFileToken("\xE4pfel.qsa b.qsa", 1), 1);
}

TEST(CmdGetFileName, CopiesTheName)
{
    static const struct {
        const char* what;
        const char* line;
        const char* expected;
    } cases[] = {
        {"plain", "a.qsa /s", "a.qsa"},
        {"behind options", "/s /t:1 a.qsa", "a.qsa"},
        {"quoted with blanks", "\"my scene.qsa\" /s", "my scene.qsa"},
        {"quoted, never closed", "\"my scene.qsa", "my scene.qsa"},
        {"quoted and empty", "\"\" b.qsa", ""},
        {"ends at a quote", "a\"b.qsa", "a"},
        {"ends at a tab", "a\tb.qsa", "a"},
        {"bytes above 127 inside", "b\xE4r.qsa", "b\xE4r.qsa"},
        {"only the first name", "a.qsa b.qsa", "a.qsa"},
    };
    for (const auto& c : cases) {
        char name[kFileNameSize] = "untouched";
        EXPECT_GE(CmdGetFileName(c.line, 1, name), 0) << c.what;
        EXPECT_STREQ(name, c.expected) << c.what;
    }
}

TEST(CmdGetFileName, StopsAt255Characters)
{
    const std::string line(400, 'n');
    char name[kFileNameSize];
    EXPECT_EQ(CmdGetFileName(line.c_str(), 1, name), 0);
    EXPECT_EQ(std::string(name), std::string(255, 'n'));
    const std::string quoted = "\"" + std::string(400, ' ');
    EXPECT_EQ(CmdGetFileName(quoted.c_str(), 1, name), 0);
    EXPECT_EQ(std::string(name), std::string(255, ' '));
}
