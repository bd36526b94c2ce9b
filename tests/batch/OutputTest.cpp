// The journal, the page, the status line, and what happens when nothing can be written.

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <regex>
#include <set>
#include <thread>

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "batch/FrameReader.h"
#include "batch/ReportPage.h"
#include "batch/StatusLine.h"
#include "tests/batch/BackgroundBatch.h"
#include "tests/batch/BatchTesting.h"
#include "tests/support/FileContent.h"

using namespace batch_testing;
using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class OutputTest : public BatchTest {};

/// A run whose standard output and standard error are a terminal of 100 columns.
std::string OnTerminal(std::vector<std::string> words)
{
    words.insert(words.begin(), BuildPath("qsbatch"));
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    const winsize size = {24, 100, 0, 0};
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        execv(argv[0], argv.data());
        _exit(127);
    }
    std::string text;
    char part[4096];
    for (ssize_t got = read(terminal, part, sizeof part); got > 0;
         got = read(terminal, part, sizeof part))
        text.append(part, static_cast<size_t>(got));
    waitpid(child, nullptr, 0);
    close(terminal);
    return text;
}

} // namespace

TEST_F(OutputTest, JournalsAreAsTheSchemaDescribesThem)
{
    scratch.Write("in/a.qsa", WallScene("gone.tga", 3));
    scratch.Write("in/b.qsa", BrokenScene());
    scratch.Write("in/\xFF.qsa", HelperScene("c"));
    scratch.Write("in/d\n\"\\.qsa", HelperScene("d"));
    const std::vector<std::string> run = {"in",           "gone.qsa", "--out",    "o",
                                          "--frames",     "f",        "-j",       "1",
                                          "--frame-size", "16x16",    "--journal"};
    std::vector<std::string> first = run;
    first.push_back("j1");
    EXPECT_EQ(Batch(first).status, 1);
    std::vector<std::string> second = run;
    second.insert(second.end(), {"j2", "--fail-fast"});
    EXPECT_EQ(Batch(second).status, 1);
    for (const char* const journal : {"j1", "j2"}) {
        const ProgramRun check =
            RunProgramFile("/usr/bin/python3", {SourcePath("tools/validate-journal"), journal});
        EXPECT_EQ(check.status, 0) << check.err;
        EXPECT_EQ(check.out, "5 lines\n");
    }
    const auto line = nlohmann::json::parse(LinesOf(scratch.Read("j1")).front());
    EXPECT_EQ(line["path"], "in/a.qsa");
    EXPECT_EQ(line["status"], "converted");
    EXPECT_EQ(line["target"], "o/a.qsb");
    EXPECT_EQ(line["bytes_in"], fs::file_size("in/a.qsa"));
    EXPECT_EQ(line["bytes_out"], fs::file_size("o/a.qsb"));
    EXPECT_EQ(line["counts"]["meshes"], 1);
    EXPECT_EQ(line["counts"]["faces"], 2);
    EXPECT_EQ(line["counts"]["lights"], 2);
    // The schema refuses what is not in it.
    auto changed = line;
    changed["status"] = "well";
    scratch.Write("j3", changed.dump() + "\n");
    EXPECT_EQ(
        RunProgramFile("/usr/bin/python3", {SourcePath("tools/validate-journal"), "j3"}).status, 1);
}

