// The small parts of qsbatch by themselves: texts, names, paths, options, lists.

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <string_view>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "batch/BatchArguments.h"
#include "batch/BatchState.h"
#include "batch/BatchText.h"
#include "batch/ChunkName.h"
#include "batch/ChunkRecord.h"
#include "batch/FarmArguments.h"
#include "batch/FrameReader.h"
#include "batch/InputRecorder.h"
#include "batch/JsonLine.h"
#include "batch/MessageCatcher.h"
#include "batch/MessageTable.h"
#include "batch/PeakMemory.h"
#include "batch/ReportPage.h"
#include "batch/RootPath.h"
#include "batch/RunReport.h"
#include "batch/SceneImport.h"
#include "batch/SourceTrees.h"
#include "batch/StateDatabase.h"
#include "batch/StatusLine.h"
#include "batch/TargetLayout.h"
#include "batch/Wire.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/FileLookups.h"
#include "tests/batch/BatchTesting.h"

using namespace batch_testing;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

class BatchPartsTest : public BatchTest {
protected:
    /// A stamp of an input as a worker tells it.
    static SceneInput InputOf(const std::string& path)
    {
        SceneInput input;
        input.path = path;
        input.isThere = StampOfFile(AT_FDCWD, path.c_str(), input.stamp);
        return input;
    }
    static SceneEntry EntryOf(const std::string& path)
    {
        SceneEntry entry;
        struct stat info = {};
        entry.path = path;
        entry.errorNumber = stat(path.c_str(), &info) == 0 ? 0 : ENOENT;
        entry.sizeBytes = StampOf(info).sizeBytes;
        entry.changedNs = StampOf(info).changedNs;
        return entry;
    }
    static std::vector<std::string> PathsOf(const SceneList& list)
    {
        std::vector<std::string> paths;
        for (const SceneEntry& entry : list.Entries())
            paths.push_back(entry.path);
        return paths;
    }
};

} // namespace

TEST(JsonLineTest, BytesThatAreNoUtf8AreReplacedOneByOne)
{
    // Characters of each length at both ends of their ranges; then what the standard forbids.
    const struct {
        const char* what;
        std::string bytes;
        std::string text; ///< empty: the bytes themselves
    } cases[] = {
        {"two bytes, first", "\xC2\x80", ""},
        {"two bytes, last", "\xDF\xBF", ""},
        {"three bytes, first", "\xE0\xA0\x80", ""},
        {"three bytes before the surrogates", "\xED\x9F\xBF", ""},
        {"three bytes", "\xE2\x82\xAC", ""},
        {"four bytes, first", "\xF0\x90\x80\x80", ""},
        {"four bytes", "\xF1\x80\x80\x80", ""},
        {"four bytes, last", "\xF4\x8F\xBF\xBF", ""},
        {"too long for two", "\xC1\xBF", "\\ufffd\\ufffd"},
        {"two, cut", "\xC3", "\\ufffd"},
        {"two, broken", "\xC3z", "\\ufffdz"},
        {"too long for three", "\xE0\x9F\xBF", "\\ufffd\\ufffd\\ufffd"},
        {"surrogate", "\xED\xA0\x80", "\\ufffd\\ufffd\\ufffd"},
        {"three, cut", "\xE2\x82", "\\ufffd\\ufffd"},
        {"three, broken", "\xE2zz", "\\ufffdzz"},
        {"too long for four", "\xF0\x8F\xBF\xBF", "\\ufffd\\ufffd\\ufffd\\ufffd"},
        {"beyond the last", "\xF4\x90\x80\x80", "\\ufffd\\ufffd\\ufffd\\ufffd"},
        {"four, cut", "\xF1\x80\x80", "\\ufffd\\ufffd\\ufffd"},
        {"four, broken in the third", "\xF1\x80zz", "\\ufffd\\ufffdzz"},
        {"four, broken in the second", "\xF1zzz", "\\ufffdzzz"},
        {"no first byte", "\xF5\x80", "\\ufffd\\ufffd"},
        {"no byte at all", "\xFF", "\\ufffd"},
        {"control bytes", "\x01\x7F\t\n", "\\u0001\\u007f\\u0009\\n"},
        {"marks of the format", "a\"b\\c", "a\\\"b\\\\c"},
    };
    for (const auto& c : cases) {
        const bool isPlain = c.text.empty();
        EXPECT_EQ(JsonString(c.bytes), '"' + (isPlain ? c.bytes : c.text) + '"') << c.what;
        const bool isText = c.text.find("\\ufffd") == std::string::npos;
        EXPECT_EQ(IsUtf8(c.bytes), isText) << c.what;
    }
    EXPECT_EQ(JsonString(""), "\"\"");
    EXPECT_EQ(OneLine("a\x7F\x1F~"), "a\\x7F\\x1F~");
}

