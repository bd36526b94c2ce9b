// The journals of all chunks put together, and into a state.

#include <algorithm>
#include <chrono>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "tests/batch/FarmTesting.h"

using namespace batch_testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class JournalMergeTest : public FarmTest {
protected:
    static constexpr const char* kNothing = "there is nothing to convert";

    void WriteScenes(int count) const
    {
        for (int i = 0; i < count; ++i)
            scratch.Write("in/" + std::to_string(i) + ".qsa", HelperScene(std::to_string(i)));
    }
    /// The journal was written so many hours ago.
    static void Age(const std::string& name, int hours)
    {
        fs::last_write_time("j/" + name,
                            fs::file_time_type::clock::now() - std::chrono::hours(hours));
    }
    std::vector<nlohmann::json> Merged() const
    {
        std::vector<nlohmann::json> lines;
        for (const std::string& line : LinesOf(scratch.Read("all.jsonl")))
            lines.push_back(nlohmann::json::parse(line));
        return lines;
    }
};

} // namespace

TEST_F(JournalMergeTest, HasALineForEachSceneByPath)
{
    scratch.Write("in/b.qsa", WallScene("gone.tga", 2));
    scratch.Write("in/a/\xFF.qsa", HelperScene("c"));
    scratch.Write("in/a\n.qsa", HelperScene("d"));
    scratch.Write("in/a.qsa", BrokenScene());
    ASSERT_EQ(Plan("3").status, 0);
    RunAll();
    const ProgramRun run = Merge();
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(LinesOf(run.out).size(), 2u);
    EXPECT_THAT(run.out, StartsWith("4 scenes from 3 chunks, 1 failed, 0 attempts did not come to "
                                    "their end\na.qsa: "));
    EXPECT_EQ(run.err, "");
    const auto lines = Merged();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0]["path"], "a\n.qsa"); // bytes 0A, 2E, 2F after the "a"
    EXPECT_EQ(lines[1]["path"], "a.qsa");
    EXPECT_EQ(lines[2]["path_bytes"], "612fff2e717361");
    EXPECT_EQ(lines[3]["path"], "b.qsa");
    EXPECT_EQ(lines[3]["counts"]["meshes"], 1);
    for (const auto& line : lines)
        EXPECT_FALSE(line.contains("record"));
    EXPECT_EQ(
        RunProgramFile("/usr/bin/python3", {SourcePath("tools/validate-journal"), "all.jsonl"}).out,
        "4 lines\n");
}

// Times and seconds aside, it is the journal of one run over all.
TEST_F(JournalMergeTest, LinesAreThoseOfOneRun)
{
    WriteScenes(9);
    scratch.Write("in/w.qsa", WallScene("p.tga", 1));
    scratch.Write("in/p.tga", ColorPicture(3));
    ASSERT_EQ(Plan("4").status, 0);
    RunAll();
    ASSERT_EQ(Merge().status, 0);
    const fs::path before = fs::current_path();
    fs::current_path("in");
    std::string list;
    for (const std::string& name : FilesBelow("."))
        list += name.ends_with(".qsa") ? name + "\n" : "";
    scratch.Write("list", list);
    EXPECT_EQ(
        Batch({"--from-file", "../list", "--force", "-j", "1", "--journal", "../one.jsonl"}).status,
        0);
    fs::current_path(before);
    std::vector<nlohmann::json> one;
    for (const std::string& line : LinesOf(scratch.Read("one.jsonl")))
        one.push_back(nlohmann::json::parse(line));
    std::vector<nlohmann::json> merged = Merged();
    for (auto* const lines : {&one, &merged}) {
        for (auto& line : *lines)
            line["seconds"] = line["peak_kib"] = 0;
    }
    EXPECT_EQ(merged, one);
}

TEST_F(JournalMergeTest, LastResultOfASceneCounts)
{
    scratch.Write("in/a.qsa", BrokenScene());
    ASSERT_EQ(Plan("1").status, 0);
    RunAll();
    const std::string bad = Journals()[0];
    scratch.Write("in/a.qsa", HelperScene("a"));
    RunAll();
    ASSERT_EQ(Journals().size(), 2u);
    const std::string good = Journals()[0] == bad ? Journals()[1] : Journals()[0];
    Age(bad, 2);
    Age(good, 1);
    EXPECT_EQ(Merge().status, 0);
    EXPECT_EQ(Merged().at(0)["status"], "converted");
    Age(good, 3);
    EXPECT_EQ(Merge().status, 1);
    EXPECT_EQ(Merged().size(), 1u);
    EXPECT_EQ(Merged().at(0)["status"], "failed");
    Age(bad, 3);
    fs::last_write_time("j/" + good, fs::last_write_time("j/" + bad)); // then the name decides
    EXPECT_EQ(Merge().status, good > bad ? 0 : 1);
}

