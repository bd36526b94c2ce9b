// Scenes of strangers: what they name outside of their directories they do not get, and the run goes on.

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <set>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "batch/Confinement.h"
#include "platform/headless/win32/TemporaryName.h"
#include "tests/batch/BackgroundBatch.h"
#include "tests/batch/BatchTesting.h"
#include "tests/batch/FailingRuns.h"

using namespace batch_testing;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

constexpr long kCreateLandlockRules = 444;

class UntrustedTest : public BatchTest {
protected:
    UntrustedTest() { scratch.Write("outside/secret.tga", ColorPicture(0xFF2010)); }
    /// As much as this build and this kernel have; sanitizers have no filter of system calls.
    static std::string Untrusted()
    {
        return MissingConfinement().empty() ? "--untrusted" : "--untrusted=best-effort";
    }
    static void NeedLandlock()
    {
        if (LandlockVersion() == 0)
            GTEST_SKIP() << "the kernel has no Landlock";
    }
};

/// A run in a kernel that does not know a system call.
ProgramRun BatchWithout(long call, const std::vector<std::string>& words)
{
    return BatchWith({{call, ENOSYS}}, words);
}

/// Where the open files of a process are.
std::set<std::string> OpenFilesOf(pid_t process)
{
    std::set<std::string> files;
    std::error_code ignored;
    for (const auto& entry :
         fs::directory_iterator("/proc/" + std::to_string(process) + "/fd", ignored))
        files.insert(fs::read_symlink(entry.path(), ignored).string());
    return files;
}

} // namespace

TEST_F(UntrustedTest, OrdinaryScenesGiveTheSameFiles)
{
    scratch.Write("in/a.qsa", WallScene("below/p.tga"));
    scratch.Write("in/below/p.tga", ColorPicture(0x20FF10));
    scratch.Write("in/below/b.qsa", WallScene("../p.tga"));
    scratch.Write("in/p.tga", ColorPicture(0x1020FF));
    const ProgramRun run = Batch({"in", "--out", "o", "--frames", "f", "--check", Untrusted()});
    EXPECT_THAT(run.out, StartsWith("2 converted, 0 up to date, 0 failed, 0 with warnings"))
        << run.err;
    Batch({"in", "--out", "plain/o", "--frames", "plain/f"});
    for (const std::string file : {"o/a.qsb", "o/below/b.qsb", "f/a.qsa.png", "f/below/b.qsa.png"})
        EXPECT_TRUE(scratch.Read(file) == scratch.Read("plain/" + file)) << file;
    EXPECT_THAT(Batch({"in", "--out", "o", "--frames", "f", "--check", Untrusted()}).out,
                StartsWith("0 converted, 2 up to date"));
}

TEST_F(UntrustedTest, DefaultPicturesAreRead)
{
    scratch.Write("pictures/p.tga", ColorPicture(0x20FF10));
    scratch.Write(".config/Fenwhistle/QSAView.conf",
                  "DefaultTexturePath=" + (scratch.Path() / "pictures/").string() + "\n");
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    const ProgramRun run = Batch({"in", "--out", "o", Untrusted()});
    EXPECT_THAT(run.out, StartsWith("1 converted, 0 up to date, 0 failed, 0 with warnings"))
        << run.err;
    const ProgramRun among = Batch({"in", "--out", "pictures/o", Untrusted()});
    EXPECT_EQ(among.status, 2);
    EXPECT_THAT(among.err, HasSubstr("'--untrusted' needs '--out' outside of"));
}