TEST(BatchArgumentsTest, NumbersThatAreNoneAreTold)
{
    const std::string size =
        "option '--frame-size' needs two numbers from 1 to 16384, as in 320x240";
    const std::string camera = "option '--camera' needs a whole number from 0 on";
    const std::string jobs = "option '-j' needs a whole number from 1 to 1024";
    const std::string timeout = "option '--timeout' needs a number of seconds, 0 for none";
    const std::string memory = "option '--memory' needs a size, as in 500M or 4G, 0 for no limit";
    const struct {
        const char* option;
        const char* value;
        std::string error;
    } cases[] = {
        {"--frame-size", "320", size},
        {"--frame-size", "ax2", size},
        {"--frame-size", "2xa", size},
        {"--frame-size", "2x2a", size},
        {"--frame-size", "2x", size},
        {"--frame-size", "0x2", size},
        {"--frame-size", "2x16385", size},
        {"--frame-size", "99999999999x2", size},
        {"--frame-size", "16384x1", ""},
        {"--camera", "a", camera},
        {"--camera", "1.5", camera},
        {"--camera", "-1", camera},
        {"--camera", "0", ""},
        {"--time", "a", "option '--time' needs a number of seconds"},
        {"--time", "1e999", "option '--time' needs a number of seconds"},
        {"--time", "inf", "option '--time' needs a number of seconds"},
        {"--time", "1.5s", "option '--time' needs a number of seconds"},
        {"--time", "-1.5", ""},
        {"-j", "a", jobs},
        {"-j", "0", jobs},
        {"-j", "1025", jobs},
        {"-j", "1024", ""},
        {"--timeout", "a", timeout},
        {"--timeout", "-1", timeout},
        {"--timeout", "0", ""},
        {"--memory", "G", memory},
        {"--memory", "-1", memory},
        {"--memory", "1Q", memory},
        {"--memory", "1e19", memory},
        {"--memory", "1000000T", memory},
        {"--memory", "0", ""},
    };
    for (const auto& c : cases) {
        const std::string word = c.option;
        const std::string joined = word + (word.starts_with("--") ? "=" : "") + c.value;
        EXPECT_EQ(BatchArguments().Read({"a", joined}).error, c.error) << joined;
    }
    EXPECT_EQ(BatchArguments().Read({"a", "--memory", "2K"}).memoryBytes, 2048u);
    EXPECT_EQ(BatchArguments().Read({"a", "--memory", "1.5T"}).memoryBytes, 1649267441664u);
}

TEST(BatchArgumentsTest, WordsThatBeginLikeOptionsMayBePaths)
{
    EXPECT_THAT(BatchArguments().Read({"--", "-q", "--"}).paths, ElementsAre("-q", "--"));
    EXPECT_THAT(BatchArguments().Read({"-", "-q"}).paths, ElementsAre("-"));
    EXPECT_EQ(BatchArguments().Read({"a", "--odd"}).error, "unknown option '--odd'");
    EXPECT_EQ(BatchArguments().Read({"a", ""}).error, "an empty path is given");
    for (const char* const words : {"--help", "--version", "other.glb", "-o o"})
        EXPECT_EQ(BatchArguments().Read({"a", "--import", "--import-options", words}).error,
                  "option '--import-options': only options that change the scene are taken")
            << words;
    EXPECT_TRUE(IsSceneFile("a.QSB"));
    EXPECT_FALSE(IsSceneFile("a.glb"));
}