TEST_F(OutputTest, PageHasACardForEachScene)
{
    scratch.Write("in/<a>&.qsa", WallScene(""));
    scratch.Write("in/b.qsa", BrokenScene());
    EXPECT_EQ(Batch({"in", "--out", "o", "--draw", "--report", "r.html"}).status, 1);
    const std::string page = scratch.Read("r.html");
    EXPECT_THAT(page, StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(page, HasSubstr("<h2>in/&lt;a&gt;&amp;.qsa</h2><p class=\"converted\">"));
    EXPECT_THAT(page, HasSubstr("<img alt=\"\" src=\"data:image/jpeg;base64,/9j/"));
    EXPECT_THAT(page, HasSubstr("<div class=\"none\">the scene failed</div><h2>in/b.qsa</h2>"));
    EXPECT_THAT(page, HasSubstr("Q203 "));
    EXPECT_THAT(page, HasSubstr("1 converted, 1 failed, 0 with warnings"));
    EXPECT_THAT(page, Not(HasSubstr("http")));
    // An up to date scene keeps its picture.
    Batch({"in", "--out", "o", "--draw", "--report", "r.html"});
    EXPECT_THAT(scratch.Read("r.html"),
                AllOf(HasSubstr("data-status=\"up-to-date\""), HasSubstr("base64,/9j/")));
}

TEST_F(OutputTest, TerminalHasAStatusLineBelowTheMessages)
{
    for (int i = 0; i < 30; ++i)
        scratch.Write("in/" + std::to_string(i) + ".qsa", WallScene("gone.tga"));
    const std::string text = OnTerminal({"in", "-j", "1", "--draw"});
    EXPECT_THAT(text, HasSubstr("\r0 of 30, 0 failed\x1b[K"));
    EXPECT_THAT(text, HasSubstr(" files/s, "));
    EXPECT_THAT(text, HasSubstr("\r\x1b[Kin/0.qsa: warning Q251: Can not open diffuse map"));
    EXPECT_THAT(text, HasSubstr("30 converted, 0 up to date, 0 failed, 30 with warnings in "));
    EXPECT_THAT(OnTerminal({"in", "--force", "-q"}), Not(HasSubstr("\x1b")));
}

TEST_F(OutputTest, ProgressIsDoneFilesBytesAndTimeLeft)
{
    RunProgress progress;
    progress.total = 1200;
    EXPECT_EQ(ProgressText(progress), "0 of 1,200, 0 failed");
    progress.done = 300;
    progress.failed = 2;
    progress.seconds = 10;
    progress.bytesIn = 25000000;
    // 30 files a second leave 900 / 30 seconds.
    EXPECT_EQ(ProgressText(progress), "300 of 1,200, 2 failed, 30.0 files/s, 2.5 MB/s, 30 s left");
}

TEST_F(OutputTest, FullDisksAreToldAndLeaveNoLitter)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const ProgramRun journal = Batch({"in", "--out", "o", "--journal", "/dev/full"});
    EXPECT_EQ(journal.status, 2);
    EXPECT_THAT(journal.err, HasSubstr("the journal '/dev/full' cannot be written: No space left"));
    // Files of at most 100 KiB: the target of the large scene does not fit.
    fs::copy(SourcePath("examples/harbour.qsa"), "in/b.qsa");
    const ProgramRun target = RunProgramFile(
        "/bin/bash", {"-c", "ulimit -f 100; exec " + BuildPath("qsbatch") + " in --out p"});
    EXPECT_EQ(target.status, 1) << target.err;
    EXPECT_THAT(target.out, HasSubstr("in/b.qsa: b.qsb: Error writing to file\n"));
    EXPECT_THAT(FilesBelow("p"), ElementsAre(".qsbatch-state", "a.qsb"));
    const ProgramRun state = RunProgramFile(
        "/bin/bash", {"-c", "ulimit -f 2; exec " + BuildPath("qsbatch") + " in --out q"});
    EXPECT_EQ(state.status, 2);
    EXPECT_THAT(state.err, HasSubstr("qsbatch: the state"));
}

// The frame comes after the target, except in a strict run.
TEST_F(OutputTest, FrameThatCannotBeKeptFailsTheScene)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("f", "a file in the way");
    const ProgramRun run = Batch({"in", "--out", "o", "--frames", "f", "--journal", "j"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("in/a.qsa: the frame cannot be written: Not a directory\n"));
    EXPECT_THAT(scratch.Read("j"), HasSubstr("\"status\":\"failed\",\"target_written\":true"));
    EXPECT_TRUE(scratch.Has("o/a.qsb"));
    EXPECT_EQ(Batch({"in", "--out", "p", "--frames", "f", "--strict"}).status, 1);
    EXPECT_THAT(FilesBelow("p"), ElementsAre(".qsbatch-state"));
}

TEST_F(OutputTest, CheckOfASoundTargetSaysNothing)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(1));
    const ProgramRun run = Batch({"in", "--out", "o", "--check", "-v"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "in/a.qsa: converted\n");
}

