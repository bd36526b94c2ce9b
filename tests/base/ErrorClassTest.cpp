#include "base/ErrorClass.h"

#include <memory>

#include "base/WarningFilter.h"
#include "tests/base/LogFixture.h"

namespace {

class Simple : public ErrorClassSimple {};

class Labelled : public ErrorClass {
public:
    Labelled() { SetClassName("Boat"); }
};

class ErrorClassTest : public LogFixture {
protected:
    Labelled object;
};

std::string RepeatLine(const char* number)
{
    return std::string("Warning Repeat: ") + number;
}

TEST_F(ErrorClassTest, ErrorLogsAndThrowsLabelAndMessage)
{
    try {
        object.Error("bad number %i", 7);
        FAIL() << "Error must throw";
    } catch (const ErrorMsg& error) {
        EXPECT_STREQ(error.source, "Boat");
        EXPECT_STREQ(error.message, "bad number 7");
    }
    EXPECT_EQ(object.errorHappened, 1);
    EXPECT_EQ(LogText(), Entry("Error:Boat: bad number 7"));
    EXPECT_STREQ(gErrorRecord.source, "Boat");
    EXPECT_STREQ(gErrorRecord.message, "bad number 7");
}

TEST_F(ErrorClassTest, ErrorReturnsWithThrowOnErrorOff)
{
    object.throwOnError = 0;
    EXPECT_EQ(RaisedBy([&] { object.Error("soft"); }), "no error");
    EXPECT_EQ(object.errorHappened, 1);
    EXPECT_EQ(LogText(), Entry("Error:Boat: soft"));
}

TEST_F(ErrorClassTest, SimpleErrorHasTheFixedLabel)
{
    Simple simple;
    try {
        simple.Error("slot %i", 3);
        FAIL() << "Error must throw";
    } catch (const ErrorMsg& error) {
        EXPECT_STREQ(error.source, "ErrorClassSimple");
        EXPECT_STREQ(error.message, "slot 3");
    }
    simple.Warning("odd");
    EXPECT_EQ(LogText(),
              Entry("Error:ErrorClassSimple: slot 3") + Entry("Warning:ErrorClassSimple: odd"));
}

TEST_F(ErrorClassTest, NewObjectsStartWithTheirDefaults)
{
    class Plain : public ErrorClass {};
    const Plain plain;
    EXPECT_STREQ(plain.className, "Undefined");
    EXPECT_EQ(plain.errorHappened, 0);
    EXPECT_EQ(plain.reserved, 0);
    EXPECT_EQ(plain.throwOnError, 1);
}

TEST_F(ErrorClassTest, LabelIsTruncatedTo31Bytes)
{
    object.SetClassName("0123456789012345678901234567890123456789");
    EXPECT_STREQ(object.className, "0123456789012345678901234567890");
    object.SetClassName(nullptr);
    EXPECT_STREQ(object.className, "");
}

TEST_F(ErrorClassTest, MessageIsTruncatedTo1023Bytes)
{
    const std::string longText(3000, 'm');
    EXPECT_EQ(RaisedBy([&] { object.Error("%s", longText.c_str()); }), std::string(1023, 'm'));
    Simple simple;
    EXPECT_EQ(RaisedBy([&] { simple.Error("%s", longText.c_str()); }), std::string(1023, 'm'));
    // The log truncates the whole text, prefix included.
    EXPECT_EQ(LogText(), Entry("Error:Boat: " + std::string(1011, 'm')) +
                             Entry("Error:ErrorClassSimple: " + std::string(999, 'm')));
}

TEST_F(ErrorClassTest, QuirkFirstWarningIsNeverRemembered)
{
    for (int i = 0; i < 3; ++i)
        object.Warning("same");
    EXPECT_EQ(LogText(), Entry("Warning:Boat: same") + Entry("Warning:Boat: same"));
    EXPECT_EQ(gWarningRepeat, 1u);
    object.Warning("other");
    EXPECT_EQ(LogText(), Entry("Warning:Boat: same") + Entry("Warning:Boat: same") +
                             Entry(RepeatLine("1")) + Entry("Warning:Boat: other"));
    EXPECT_EQ(gWarningRepeat, 0u);
    EXPECT_EQ(gWarningCount, 3);
}

TEST_F(ErrorClassTest, EqualTextsOfDifferentLabelsAreNotRepeats)
{
    Labelled other;
    other.SetClassName("Car");
    object.Warning("x");
    object.Warning("y");
    other.Warning("y");
    EXPECT_EQ(LogText(),
              Entry("Warning:Boat: x") + Entry("Warning:Boat: y") + Entry("Warning:Car: y"));
}

TEST_F(ErrorClassTest, RepeatAtTheCapIsLoggedWithAGreaterSign)
{
    object.Warning("a");
    object.Warning("b");
    gWarningRepeat = kMaxWarningRepeat - 1;
    object.Warning("b");
    EXPECT_EQ(gWarningRepeat, kMaxWarningRepeat);
    object.Warning("b"); // stays at the cap
    EXPECT_EQ(gWarningRepeat, kMaxWarningRepeat);
    object.Warning("c");
    // 0xFFFFFFF is 268435455
    EXPECT_EQ(LogText(), Entry("Warning:Boat: a") + Entry("Warning:Boat: b") +
                             Entry(RepeatLine(">268435455")) + Entry("Warning:Boat: c"));
}

TEST_F(ErrorClassTest, RepeatBelowTheCapIsLoggedPlain)
{
    object.Warning("a");
    object.Warning("b");
    gWarningRepeat = kMaxWarningRepeat - 1;
    object.Warning("c");
    EXPECT_EQ(LogText(), Entry("Warning:Boat: a") + Entry("Warning:Boat: b") +
                             Entry(RepeatLine("268435454")) + Entry("Warning:Boat: c"));
}

TEST_F(ErrorClassTest, Warning65536LogsTheLimitAndLaterOnesAreDropped)
{
    object.Warning("a");
    gWarningCount = 65534;
    object.Warning("b");
    object.Warning("c");
    EXPECT_EQ(gWarningCount, 65536);
    object.Warning("c"); // would be a repeat: the count does not change
    object.Warning("d");
    Simple().Warning("of the other class of the family");
    EXPECT_EQ(gWarningRepeat, 0u);
    EXPECT_EQ(gWarningCount, 65536);
    EXPECT_STREQ(gErrorRecord.message, "c");
    EXPECT_EQ(LogText(), Entry("Warning:Boat: a") + Entry("Warning:Boat: b") +
                             Entry("Warning:Boat: c") +
                             Entry("ErrorClass: Maximum number of warnings reached!"));
}

TEST_F(ErrorClassTest, QuirkWarningsAbove255BytesNeverCountAsRepeats)
{
    const std::string prefix = "Warning:Boat: ";
    const std::string fits(255 - prefix.size(), 'f'); // fills the buffer for the last text
    const std::string exceeds(256 - prefix.size(), 'e');
    object.Warning("first");
    object.Warning("%s", fits.c_str());
    object.Warning("%s", fits.c_str());
    EXPECT_EQ(gWarningRepeat, 1u);
    object.Warning("%s", exceeds.c_str());
    object.Warning("%s", exceeds.c_str());
    EXPECT_EQ(gWarningRepeat, 0u);
    EXPECT_EQ(LogText(), Entry(prefix + "first") + Entry(prefix + fits) + Entry(RepeatLine("1")) +
                             Entry(prefix + exceeds) + Entry(prefix + exceeds));
}

TEST_F(ErrorClassTest, WarningIsTruncatedTo1023Bytes)
{
    Simple().Warning("%s", std::string(5000, 'w').c_str());
    EXPECT_EQ(LogText(), Entry("Warning:ErrorClassSimple: " + std::string(997, 'w')));
}

TEST_F(ErrorClassTest, LiveObjectsAreCountedCopiesIncluded)
{
    const int32_t before = gErrorClassCount;
    {
        const Labelled copy(object);
        EXPECT_EQ(gErrorClassCount, before + 1);
        EXPECT_STREQ(copy.className, "Boat");
        Simple simple;
        EXPECT_EQ(gErrorClassCount, before + 2);
        simple = Simple();
        EXPECT_EQ(gErrorClassCount, before + 2);
    }
    EXPECT_EQ(gErrorClassCount, before);
}

class ErrorClassFlush : public LogFixture {};

TEST_F(ErrorClassFlush, LastObjectOfTheFamilyLogsPendingRepeats)
{
    ASSERT_EQ(gErrorClassCount, 0);
    auto first = std::make_unique<Labelled>();
    auto last = std::make_unique<Labelled>();
    for (int i = 0; i < 4; ++i)
        first->Warning("w");
    first.reset();
    EXPECT_EQ(gWarningRepeat, 2u) << "another object is alive";
    last.reset();
    EXPECT_EQ(gWarningRepeat, 0u);
    EXPECT_EQ(LogText(),
              Entry("Warning:Boat: w") + Entry("Warning:Boat: w") + Entry(RepeatLine("2")));
}

TEST_F(ErrorClassFlush, NothingIsLoggedWithoutRepeats)
{
    ASSERT_EQ(gErrorClassCount, 0);
    std::make_unique<Labelled>()->Warning("w");
    EXPECT_EQ(LogText(), Entry("Warning:Boat: w"));
}

} // namespace
