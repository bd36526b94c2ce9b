// How scenes are shared out to chunks.

#include <filesystem>

#include "batch/ChunkName.h"
#include "tests/batch/FarmTesting.h"

using namespace batch_testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

namespace {

class ChunkPlanTest : public FarmTest {
protected:
    /// Only the size of a scene counts here.
    void WriteOfSize(const std::string& name, size_t bytes) const
    {
        scratch.Write("in/" + name, std::string(bytes, ' '));
    }
};

} // namespace

// 50, 40, 30, 20 and 10 bytes for two chunks: 50 | 40, then 30 to the one with 40, 20 to the one with 50,
// both have 70 bytes and two scenes, so that 10 goes to the first.
TEST_F(ChunkPlanTest, LargestScenesGoFirstEachToTheSmallestChunk)
{
    WriteOfSize("e.qsa", 10);
    WriteOfSize("sub/b.qsa", 40);
    WriteOfSize("c.qsa", 30);
    WriteOfSize("d.qsa", 20);
    WriteOfSize("a.qsa", 50);
    const ProgramRun run = Plan("2");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "5 scenes in 2 chunks, 150 bytes, at most 80 in a chunk; 0 up to date, 0 "
                       "refused\n");
    const std::vector<std::string> chunks = Chunks();
    ASSERT_EQ(chunks.size(), 2u);
    EXPECT_THAT(chunks[0], MatchesRegex("chunk-001-of-002\\.[0-9a-f]{8}"));
    EXPECT_THAT(PathsOfChunk("plan/" + chunks[0] + ".list"),
                ElementsAre("a.qsa", "d.qsa", "e.qsa"));
    EXPECT_THAT(PathsOfChunk("plan/" + chunks[1] + ".list"), ElementsAre("sub/b.qsa", "c.qsa"));
    EXPECT_EQ(scratch.Read("plan/" + chunks[1] + ".list"), std::string("sub/b.qsa\0c.qsa\0", 16));
}

// Of chunks with as many bytes the one with fewer scenes comes first; scenes of one size go by their paths.
TEST_F(ChunkPlanTest, TiesAreDecidedByScenesAndPaths)
{
    for (const char* const name : {"c.qsa", "a.qsa", "d.qsa", "b.qsa"})
        WriteOfSize(name, 0);
    EXPECT_EQ(Plan("3").status, 0);
    std::vector<std::vector<std::string>> lists;
    for (const std::string& chunk : Chunks())
        lists.push_back(PathsOfChunk("plan/" + chunk + ".list"));
    EXPECT_THAT(lists, ElementsAre(ElementsAre("a.qsa", "d.qsa"), ElementsAre("b.qsa"),
                                   ElementsAre("c.qsa")));
}

TEST_F(ChunkPlanTest, SameScenesGiveTheSameChunks)
{
    for (int i = 0; i < 12; ++i)
        WriteOfSize(std::to_string(i) + ".qsa", static_cast<size_t>(i % 5));
    EXPECT_EQ(Plan("4").status, 0);
    const std::vector<std::string> first = Chunks();
    ASSERT_EQ(first.size(), 4u);
    std::string text, list;
    for (const std::string& chunk : first)
        text += scratch.Read("plan/" + chunk + ".list");
    for (int i = 11; i >= 0; --i)
        list += "in/" + std::to_string(i) + ".qsa\n";
    scratch.Write("list", list);
    EXPECT_EQ(
        Batch({"plan", "--from-file", "list", "--root", "./in", "--chunks", "4", "-o", "plan"})
            .status,
        0);
    EXPECT_EQ(Chunks(), first);
    std::string again;
    for (const std::string& chunk : first)
        again += scratch.Read("plan/" + chunk + ".list");
    EXPECT_EQ(again, text);
    // Other scenes are another plan.
    WriteOfSize("12.qsa", 1);
    EXPECT_EQ(Plan("4").status, 0);
    EXPECT_NE(Chunks().front(), first.front());
}