// The worker waits for a picture, which is a pipe, while the scene changes under it.
TEST_F(OutputTest, SceneThatChangesIsReadOnceMore)
{
    scratch.Write("in/a.qsa", WallScene("pipe.tga"));
    ASSERT_EQ(mkfifo("in/pipe.tga", 0600), 0);
    BackgroundBatch run({"in"});
    ASSERT_NE(run.AwaitWorker(), 0);
    SleepFor(50);
    scratch.Write("in/a.qsa", HelperScene("other"));
    scratch.Write("picture.tga", ColorPicture(5));
    fs::create_hard_link("in/pipe.tga", "pipe");
    fs::rename("picture.tga", "in/pipe.tga");
    const int pipe = open("pipe", O_RDWR | O_NONBLOCK);
    const ProgramRun ended = run.Wait();
    close(pipe);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_TRUE(scratch.Read("in/a.qsb") == ConvertedAlone("in", "a.qsa"));
}

// It changes again as it is read once more: it cannot be known what was converted. A change may come between
// the two reads on a busy machine, so there may be more than one run.
TEST_F(OutputTest, SceneThatKeepsChangingFails)
{
    scratch.Write("in/a.qsa", WallScene("", 2000));
    std::atomic<bool> isOver = false;
    std::thread writer([&] {
        std::ofstream file("in/a.qsa", std::ios::app);
        while (!isOver) {
            file << ' ' << std::flush;
            usleep(100);
        }
    });
    ProgramRun run;
    Eventually([&] {
        run = Batch({"in", "--out", "o", "-q", "--force"});
        return run.status == 1;
    });
    isOver = true;
    writer.join();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("in/a.qsa: the file changed while it was read\n"));
    EXPECT_EQ(Batch({"in", "--out", "o"}).status, 0);
}

TEST_F(OutputTest, UpToDateScenesKeepTheirFactsInJournalAndPage)
{
    scratch.Write("in/a.qsa", WallScene("gone.tga", 3));
    const std::vector<std::string> run = {"in",       "--out", "o",         "--draw",
                                          "--report", "r",     "--journal", "j"};
    EXPECT_EQ(Batch(run).status, 0);
    const auto first = nlohmann::json::parse(scratch.Read("j"));
    const ProgramRun again = Batch(run);
    EXPECT_EQ(again.err, ""); // it was told when it was converted
    const auto second = nlohmann::json::parse(scratch.Read("j"));
    EXPECT_EQ(second["status"], "up-to-date");
    EXPECT_EQ(second["target_written"], false);
    for (const char* const field :
         {"path", "target", "messages", "bytes_in", "bytes_out", "counts"})
        EXPECT_EQ(second[field], first[field]) << field;
    EXPECT_EQ(second["hashes"], first["hashes"]);
    EXPECT_THAT(scratch.Read("r"),
                AllOf(HasSubstr("data-status=\"up-to-date\" data-warnings=\"1\""),
                      HasSubstr("1 meshes, 4 vertices, 2 faces"), HasSubstr("gone.tga")));
    const ProgramRun check =
        RunProgramFile("/usr/bin/python3", {SourcePath("tools/validate-journal"), "j"});
    EXPECT_EQ(check.status, 0) << check.out;
}

// The target of a scene whose frame alone is drawn is where it was.
TEST_F(OutputTest, JournalNamesTheTargetAlsoIfOnlyTheFrameIsNew)
{
    scratch.Write("in/a.qsa", WallScene(""));
    EXPECT_EQ(Batch({"in", "--out", "o"}).status, 0);
    EXPECT_EQ(Batch({"in", "--out", "o", "--frames", "f", "--journal", "j"}).status, 0);
    const auto line = nlohmann::json::parse(scratch.Read("j"));
    EXPECT_EQ(line["target"], "o/a.qsb");
    EXPECT_EQ(line["target_written"], false);
    EXPECT_EQ(line["frame_written"], true);
}