TEST(BatchArgumentsTest, ChunksHaveANumberOrASize)
{
    const std::string count = "option '--chunks' needs a whole number from 1 to 10000000";
    const std::string size = "option '--chunk-mb' needs a number of MiB above 0";
    const struct {
        const char* option;
        const char* value;
        std::string error;
    } cases[] = {
        {"--chunks", "0", count},     {"--chunks", "1a", count},    {"--chunks", "10000001", count},
        {"--chunks", "a", count},     {"--chunks", "10000000", ""}, {"--chunk-mb", "a", size},
        {"--chunk-mb", "1a", size},   {"--chunk-mb", "inf", size},  {"--chunk-mb", "0", size},
        {"--chunk-mb", "1e13", size}, {"--chunk-mb", "1e12", ""},   {"--chunk-mb", "1e-9", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ReadFarmArguments({"plan", "a", "-o", "o", c.option, c.value}).batch.error,
                  c.error)
            << c.option << ' ' << c.value;
    EXPECT_EQ(ReadFarmArguments({"plan", "a", "-o", "o", "--chunk-mb", "1e-9"}).chunkBytes, 1u);
    EXPECT_FALSE(IsFarmCommand({}));
}

TEST(ChunkNameTest, EachPartOfANameIsNeeded)
{
    ChunkName name;
    std::string_view rest;
    for (const char* const text :
         {"chunk-", "chunk-001", "chunk-001-of", "chunk-001-of-", "chunk-001-of-x.12345678",
          "chunk-001-of-002", "chunk-001-of-002-12345678", "chunk-001-of-002.1234567",
          "chunk-99999999999-of-002.12345678"})
        EXPECT_FALSE(name.Read(text, rest)) << text;
    ASSERT_TRUE(name.Read("chunk-001-of-002.12345678rest", rest));
    EXPECT_EQ(rest, "rest");
}

TEST(ChunkRecordTest, RecordsWithTheirHashAreStillChecked)
{
    ChunkRecord record;
    std::string plain;
    ChunkRecord read;
    EXPECT_FALSE(TakeRecord(LineWithRecord("{}", record), plain, read)) << "no path";
    record.job.path = "a";
    const std::string whole = LineWithRecord("{}", record);
    ASSERT_TRUE(TakeRecord(whole, plain, read));
    EXPECT_EQ(plain, "{}");
    EXPECT_FALSE(TakeRecord("{,\"record\":\"AAAA\"}", plain, read)) << "shorter than a hash";
    EXPECT_FALSE(TakeRecord("{,\"record\":\"****\"}", plain, read)) << "no digits";
    EXPECT_FALSE(TakeRecord(whole + " ", plain, read));
    EXPECT_EQ(InputBelow("/r", "a"), "/r/a");
    EXPECT_EQ(InputBelow("/r", "/a"), "/a");
    EXPECT_EQ(InputBelow("/r", "\\a"), "\\a");
}

TEST(MessageTableTest, CodesWithoutARowAreTheUnknownOne)
{
    EXPECT_EQ(RowOf(0).code, kCodeUnknown);
    EXPECT_EQ(RowOf(899).code, kCodeUnknown) << "between two";
    EXPECT_EQ(RowOf(65535).code, kCodeUnknown) << "behind the last";
    EXPECT_EQ(RowOfText("").code, kCodeUnknown);
    EXPECT_EQ(RowOfText(" \n").code, kCodeUnknown);
    EXPECT_EQ(RowOfText(std::string(kMessageRows[0].format) + " \n").code,
              RowOfText(kMessageRows[0].format).code);
    EXPECT_EQ(CodeText(7), "Q007");
    EXPECT_EQ(CodeText(999), "Q999");
    EXPECT_EQ(CodeText(1000), "Q1000");
}

TEST(MessageCatcherTest, RepeatsAreCountedAndErrorsAlwaysKept)
{
    SceneResult result;
    MessageCatcher catcher(result);
    const auto add = [&](const char* text, const char* source, MessageLevel level) {
        SceneMessage message;
        message.text = text;
        message.source = source;
        message.level = level;
        catcher.Add(message);
    };
    add("a", "x", MessageLevel::kNote);
    add("a", "x", MessageLevel::kNote);
    add("a", "y", MessageLevel::kNote);
    add("a", "y", MessageLevel::kWarning);
    add("b", "y", MessageLevel::kWarning);
    ASSERT_EQ(result.messages.size(), 4u);
    EXPECT_EQ(result.messages[0].count, 2u);
    EXPECT_EQ(result.messages[3].count, 1u);
    EXPECT_EQ(result.FirstReason(), &result.messages[2]) << "the first warning";
    for (size_t i = 4; i < MessageCatcher::kMostKept + 3; ++i)
        add(std::to_string(i).c_str(), "y", MessageLevel::kWarning);
    EXPECT_EQ(result.messages.size(), MessageCatcher::kMostKept);
    EXPECT_EQ(result.messagesLeftOut, 3u);
    add("the reason", "y", MessageLevel::kError);
    EXPECT_EQ(result.messages.back().text, "the reason");
    EXPECT_EQ(result.FirstReason(), &result.messages.back());
    EXPECT_EQ(SceneResult().FirstReason(), nullptr);
}

TEST(WireTest, MessagesBeyondTheLimitAreNotSent)
{
    const char byte = 0;
    EXPECT_FALSE(SendWire(-1, std::string_view(&byte, size_t{kMostWireBytes} + 1)));
    EXPECT_FALSE(SendWire(-1, "a")) << "no socket";
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    ASSERT_EQ(write(ends[0], "\xFF\xFF\xFF\xFF", 4), 4);
    WireAssembler assembler;
    std::string message;
    assembler.ReadFrom(ends[1]);
    EXPECT_FALSE(assembler.Next(message));
    EXPECT_FALSE(assembler.Next(message)) << "nor from then on";
    EXPECT_TRUE(assembler.IsBroken());
    EXPECT_FALSE(assembler.Await(ends[1], message));
    close(ends[0]);
    close(ends[1]);
}

TEST(FrameReaderTest, ThereIsNoPictureOfNothing)
{
    const ScratchDirectory scratch;
    std::string reason;
    EXPECT_FALSE(KeepFrame({}, "a.png", reason));
    EXPECT_EQ(reason, "the device does not give it");
    EXPECT_FALSE(scratch.Has("a.png"));
    EXPECT_EQ(ThumbOf({}), "");
    DrawnFrame dot{1, 1, {0xFF102030}};
    reason.clear();
    EXPECT_FALSE(KeepFrame(dot, "gone/a.png", reason));
    EXPECT_EQ(reason, "No such file or directory");
    EXPECT_NE(ThumbOf(dot), "");
}

TEST(FrameReaderTest, SmallPicturesOfNoiseStaySmall)
{
    DrawnFrame noise{160, 120, {}};
    std::mt19937 random(1);
    for (int i = 0; i < 160 * 120; ++i)
        noise.argb.push_back(0xFF000000 | static_cast<uint32_t>(random()));
    DrawnFrame plain{160, 120, std::vector<uint32_t>(160 * 120, 0xFF808080)};
    EXPECT_LT(ThumbOf(plain).size(), 2000u);
    EXPECT_GT(ThumbOf(noise).size(), ThumbOf(plain).size());
    EXPECT_LT(ThumbOf(noise).size(), 16000u) << "of less quality than others";
}

TEST(StatusLineTest, TimesAreInTheirUnits)
{
    RunProgress progress;
    progress.total = 1000;
    EXPECT_EQ(ProgressText(progress), "0 of 1,000, 0 failed") << "no time has passed";
    progress.seconds = 2;
    EXPECT_EQ(ProgressText(progress), "0 of 1,000, 0 failed") << "nothing is done";
    progress.done = 500;
    EXPECT_THAT(ProgressText(progress), HasSubstr(", 2 s left"));
    progress.seconds = 150;
    EXPECT_THAT(ProgressText(progress), HasSubstr(", 2 min left"));
    progress.seconds = 3600 + 2 * 60;
    EXPECT_THAT(ProgressText(progress), HasSubstr(", 1 h 2 min left"));
}

TEST(TargetLayoutTest, DirectoriesMayEndInASlash)
{
    BatchOptions options;
    options.outDirectory = "o/";
    options.framesDirectory = "f/";
    SceneEntry entry;
    entry.path = "in/a.qsa";
    TargetLayout layout(options);
    EXPECT_EQ(layout.TargetOf(entry), "o/in/a.qsb");
    EXPECT_EQ(layout.FrameOf(entry), "f/in/a.qsa.png");
}

TEST(TargetLayoutTest, FramesMayBeInEachOthersWayToo)
{
    BatchOptions options;
    options.framesDirectory = "f";
    std::vector<SceneEntry> entries(3);
    entries[0].path = "a/x.qsa"; // kept below the directory from the name on
    entries[1].path = "b/x.qsa";
    entries[2].path = "b/y.qsa";
    for (SceneEntry& entry : entries)
        entry.mirrorFrom = 2;
    TargetLayout layout(options);
    layout.FindConflicts(entries);
    EXPECT_EQ(layout.OtherOf(0), 1);
    EXPECT_EQ(layout.OtherOf(1), 0);
    EXPECT_EQ(layout.OtherOf(2), -1);
}

TEST(SourceTreesTest, PlacesAreComparedByWholeNames)
{
    EXPECT_TRUE(IsInDirectory("/a/b", "/a"));
    EXPECT_TRUE(IsInDirectory("/a", "/a"));
    EXPECT_TRUE(IsInDirectory("/a", "/"));
    EXPECT_FALSE(IsInDirectory("/ab", "/a"));
    EXPECT_EQ(RealPathOf("/"), "/");
    const ScratchDirectory scratch;
    fs::create_directory("d");
    EXPECT_EQ(RealPathOf("d/"), RealPathOf("d"));
    EXPECT_EQ(RealPathOf("gone/"), RealPathOf("gone"));
}

TEST_F(BatchPartsTest, TreesHaveFilesOnly)
{
    scratch.Write("in/below/a.qsa", "x");
    scratch.Write("other", "x");
    BatchOptions options;
    options.paths = {"in", "in/below", "in/below/a.qsa"};
    options.includes = {"*.qsa"};
    SceneList list;
    ASSERT_TRUE(list.Collect(options));
    const SourceTrees trees(list);
    EXPECT_THAT(trees.Paths(), testing::Contains(fs::canonical("in").string()));
    EXPECT_THAT(trees.Paths(), testing::Not(testing::Contains(fs::canonical("in/below").string())));
    EXPECT_TRUE(trees.HaveFile("in/below/a.qsa"));
    EXPECT_FALSE(trees.HaveFile("in/below"));
    EXPECT_FALSE(trees.HaveFile("in/gone"));
    EXPECT_FALSE(trees.HaveFile("other"));
}

TEST_F(BatchPartsTest, PathsBelowTheRootKeepWhatIsBelowIt)
{
    fs::create_directories("r/d");
    scratch.Write("file", "");
    RootPath root;
    EXPECT_FALSE(root.Open("file"));
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_FALSE(root.Open("gone"));
    EXPECT_EQ(errno, ENOENT);
    ASSERT_TRUE(root.Open("r"));
    EXPECT_EQ(root.Below("r/./d//x.qsa"), "d/x.qsa");
    EXPECT_EQ(root.Below("r"), ".");
    EXPECT_EQ(root.Below("r/d/../x.qsa"), "x.qsa");
    EXPECT_EQ(root.Below("r/d/.."), ".");
    EXPECT_EQ(root.Below("other/x.qsa"), std::nullopt);
    EXPECT_EQ(root.FromRoot(""), "");
    EXPECT_EQ(root.FromRoot("/elsewhere//x"), "/elsewhere/x");
    EXPECT_EQ(root.FromRoot("/elsewhere/../x"), "/x");
    ASSERT_TRUE(root.Open(""));
    EXPECT_EQ(root.Below("r/x"), "r/x");
    ASSERT_TRUE(root.Open("/"));
    EXPECT_EQ(root.Place(), "");
    EXPECT_EQ(root.Below("/x"), "x");
    const fs::path before = fs::current_path();
    EXPECT_TRUE(root.Enter());
    EXPECT_EQ(fs::current_path(), "/");
    fs::current_path(before);
}

TEST_F(BatchPartsTest, RootIsFoundFromADirectoryThatIsGone)
{
    fs::create_directories("gone");
    fs::create_directories("r");
    const std::string absolute = fs::canonical("r");
    const fs::path before = fs::current_path();
    fs::current_path("gone");
    fs::remove(before / "gone");
    RootPath root;
    EXPECT_TRUE(root.Open(absolute));
    EXPECT_EQ(root.Below(absolute + "/x"), "x");
    fs::current_path(before);
}

TEST_F(BatchPartsTest, DirectoriesAreMadeWithThoseAboveThem)
{
    EXPECT_TRUE(OpenDirectory(AT_FDCWD, "").IsOpen());
    EXPECT_TRUE(MakeDirectory(AT_FDCWD, "a/b/c").IsOpen());
    EXPECT_TRUE(MakeDirectory(AT_FDCWD, "a/b/d").IsOpen());
    scratch.Write("file", "");
    EXPECT_FALSE(MakeDirectory(AT_FDCWD, "file/b").IsOpen());
    EXPECT_FALSE(MakeDirectory(AT_FDCWD, "gone/../file/b").IsOpen());
    fs::create_symlink("nowhere", "link");
    EXPECT_FALSE(MakeDirectory(AT_FDCWD, "link/b").IsOpen());
    EXPECT_EQ(PathOfDirectory(Descriptor()), "");
    EXPECT_EQ(SplitPath("/a").directory, "/");
    const Descriptor here = OpenDirectory(AT_FDCWD, ".");
    const Descriptor none;
    {
        const WorkingDirectory unchanged(none, here);
        EXPECT_TRUE(fs::exists("a"));
    }
    const Descriptor below = OpenDirectory(AT_FDCWD, "a");
    {
        const WorkingDirectory changed(below, none);
        EXPECT_TRUE(fs::exists("b"));
    }
    EXPECT_TRUE(fs::exists("b")) << "there is no way back";
    fs::current_path(scratch.Path());
}

TEST_F(BatchPartsTest, StatesLieWhereTheSystemKeepsThem)
{
    BatchOptions options;
    options.outDirectory = "o";
    EXPECT_EQ(BatchState::DefaultPath(options), "o/.qsbatch-state");
    options.outDirectory.clear();
    setenv("XDG_STATE_HOME", "not/absolute", 1);
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    setenv("HOME", "/h", 1);
    options.paths = {"/"};
    const std::string ofSystem = BatchState::DefaultPath(options);
    EXPECT_THAT(ofSystem, testing::StartsWith("/h/.local/state/qsbatch/"));
    unsetenv("XDG_STATE_HOME");
    options.paths = {"/usr", "/etc/passwd"};
    EXPECT_EQ(BatchState::DefaultPath(options), ofSystem) << "only the root is above both";
    unsetenv("HOME");
    EXPECT_THAT(BatchState::DefaultPath(options), testing::StartsWith("/.local/state/qsbatch/"));
    setenv("HOME", home.c_str(), 1);
    const auto isSame = [&](const std::vector<std::string>& a, const std::vector<std::string>& b) {
        options.paths = a;
        const std::string first = BatchState::DefaultPath(options);
        options.paths = b;
        return first == BatchState::DefaultPath(options);
    };
    fs::create_directories("ab/x");
    fs::create_directories("ac/x");
    fs::create_directories("a");
    EXPECT_TRUE(isSame({"ab", "ac"}, {"."})) << "above both";
    EXPECT_TRUE(isSame({"a", "ab"}, {"."})) << "a name may begin with another one";
    EXPECT_TRUE(isSame({"ab", "ab/x"}, {"ab"}));
    EXPECT_TRUE(isSame({"ab/x", "ab"}, {"ab"}));
    EXPECT_TRUE(isSame({"gone/a.qsa"}, {"gone/b.qsa"}));
    EXPECT_TRUE(isSame({"gone/a.qsa", "lost/b.qsa"}, {"/"})) << "nothing is known to be above";
    EXPECT_FALSE(isSame({"ab"}, {"ac"}));
}

TEST_F(BatchPartsTest, ListsKeepWhatIsBelowADirectory)
{
    scratch.Write("in/a.qsa", "a");
    scratch.Write("in/below/b.qsa", "b");
    scratch.Write("in/below/c.qsa", "c");
    fs::create_symlink("nowhere.qsa", "in/dangling.qsa");
    BatchOptions options;
    options.paths = {"in"};
    options.includes = {"a.qsa", "below/*.qsa"};
    options.excludes = {"below/c.*"};
    SceneList list;
    ASSERT_TRUE(list.Collect(options));
    EXPECT_THAT(PathsOf(list), ElementsAre("in/a.qsa", "in/below/b.qsa"));

    fs::create_directory("d");
    scratch.Write("x.qsa", "x");
    fs::current_path("d");
    scratch.Write("list", std::string("../x.qsa\n\n../in/a.qsa\0z\n./d/../x.qsa", 36));
    options = {};
    options.outDirectory = "o";
    options.listFile = scratch.Path() / "list";
    SceneList named;
    ASSERT_TRUE(named.Collect(options));
    EXPECT_THAT(PathsOf(named), ElementsAre("../x.qsa", "./d/../x.qsa"));
    const TargetLayout layout(options);
    EXPECT_EQ(layout.TargetOf(named.Entries()[0]), "o/x.qsb") << "it would lead out";
    EXPECT_EQ(layout.TargetOf(named.Entries()[1]), "o/./d/../x.qsb");
    fs::current_path(scratch.Path());

    options.listFile = "gone";
    SceneList gone;
    EXPECT_FALSE(gone.Collect(options));
    EXPECT_EQ(gone.error, "the list 'gone' cannot be read: No such file or directory; name "
                          "another one with --from-file");
}

TEST_F(BatchPartsTest, MessagesOfOneKindAreOneLine)
{
    scratch.Write("a.qsa", "a");
    scratch.Write("b.qsa", "b");
    BatchOptions options;
    options.paths = {"a.qsa", "b.qsa"};
    options.reportFile = "page/p.html";
    SceneList list;
    ASSERT_TRUE(list.Collect(options));
    ReportPage page(options.reportFile, 2);
    RunReport report(options, list, nullptr, &page);
    SceneResult result;
    const auto add = [&](uint16_t code, MessageLevel level, const char* text) {
        result.messages.push_back({code, level, "source", text, 1});
    };
    add(kCodeUnknown, MessageLevel::kWarning, "odd");
    add(kCodeUnknown, MessageLevel::kWarning, "odd");
    add(kCodeUnknown, MessageLevel::kWarning, "other");
    add(104, MessageLevel::kWarning, "one");
    add(104, MessageLevel::kWarning, "two");
    add(104, MessageLevel::kError, "three");
    for (int i = 0; i < 1000; ++i)
        add(104, MessageLevel::kNote, "note");
    testing::internal::CaptureStderr();
    report.Done(0, {}, result);
    SceneResult done;
    done.status = SceneStatus::kUpToDate;
    report.Done(1, {}, done);
    done.status = SceneStatus::kTimedOut;
    report.Done(1, {}, done);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a.qsa: warning Q915: odd and 1 more\n"
                                                      "a.qsa: warning Q915: other\n"
                                                      "a.qsa: warning Q104: one and 1 more\n"
                                                      "a.qsa: error Q104: three\n");
    testing::internal::CaptureStdout();
    report.Finish(1);
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                HasSubstr("1 up to date, 2 failed, 0 with warnings in "));
    EXPECT_THAT(report.Trouble(), testing::StartsWith("the page 'page/p.html' cannot be written: "
                                                      "No such file or directory"));
    fs::create_directory("page");
    ASSERT_TRUE(page.Write());
    const std::string html = scratch.Read("page/p.html");
    EXPECT_THAT(html, HasSubstr("no frames were asked for"));
    EXPECT_THAT(html, testing::ContainsRegex("<li>and 9[0-9][0-9] more</li>"));
    page.Add("c.qsa", result, true);
    page.Add("d.qsa", done, true);
    done.status = SceneStatus::kConverted;
    page.Add("e.qsa", done, true);
    ASSERT_TRUE(page.Write());
    EXPECT_THAT(scratch.Read("page/p.html"), HasSubstr("the scene failed"));
    EXPECT_THAT(scratch.Read("page/p.html"), HasSubstr("the frame was not drawn"));
    EXPECT_FALSE(IsTargetKnown(SceneResult()));
}