TEST_F(ChunkPlanTest, ChunksOfAnEarlierPlanAreRemovedAndNothingElse)
{
    WriteOfSize("a.qsa", 1);
    WriteOfSize("b.qsa", 1);
    scratch.Write("plan/chunk-001-of-009.0123abcd.list", "x");
    scratch.Write("plan/chunk-001-of-009.0123abcd.jsonl", "x");
    scratch.Write("plan/chunk-10-of-009.0123abcd.list", "x");
    scratch.Write("plan/other.list", "x");
    EXPECT_EQ(Plan("2").status, 0);
    EXPECT_FALSE(scratch.Has("plan/chunk-001-of-009.0123abcd.list"));
    EXPECT_EQ(FilesBelow("plan").size(), 5u);
}

TEST_F(ChunkPlanTest, NeverMoreChunksThanScenes)
{
    WriteOfSize("a.qsa", 1);
    WriteOfSize("b.qsa", 1);
    EXPECT_EQ(Plan("40").status, 0);
    EXPECT_THAT(Chunks(),
                ElementsAre(StartsWith("chunk-001-of-002."), StartsWith("chunk-002-of-002.")));
}

TEST_F(ChunkPlanTest, NoScenesAreNoChunk)
{
    scratch.Write("in/readme", "");
    scratch.Write("plan/chunk-001-of-001.0123abcd.list", "x");
    const ProgramRun run = Plan("3");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("there is nothing to convert: no chunk is written\n"));
    EXPECT_THAT(FilesBelow("plan"), IsEmpty());
}

// 1,800 KiB are more than 1 MiB and less than 2 MiB.
TEST_F(ChunkPlanTest, SizeOfChunksMayBeGiven)
{
    for (const char* const name : {"a.qsa", "b.qsa", "c.qsa"})
        WriteOfSize(name, 600 * 1024);
    const auto chunksOf = [](const std::string& mebibytes) {
        EXPECT_EQ(Batch({"plan", "in", "--chunk-mb", mebibytes, "-o", "plan"}).status, 0);
        return Chunks().size();
    };
    EXPECT_EQ(chunksOf("1"), 2u);
    EXPECT_EQ(chunksOf("2"), 1u);
    EXPECT_EQ(chunksOf("0.5"), 3u);
}

TEST_F(ChunkPlanTest, PathsAreThoseBelowTheRoot)
{
    WriteOfSize("sub/a.qsa", 3);
    WriteOfSize("sub/b.qsa", 2);
    WriteOfSize("sub/c.qsa", 1);
    fs::create_directory_symlink("in", "link");
    fs::create_directory_symlink(scratch.Path() / "in/sub", "in/other");
    scratch.Write("outside/z.qsa", "");
    fs::create_directory_symlink(scratch.Path() / "outside", "in/away");
    const auto planned = [](std::vector<std::string> more) {
        more.insert(more.begin(), {"plan", "--chunks", "1", "-o", "plan"});
        EXPECT_EQ(Batch(more).status, 0);
        return PathsOfChunk("plan/" + Chunks().front() + ".list");
    };
    EXPECT_THAT(planned({"in/sub/a.qsa"}), ElementsAre("in/sub/a.qsa"));
    EXPECT_THAT(planned({"./in//sub", "--root", "in/."}),
                ElementsAre("sub/a.qsa", "sub/b.qsa", "sub/c.qsa"));
    EXPECT_THAT(planned({"link/sub/b.qsa", "--root", "in"}), ElementsAre("sub/b.qsa"));
    EXPECT_THAT(planned({"in/sub/b.qsa", "--root", "link"}), ElementsAre("sub/b.qsa"));
    EXPECT_THAT(planned({"link/sub/../sub/b.qsa", "--root", "link"}), ElementsAre("sub/b.qsa"));
    EXPECT_THAT(planned({(scratch.Path() / "in/sub/c.qsa").string(), "--root", "in"}),
                ElementsAre("sub/c.qsa"));
    EXPECT_THAT(planned({"in/other/a.qsa", "--root", "in"}), ElementsAre("other/a.qsa"));
    EXPECT_THAT(planned({"in/away/z.qsa", "--root", "in"}), ElementsAre("away/z.qsa"));
    EXPECT_THAT(planned({"link/away/z.qsa", "--root", "link"}), ElementsAre("away/z.qsa"));
}

