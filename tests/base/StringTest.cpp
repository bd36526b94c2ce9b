#include "base/String.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace {

TEST(String, EmptyStringHasNoBufferAndReadsAsEmptyText)
{
    const String empty;
    EXPECT_EQ(empty.data, nullptr);
    EXPECT_EQ(empty.length, 0);
    EXPECT_STREQ(empty.c_str(), "");
    EXPECT_TRUE(empty.IsEmpty());
    const String fromNull(nullptr);
    EXPECT_EQ(fromNull.data, nullptr);
    const String fromEmpty("");
    EXPECT_EQ(fromEmpty.data, nullptr);
}

TEST(String, CopyIsARealCopy)
{
    String first("boat");
    const String second(first);
    String third;
    third = first;
    first.GetBuffer(0)[0] = 'g';
    EXPECT_STREQ(first.c_str(), "goat");
    EXPECT_STREQ(second.c_str(), "boat");
    EXPECT_STREQ(third.c_str(), "boat");
    EXPECT_EQ(second.length, 4);
}

TEST(String, CopyTakesAllBytesNulsIncluded)
{
    String first;
    first.Assign("a\0b", 3);
    const String second(first);
    EXPECT_EQ(second.length, 3);
    EXPECT_EQ(second.TextLength(), 1);
    EXPECT_EQ(std::string(second.data.get(), 4), std::string("a\0b\0", 4));
}

TEST(String, MoveLeavesTheSourceEmpty)
{
    String first("boat");
    String second(std::move(first));
    EXPECT_STREQ(second.c_str(), "boat");
    EXPECT_EQ(first.length, 0); // NOLINT(bugprone-use-after-move)
    EXPECT_STREQ(first.c_str(), "");
    String third("x");
    third = std::move(second);
    EXPECT_STREQ(third.c_str(), "boat");
}

TEST(String, AssignFromItselfChangesNothing)
{
    String text("boat");
    const char* buffer = text.c_str();
    text.Assign(text);
    text.Assign(text.c_str());
    const String& same = text;
    text = same;
    EXPECT_EQ(text.c_str(), buffer);
    EXPECT_STREQ(text.c_str(), "boat");
}

TEST(String, AssignFromInsideItsOwnBuffer)
{
    String text("motorboat");
    text.Assign(text.c_str() + 5);
    EXPECT_STREQ(text.c_str(), "boat");
    EXPECT_EQ(text.length, 4);
}

TEST(String, AssignOfNullOrEmptyEmpties)
{
    for (const char* nothing : {static_cast<const char*>(nullptr), ""}) {
        String text("boat");
        text.Assign(nothing);
        EXPECT_EQ(text.data, nullptr);
        EXPECT_EQ(text.length, 0);
    }
    String text("boat");
    text.Assign("xyz", -1);
    EXPECT_EQ(text.data, nullptr);
}

TEST(String, AllocateReservesAndEndsTheTextAtOnce)
{
    String text("boat");
    text.Allocate(10);
    EXPECT_EQ(text.length, 10);
    EXPECT_STREQ(text.c_str(), "");
    text.Allocate(0);
    ASSERT_NE(text.data, nullptr);
    EXPECT_EQ(text.length, 0);
    text.Allocate(-1);
    EXPECT_EQ(text.data, nullptr);
    EXPECT_EQ(text.length, 0);
}

TEST(String, GetBufferGrowsKeepsTheTextAndNeverShrinks)
{
    String text;
    EXPECT_EQ(text.GetBuffer(-1), nullptr);
    EXPECT_EQ(text.length, 0);
    EXPECT_NE(text.GetBuffer(3), nullptr);
    EXPECT_EQ(text.length, 3);
    text.Assign("boat");
    char* buffer = text.GetBuffer(2);
    EXPECT_EQ(text.length, 4);
    EXPECT_STREQ(buffer, "boat");
    buffer = text.GetBuffer(100);
    EXPECT_EQ(text.length, 100);
    EXPECT_STREQ(buffer, "boat");
    EXPECT_EQ(buffer[100], 0);
    EXPECT_EQ(text.TextLength(), 4);
}