TEST_F(BatchPartsTest, StatusLineFitsItsTerminal)
{
    const Descriptor terminal(posix_openpt(O_RDWR | O_NOCTTY));
    ASSERT_TRUE(terminal.IsOpen());
    ASSERT_EQ(grantpt(terminal.Get()) | unlockpt(terminal.Get()), 0);
    const Descriptor line(open(ptsname(terminal.Get()), O_RDWR | O_NOCTTY));
    const Descriptor before(dup(STDERR_FILENO));
    const auto shown = [&](unsigned short columns) {
        winsize size = {};
        size.ws_col = columns;
        ioctl(terminal.Get(), TIOCSWINSZ, &size);
        dup2(line.Get(), STDERR_FILENO);
        {
            StatusLine status(true);
            RunProgress progress;
            progress.total = progress.done = 1000000;
            progress.failed = 123456;
            progress.seconds = 1;
            status.Show(progress);
            progress.failed = 0;
            progress.seconds = 1.05;
            status.Show(progress); // too soon
            progress.seconds = 2;
            status.Show(progress);
        }
        dup2(before.Get(), STDERR_FILENO);
        std::string text;
        char part[1000];
        while (!text.ends_with("\r\x1b[K")) { // its last word
            const ssize_t got = read(terminal.Get(), part, sizeof part);
            if (got <= 0)
                break;
            text.append(part, static_cast<size_t>(got));
        }
        return text;
    };
    const std::string first =
        "\r1,000,000 of 1,000,000, 123,456 failed, 1000000.0 files/s, 0.0 MB/s"
        ", 0 s left";
    const std::string second = "\r1,000,000 of 1,000,000, 0 failed, 500000.0 files/s, 0.0 MB/s, "
                               "0 s left";
    const std::string end = "\x1b[K";
    const std::string cleared = "\r\x1b[K";
    EXPECT_EQ(shown(21), first.substr(0, 21) + end + second.substr(0, 21) + end + cleared);
    const std::string whole = first.substr(0, 80) + end + second.substr(0, 80) + end + cleared;
    EXPECT_EQ(shown(0), whole) << "80 columns are usual";
    EXPECT_EQ(shown(1), whole);
}

