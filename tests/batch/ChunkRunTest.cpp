// The conversion of one chunk.

#include <csignal>
#include <filesystem>

#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include "platform/headless/win32/TemporaryName.h"
#include "tests/batch/BackgroundBatch.h"
#include "tests/batch/FarmTesting.h"

using namespace batch_testing;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class ChunkRunTest : public FarmTest {
protected:
    static nlohmann::json FirstLine(const std::string& text)
    {
        return nlohmann::json::parse(LinesOf(text).front());
    }
};

} // namespace

TEST_F(ChunkRunTest, ConvertsTheScenesOfAChunkAndKeepsAJournal)
{
    scratch.Write("in/sub/a.qsa", WallScene("p.tga"));
    scratch.Write("in/sub/p.tga", ColorPicture(0x123456));
    scratch.Write("in/b.qsa", HelperScene("b"));
    ASSERT_EQ(Plan("2").status, 0);
    const std::vector<std::string> chunks = Chunks();
    ASSERT_EQ(chunks.size(), 2u); // the wall is larger
    const ProgramRun run = RunChunk(chunks[0]);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("1 converted, 0 up to date, 0 failed"));
    EXPECT_EQ(scratch.Read("in/sub/a.qsb"), ConvertedAlone("in/sub", "a.qsa"));
    EXPECT_FALSE(scratch.Has("in/b.qsb"));
    const std::vector<std::string> journals = FilesBelow("j");
    ASSERT_EQ(journals.size(), 1u);
    EXPECT_THAT(journals[0], MatchesRegex("chunk-001-of-002\\.[0-9a-f]{8}\\..+-[0-9a-f]{32}-[0-9]+"
                                          "\\.jsonl"));
    EXPECT_THAT(journals[0], StartsWith(chunks[0] + "."));
    const auto line = FirstLine(scratch.Read("j/" + journals[0]));
    EXPECT_EQ(line["path"], "sub/a.qsa");
    EXPECT_EQ(line["target"], "sub/a.qsb");
    EXPECT_EQ(line["status"], "converted");
    const ProgramRun check = RunProgramFile(
        "/usr/bin/python3", {SourcePath("tools/validate-journal"), "j/" + journals[0]});
    EXPECT_EQ(check.out, "1 lines\n") << check.err;
    EXPECT_FALSE(scratch.Has(".state")); // neither there nor anywhere else
    EXPECT_THAT(FilesBelow("in"), ElementsAre("b.qsa", "sub/a.qsa", "sub/a.qsb", "sub/p.tga"));
}

// Other paths than those of the chunk are relative to the directory where the program is started.
TEST_F(ChunkRunTest, ResultsGoBelowOtherDirectories)
{
    scratch.Write("in/sub/a.qsa", HelperScene("a"));
    ASSERT_EQ(Plan("1").status, 0);
    EXPECT_EQ(
        RunChunk(Chunks()[0], {"--out", "in/o", "--frames", "f", "--frame-size", "16x16"}).status,
        0);
    EXPECT_THAT(FilesBelow("in"), ElementsAre("o/sub/a.qsb", "sub/a.qsa"));
    EXPECT_THAT(FilesBelow("f"), ElementsAre("sub/a.qsa.png"));
    const auto line = FirstLine(scratch.Read("j/" + Journals()[0]));
    EXPECT_EQ(line["target"], "o/sub/a.qsb"); // below the root
    EXPECT_EQ(line["frame"], (fs::canonical(scratch.Path()) / "f/sub/a.qsa.png").string());
}

TEST_F(ChunkRunTest, ScenesThatAreGoneOrBrokenFailAndTheJournalIsWhole)
{
    scratch.Write("in/a.qsa", BrokenScene());
    scratch.Write("in/b.qsa", HelperScene("b"));
    scratch.Write("in/c.qsa", HelperScene("c"));
    ASSERT_EQ(Plan("1").status, 0);
    fs::remove("in/b.qsa");
    const ProgramRun run = RunChunk(Chunks()[0]);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("1 converted, 0 up to date, 2 failed"));
    ASSERT_EQ(Journals().size(), 1u);
    EXPECT_THAT(Partials(), IsEmpty());
    EXPECT_EQ(LinesOf(scratch.Read("j/" + Journals()[0])).size(), 3u);
}