TEST_F(JournalMergeTest, ChunksWithoutACompleteJournalAreNamed)
{
    WriteScenes(6);
    ASSERT_EQ(Plan("3").status, 0);
    const std::vector<std::string> chunks = Chunks();
    RunChunk(chunks[0]);
    RunChunk(chunks[2]);
    const std::string partial = chunks[1] + ".host-0123-7.partial";
    scratch.Write("j/" + partial, scratch.Read("j/" + Journals()[0]));
    const ProgramRun run = Merge();
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "4 scenes from 2 chunks, 0 failed, 1 attempts did not come to their end\n");
    EXPECT_EQ(run.err, "qsbatch: " + chunks[1] + " has no complete journal: run it again\n");
    RunChunk(chunks[1]);
    EXPECT_EQ(Merge().status, 0);
    EXPECT_EQ(Merged().size(), 6u);
}

// A chunk with the number of one that is done is another one if its plan is.
TEST_F(JournalMergeTest, JournalsOfOtherPlansAreNotMixedUp)
{
    WriteScenes(2);
    ASSERT_EQ(Plan("2").status, 0);
    RunAll();
    for (const std::string& name : Journals())
        Age(name, 2);
    WriteScenes(4);
    ASSERT_EQ(Plan("2").status, 0);
    const std::vector<std::string> chunks = Chunks();
    RunChunk(chunks[0]);
    const ProgramRun run = Merge();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr(chunks[1] + " has no complete journal"));
    RunChunk(chunks[1]);
    EXPECT_EQ(Merge().status, 0);
    EXPECT_EQ(Merged().size(), 4u);
}

TEST_F(JournalMergeTest, DamagedLinesAreNamedAndTheirChunksMissing)
{
    WriteScenes(3);
    ASSERT_EQ(Plan("1").status, 0);
    RunAll();
    const std::string name = "j/" + Journals()[0];
    const std::string whole = scratch.Read(name);
    const size_t second = whole.find('\n') + 1;
    const size_t third = whole.find('\n', second) + 1;
    const auto changed = [&](size_t at) {
        std::string text = whole;
        text[at] = text[at] == 'A' ? 'B' : 'A';
        return text;
    };
    const struct {
        const char* what;
        std::string text;
        int line;
    } cases[] = {
        {"a byte of the path", changed(second + 10), 2},
        {"the first byte of the record", changed(whole.find("\"record\":\"", second) + 10), 2},
        {"the last byte of the record", changed(third - 4), 2},
        {"half a line at the end", whole.substr(0, third + 20), 3},
        {"no end of the line", whole.substr(0, whole.size() - 1), 3},
        {"a line less", whole.substr(0, third), 2},
        {"a line too much", whole + "{}\n", 4},
        {"nothing", "", 0},
        {"bytes that are no text", std::string(5000, '\0'), 1},
    };
    for (const auto& damage : cases) {
        scratch.Write(name, damage.text);
        const ProgramRun run = Merge();
        EXPECT_EQ(run.status, 1) << damage.what;
        EXPECT_THAT(run.err, HasSubstr(name.substr(2) + ":" + std::to_string(damage.line) + ": "))
            << damage.what;
        EXPECT_THAT(run.err, HasSubstr(Chunks()[0] + " has no complete journal")) << damage.what;
    }
    scratch.Write(name, whole);
    EXPECT_EQ(Merge().status, 0);
    // Another attempt has all scenes; the damage is told all the same.
    scratch.Write(name, changed(second + 10));
    scratch.Write("j/" + Chunks()[0] + ".other-0-1.jsonl", whole);
    const ProgramRun run = Merge();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("3 scenes from 1 chunks, 0 failed"));
    EXPECT_THAT(run.err, HasSubstr(":2: the line is damaged"));
    EXPECT_THAT(run.err, Not(HasSubstr("has no complete journal")));
}

TEST_F(JournalMergeTest, NextPlanWithTheStateHasOnlyWhatIsNew)
{
    WriteScenes(4);
    scratch.Write("in/w/w.qsa", WallScene("../p.tga"));
    scratch.Write("in/p.tga", ColorPicture(3));
    const std::vector<std::string> options = {"--out",        "o",    "--frames", "f",
                                              "--frame-size", "16x16"};
    std::vector<std::string> withState = options;
    withState.insert(withState.end(), {"--state", "s"});
    ASSERT_THAT(Plan("2", withState).out, StartsWith("5 scenes"));
    EXPECT_FALSE(scratch.Has("s")); // a plan makes none
    RunAll(options);
    const ProgramRun merged = Merge({"--state", "s"});
    ASSERT_EQ(merged.status, 0) << merged.err;
    EXPECT_THAT(Plan("2", withState).out, HasSubstr(kNothing));
    EXPECT_THAT(Chunks(), IsEmpty());
    // A run from another directory sees it, too.
    std::vector<std::string> plain = withState;
    plain.insert(plain.begin(), {"in", "-n"});
    EXPECT_EQ(Batch(plain).out, "5 up to date\n");
    scratch.Write("in/p.tga", ColorPicture(4));
    scratch.Write("in/2.qsa", HelperScene("other"));
    EXPECT_EQ(Plan("1", withState).status, 0);
    EXPECT_THAT(PathsOfChunk("plan/" + Chunks()[0] + ".list"), ElementsAre("w/w.qsa", "2.qsa"));
    RunAll(options);
    EXPECT_EQ(Merge({"--state", "s"}).status, 0);
    EXPECT_THAT(Plan("1", withState).out, HasSubstr(kNothing));
    fs::remove("o/3.qsb");
    EXPECT_THAT(Plan("1", withState).out, StartsWith("1 scenes"));
    withState.push_back("--loop"); // which is stored in the target
    EXPECT_THAT(Plan("1", withState).out, StartsWith("5 scenes"));
}