// A thousand scenes with as many words as a card may have, and with frames that no encoder can make small.
TEST_F(OutputTest, PagesOfAThousandScenesStayBelowTheirLimit)
{
    DrawnFrame noise;
    noise.width = 640;
    noise.height = 480;
    std::mt19937 random(3);
    for (int i = 0; i < 640 * 480; ++i)
        noise.argb.push_back(static_cast<uint32_t>(random()));
    SceneResult result;
    result.status = SceneStatus::kConverted;
    result.thumb = ThumbOf(noise);
    EXPECT_GT(result.thumb.size(), 1000u);
    noise.width = 160; // every pixel is kept
    noise.height = 120;
    noise.argb.resize(160 * 120);
    result.thumb = ThumbOf(noise);
    EXPECT_LE(result.thumb.size(), 12000u);
    result.messages.assign(1000, {101, MessageLevel::kWarning, "s", std::string(2000, '"'), 1});
    ReportPage page("page.html", 1000);
    for (int i = 0; i < 1000; ++i)
        page.Add(std::string(250, 'n') + std::to_string(i), result, true);
    ASSERT_TRUE(page.Write());
    EXPECT_LE(fs::file_size("page.html"), 25000000u);
    EXPECT_THAT(scratch.Read("page.html"), HasSubstr("nn999</h2>"));
}

TEST_F(OutputTest, LongPagesHaveOnlyScenesWithTroubles)
{
    constexpr size_t kScenes = 5001;
    ReportPage page("page.html", kScenes);
    for (size_t i = 0; i < kScenes; ++i) {
        SceneResult result;
        result.status = i == 7 ? SceneStatus::kCrashed : SceneStatus::kConverted;
        if (i == 9)
            result.messages.push_back({902, MessageLevel::kWarning, "qsbatch", "w", 1});
        if (i == 11)
            result.messages.push_back({119, MessageLevel::kNote, "KRE", "n", 1});
        page.Add("s" + std::to_string(i), result, false);
    }
    ASSERT_TRUE(page.Write());
    const std::string text = scratch.Read("page.html");
    EXPECT_THAT(text,
                AllOf(HasSubstr("5,000 converted, 1 crashed, 1 with warnings. Scenes without"),
                      HasSubstr("<h2>s7</h2>"), HasSubstr("<h2>s9</h2>")));
    EXPECT_THAT(text, Not(AnyOf(HasSubstr("<h2>s8</h2>"), HasSubstr("<h2>s11</h2>"))));
    ReportPage shorter("page.html", kScenes - 1);
    shorter.Add("s8", SceneResult(), false);
    ASSERT_TRUE(shorter.Write());
    EXPECT_THAT(scratch.Read("page.html"), HasSubstr("<h2>s8</h2>"));
}

// All options of the help are in the completions and on the manual page, and none that does not exist.
TEST_F(OutputTest, CompletionsAndManualHaveAllOptions)
{
    std::string help;
    for (const char* const command : {"", "plan", "run", "merge"})
        help += Batch(*command ? std::vector<std::string>{command, "--help"}
                               : std::vector<std::string>{"--help"})
                    .out;
    const auto optionsOf = [](const std::string& text, const std::string& pattern) {
        std::set<std::string> options;
        const std::regex shape(pattern);
        for (std::sregex_iterator at(text.begin(), text.end(), shape), end; at != end; ++at)
            options.insert((*at)[1]);
        return options;
    };
    const std::set<std::string> wanted = optionsOf(help, "--([a-z][a-z-]+)");
    EXPECT_GE(wanted.size(), 30u);
    const auto fileText = [](const std::string& name) {
        return FileContent(SourcePath("packaging/" + name));
    };
    EXPECT_EQ(optionsOf(fileText("qsbatch.bash-completion"), "--([a-z][a-z-]+)"), wanted);
    EXPECT_EQ(optionsOf(fileText("qsbatch.zsh-completion"), "--([a-z-]+)\\["), wanted);
    EXPECT_EQ(optionsOf(fileText("qsbatch.fish"), " -l ([a-z-]+)"), wanted);
    std::string page = fileText("qsbatch.1");
    for (size_t at = page.find("\\-"); at != std::string::npos; at = page.find("\\-", at))
        page.erase(at, 1);
    for (const std::string& option : wanted)
        EXPECT_THAT(page, HasSubstr("--" + option));
}
