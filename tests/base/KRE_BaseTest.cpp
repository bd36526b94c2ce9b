#include "base/KRE_Base.h"

#include <memory>

#include "tests/base/LogFixture.h"

namespace {

class Engine : public KRE_Base {
public:
    Engine() { SetClassName("Engine"); }
};

class KRE_BaseTest : public LogFixture {
protected:
    Engine object;
};

TEST_F(KRE_BaseTest, ErrorLogsAndThrowsLabelAndMessage)
{
    try {
        object.Error("mode %i", 4);
    } catch (const KRE_Error& error) {
        EXPECT_STREQ(error.source, "Engine");
        EXPECT_STREQ(error.message, "mode 4");
    }
    EXPECT_EQ(object.errorHappened, 1);
    EXPECT_STREQ(gKreErrorRecord.message, "mode 4");
    EXPECT_EQ(LogText(), Entry("Error:Engine: mode 4"));
}

TEST_F(KRE_BaseTest, NewObjectsStartWithTheirDefaults)
{
    class Plain : public KRE_Base {};
    const Plain plain;
    EXPECT_STREQ(plain.className, "Undefined");
    EXPECT_EQ(plain.errorHappened, 0);
    EXPECT_EQ(plain.lastResult, S_OK);
}

TEST_F(KRE_BaseTest, LabelIsTruncatedTo31Bytes)
{
    object.SetClassName("0123456789012345678901234567890123456789");
    EXPECT_STREQ(object.className, "0123456789012345678901234567890");
}

TEST_F(KRE_BaseTest, QuirkFirstWarningIsNeverRemembered)
{
    for (int i = 0; i < 3; ++i)
        object.Warning("same");
    object.Warning("other");
    EXPECT_EQ(LogText(), Entry("Warning:Engine: same") + Entry("Warning:Engine: same") +
                             Entry("Warning Repeat: 1") + Entry("Warning:Engine: other"));
}

TEST_F(KRE_BaseTest, LongWarningsAreTruncatedAndCountAsRepeats)
{
    const std::string longText(2000, 'w');
    object.Warning("first");
    object.Warning("%s", longText.c_str());
    object.Warning("%s", longText.c_str());
    EXPECT_EQ(gKreWarningRepeat, 1u);
    EXPECT_EQ(LogText(),
              Entry("Warning:Engine: first") + Entry("Warning:Engine: " + std::string(1007, 'w')));
}

TEST_F(KRE_BaseTest, Warning65536LogsTheLimitAndLaterOnesAreDropped)
{
    object.Warning("a");
    gKreWarningCount = 65535;
    object.Warning("b");
    object.Warning("b");
    object.Warning("c");
    EXPECT_EQ(gKreWarningCount, 65536);
    EXPECT_EQ(gKreWarningRepeat, 0u);
    EXPECT_EQ(LogText(), Entry("Warning:Engine: a") + Entry("Warning:Engine: b") +
                             Entry("KRE_Base: Maximum number of warnings reached!"));
}

TEST_F(KRE_BaseTest, FamiliesCountTheirWarningsApart)
{
    class Other : public ErrorClass {};
    Other().Warning("x");
    object.Warning("x");
    EXPECT_EQ(gWarningCount, 1);
    EXPECT_EQ(gKreWarningCount, 1);
}

TEST_F(KRE_BaseTest, KreFlushWarningRepeatLogsAPendingCountOnce)
{
    for (int i = 0; i < 5; ++i)
        object.Warning("w");
    KreFlushWarningRepeat();
    KreFlushWarningRepeat();
    EXPECT_EQ(LogText(),
              Entry("Warning:Engine: w") + Entry("Warning:Engine: w") + Entry("Warning Repeat: 3"));
}

TEST_F(KRE_BaseTest, LiveObjectsAreCountedCopiesIncluded)
{
    const int32_t before = gKreBaseCount;
    object.lastResult = E_FAIL;
    {
        const Engine copy(object);
        EXPECT_EQ(gKreBaseCount, before + 1);
        EXPECT_STREQ(copy.className, "Engine");
        EXPECT_EQ(copy.lastResult, E_FAIL);
    }
    EXPECT_EQ(gKreBaseCount, before);
}

class KRE_BaseFlush : public LogFixture {};

TEST_F(KRE_BaseFlush, LastObjectOfTheFamilyLogsPendingRepeats)
{
    ASSERT_EQ(gKreBaseCount, 0);
    auto first = std::make_unique<Engine>();
    auto last = std::make_unique<Engine>();
    for (int i = 0; i < 3; ++i)
        first->Warning("w");
    first.reset();
    EXPECT_EQ(gKreWarningRepeat, 1u) << "another object is alive";
    last.reset();
    EXPECT_EQ(gKreWarningRepeat, 0u);
    EXPECT_EQ(LogText(),
              Entry("Warning:Engine: w") + Entry("Warning:Engine: w") + Entry("Warning Repeat: 1"));
}

} // namespace