TEST_F(BatchPartsTest, StampsAreOfFilesOnly)
{
    FileStamp stamp;
    scratch.Write("a", "abc");
    ASSERT_TRUE(StampOfFile(AT_FDCWD, "a", stamp));
    EXPECT_EQ(stamp.sizeBytes, 3u);
    EXPECT_FALSE(StampOfFile(AT_FDCWD, ".", stamp));
    EXPECT_EQ(errno, EISDIR);
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    EXPECT_FALSE(StampOfFile(AT_FDCWD, "pipe", stamp));
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(MemoryOfProcess(-1), 0u);
    EXPECT_GT(MemoryOfProcess(getpid()), 0u);
}

// Between the look of the engine and the end of the scene files may change in each way there is.
TEST_F(BatchPartsTest, ChangesOfInputsAreFound)
{
    const auto isSameAfter = [&](const char* path, const std::function<void()>& change) {
        scratch.Write("input", "abc");
        fs::remove_all("new");
        fs::create_directory("folder");
        const Descriptor here = OpenDirectory(AT_FDCWD, ".");
        InputRecorder recorder(here, "scene.qsa");
        struct stat info = {};
        const bool isThere = stat(path, &info) == 0;
        headless::gLookupSink(path, isThere ? &info : nullptr);
        headless::gLookupSink("scene.qsa", &info); // the scene itself is none of its inputs
        headless::gLookupSink("", nullptr);
        headless::gLookupSink(nullptr, nullptr);
        change();
        std::vector<SceneInput> inputs;
        const bool areSame = recorder.Finish(inputs);
        EXPECT_EQ(inputs.size(), 1u) << path;
        EXPECT_EQ(inputs.at(0).isThere, isThere) << path;
        return areSame;
    };
    const auto nothing = [] {};
    EXPECT_TRUE(isSameAfter("input", nothing));
    EXPECT_TRUE(isSameAfter("input", nothing)) << "known by now";
    EXPECT_TRUE(isSameAfter("new", nothing));
    EXPECT_TRUE(isSameAfter("\\new", nothing));
    EXPECT_TRUE(isSameAfter("/dev/null", nothing)) << "it has no content";
    EXPECT_FALSE(isSameAfter("input", [] { fs::remove("input"); }));
    EXPECT_FALSE(isSameAfter("input", [&] { scratch.Write("input", "longer"); }));
    EXPECT_FALSE(isSameAfter("input", [&] {
        scratch.Write("other", "abc");
        fs::last_write_time("other", fs::last_write_time("input"));
        fs::rename("other", "input");
    })) << "another file in its place";
    const auto setTime = [](time_t seconds, long nanoseconds) {
        struct stat info = {};
        stat("input", &info);
        const timespec times[] = {
            {}, {info.st_mtim.tv_sec + seconds, (info.st_mtim.tv_nsec + nanoseconds) % 1000000000}};
        utimensat(AT_FDCWD, "input", times, 0);
    };
    EXPECT_FALSE(isSameAfter("input", [&] { setTime(-5, 0); }));
    EXPECT_FALSE(isSameAfter("input", [&] { setTime(0, 1); }));
    EXPECT_FALSE(isSameAfter("new", [&] { scratch.Write("new", ""); }));
    EXPECT_TRUE(isSameAfter("new", [&] { fs::create_directory("new"); }));
    EXPECT_FALSE(isSameAfter("input", [&] {
        fs::remove("input");
        fs::create_directory("input");
    }));
    fs::remove_all("input");
    scratch.Write("held", "");
    EXPECT_TRUE(isSameAfter("input", nothing)) << "another file of the name that is known";
    {
        const Descriptor none;
        InputRecorder lost(none, "scene.qsa");
        headless::gLookupSink("new", nullptr);
        struct stat info = {};
        stat("input", &info);
        headless::gLookupSink("input", &info);
        headless::gLookupSink("held", &info);
        std::vector<SceneInput> inputs;
        EXPECT_FALSE(lost.Finish(inputs));
        ASSERT_EQ(inputs.size(), 3u);
        EXPECT_EQ(inputs[0].path, "/new") << "the directory has no path";
    }

    const Descriptor here = OpenDirectory(AT_FDCWD, ".");
    InputRecorder recorder(here, "scene.qsa");
    recorder.NoteFile("input");
    recorder.NoteFile("input");
    recorder.NoteFile("folder");
    std::vector<SceneInput> inputs;
    EXPECT_TRUE(recorder.Finish(inputs));
    ASSERT_EQ(inputs.size(), 2u);
    EXPECT_TRUE(inputs[0].isThere);
    EXPECT_FALSE(inputs[1].isThere) << "a folder is no file";
    EXPECT_EQ(inputs[0].path, (scratch.Path() / "input").string());
}