// The scene waits for its picture, a pipe, so that the run is in hand when it is interrupted.
TEST_F(ChunkRunTest, InterruptedRunsLeaveAPartialJournal)
{
    scratch.Write("in/a.qsa", WallScene("pipe.tga"));
    scratch.Write("in/b.qsa", HelperScene("b"));
    ASSERT_EQ(mkfifo("in/pipe.tga", 0600), 0);
    ASSERT_EQ(Plan("1").status, 0);
    for (const int number : {SIGTERM, SIGKILL}) {
        fs::remove_all("j");
        BackgroundBatch run({"run", "--chunk", "plan/" + Chunks()[0] + ".list", "--root", "in",
                             "--journal-dir", "j", "-j", "1", "--timeout", "0"});
        ASSERT_TRUE(Eventually([&] { return Partials().size() == 1; }));
        if (number == SIGTERM)
            run.SignalAndAwait(number);
        run.Signal(number); // the second one ends also what is in hand
        const ProgramRun ended = run.Wait();
        EXPECT_EQ(ended.status, 128 + number);
        EXPECT_EQ(Partials().size(), 1u);
        EXPECT_THAT(Journals(), IsEmpty());
    }
    fs::remove("in/pipe.tga");
    EXPECT_EQ(RunChunk(Chunks()[0]).status, 0); // a missing picture is a note
    EXPECT_EQ(Journals().size(), 1u);
    EXPECT_EQ(Partials().size(), 1u); // of the attempt before
}

// Both come to their end, with the same targets and journals of their own.
TEST_F(ChunkRunTest, MayRunTwiceAtOnce)
{
    for (int i = 0; i < 40; ++i)
        scratch.Write("in/" + std::to_string(i) + ".qsa", WallScene("p.tga", i));
    scratch.Write("in/p.tga", ColorPicture(7));
    ASSERT_EQ(Plan("1").status, 0);
    const std::vector<std::string> run = {"run",    "--chunk", "plan/" + Chunks()[0] + ".list",
                                          "--root", "in",      "--journal-dir",
                                          "j",      "-q"};
    {
        BackgroundBatch first(run);
        const ProgramRun second = Batch(run);
        EXPECT_EQ(second.status, 0) << second.err;
        const ProgramRun ended = first.Wait();
        EXPECT_EQ(ended.status, 0) << ended.err;
    }
    EXPECT_EQ(Journals().size(), 2u);
    EXPECT_THAT(Partials(), IsEmpty());
    EXPECT_EQ(FilesBelow("in").size(), 81u); // no litter
    for (const int i : {0, 17, 39}) {
        const std::string name = std::to_string(i);
        EXPECT_EQ(scratch.Read("in/" + name + ".qsb"), ConvertedAlone("in", name + ".qsa"));
    }
}

// A process of another container, or one from before, had the same id.
TEST_F(ChunkRunTest, JournalsOfOthersAreNotOverwritten)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    ASSERT_EQ(Plan("1").status, 0);
    fs::create_directory("j");
    const headless::TemporaryOwner self = headless::TemporaryOwner::ThisProcess();
    const std::string name = "j/" + Chunks()[0] + "." + self.host + "-" + self.boot + "-";
    const ProgramRun run = RunProgramFile( // the shell becomes the program, with its own id
        "/bin/sh",
        {"-c", "echo other >\"$1$$.partial\"; shift; exec \"$@\"", "sh", name, BuildPath("qsbatch"),
         "run", "--chunk", "plan/" + Chunks()[0] + ".list", "--root", "in", "--journal-dir", "j"});
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(Partials().size(), 1u);
    EXPECT_EQ(scratch.Read("j/" + Partials()[0]), "other\n");
    ASSERT_EQ(Journals().size(), 1u);
    EXPECT_THAT(Journals()[0], EndsWith("-2.jsonl"));
}

TEST_F(ChunkRunTest, UsageThatIsWrongIsTwoWithACure)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    ASSERT_EQ(Plan("1").status, 0);
    const std::string chunk = "plan/" + Chunks()[0] + ".list";
    scratch.Write("list", "a.qsa");
    scratch.Write("p/chunk-001-of-001.0123abcd.list", "");
    const struct {
        std::vector<std::string> arguments;
        const char* cure;
    } cases[] = {
        {{"run", "--journal-dir", "j"}, "option '--chunk' is needed"},
        {{"run", "--chunk", chunk}, "option '--journal-dir' is needed"},
        {{"run", "--chunk", "list", "--journal-dir", "j"},
         "--chunk needs a file of 'qsbatch plan'"},
        {{"run", "--chunk", "chunk-001-of-001.0123abcd.list", "--journal-dir", "j"},
         "name another one with --chunk"},
        {{"run", "--chunk", "p/chunk-001-of-001.0123abcd.list", "--journal-dir", "j"}, "is empty"},
        {{"run", "--chunk", chunk, "--journal-dir", "list"},
         "choose another place with --journal-dir"},
        {{"run", "--chunk", chunk, "--journal-dir", "j", "--root", "gone"}, "with --root"},
        {{"run", "--chunk", chunk, "--journal-dir", "j", "in"}, "a path is given, 'in'"},
        {{"run", "--chunk", chunk, "--journal-dir", "j", "--state", "s"},
         "unknown option '--state'"},
    };
    for (const auto& wrong : cases) {
        const ProgramRun run = Batch(wrong.arguments);
        EXPECT_EQ(run.status, 2) << wrong.cure;
        EXPECT_THAT(run.err, HasSubstr(wrong.cure));
    }
    EXPECT_FALSE(scratch.Has("in/a.qsb"));
    EXPECT_FALSE(scratch.Has("j"));
}
