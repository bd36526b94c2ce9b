// What a scene cannot do to the others: neither by what it leaves in the engine, nor by ending, stopping or
// filling its worker.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include "batch/Descriptor.h"
#include "tests/batch/BackgroundBatch.h"
#include "tests/batch/BatchTesting.h"
#include "tests/support/HostCost.h"

using namespace batch_testing;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class IsolationTest : public BatchTest {
protected:
    /// A scene whose picture is a pipe that nobody writes to: its worker waits for ever.
    void WriteWaitingScene(const std::string& name) const
    {
        scratch.Write(name, WallScene("pipe.tga"));
        ASSERT_EQ(mkfifo((fs::path(name).parent_path() / "pipe.tga").c_str(), 0600), 0);
    }
    /// A picture takes the place of the pipe, and the pipe, held open, lets go of who waits for it.
    Descriptor LetGoOfPipe() const
    {
        scratch.Write("picture.tga", ColorPicture(5));
        fs::create_hard_link("in/pipe.tga", "pipe");
        fs::rename("picture.tga", "in/pipe.tga");
        Descriptor pipe(open("pipe", O_RDWR | O_NONBLOCK));
        EXPECT_TRUE(pipe.IsOpen());
        return pipe;
    }
};

/// The text of the log that a run of the converter alone leaves, without its notes of time and memory.
std::vector<std::string> LogAlone(const std::string& directory, const std::string& leaf)
{
    const fs::path before = fs::current_path();
    fs::remove_all(".alone");
    fs::copy(directory, ".alone", fs::copy_options::recursive);
    fs::current_path(".alone");
    RunProgram({leaf, "/stop"});
    std::ifstream file("logfile.txt");
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line.substr(0, line.rfind("(Time:")));
    fs::current_path(before);
    fs::remove_all(".alone");
    return lines;
}

/// The messages of the converter in a journal's line, as its log has them.
std::vector<std::string> LogOf(const nlohmann::json& line)
{
    std::vector<std::string> lines;
    for (const auto& message : line["messages"]) {
        const std::string source = message["source"];
        if (source == "qsbatch" || source == "host")
            continue;
        lines.push_back((message["level"] == "error" ? "Error:" : "Warning:") + source + ": " +
                        message["text"].get<std::string>());
    }
    return lines;
}

std::vector<nlohmann::json> JournalLines(const std::string& text)
{
    std::vector<nlohmann::json> lines;
    for (const std::string& line : LinesOf(text))
        lines.push_back(nlohmann::json::parse(line));
    return lines;
}

} // namespace

// Two hundred scenes of all kinds: pictures of one name and size in different folders, missing ones, errors,
// blended frames, the end of an animation, scenes without anything. In whatever order one worker takes them,
// each gives what a run of its own gives.
TEST_F(IsolationTest, EveryOrderGivesTheSameFiles)
{
    const int scenes = AffordableCases(200);
    std::vector<std::string> paths;
    for (int i = 0; i < scenes; ++i) {
        const std::string folder = "in/" + std::to_string(i % 20);
        const std::string path = folder + "/s" + std::to_string(i) + ".qsa";
        const int kind = i % 5;
        scratch.Write(folder + "/same.tga",
                      ColorPicture(0x10F000u + static_cast<unsigned>(i % 20)));
        scratch.Write(path, kind == 0   ? HelperScene("h" + std::to_string(i))
                            : kind == 1 ? WallScene("same.tga")
                            : kind == 2 ? WallScene("gone.tga", i % 7)
                            : kind == 3 ? BrokenScene()
                                        : WallScene("", 3));
        paths.push_back(path);
    }
    const auto runIn = [&](const std::string& out) {
        std::string list;
        for (const std::string& path : paths)
            list += path + "\n";
        scratch.Write("list", list);
        std::vector<std::string> run = {"--from-file", "list", "--out",     out,           "-j",
                                        "1",           "-q",   "--journal", out + ".jsonl"};
        if (out != "o4") // the last order draws nothing
            run.insert(run.end(), {"--frames", out + "/frames", "--frame-size", "64x48"});
        return Batch(run);
    };
    std::map<std::string, std::string> bytes;
    std::map<std::string, std::vector<std::string>> logs;
    std::mt19937 random(7);
    for (int order = 0; order < 5; ++order) {
        std::shuffle(paths.begin(), paths.end(), random);
        const std::string out = "o" + std::to_string(order);
        EXPECT_EQ(runIn(out).status, 1); // the broken ones
        for (const std::string& name : FilesBelow(out)) {
            if (name == ".qsbatch-state")
                continue;
            const auto [place, isNew] = bytes.emplace(name, scratch.Read(out + "/" + name));
            if (!isNew) {
                EXPECT_TRUE(place->second == scratch.Read(out + "/" + name)) << name << " " << out;
            }
        }
        for (const nlohmann::json& line : JournalLines(scratch.Read(out + ".jsonl"))) {
            const auto [place, isNew] = logs.emplace(line["path"], LogOf(line));
            if (!isNew) {
                EXPECT_EQ(place->second, LogOf(line)) << line["path"];
            }
        }
    }
    // A quarter of them fail; each of the others has a target and a frame.
    EXPECT_EQ(bytes.size(), 2u * static_cast<unsigned>(scenes) * 4 / 5);
    for (int i = 0; i < 20; ++i) { // all kinds, one for each folder
        const std::string folder = "in/" + std::to_string(i);
        const std::string leaf = "s" + std::to_string(i) + ".qsa";
        const std::string target = folder + "/s" + std::to_string(i) + ".qsb";
        EXPECT_EQ(LogAlone(folder, leaf), logs[folder + "/" + leaf]) << leaf;
        if (i % 5 != 3) {
            EXPECT_TRUE(bytes[target] == ConvertedAlone(folder, leaf)) << leaf;
        }
    }
}