TEST_F(JournalMergeTest, FailedScenesArePlannedAgain)
{
    WriteScenes(2);
    scratch.Write("in/x.qsa", BrokenScene());
    ASSERT_EQ(Plan("1", {"--state", "s"}).status, 0);
    RunAll();
    EXPECT_EQ(Merge({"--state", "s"}).status, 1);
    EXPECT_THAT(Plan("1", {"--state", "s"}).out, StartsWith("1 scenes"));
    EXPECT_THAT(PathsOfChunk("plan/" + Chunks()[0] + ".list"), ElementsAre("x.qsa"));
}

// The machine that merges may have the tree at another place than the one that converted.
TEST_F(JournalMergeTest, RootMayBeElsewhere)
{
    WriteScenes(2);
    scratch.Write("in/w/w.qsa", WallScene("../p.tga"));
    scratch.Write("in/p.tga", ColorPicture(3));
    ASSERT_EQ(Plan("2").status, 0);
    RunAll();
    fs::rename("in", "moved");
    EXPECT_EQ(Batch({"merge", "j", "-o", "all.jsonl", "--root", "moved", "--state", "s"}).status,
              0);
    const auto plan = [] {
        return Batch(
            {"plan", "moved", "--root", "moved", "--chunks", "1", "-o", "plan", "--state", "s"});
    };
    EXPECT_THAT(plan().out, HasSubstr(kNothing));
    scratch.Write("moved/p.tga", ColorPicture(5)); // its path is that of the new place, too
    EXPECT_EQ(plan().status, 0);
    EXPECT_THAT(PathsOfChunk("plan/" + Chunks()[0] + ".list"), ElementsAre("w/w.qsa"));
}

TEST_F(JournalMergeTest, PageHasACardForEachScene)
{
    scratch.Write("in/w.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(3));
    scratch.Write("in/x.qsa", BrokenScene());
    ASSERT_EQ(Plan("2").status, 0);
    RunAll({"--draw"});
    EXPECT_EQ(Merge({"--report", "page.html"}).status, 1);
    const std::string page = scratch.Read("page.html");
    EXPECT_THAT(page, HasSubstr("<h2>w.qsa</h2>"));
    EXPECT_THAT(page, HasSubstr("<h2>x.qsa</h2>"));
    EXPECT_THAT(page, HasSubstr("data:image/jpeg;base64,"));
    EXPECT_THAT(page, HasSubstr("1 converted, 1 failed"));
}

TEST_F(JournalMergeTest, UsageThatIsWrongIsTwoWithACure)
{
    WriteScenes(1);
    ASSERT_EQ(Plan("1").status, 0);
    RunAll();
    scratch.Write("empty/other.jsonl", "{}\n");
    const struct {
        std::vector<std::string> arguments;
        const char* cure;
    } cases[] = {
        {{"merge", "j"}, "option '-o' is needed"},
        {{"merge", "-o", "x"}, "a file or a directory is needed"},
        {{"merge", "j", "empty", "-o", "x"}, "one directory of journals is needed"},
        {{"merge", "gone", "-o", "x"}, "name that of 'qsbatch run --journal-dir'"},
        {{"merge", "empty", "-o", "x"}, "name the directory of 'qsbatch run --journal-dir'"},
        {{"merge", "j", "-o", "gone/x"}, "choose another place with -o"},
        {{"merge", "j", "-o", "x", "--report", "gone/y"}, "choose another place with --report"},
        {{"merge", "j", "-o", "x", "--state", "in/0.qsa/s"}, "choose another place with --state"},
        {{"merge", "j", "-o", "x", "--jobs", "2"}, "unknown option '--jobs'"},
    };
    for (const auto& wrong : cases) {
        const ProgramRun run = Batch(wrong.arguments);
        EXPECT_EQ(run.status, 2) << wrong.cure;
        EXPECT_THAT(run.err, HasSubstr(wrong.cure));
    }
}