TEST(String, EndsWithIgnoresCase)
{
    static const struct {
        const char* what;
        const char* text;
        const char* tail;
        bool expected;
    } cases[] = {
        {"tail", "boat.QSA", ".qsa", true},
        {"whole", "QSA", "qsa", true},
        {"two empties", "", "", true},
        {"empty tail", "boat", "", true},
        {"null tail", "boat", nullptr, true},
        {"longer than the text", "qsa", ".qsa", false},
        {"other tail", "boat.qsb", ".qsa", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(String(c.text).EndsWith(c.tail), c.expected) << c.what;
}

TEST(String, EndsWithSeesTheTextAndNotTheReserve)
{
    String text("boat.qsa");
    text.GetBuffer(50);
    EXPECT_TRUE(text.EndsWith(".qsa"));
}

TEST(String, FindGivesTheFirstPositionWithoutRegardToCase)
{
    static const struct {
        const char* what;
        const char* text;
        const char* wanted;
        int32_t expected;
    } cases[] = {
        {"at the start", "Boatboat", "BOAT", 0}, {"inside", "motorBoat", "boat", 5},
        {"at the end", "abc", "C", 2},           {"not there", "abc", "d", -1},
        {"longer", "abc", "abcd", -1},           {"null", "abc", nullptr, -1},
        {"in the empty string", "", "", -1},     {"empty in a text", "abc", "", 0},
        {"overlapping start", "aab", "ab", 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(String(c.text).Find(c.wanted), c.expected) << c.what;
}

TEST(String, ParseFloatsWantsAllPieces)
{
    static const struct {
        const char* what;
        const char* text;
        int32_t count;
        bool expected;
        float values[3];
    } cases[] = {
        {"exact", "1,2.5,-3e1", 3, true, {1.0f, 2.5f, -30.0f}},
        {"blanks around", " 1 , 2 ,3 ", 3, true, {1.0f, 2.0f, 3.0f}},
        {"more than wanted", "1,2,3,4", 3, true, {1.0f, 2.0f, 3.0f}},
        {"text runs out", "1,2", 3, false, {1.0f, 2.0f, 0.0f}},
        {"empty piece", "1,,3", 3, false, {1.0f, 0.0f, 0.0f}},
        {"empty last piece", "1,2,", 3, false, {1.0f, 2.0f, 0.0f}},
        {"empty text", "", 1, false, {}},
        {"none wanted", "", 0, true, {}},
        {"no number is 0", "x,1", 2, true, {0.0f, 1.0f, 0.0f}},
    };
    for (const auto& c : cases) {
        float values[3] = {};
        EXPECT_EQ(String(c.text).ParseFloats(values, c.count), c.expected) << c.what;
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(values[i], c.values[i]) << c.what << ", value " << i;
    }
}

TEST(String, FormatReplacesAndTrims)
{
    String text("old");
    text.Format("%s_%i", "tex", 2);
    EXPECT_STREQ(text.c_str(), "tex_2");
    EXPECT_EQ(text.length, 5);
    text.Format("%s", "");
    EXPECT_EQ(text.length, 0);
}

TEST(String, FormatMayUseItsOwnText)
{
    String text("boat");
    text.Format("%s.%s", text.c_str(), "qsb");
    EXPECT_STREQ(text.c_str(), "boat.qsb");
}

TEST(String, FormatTruncatesTo4095Characters)
{
    String text;
    text.Format("%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(text.length, 4095);
    EXPECT_EQ(text.TextLength(), 4095);
}

TEST(String, AppendAddsAfterTheText)
{
    String text;
    text.Append("a");
    text.Append(nullptr);
    text.Append("");
    text.Append("bc");
    EXPECT_STREQ(text.c_str(), "abc");
    EXPECT_EQ(text.length, 3);
    text.Append(text.c_str());
    EXPECT_STREQ(text.c_str(), "abcabc");
    text.GetBuffer(40);
    text.Append("d");
    EXPECT_STREQ(text.c_str(), "abcabcd");
    EXPECT_EQ(text.length, 7);
}

TEST(String, ClearFreesTheBuffer)
{
    String text("boat");
    text.Clear();
    EXPECT_EQ(text.data, nullptr);
    EXPECT_EQ(text.length, 0);
}

} // namespace