TEST_F(IsolationTest, FramesAreThoseOfARunOfTheirOwn)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(0x40C020));
    scratch.Write("in/b.qsa", HelperScene("b"));
    EXPECT_EQ(
        Batch({"in", "--out", "o", "--frames", "f", "--frame-size", "160x120", "-j", "1"}).status,
        0);
    for (const char* const leaf : {"a.qsa", "b.qsa"}) {
        setenv("QSA2QSB_FRAMES", (scratch.Path() / "alone").c_str(), 1);
        const fs::path before = fs::current_path();
        fs::current_path("in");
        RunProgram({leaf, "/stop", "/resx:160", "/resy:120"});
        fs::current_path(before);
        unsetenv("QSA2QSB_FRAMES");
        const std::string picture = std::string(leaf) + ".png";
        EXPECT_TRUE(scratch.Read("alone/" + picture) == scratch.Read("f/" + picture)) << leaf;
    }
}

TEST_F(IsolationTest, HangingSceneTimesOut)
{
    WriteWaitingScene("in/b.qsa");
    const ProgramRun run = Batch({"in", "-j", "1", "--timeout", "0.5", "--journal", "j"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("0 converted, 0 up to date, 1 failed, "));
    EXPECT_THAT(run.out, HasSubstr("in/b.qsa: no end after 0.5 seconds\n"));
    EXPECT_THAT(scratch.Read("j"), HasSubstr("\"status\":\"timed-out\""));
    EXPECT_THAT(FilesBelow("in"), ElementsAre("b.qsa", "pipe.tga"));
}

// Killed twice: the second try, alone, is the last one.
TEST_F(IsolationTest, KilledWorkerCostsItsSceneOnly)
{
    WriteWaitingScene("in/a.qsa");
    scratch.Write("in/b.qsa", HelperScene("b"));
    BackgroundBatch run({"in", "-j", "2", "--journal", "j"});
    const pid_t first = run.AwaitWorker();
    ASSERT_NE(first, 0);
    kill(first, SIGKILL);
    const pid_t second = run.AwaitWorker(first);
    ASSERT_NE(second, 0);
    kill(second, SIGABRT);
    const ProgramRun ended = run.Wait();
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.out, HasSubstr("in/a.qsa: the worker crashed: Aborted"));
    EXPECT_THAT(scratch.Read("j"), HasSubstr("\"status\":\"crashed\""));
    EXPECT_TRUE(scratch.Has("in/b.qsb"));
}