// Each scene names a picture that is there, by a way out. Its frame is that of a picture that is missing.
TEST_F(UntrustedTest, PicturesOutsideCountAsMissing)
{
    NeedLandlock();
    const std::string whole = scratch.Path().string();
    fs::create_directory("in");
    fs::create_symlink("../outside/secret.tga", "in/link.tga");
    fs::create_directory_symlink("../outside", "in/links");
    fs::create_symlink("/dev/zero", "in/zero.tga");
    const std::vector<std::string> ways = {
        whole + "/outside/secret.tga",
        "../outside/secret.tga",
        "..\\\\outside\\\\secret.tga",
        "below/../../outside/secret.tga",
        "link.tga",
        "links/secret.tga",
        "LINKS/SECRET.TGA",
        "zero.tga",
        "/dev/zero",
        "/proc/self/environ",
        "/proc/self/root" + whole + "/outside/secret.tga",
    };
    fs::create_directory("in/below");
    scratch.Write("in/gone.qsa", WallScene("gone.tga"));
    scratch.Write("in/there.tga", ColorPicture(0xFF2010));
    scratch.Write("in/there.qsa", WallScene("there.tga"));
    for (size_t i = 0; i < ways.size(); ++i)
        scratch.Write("in/" + std::to_string(i) + ".qsa", WallScene(ways[i]));
    const ProgramRun run = Batch({"in", "--out", "o", "--frames", "f", Untrusted()});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::string all = std::to_string(ways.size() + 2);
    const std::string warned = std::to_string(ways.size() + 1);
    EXPECT_THAT(run.out, StartsWith(all + " converted, 0 up to date, 0 failed, " + warned))
        << run.err;
    EXPECT_FALSE(scratch.Read("f/there.qsa.png") == scratch.Read("f/gone.qsa.png"));
    for (size_t i = 0; i < ways.size(); ++i) {
        const std::string frame = "f/" + std::to_string(i) + ".qsa.png";
        EXPECT_TRUE(scratch.Read(frame) == scratch.Read("f/gone.qsa.png")) << ways[i];
    }
    const ProgramRun again = Batch({"in", "--out", "o", "--frames", "f", Untrusted()});
    EXPECT_THAT(again.out, StartsWith("0 converted, " + all + " up to date")) << again.err;
}