// The state by itself: what is stored is up to date until one of the things that count changes.
TEST_F(BatchPartsTest, StateTellsWhyASceneIsNotUpToDate)
{
    scratch.Write("a.qsa", "scene");
    scratch.Write("a.qsb", "target");
    scratch.Write("a.png", "frame");
    scratch.Write("p.tga", "picture");
    const auto age = [](const char* path) {
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    };
    for (const char* const path : {"a.qsa", "a.qsb", "a.png", "p.tga"})
        age(path);
    BatchOptions options;
    SceneJob job;
    job.path = "a.qsa";
    job.target = "a.qsb";
    job.frame = "a.png";
    job.draws = true;
    SceneResult result;
    result.status = SceneStatus::kConverted;
    result.source = InputOf("a.qsa").stamp;
    result.target = InputOf("a.qsb").stamp;
    result.frame = InputOf("a.png").stamp;
    result.inputs = {InputOf((scratch.Path() / "p.tga").string()),
                     InputOf((scratch.Path() / "gone.tga").string())};
    const auto store = [&] {
        BatchState state("s", options);
        state.Store(EntryOf("a.qsa"), job, result);
        state.Store(EntryOf("a.qsa"), job, result); // its inputs are known
    };
    const auto why = [&](SceneJob asked, const BatchOptions& with) {
        BatchState state("s", with);
        std::string text;
        return state.Examine(EntryOf("a.qsa"), asked, text) ? "" : text;
    };
    EXPECT_EQ(why(job, options), "it is new");
    store();
    EXPECT_EQ(why(job, options), "");
    SceneJob changed = job;
    changed.target = "b.qsb";
    EXPECT_EQ(why(changed, options), "the target goes to another place");
    changed = job;
    changed.frame = "b.png";
    EXPECT_EQ(why(changed, options), "the frame is new");
    changed = job;
    changed.frame.clear();
    EXPECT_EQ(why(changed, options), "") << "it need not be kept";
    changed.wantsThumb = true;
    EXPECT_EQ(why(changed, options), "the frame is new") << "there is no small picture";
    BatchOptions other = options;
    other.force = true;
    EXPECT_EQ(why(job, other), "--force is given");
    other = options;
    other.rehash = true;
    EXPECT_EQ(why(job, other), "");
    scratch.Write("a.qsb", "tARGET");
    age("a.qsb");
    EXPECT_EQ(why(job, options), "the target is gone or was changed") << "of the same size";
    fs::remove("a.qsb");
    fs::create_directory("a.qsb");
    EXPECT_EQ(why(job, options), "the target is gone or was changed");
    fs::remove("a.qsb");
    EXPECT_EQ(why(job, options), "the target is gone or was changed");
    scratch.Write("a.qsb", "target");
    EXPECT_EQ(why(job, options), "") << "the same content at another time";
    fs::remove("a.png");
    EXPECT_EQ(why(job, options), "the frame is gone or was changed");
    scratch.Write("a.png", "frame");
    const std::string input =
        "a file that it uses has changed, come or gone: " + (scratch.Path() / "p.tga").string();
    scratch.Write("p.tga", "pictUre");
    EXPECT_EQ(why(job, options), input) << "of the same size";
    scratch.Write("p.tga", "picture");
    EXPECT_EQ(why(job, options), "") << "the same content at another time";
    scratch.Write("p.tga", "longer picture");
    EXPECT_EQ(why(job, options), input);
    fs::remove("p.tga");
    fs::create_directory("p.tga");
    EXPECT_EQ(why(job, options), input) << "a folder is no file";
    scratch.Write("a.qsa", "sCene");
    EXPECT_EQ(why(job, options), "the scene has changed") << "of the same size";
    scratch.Write("a.qsa", "longer scene");
    EXPECT_EQ(why(job, options), "the scene has changed");
}