TEST_F(ChunkPlanTest, PathsElsewhereAreTwoWithACure)
{
    scratch.Write("in/a.qsa", "");
    scratch.Write("inner/b.qsa", "");
    const ProgramRun run = Plan("1", {"inner/b.qsa"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("'inner/b.qsa' is not below the root 'in'"));
    EXPECT_THAT(run.err, HasSubstr("--root"));
    EXPECT_FALSE(scratch.Has("plan"));
}

TEST_F(ChunkPlanTest, ScenesThatCannotBeConvertedAreNamedAndLeftOut)
{
    scratch.Write("in/a.qsa", "");
    scratch.Write("in/two.qsa", "");
    scratch.Write("in/two.QSA", "");
    const ProgramRun run = Plan("1", {"in/gone.qsa"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("two.qsa: "));
    EXPECT_THAT(run.err, HasSubstr("two.QSA: "));
    EXPECT_THAT(run.err, HasSubstr("gone.qsa: "));
    EXPECT_THAT(run.out, HasSubstr("0 up to date, 3 refused"));
    EXPECT_THAT(PathsOfChunk("plan/" + Chunks().front() + ".list"), ElementsAre("a.qsa"));
}

TEST_F(ChunkPlanTest, UsageThatIsWrongIsTwoWithACure)
{
    scratch.Write("in/a.qsa", "");
    const struct {
        std::vector<std::string> arguments;
        const char* cure;
    } cases[] = {
        {{"plan", "in", "-o", "p"}, "one of '--chunks' and '--chunk-mb' is needed"},
        {{"plan", "in", "-o", "p", "--chunks", "1", "--chunk-mb", "1"}, "one of '--chunks'"},
        {{"plan", "in", "-o", "p", "--chunks", "0"}, "a whole number from 1"},
        {{"plan", "in", "-o", "p", "--chunks", "x"}, "a whole number from 1"},
        {{"plan", "in", "-o", "p", "--chunk-mb", "0"}, "a number of MiB above 0"},
        {{"plan", "in", "-o", "p", "--chunk-mb", "nan"}, "a number of MiB above 0"},
        {{"plan", "in", "--chunks", "1"}, "option '-o' is needed"},
        {{"plan", "-o", "p", "--chunks", "1"}, "a file or a directory is needed"},
        {{"plan", "in", "-o", "p", "--chunks", "1", "--journal", "j"},
         "unknown option '--journal'"},
        {{"plan", "in", "-o", "p", "--chunks", "1", "--root", "gone"},
         "name another one with --root"},
        {{"plan", "in", "-o", "in/a.qsa", "--chunks", "1"}, "choose another place with -o"},
    };
    for (const auto& wrong : cases) {
        const ProgramRun run = Batch(wrong.arguments);
        EXPECT_EQ(run.status, 2) << wrong.cure;
        EXPECT_THAT(run.err, HasSubstr(wrong.cure));
    }
    EXPECT_FALSE(scratch.Has("p"));
    EXPECT_EQ(Batch({"plan", "--help"}).status, 0);
}

TEST_F(ChunkPlanTest, DirectoryOfACommandsNameIsGivenAsAPath)
{
    scratch.Write("plan/a.qsa", HelperScene("a"));
    EXPECT_THAT(Batch({"./plan"}).out, StartsWith("1 converted"));
}

TEST(ChunkNameTest, ReadsOnlyWhatItWrites)
{
    const struct {
        const char* name;
        bool isRead;
        const char* rest;
    } cases[] = {
        {"chunk-003-of-040.0123abcd.list", true, ".list"},
        {"chunk-1000-of-1000.0123abcd", true, ""},
        {"chunk-0003-of-1000.0123abcd.x", true, ".x"},
        {"chunk-003-of-1000.0123abcd", false, ""},
        {"chunk-3-of-040.0123abcd", false, ""},
        {"chunk-000-of-040.0123abcd", false, ""},
        {"chunk-041-of-040.0123abcd", false, ""},
        {"chunk-003-of-040.0123ABCD", false, ""},
        {"chunk-003-of-040.0123abc", false, ""},
        {"chunk-+03-of-040.0123abcd", false, ""},
        {"chunk-0000000001-of-4294967295.0123abcd", false, ""},
        {"Chunk-003-of-040.0123abcd", false, ""},
        {"", false, ""},
    };
    for (const auto& c : cases) {
        ChunkName name;
        std::string_view rest;
        EXPECT_EQ(name.Read(c.name, rest), c.isRead) << c.name;
        if (c.isRead) {
            EXPECT_EQ(rest, c.rest) << c.name;
            EXPECT_EQ(name.Text() + std::string(rest), c.name);
        }
    }
}