// A list of frames fails its scene if one is missing, whoever runs it.
TEST_F(UntrustedTest, FramesOfListsOutsideCountAsMissing)
{
    NeedLandlock();
    scratch.Write("in/list.ifl", "../outside/secret.tga\n");
    scratch.Write("in/a.qsa", WallScene("list.ifl"));
    EXPECT_EQ(Batch({"in", "--out", "plain"}).status, 0);
    const ProgramRun run = Batch({"in", "--out", "o", Untrusted()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("Q505: Texture file list list.ifl, line 1: no picture"));
    EXPECT_FALSE(scratch.Has("o/a.qsb"));
}

// Among the scenes' own files, where Landlock has nothing to say.
TEST_F(UntrustedTest, PipesAndDevicesCountAsMissingAndAreNotWaitedFor)
{
    scratch.Write("in/a.qsa", WallScene("pipe.tga"));
    ASSERT_EQ(mkfifo("in/pipe.tga", 0600), 0);
    scratch.Write("in/b.qsa", WallScene("device.tga"));
    const bool hasDevice = mknod("in/device.tga", S_IFCHR | 0600, 0x105) == 0; // zeros, for ever
    scratch.Write("in/c.qsa", WallScene("folder.tga"));
    fs::create_directory("in/folder.tga");
    const ProgramRun run =
        Batch({"in", "--out", "o", "--timeout", "20", "--memory", "2G", Untrusted()});
    EXPECT_THAT(run.out, StartsWith("3 converted, 0 up to date, 0 failed, 3 with warnings"))
        << run.err << (hasDevice ? "" : "(without a device, which takes root to make)");
    EXPECT_THAT(Batch({"in", "--out", "o", "--timeout", "20", "--memory", "2G", Untrusted()}).out,
                StartsWith("0 converted, 3 up to date"));
}

TEST_F(UntrustedTest, SourcesOutsideAreNotConverted)
{
    NeedLandlock();
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("outside/secret.qsa", HelperScene("secret"));
    scratch.Write("outside/more.qsa", HelperScene("more"));
    fs::create_symlink("../outside/secret.qsa", "in/link.qsa");
    fs::create_directory_symlink("../outside", "in/links");
    const ProgramRun run = Batch({"in", "--out", "o", Untrusted()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("1 converted, 0 up to date, 2 failed"));
    EXPECT_THAT(run.err, HasSubstr("in/link.qsa: error Q904: cannot be opened: Permission denied"));
    EXPECT_THAT(run.err, HasSubstr("in/links/more.qsa: error Q904: cannot be opened: Permission"));
    EXPECT_EQ(FilesBelow("o"), std::vector<std::string>{"a.qsb"});
}

TEST_F(UntrustedTest, TargetsThatLeadOutStayAsTheyWere)
{
    NeedLandlock();
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("victim", "old");
    fs::create_directory("o");
    fs::create_symlink("../victim", "o/a.qsb");
    const ProgramRun run = Batch({"in", "--out", "o", Untrusted()});
    EXPECT_EQ(run.status, 1) << run.err;
    EXPECT_EQ(scratch.Read("victim"), "old");
}

TEST_F(UntrustedTest, TargetsAmongTheSourcesAreNotMade)
{
    scratch.Write("in/a/a.qsa", HelperScene("a"));
    fs::create_directory("o");
    fs::create_directory_symlink("../in/a", "o/a");
    const ProgramRun run = Batch({"in", "--out", "o", Untrusted()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("error Q920: its worker cannot be closed in: '"));
    EXPECT_FALSE(scratch.Has("in/a/a.qsb"));
}

TEST_F(UntrustedTest, ScenesNamedOneByOneReadTheirDirectories)
{
    scratch.Write("in/a/a.qsa", WallScene("p.tga"));
    scratch.Write("in/a/p.tga", ColorPicture(0x20FF10));
    scratch.Write("in/b/b.qsa", WallScene("../a/p.tga"));
    scratch.Write("in/c/c.qsa", WallScene("../p.tga"));
    scratch.Write("in/p.tga", ColorPicture(0x20FF10));
    const ProgramRun run =
        Batch({"in/a/a.qsa", "in/b/b.qsa", "in/c/c.qsa", "--out", "o", Untrusted()});
    const int warned = LandlockVersion() == 0 ? 0 : 1;
    EXPECT_THAT(run.out, StartsWith("3 converted, 0 up to date, 0 failed, " +
                                    std::to_string(warned) + " with warnings"))
        << run.err;
}

TEST_F(UntrustedTest, EachSceneHasAProcessOfItsOwn)
{
    for (int i = 0; i < 40; ++i)
        scratch.Write("in/" + std::to_string(i) + ".qsa", WallScene("", 2000));
    BackgroundBatch run({"in", "--out", "o", "-j", "1", Untrusted()});
    std::set<pid_t> seen;
    Eventually([&] {
        for (const pid_t worker : run.Workers())
            seen.insert(worker);
        return seen.size() > 1 || run.HasEnded();
    });
    EXPECT_GT(seen.size(), 1u);
}

// What the program was started with is open in it, but not in a worker that reads a scene; nor is the state.
TEST_F(UntrustedTest, OpenFilesAreClosed)
{
    scratch.Write("in/a.qsa", WallScene("", 200000));
    scratch.Write("given", "");
    const int given = open("given", O_RDWR); // stays open in programs that are started
    BackgroundBatch run({"in", "--out", "o", "-j", "1", Untrusted()});
    close(given);
    std::set<std::string> files;
    Eventually([&] {
        for (const pid_t worker : run.Workers()) {
            std::error_code ignored;
            const fs::path place =
                fs::read_symlink("/proc/" + std::to_string(worker) + "/cwd", ignored);
            if (place.filename() == "in")
                files = OpenFilesOf(worker);
        }
        return !files.empty() || run.HasEnded();
    });
    EXPECT_THAT(OpenFilesOf(run.Id()), testing::Contains((scratch.Path() / "given").string()));
    EXPECT_THAT(files, Not(IsEmpty()));
    for (const std::string& file : files) {
        EXPECT_THAT(file, Not(HasSubstr("given")));
        EXPECT_THAT(file, Not(testing::EndsWith(".state")));
    }
    EXPECT_EQ(run.Wait().status, 0);
}

// A run that was killed leaves its temporary files; a worker cannot see that their owner is gone.
TEST_F(UntrustedTest, LitterOfKilledRunsIsRemoved)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    waitpid(ended, nullptr, 0);
    headless::TemporaryOwner owner = headless::TemporaryOwner::ThisProcess();
    scratch.Write("o/.qsa2qsb-" + owner.host + "-" + owner.boot + "-" + std::to_string(ended) +
                      "-0.tmp",
                  "half");
    EXPECT_EQ(Batch({"in", "--out", "o", Untrusted()}).status, 0);
    EXPECT_EQ(FilesBelow("o"), std::vector<std::string>{"a.qsb"});
}

TEST_F(UntrustedTest, PlacesThatAreNotSafeAreRefused)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    fs::create_directory_symlink("in", "alias");
    const std::string out = "'--untrusted' needs '--out' outside of '";
    const struct {
        const char* what;
        std::vector<std::string> words;
        std::string said;
    } cases[] = {
        {"no place", {"in"}, "'--untrusted' needs '--out', a directory outside of all sources"},
        {"in the sources", {"in", "--out", "in/o"}, out},
        {"the sources", {"in", "--out", "in"}, out},
        {"above the sources", {"in", "--out", "."}, out},
        {"in the sources by another name", {"in", "--out", "alias/o"}, out},
        {"in the directory of a file", {"in/a.qsa", "--out", "in/o"}, out},
        {"frames",
         {"in", "--out", "o", "--frames", "in/f"},
         "'--untrusted' needs '--frames' outside of '"},
        {"the state",
         {"in", "--out", "o", "--state", "o/s"},
         "'o/s' is where scenes may write, below 'o'"},
        {"the journal",
         {"in", "--out", "o", "--journal", "o/j"},
         "'o/j' is where scenes may write"},
        {"the page", {"in", "--out", "o", "--frames", "f", "--report", "f/r"}, "below 'f'"},
        {"no time limit", {"in", "--out", "o", "--timeout", "0"}, "'--untrusted' needs limits"},
        {"no memory limit", {"in", "--out", "o", "--memory", "0"}, "'--untrusted' needs limits"},
        {"another word", {"in", "--out", "o", "--untrusted=a"}, "is given alone or as"},
    };
    for (const auto& row : cases) {
        std::vector<std::string> words = {Untrusted()};
        words.insert(words.end(), row.words.begin(), row.words.end());
        const ProgramRun run = Batch(words);
        EXPECT_EQ(run.status, 2) << row.what;
        EXPECT_THAT(run.err, HasSubstr(row.said)) << row.what;
        EXPECT_EQ(FilesBelow("in"), std::vector<std::string>{"a.qsa"}) << row.what;
    }
}

TEST_F(UntrustedTest, KernelsWithoutAPartAreRefused)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const struct {
        long call;
        std::string part;
    } cases[] = {
        {kCreateLandlockRules, "Landlock, which this kernel lacks"},
        {SYS_seccomp, "the filter of system calls, which this "},
    };
    for (const auto& row : cases) {
        const ProgramRun whole = BatchWithout(row.call, {"in", "--out", "o", "--untrusted"});
        EXPECT_EQ(whole.status, 2) << row.part;
        EXPECT_THAT(whole.err, HasSubstr(row.part));
        EXPECT_THAT(whole.err, HasSubstr("; '--untrusted=best-effort' does without\n"));
        EXPECT_FALSE(scratch.Has("o/a.qsb")) << row.part;
        const ProgramRun best =
            BatchWithout(row.call, {"in", "--out", "o", "--untrusted=best-effort", "--force"});
        EXPECT_EQ(best.status, 0) << best.err;
        EXPECT_THAT(best.err, HasSubstr("qsbatch: scenes are converted without "));
        EXPECT_THAT(best.err, HasSubstr(row.part));
        EXPECT_TRUE(scratch.Has("o/a.qsb")) << row.part;
        fs::remove("o/a.qsb");
    }
}

// Trusted and untrusted runs give different results: one does not take over what the other has done.
TEST_F(UntrustedTest, ResultsOfTrustedRunsAreNotUpToDate)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    EXPECT_EQ(Batch({"in", "--out", "o", "--state", "s"}).status, 0);
    EXPECT_THAT(Batch({"in", "--out", "o", "--state", "s", Untrusted()}).out,
                StartsWith("1 converted, 0 up to date"));
}