// The only worker has the second scene ahead when it is killed: that one is converted next, and the third, and
// then the first is tried again.
TEST_F(IsolationTest, SceneThatAKilledWorkerHadAheadIsConvertedBeforeTheSecondTry)
{
    WriteWaitingScene("in/a.qsa");
    scratch.Write("in/b.qsa", HelperScene("b"));
    scratch.Write("in/c.qsa", HelperScene("c"));
    BackgroundBatch run({"in", "-j", "1", "--journal", "j"});
    const pid_t first = run.AwaitWorker();
    ASSERT_NE(first, 0);
    kill(first, SIGKILL);
    ASSERT_TRUE(Eventually([&] { return LinesOf(scratch.Read("j")).size() == 2; }));
    EXPECT_TRUE(scratch.Has("in/b.qsb"));
    EXPECT_TRUE(scratch.Has("in/c.qsb"));
    const pid_t second = run.AwaitWorker(first);
    ASSERT_NE(second, 0);
    kill(second, SIGKILL);
    EXPECT_THAT(run.Wait().out, StartsWith("2 converted, 0 up to date, 1 failed, "));
    EXPECT_EQ(JournalLines(scratch.Read("j")).back()["path"], "in/a.qsa");
    EXPECT_EQ(JournalLines(scratch.Read("j")).back()["status"], "crashed");
}

TEST_F(IsolationTest, TimeLimitIsChargedToTheSceneInHand)
{
    WriteWaitingScene("in/a.qsa");
    scratch.Write("in/b.qsa", HelperScene("b"));
    const ProgramRun run = Batch({"in", "-j", "1", "--timeout", "0.5", "--journal", "j"});
    EXPECT_THAT(run.out, StartsWith("1 converted, 0 up to date, 1 failed, "));
    const std::vector<nlohmann::json> lines = JournalLines(scratch.Read("j"));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0]["path"], "in/b.qsa"); // while the first one waits for its second try
    EXPECT_EQ(lines[0]["status"], "converted");
    EXPECT_EQ(lines[1]["status"], "timed-out");
}

// One worker waits for ever and has a scene ahead, which the other one takes in the end.
TEST_F(IsolationTest, NoSceneWaitsForAWorkerThatHangs)
{
    WriteWaitingScene("in/a.qsa");
    for (const char* const name : {"b", "c", "d", "e"})
        scratch.Write("in/" + std::string(name) + ".qsa", HelperScene(name));
    BackgroundBatch run({"in", "-j", "2", "--timeout", "0"});
    EXPECT_TRUE(Eventually([&] { return FilesBelow("in").size() == 6 + 4; }));
    EXPECT_FALSE(run.HasEnded());
}

// The second try succeeds if what was in the way is gone.
TEST_F(IsolationTest, SceneOfAKilledWorkerIsTriedOnceMore)
{
    WriteWaitingScene("in/a.qsa");
    BackgroundBatch run({"in"});
    const pid_t worker = run.AwaitWorker();
    ASSERT_NE(worker, 0);
    fs::remove("in/pipe.tga");
    scratch.Write("in/pipe.tga", ColorPicture(0x112233));
    kill(worker, SIGKILL);
    const ProgramRun ended = run.Wait();
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_TRUE(scratch.Read("in/a.qsb") == ConvertedAlone("in", "a.qsa"));
}

TEST_F(IsolationTest, StoppedWorkerTimesOut)
{
    WriteWaitingScene("in/a.qsa");
    BackgroundBatch run({"in", "--timeout", "1"});
    const pid_t worker = run.AwaitWorker();
    if (worker != 0) // 0 on a machine so slow that both tries have ended
        kill(worker, SIGSTOP);
    const ProgramRun ended = run.Wait();
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.out, HasSubstr("in/a.qsa: no end after 1 seconds\n"));
}

