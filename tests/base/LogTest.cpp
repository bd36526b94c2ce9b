#include "base/Log.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <windows.h>

#include "base/Clock.h"
#include "base/String.h"
#include "tests/base/LogFixture.h"

namespace {

class Log : public LogFixture {};

double gTestSeconds = 0.0;
uint64_t gTestBytes = 0;

TEST_F(Log, NothingIsWrittenByARunThatReportsNothing)
{
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}

TEST_F(Log, EntryIsMessageAndNoteWithoutABlankBetween)
{
    gTestSeconds = 7.25;
    gLogClock = [] { return gTestSeconds; };
    LogWrite("Loading %s", "boat");
    gTestSeconds = 10.759; // 3.509 s later, two decimals
    LogWrite("done");
    EXPECT_EQ(LogText(), "Loading boat(Time:0.00, free sysmem:100)\n"
                         "done(Time:3.51, free sysmem:100)\n");
    EXPECT_EQ(gLogEntries, 2);
    EXPECT_EQ(gLogStartTime, 7.25);
}

TEST_F(Log, FirstEntryStartsTheClockOfTheNotes)
{
    gLogClock = GetTimeSeconds; // the real one: far from 0, yet the first note is near it
    LogWrite("x");
    const std::string text = LogText();
    ASSERT_EQ(text.rfind("x(Time:", 0), 0u) << text;
    const double seconds = std::atof(text.c_str() + 7);
    EXPECT_GE(seconds, 0.0);
    EXPECT_LT(seconds, 0.5);
}

TEST_F(Log, FreeMemoryIsRoundedToTheNearestMebibyte)
{
    gLogFreeMemory = [] { return gTestBytes; };
    static const struct {
        const char* what;
        uint64_t bytes;
        const char* expected;
    } cases[] = {
        {"none", 0, "0"},
        {"just below half", 0x7FFFF, "0"},
        {"half", 0x80000, "1"},
        {"one and a half less one byte", 0x17FFFF, "1"},
        {"above 4 GiB", (uint64_t{5} << 30) + 0x80000, "5121"}, // 5 * 1024 + 1
    };
    std::string expected;
    for (const auto& c : cases) {
        gTestBytes = c.bytes;
        LogWrite("%s", c.what);
        expected += std::string(c.what) + "(Time:0.00, free sysmem:" + c.expected + ")\n";
    }
    EXPECT_EQ(LogText(), expected);
}

TEST_F(Log, RealProbesGiveAPositiveAmountOfMemory)
{
    ResetLogForTests();
    EXPECT_GT(gLogFreeMemory(), uint64_t{1} << 20);
    const double earlier = gLogClock();
    EXPECT_LE(earlier, gLogClock());
}

TEST_F(Log, WithoutTimeTheEntryEndsInALineEndAlone)
{
    gLogWithTime = 0;
    LogWrite("plain");
    EXPECT_EQ(LogText(), "plain\n");
}

TEST_F(Log, MessageIsTruncatedTo1023Bytes)
{
    LogWrite("%s", std::string(1023, 'a').c_str());
    LogWrite("%s", std::string(1024, 'b').c_str());
    EXPECT_EQ(LogText(), Entry(std::string(1023, 'a')) + Entry(std::string(1023, 'b')));
}

TEST_F(Log, FirstEntryTruncatesAndLaterOnesAppend)
{
    scratch.Write("logfile.txt", "of an earlier run\n");
    LogWrite("one");
    EXPECT_EQ(LogText(), Entry("one"));
    LogWrite("two");
    EXPECT_EQ(LogText(), Entry("one") + Entry("two"));
}

TEST_F(Log, AllEntriesLandInTheDirectoryOfTheFirst)
{
    scratch.Write("deeper/other.txt", "");
    LogWrite("one");
    ASSERT_TRUE(SetCurrentDirectoryA("deeper"));
    LogWrite("two");
    ASSERT_TRUE(SetCurrentDirectoryA(".."));
    LogWrite("three");
    EXPECT_EQ(LogText(), Entry("one") + Entry("two") + Entry("three"));
    EXPECT_FALSE(scratch.Has("deeper/logfile.txt"));
}

TEST_F(Log, DirectoryOfTheFirstEntryIsStoredWhole)
{
    const std::string name(90, 'd');
    ASSERT_TRUE(CreateDirectoryA(name.c_str(), nullptr));
    ASSERT_TRUE(SetCurrentDirectoryA(name.c_str()));
    LogWrite("deep");
    // The required size includes the terminator.
    EXPECT_EQ(gLogDirectory.TextLength() + 1,
              static_cast<int32_t>(GetCurrentDirectoryA(0, nullptr)));
    EXPECT_TRUE(gLogDirectory.EndsWith(name.c_str()));
    ASSERT_TRUE(SetCurrentDirectoryA(".."));
    EXPECT_EQ(ReadLog(name + "/logfile.txt"), Entry("deep"));
}

TEST_F(Log, FailureToOpenCountsNothingSoThatALaterSuccessTruncates)
{
    scratch.Write("logfile.txt/blocker", ""); // a directory where the file should be
    LogWrite("lost");
    EXPECT_EQ(gLogEntries, 0);

    std::filesystem::remove_all(scratch.Path() / "logfile.txt");
    scratch.Write("logfile.txt", "old\n");
    LogWrite("kept");
    EXPECT_EQ(gLogEntries, 1);
    EXPECT_EQ(LogText(), Entry("kept"));
}

TEST_F(Log, LogReplacedByADirectoryLosesEntriesAndContinuesAfterIt)
{
    LogWrite("one");
    std::filesystem::remove(scratch.Path() / "logfile.txt");
    std::filesystem::create_directory(scratch.Path() / "logfile.txt");
    LogWrite("lost");
    EXPECT_EQ(gLogEntries, 1);
    std::filesystem::remove(scratch.Path() / "logfile.txt");
    LogWrite("two"); // not the first entry: nothing is emptied
    EXPECT_EQ(gLogEntries, 2);
    EXPECT_EQ(LogText(), Entry("two"));
}

TEST_F(Log, LogThatIsRemovedInMidRunIsMadeAnew)
{
    LogWrite("one");
    ASSERT_TRUE(std::filesystem::remove(scratch.Path() / "logfile.txt"));
    LogWrite("two");
    LogWrite("three");
    EXPECT_EQ(gLogEntries, 3);
    EXPECT_EQ(LogText(), Entry("two") + Entry("three"));
}

TEST_F(Log, LogThatIsMovedAwayKeepsItsEntriesAndTakesNoMore)
{
    LogWrite("one");
    std::filesystem::rename(scratch.Path() / "logfile.txt", scratch.Path() / "kept.txt");
    LogWrite("two");
    EXPECT_EQ(ReadLog("kept.txt"), Entry("one"));
    EXPECT_EQ(LogText(), Entry("two"));
}

TEST_F(Log, FileThatIsPutInPlaceOfTheLogIsContinued)
{
    LogWrite("one");
    scratch.Write("other.txt", "of another program\n");
    std::filesystem::rename(scratch.Path() / "other.txt", scratch.Path() / "logfile.txt");
    LogWrite("two");
    EXPECT_EQ(LogText(), "of another program\n" + Entry("two"));
}

TEST_F(Log, LogThatIsEmptiedInMidRunIsContinuedAtItsNewEnd)
{
    LogWrite("one");
    scratch.Write("logfile.txt", "");
    LogWrite("two");
    EXPECT_EQ(LogText(), Entry("two"));
}

TEST_F(Log, LinesOfAnotherProgramStayBetweenTheEntries)
{
    LogWrite("one");
    scratch.Write("logfile.txt", LogText() + "of another program\n");
    LogWrite("two");
    EXPECT_EQ(LogText(), Entry("one") + "of another program\n" + Entry("two"));
}

TEST_F(Log, LogOfARemovedDirectoryThatIsMadeAgainContinuesThere)
{
    std::filesystem::create_directory(scratch.Path() / "deeper");
    std::filesystem::current_path(scratch.Path() / "deeper");
    LogWrite("one");
    std::filesystem::current_path(scratch.Path());
    std::filesystem::remove_all(scratch.Path() / "deeper");
    std::filesystem::create_directory(scratch.Path() / "deeper");
    LogWrite("two");
    EXPECT_EQ(ReadLog("deeper/logfile.txt"), Entry("two"));
}

TEST_F(Log, MemoryIsAskedOnceAnEntry)
{
    static uint64_t asked;
    asked = 0;
    gLogFreeMemory = [] { return ++asked << 20; };
    LogWrite("one");
    LogWrite("two");
    EXPECT_EQ(LogText(), "one(Time:0.00, free sysmem:1)\ntwo(Time:0.00, free sysmem:2)\n");
}

TEST_F(Log, RemovedLogDirectoryLosesEntries)
{
    std::filesystem::create_directory(scratch.Path() / "deeper");
    std::filesystem::current_path(scratch.Path() / "deeper");
    LogWrite("one");
    std::filesystem::current_path(scratch.Path());
    std::filesystem::remove_all(scratch.Path() / "deeper");
    LogWrite("lost");
    EXPECT_EQ(gLogEntries, 1);
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}

TEST_F(Log, CurrentDirectoryThatIsGoneTakesNoLog)
{
    const std::filesystem::path gone = scratch.Path() / "gone";
    std::filesystem::create_directory(gone);
    std::filesystem::current_path(gone);
    std::error_code inUse; // some hosts do not let the current directory be removed
    const bool removed = std::filesystem::remove(gone, inUse) && !std::filesystem::exists(gone);
    LogWrite("x");
    EXPECT_EQ(gLogEntries, removed ? 0 : 1);
    std::filesystem::current_path(scratch.Path());
    EXPECT_EQ(scratch.Has("gone/logfile.txt"), !removed);
    LogWrite("y");
    EXPECT_EQ(ReadLog(removed ? "logfile.txt" : "gone/logfile.txt"),
              removed ? Entry("y") : Entry("x") + Entry("y"));
}

TEST_F(Log, DirectoryThatIsNotWritableTakesNoLog)
{
    if (!SetCurrentDirectoryA("/proc"))
        GTEST_SKIP() << "no directory that nobody may write to";
    LogWrite("x");
    EXPECT_EQ(gLogEntries, 0);
    std::filesystem::current_path(scratch.Path());
}

TEST_F(Log, Entry500000CarriesTheLimitNoteAndTheNextIsNotWritten)
{
    LogWrite("first");
    gLogEntries = 499998;
    LogWrite("before");
    LogWrite("last");
    LogWrite("never");
    EXPECT_EQ(gLogEntries, 500000);
    EXPECT_EQ(LogText(), Entry("first") + Entry("before") + Entry("last") +
                             "Maximum number of log entries reached!\n");
}

TEST_F(Log, LimitNoteFollowsTheLineEndWhenNotesAreOff)
{
    gLogWithTime = 0;
    gLogEntries = 499999;
    LogWrite("last");
    EXPECT_EQ(LogText(), "last\nMaximum number of log entries reached!\n");
}

TEST_F(Log, PercentSignsInTheTextAreNotAFormat)
{
    LogWrite("%s", "100%s");
    EXPECT_EQ(LogText(), Entry("100%s"));
}

std::vector<std::string> gTaken;

TEST_F(Log, ASinkTakesEveryEntryInPlaceOfTheFile)
{
    gTaken.clear();
    gLogSink = [](const char* entry) { gTaken.push_back(entry); };
    gLogEntries = kMaxLogEntries; // has no effect in this case
    LogWrite("Loading %s", "boat");
    LogWrite("%s", std::string(2000, 'x').c_str());
    gLogEntries = 0;
    EXPECT_EQ(gTaken, (std::vector<std::string>{"Loading boat", std::string(1023, 'x')}));
    EXPECT_FALSE(scratch.Has("logfile.txt"));
    gLogSink = nullptr;
    LogWrite("back");
    EXPECT_EQ(LogText(), Entry("back"));
}

TEST_F(Log, ASinkGetsRepeatsOfAWarningAsTheyCome)
{
    struct : ErrorClassSimple {
    } reporter;
    gTaken.clear();
    gLogSink = [](const char* entry) { gTaken.push_back(entry); };
    for (int i = 0; i < 3; ++i)
        reporter.Warning("thin ice");
    EXPECT_EQ(gTaken, std::vector<std::string>(3, "Warning:ErrorClassSimple: thin ice"));
    EXPECT_EQ(gWarningCount, 0);
}

} // namespace