TEST_F(BatchPartsTest, StateAsksForAnInputOnceInARun)
{
    scratch.Write("a.qsa", "scene");
    scratch.Write("a.qsb", "target");
    scratch.Write("p.tga", "picture");
    fs::last_write_time("p.tga", fs::file_time_type::clock::now() - std::chrono::hours(1));
    BatchOptions options;
    SceneResult result;
    result.status = SceneStatus::kConverted;
    result.source = InputOf("a.qsa").stamp;
    result.target = InputOf("a.qsb").stamp;
    result.inputs = {InputOf((scratch.Path() / "p.tga").string())};
    SceneJob job;
    job.path = "a.qsa";
    job.target = "a.qsb";
    {
        BatchState state("s", options);
        state.Store(EntryOf("a.qsa"), job, result);
        SceneResult again = result;
        again.inputs[0].stamp.hash[0] ^= 1;
        state.Store(EntryOf("b.qsa"), job, again);
        again.inputs[0].stamp.sizeBytes += 1;
        state.Store(EntryOf("c.qsa"), job, again);
        again.inputs[0].isThere = false;
        state.Store(EntryOf("d.qsa"), job, again);
    }
    BatchState state("s", options);
    std::string why;
    EXPECT_TRUE(state.Examine(EntryOf("a.qsa"), job, why));
    fs::remove("p.tga");
    EXPECT_TRUE(state.Examine(EntryOf("a.qsa"), job, why)) << "it was there in this run";
    SceneEntry other = EntryOf("b.qsa");
    other.sizeBytes = result.source.sizeBytes;
    other.changedNs = result.source.changedNs;
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(state.Examine(other, job, why));
        EXPECT_THAT(why, HasSubstr("come or gone: ")) << i;
    }
}