// A picture of 9000 by 9000 pixels has 243 MB, and takes 324 MB as a texture.
TEST_F(IsolationTest, SceneThatNeedsTooMuchMemoryFailsAlone)
{
    std::string head(18, '\0');
    head[2] = 2;
    head[12] = head[14] = static_cast<char>(9000 & 0xFF);
    head[13] = head[15] = static_cast<char>(9000 >> 8);
    head[16] = 24;
    scratch.Write("in/large.tga", head);
    fs::resize_file("in/large.tga", 18 + 9000 * 9000 * 3);
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/b.qsa", WallScene("large.tga"));
    scratch.Write("in/c.qsa", HelperScene("c"));
    const ProgramRun run = Batch({"in", "-j", "1", "--memory", "400M", "--journal", "j"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("2 converted, 0 up to date, 1 failed, "));
    EXPECT_THAT(run.out, HasSubstr("in/b.qsa: more memory than 400 MiB is needed\n"));
    EXPECT_THAT(scratch.Read("j"), HasSubstr("\"status\":\"out-of-memory\""));
}

TEST_F(IsolationTest, InterruptEndsWhatIsInHandAndKeepsTheState)
{
    WriteWaitingScene("in/b.qsa");
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/c.qsa", HelperScene("c"));
    BackgroundBatch run({"in", "-j", "1", "--out", "o"});
    ASSERT_NE(run.AwaitWorker(), 0);
    run.SignalAndAwait(SIGINT);
    run.Signal(SIGINT); // b waits for ever
    const ProgramRun ended = run.Wait();
    EXPECT_EQ(ended.status, 130);
    EXPECT_THAT(ended.out, StartsWith("1 converted, 0 up to date, 0 failed, 0 with warnings, "
                                      "2 skipped in "));
    EXPECT_THAT(FilesBelow("o"), ElementsAre(".qsbatch-state", "a.qsb"));
    fs::remove("in/pipe.tga");
    scratch.Write("in/pipe.tga", ColorPicture(1));
    EXPECT_THAT(Batch({"in", "--out", "o"}).out, StartsWith("2 converted, 1 up to date, "));
}

TEST_F(IsolationTest, TerminationLetsTheSceneInHandEnd)
{
    WriteWaitingScene("in/a.qsa");
    scratch.Write("in/b.qsa", HelperScene("b"));
    BackgroundBatch run({"in", "-j", "1"});
    ASSERT_NE(run.AwaitWorker(), 0);
    run.SignalAndAwait(SIGTERM);
    const Descriptor pipe = LetGoOfPipe();
    const ProgramRun ended = run.Wait();
    EXPECT_EQ(ended.status, 143);
    EXPECT_THAT(ended.out, StartsWith("1 converted, 0 up to date, 0 failed, 0 with warnings, "
                                      "1 skipped in "));
    EXPECT_FALSE(scratch.Has("in/b.qsb"));
}

// The worker has as many scenes ahead as it may have.
TEST_F(IsolationTest, AllScenesThatAreAheadAreTakenBack)
{
    WriteWaitingScene("in/a.qsa");
    for (int i = 100; i < 140; ++i)
        scratch.Write("in/b" + std::to_string(i) + ".qsa", HelperScene("x"));
    BackgroundBatch run({"in", "-j", "1"});
    ASSERT_NE(run.AwaitWorker(), 0);
    run.SignalAndAwait(SIGTERM);
    const Descriptor pipe = LetGoOfPipe();
    EXPECT_THAT(run.Wait().out, StartsWith("1 converted, 0 up to date, 0 failed, 0 with warnings, "
                                           "40 skipped in "));
    EXPECT_TRUE(scratch.Has("in/a.qsb"));
    EXPECT_FALSE(scratch.Has("in/b100.qsb"));
}

TEST_F(IsolationTest, AllScenesThatAKilledWorkerHadAheadAreConverted)
{
    WriteWaitingScene("in/a.qsa");
    for (int i = 100; i < 140; ++i)
        scratch.Write("in/b" + std::to_string(i) + ".qsa", HelperScene("x"));
    BackgroundBatch run({"in", "-j", "1", "--journal", "j"});
    const pid_t first = run.AwaitWorker();
    ASSERT_NE(first, 0);
    kill(first, SIGKILL);
    ASSERT_TRUE(Eventually([&] { return LinesOf(scratch.Read("j")).size() == 40; }));
    for (const nlohmann::json& line : JournalLines(scratch.Read("j")))
        EXPECT_EQ(line["status"], "converted") << line["path"];
    const pid_t second = run.AwaitWorker(first);
    ASSERT_NE(second, 0);
    kill(second, SIGKILL);
    EXPECT_THAT(run.Wait().out, StartsWith("40 converted, 0 up to date, 1 failed, "));
}