TEST_F(BatchPartsTest, StateForgetsOnlyItsShortCuts)
{
    BatchOptions options;
    SceneJob job;
    SceneResult result;
    result.status = SceneStatus::kConverted;
    {
        BatchState state("s", options);
        for (int directory = 0; directory < 70; ++directory) {
            const std::string name = std::to_string(directory);
            scratch.Write(name + "/a.qsa", "scene");
            scratch.Write(name + "/a.qsb", "target");
            job.path = name + "/a.qsa";
            job.target = name + "/a.qsb";
            result.source = InputOf(job.path).stamp;
            result.target = InputOf(job.target).stamp;
            result.inputs.clear();
            for (int i = 0; i < 70; ++i) {
                SceneInput input;
                input.path = "/gone/" + name + "/" + std::to_string(i);
                result.inputs.push_back(input);
            }
            state.Store(EntryOf(job.path), job, result);
        }
    }
    BatchState state("s", options);
    std::string why;
    for (int directory = 0; directory < 70; ++directory) {
        const std::string name = std::to_string(directory);
        job.target = name + "/a.qsb";
        EXPECT_TRUE(state.Examine(EntryOf(name + "/a.qsa"), job, why)) << name << ": " << why;
    }
}

// More journals than are kept open; some that are none; scenes that failed without a word, or came twice.
TEST_F(BatchPartsTest, ManyJournalsAreMerged)
{
    constexpr int kJournals = 258;
    const auto line = [](const std::string& path, SceneStatus status) {
        ChunkRecord record;
        record.sceneCount = 1;
        record.job.path = path;
        record.result.status = status;
        return LineWithRecord("{\"path\":\"" + path + "\"}", record) + "\n";
    };
    std::string expected;
    ChunkName name;
    name.count = kJournals;
    name.plan = "12345678";
    for (name.number = 1; name.number <= kJournals; ++name.number) {
        const std::string path = name.Text().substr(0, 9) + ".qsa"; // "chunk-001.qsa"
        const SceneStatus status =
            name.number == 7 ? SceneStatus::kFailed : SceneStatus::kConverted;
        std::string lines = line(path, status);
        if (name.number == 9)
            lines = line(path, SceneStatus::kFailed) + lines;
        scratch.Write("j/" + name.Text() + ".h-0-1.jsonl", lines);
        expected += "{\"path\":\"" + path + "\"}\n";
    }
    scratch.Write("j/chunk-001-of-258.12345678", "no journal");
    scratch.Write("j/chunk-001-of-258.12345678.txt", "no journal");
    scratch.Write("j/other.jsonl", "no journal");
    fs::create_symlink("nowhere", "j/chunk-001-of-258.12345678.link.jsonl");
    const ProgramRun run = Batch({"merge", "j", "-o", "all.jsonl"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out,
              "258 scenes from 258 chunks, 1 failed, 0 attempts did not come to their end\n"
              "chunk-007.qsa: failed\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(scratch.Read("all.jsonl"), expected);
    EXPECT_EQ(Batch({"merge", "j", "-o", "/dev/full"}).status, 2);
    const ProgramRun other = Batch({"merge", "j", "-o", "all.jsonl", "--root", "gone"});
    EXPECT_EQ(other.err, "qsbatch: the root 'gone' cannot be used: No such file or directory; name "
                         "another one with --root\n");
}

TEST_F(BatchPartsTest, CommandsSayWhatTheyCannotDo)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("other", "no state");
    const std::string list = "the list 'gone' cannot be read: No such file or directory; name "
                             "another one with --from-file\n";
    const std::string full = "qsbatch: the output could not be written\n";
    const struct {
        const char* command;
        int status;
        std::string out;
        std::string err;
    } cases[] = {
        {"plan -o p --chunks 1 --quiet in", 0, "", ""},
        {"plan -o p --chunks 1 --from-file gone", 2, "", "qsbatch: " + list},
        {"--from-file gone", 2, "", "qsbatch: " + list},
        {"plan -o p --chunks 1 --state other in", 2, "",
         "qsbatch: the state '" + (scratch.Path() / "other").string() +
             "' cannot be used: file is not a database; remove it, or choose another one with "
             "--state\n"},
        {"--quiet in --include none", 0, "", ""},
        {"--dry-run in gone.qsa", 1,
         "in/a.qsa: convert, it is new\ngone.qsa: fail, cannot be opened: No such file or "
         "directory\n0 up to date\n",
         ""},
        {"--version >/dev/full", 2, "", ""},
        {"plan --help >/dev/full", 2, "", ""},
        {"plan -o p --chunks 1 in >/dev/full", 2, "", full},
    };
    for (const auto& row : cases) {
        const ProgramRun run = RunProgramFile(
            "/bin/sh", {"-c", "\"$0\" " + std::string(row.command), BuildPath("qsbatch")});
        EXPECT_EQ(run.status, row.status) << row.command;
        EXPECT_EQ(run.out, row.out) << row.command;
        EXPECT_EQ(run.err, row.err) << row.command;
    }
}

TEST_F(BatchPartsTest, PathsInTheRootDirectoryHaveOneSlash)
{
    BatchOptions options;
    {
        BatchState state("s", options);
        SceneJob job;
        SceneResult result;
        result.status = SceneStatus::kFailed;
        state.Store(EntryOf("/qsbatch-gone.qsa"), job, result);
        std::string why;
        EXPECT_FALSE(state.Examine(EntryOf("qsbatch-gone/x.qsa"), job, why)) << "no directory";
        SceneResult facts;
        state.AddFacts(EntryOf("/qsbatch-gone.qsa"), facts);
        EXPECT_TRUE(facts.hasSource);
        SceneResult none;
        state.AddFacts(EntryOf("/qsbatch-other.qsa"), none);
        EXPECT_FALSE(none.hasSource);
    }
    StateDatabase state("s");
    EXPECT_EQ(state.Ask("SELECT count(*) FROM scene WHERE path=CAST('/qsbatch-gone.qsa' AS BLOB)"),
              1);
}
