// What is up to date, and why something is not.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

#include <fcntl.h>
#include <linux/magic.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "batch/StateDatabase.h"
#include "platform/headless/win32/TemporaryName.h"
#include "tests/batch/BackgroundBatch.h"
#include "tests/batch/BatchTesting.h"

using namespace batch_testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class StateTest : public BatchTest {
protected:
    /// The first words of the summary.
    static std::string Summary(const ProgramRun& run)
    {
        return run.out.substr(0, run.out.find(" failed"));
    }
    static ProgramRun Run(std::vector<std::string> more = {})
    {
        more.insert(more.begin(), {"in", "--out", "o"});
        return Batch(more);
    }
    static std::string Plan(const std::string& option = "-n") { return Run({option, "-n"}).out; }
};

/// The target of the scene `number` of many.
std::string TargetOf(int number)
{
    return std::to_string(number % 7) + "/s" + std::to_string(number) + ".qsb";
}

constexpr const char* kAllDone = "0 converted, 1 up to date, 0";
constexpr const char* kAgain = "1 converted, 0 up to date, 0";

} // namespace

TEST_F(StateTest, NothingIsTouchedTwice)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(1));
    EXPECT_EQ(Plan(), "in/a.qsa: convert, it is new\n0 up to date\n");
    EXPECT_FALSE(scratch.Has("o"));
    EXPECT_EQ(Summary(Run()), kAgain);
    const auto time = fs::last_write_time("o/a.qsb");
    EXPECT_EQ(Summary(Run()), kAllDone);
    EXPECT_EQ(fs::last_write_time("o/a.qsb"), time);
    EXPECT_EQ(Plan(), "1 up to date\n");
    EXPECT_EQ(Plan("--force"), "in/a.qsa: convert, --force is given\n0 up to date\n");
    EXPECT_EQ(Summary(Run({"--force"})), kAgain);
}

// A new time alone makes nothing new.
TEST_F(StateTest, SourceCountsByItsContent)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    EXPECT_EQ(Summary(Run()), kAgain);
    fs::last_write_time("in/a.qsa", fs::file_time_type::clock::now() + std::chrono::hours(1));
    EXPECT_EQ(Summary(Run()), kAllDone);
    scratch.Write("in/a.qsa", HelperScene("b"));
    EXPECT_EQ(Plan(), "in/a.qsa: convert, the scene has changed\n0 up to date\n");
    EXPECT_EQ(Summary(Run()), kAgain);
}

// Same size, and the time set back: only the content tells.
TEST_F(StateTest, RehashComparesContents)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    SleepFor(50);
    EXPECT_EQ(Summary(Run()), kAgain);
    const auto time = fs::last_write_time("in/a.qsa");
    scratch.Write("in/a.qsa", HelperScene("b"));
    fs::last_write_time("in/a.qsa", time);
    EXPECT_EQ(Summary(Run()), kAllDone);
    EXPECT_EQ(Summary(Run({"--rehash"})), kAgain);
}

TEST_F(StateTest, PicturesThatChangeComeOrGoCount)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(Summary(Run()), kAllDone);
    scratch.Write("in/P.TGA", ColorPicture(1)); // found by ignoring case
    EXPECT_THAT(Plan(), HasSubstr("convert, a file that it uses has changed, come or gone: "));
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(Summary(Run()), kAllDone);
    scratch.Write("in/p.tga", ColorPicture(2)); // the exact name goes first
    EXPECT_EQ(Summary(Run()), kAgain);
    scratch.Write("in/p.tga", ColorPicture(3));
    EXPECT_EQ(Summary(Run()), kAgain);
    fs::remove("in/p.tga");
    fs::remove("in/P.TGA");
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(Summary(Run()), kAllDone);
}

TEST_F(StateTest, TargetsThatAreGoneOrChangedAreMadeAgain)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    EXPECT_EQ(Summary(Run()), kAgain);
    const std::string bytes = scratch.Read("o/a.qsb");
    fs::remove("o/a.qsb");
    EXPECT_EQ(Plan(), "in/a.qsa: convert, the target is gone or was changed\n0 up to date\n");
    EXPECT_EQ(Summary(Run()), kAgain);
    scratch.Write("o/a.qsb", bytes + "x");
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(scratch.Read("o/a.qsb"), bytes);
}

TEST_F(StateTest, OptionsAndDefaultPathsCount)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(Summary(Run({"--loop"})), kAgain);
    EXPECT_EQ(Summary(Run({"--loop"})), kAllDone);
    EXPECT_EQ(Plan(), "in/a.qsa: convert, the program or the options have changed\n0 up to date\n");
    EXPECT_EQ(Summary(Run()), kAgain);
    scratch.Write(".config/Fenwhistle/QSAView.conf", "DefaultTexturePath=/srv/maps\n");
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(Summary(Run()), kAllDone);
}

// The frame has a record of its own: what is new in it leaves the target alone.
// A copy of the program with another version, of the same length, in the place of its own.
TEST_F(StateTest, NewVersionOfTheProgramConvertsAnew)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(Summary(Run()), kAllDone);
    std::string program = scratch.Read(BuildPath("qsbatch"));
    const std::string version = Batch({"--version"}).out; // "qsbatch 1.2.3\n"
    const size_t place = program.find(version);
    ASSERT_NE(place, std::string::npos);
    char& last = program[place + version.size() - 2];
    last = last == '9' ? '8' : '9';
    scratch.Write("newer", program);
    fs::permissions("newer", fs::perms::owner_all);
    const std::vector<std::string> words = {"in", "--out", "o"};
    EXPECT_EQ(Summary(RunProgramFile("./newer", words)), kAgain);
    EXPECT_EQ(Summary(RunProgramFile("./newer", words)), kAllDone);
}

TEST_F(StateTest, FramesHaveARecordOfTheirOwn)
{
    scratch.Write("in/a.qsa", WallScene(""));
    const std::vector<std::string> small = {"--frames", "f", "--frame-size", "32x24"};
    EXPECT_EQ(Summary(Run()), kAgain);
    const auto time = fs::last_write_time("o/a.qsb");
    EXPECT_EQ(Summary(Run(small)), kAgain);
    EXPECT_EQ(Summary(Run(small)), kAllDone);
    fs::remove("f/a.qsa.png");
    std::vector<std::string> planned = small;
    planned.push_back("-n");
    EXPECT_EQ(Run(planned).out, "in/a.qsa: draw, the frame is gone or was changed\n0 up to date\n");
    EXPECT_EQ(Summary(Run(small)), kAgain);
    EXPECT_TRUE(scratch.Has("f/a.qsa.png"));
    EXPECT_EQ(Summary(Run({"--frames", "f", "--frame-size", "16x12"})), kAgain);
    EXPECT_EQ(fs::last_write_time("o/a.qsb"), time);
}

// Inputs that change make the target new, so a scene that is up to date for a strict run brings no warnings
// before it is drawn. Here the state says that it is: what comes when only the frame is drawn counts too.
TEST_F(StateTest, WarningsOfADrawnFrameFailAStrictScene)
{
    scratch.Write("in/a.qsa", WallScene("gone.tga"));
    scratch.Write("in/b.qsa", HelperScene("b"));
    EXPECT_EQ(Summary(Run()), "2 converted, 0 up to date, 0");
    EXPECT_EQ(Summary(Run({"--strict", "--include", "b.qsa"})), kAgain);
    StateDatabase("o/.qsbatch-state")
        .Execute("UPDATE scene SET target_key=(SELECT target_key FROM scene"
                 " WHERE CAST(path AS TEXT) LIKE '%/b.qsa')");
    EXPECT_EQ(Summary(Run({"--strict"})), "0 converted, 2 up to date, 0");
    const std::string bytes = scratch.Read("o/a.qsb");
    const auto time = fs::last_write_time("o/a.qsb");
    const ProgramRun drawn =
        Run({"--strict", "-j", "1", "--frames", "f", "--frame-size", "16x12", "--journal", "j"});
    EXPECT_EQ(drawn.status, 1);
    EXPECT_EQ(Summary(drawn), "1 converted, 0 up to date, 1");
    EXPECT_THAT(drawn.out, HasSubstr("in/a.qsa: Can not open diffuse map 'gone.tga'\n"));
    const auto line = nlohmann::json::parse(LinesOf(scratch.Read("j")).front());
    EXPECT_EQ(line["path"], "in/a.qsa");
    EXPECT_EQ(line["status"], "failed");
    EXPECT_EQ(line["target_written"], false);
    EXPECT_TRUE(scratch.Has("f/b.qsa.png"));
    EXPECT_EQ(scratch.Read("o/a.qsb"), bytes);
    EXPECT_EQ(fs::last_write_time("o/a.qsb"), time);
}

TEST_F(StateTest, FailedScenesAreTriedAgain)
{
    scratch.Write("in/a.qsa", BrokenScene());
    EXPECT_EQ(Run().status, 1);
    EXPECT_EQ(Plan(), "in/a.qsa: convert, it failed the last time\n0 up to date\n");
    EXPECT_EQ(Run().status, 1);
}

TEST_F(StateTest, StateOfAnotherRunIsTwoWithItsProcess)
{
    scratch.Write("in/a.qsa", WallScene("pipe.tga"));
    ASSERT_EQ(mkfifo("in/pipe.tga", 0600), 0);
    BackgroundBatch first({"in", "--out", "o"});
    ASSERT_NE(first.AwaitWorker(), 0);
    const ProgramRun second = Run();
    EXPECT_EQ(second.status, 2);
    EXPECT_EQ(second.err,
              "qsbatch: the state 'o/.qsbatch-state' is in use by another run, process " +
                  std::to_string(first.Id()) +
                  "; wait for it, or choose another one with --state\n");
}

TEST_F(StateTest, DamagedAndNewerStatesAreTwoWithACure)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("o/.qsbatch-state",
                  "this is a text and no database at all, whatever its name says");
    const ProgramRun text = Run();
    EXPECT_EQ(text.status, 2);
    EXPECT_THAT(text.err, HasSubstr("the state 'o/.qsbatch-state' cannot be used: "));
    EXPECT_THAT(text.err, HasSubstr("; remove it, or choose another one with --state\n"));
    fs::remove("o/.qsbatch-state");
    EXPECT_EQ(Run().status, 0);
    std::string bytes = scratch.Read("o/.qsbatch-state");
    // The user's version is a big-endian number at byte 60 of such a file.
    bytes[63] = 99;
    scratch.Write("o/.qsbatch-state", bytes);
    EXPECT_THAT(Run().err, HasSubstr("cannot be used: it was written by a newer program; "));
    bytes[63] = 1;
    bytes.replace(4096, 2000, 2000, 'x');
    scratch.Write("o/.qsbatch-state", bytes);
    const ProgramRun damaged = Run();
    EXPECT_EQ(damaged.status, 2);
    EXPECT_THAT(damaged.err, HasSubstr("cannot be used: "));
    EXPECT_EQ(Run({"--state", "new/state"}).status, 0);
}

// A supervisor that is killed at any time leaves a state from which the next run goes on, to the same files
// as an undisturbed one.
TEST_F(StateTest, KilledRunsAreTakenUpWhereTheyWere)
{
    constexpr int kScenes = 60;
    const char* const wanted = std::getenv("QSBATCH_KILLS"); // more of them: ./test batch
    const int kKills = wanted ? std::atoi(wanted) : 20;
    std::map<std::string, std::string> expected;
    for (int i = 0; i < kScenes; ++i)
        scratch.Write("in/" + fs::path(TargetOf(i)).replace_extension(".qsa").string(),
                      WallScene(i % 3 ? "" : "gone.tga", i));
    EXPECT_EQ(Batch({"in", "--out", "whole", "--frames", "wholef", "--frame-size", "32x24"}).status,
              0);
    std::mt19937 random(11);
    for (int i = 0; i < kKills; ++i) {
        for (int again = 0; again < 5; ++again) // so that there is always something to do
            fs::remove("o/" + TargetOf(static_cast<int>(random() % kScenes)));
        BackgroundBatch run(
            {"in", "--out", "o", "--frames", "f", "--frame-size", "32x24", "-j", "2"});
        SleepFor(static_cast<int>(random() % 120));
        run.Signal(SIGKILL);
        run.Wait();
    }
    const ProgramRun last = Batch({"in", "--out", "o", "--frames", "f", "--frame-size", "32x24"});
    EXPECT_EQ(last.status, 0) << last.err;
    for (const char* const name : {"o", "f"}) {
        const std::string whole = name == std::string("o") ? "whole" : "wholef";
        EXPECT_EQ(FilesBelow(name), FilesBelow(whole)) << "litter, or something is missing";
        for (const std::string& file : FilesBelow(whole)) {
            if (file != ".qsbatch-state") {
                EXPECT_TRUE(scratch.Read(whole + "/" + file) ==
                            scratch.Read(name + std::string("/") + file))
                    << file;
            }
        }
    }
    EXPECT_THAT(
        Batch({"in", "--out", "o", "--frames", "f", "--frame-size", "32x24", "--rehash"}).out,
        StartsWith("0 converted, 60 up to date, 0 failed"));
}

TEST_F(StateTest, LitterOfAKilledRunGoesWhereAllIsUpToDate)
{
    scratch.Write("in/a.qsa", HelperScene("h"));
    const std::vector<std::string> frames = {"--frames", "f", "--frame-size", "32x24"};
    EXPECT_EQ(Summary(Run(frames)), kAgain);
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    waitpid(ended, nullptr, 0);
    const headless::TemporaryOwner self = headless::TemporaryOwner::ThisProcess();
    const auto nameOf = [&self](pid_t process) {
        return ".qsa2qsb-" + self.host + "-" + self.boot + "-" + std::to_string(process) + "-7.tmp";
    };
    for (const std::string directory : {"o/", "f/"}) {
        scratch.Write(directory + nameOf(ended), "half");
        scratch.Write(directory + nameOf(getppid()), "half");
    }
    EXPECT_EQ(Summary(Run(frames)), kAllDone);
    for (const std::string directory : {"o/", "f/"}) {
        EXPECT_FALSE(scratch.Has(directory + nameOf(ended))) << directory;
        EXPECT_TRUE(scratch.Has(directory + nameOf(getppid()))) << "of a running process";
    }
}

// The run waits for a pipe when it is killed; what it had done by then is known, as the journal says.
TEST_F(StateTest, KilledRunForgetsNothingThatTheJournalHas)
{
    constexpr size_t kDone = 5;
    for (size_t i = 0; i < kDone; ++i)
        scratch.Write("in/" + std::to_string(i) + ".qsa", HelperScene("h"));
    scratch.Write("in/waits.qsa", WallScene("pipe.tga"));
    ASSERT_EQ(mkfifo("in/pipe.tga", 0600), 0);
    BackgroundBatch run({"in", "--out", "o", "-j", "1", "--journal", "j"});
    ASSERT_NE(run.AwaitWorker(), 0);
    ASSERT_TRUE(Eventually([&] { return LinesOf(scratch.Read("j")).size() == kDone; }));
    ASSERT_TRUE(
        Eventually([&] { return run.IsAsleep(); })); // the state follows the journal at once
    run.Signal(SIGKILL);
    run.Wait();
    fs::remove("in/pipe.tga");
    EXPECT_EQ(Summary(Run()), "1 converted, 5 up to date, 0");
}

TEST_F(StateTest, NetworkFileSystemsAreRefused)
{
    static int64_t type;
    const auto real = gFileSystemType;
    gFileSystemType = [](const char*) { return type; };
    static constexpr int64_t kNetworks[] = {
        NFS_SUPER_MAGIC,  SMB_SUPER_MAGIC,  V9FS_MAGIC,      AFS_SUPER_MAGIC,  AFS_FS_MAGIC,
        CODA_SUPER_MAGIC, CEPH_SUPER_MAGIC, NCP_SUPER_MAGIC, CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC};
    for (const int64_t network : kNetworks) {
        type = network;
        std::string refusal;
        try {
            const StateDatabase state("state");
        } catch (const StateError& error) {
            refusal = error.text;
        }
        EXPECT_EQ(refusal, "the state 'state' is on a network file system: choose another place "
                           "with --state")
            << type;
        EXPECT_FALSE(scratch.Has("state")) << type;
    }
    static constexpr int64_t kLocals[] = {EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,
                                          TMPFS_MAGIC};
    for (const int64_t local : kLocals) {
        type = local;
        EXPECT_NO_THROW(StateDatabase("state")) << type;
        fs::remove("state");
    }
    gFileSystemType = real;
    EXPECT_NO_THROW(StateDatabase("state"));
}

// Converting all again and again adds nothing to the state.
TEST_F(StateTest, StateDoesNotGrowWithTheNumberOfRuns)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(1));
    EXPECT_EQ(Summary(Run()), kAgain);
    const int64_t inputs = StateDatabase("o/.qsbatch-state").Ask("SELECT count(*) FROM input");
    EXPECT_GE(inputs, 1);
    EXPECT_EQ(Summary(Run({"--force"})), kAgain);
    EXPECT_EQ(Summary(Run({"--force"})), kAgain);
    EXPECT_EQ(StateDatabase("o/.qsbatch-state").Ask("SELECT count(*) FROM input"), inputs);
}

// Lists, effects and what they include are inputs like pictures.
TEST_F(StateTest, ListsAndTheirPicturesCount)
{
    scratch.Write("in/a.qsa", WallScene("list.ifl"));
    scratch.Write("in/list.ifl", "one.tga\ntwo.tga\n");
    scratch.Write("in/one.tga", ColorPicture(1));
    scratch.Write("in/two.tga", ColorPicture(2));
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(Summary(Run()), kAllDone);
    scratch.Write("in/two.tga", ColorPicture(3));
    EXPECT_THAT(Plan(), HasSubstr("two.tga"));
    EXPECT_EQ(Summary(Run()), kAgain);
    scratch.Write("in/list.ifl", "two.tga\none.tga\n");
    EXPECT_THAT(Plan(), HasSubstr("list.ifl"));
    EXPECT_EQ(Summary(Run()), kAgain);
    EXPECT_EQ(Summary(Run()), kAllDone);
}

TEST_F(StateTest, StateBelowTheHomeGoesByTheRootOfThePaths)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/deep/b.qsa", HelperScene("b"));
    EXPECT_EQ(Batch({"in"}).status, 0);
    EXPECT_EQ(FilesBelow(".state/qsbatch").size(), 1u);
    EXPECT_THAT(Batch({"./in/a.qsa", "in/deep/b.qsa"}).out,
                StartsWith("0 converted, 2 up to date, "));
    EXPECT_EQ(FilesBelow(".state/qsbatch").size(), 1u);
}

TEST_F(StateTest, PlacesThatCannotHoldAStateAreTwoWithACure)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("file", "in the way");
    fs::create_directory("directory");
    const ProgramRun below = Run({"--state", "file/state"});
    EXPECT_EQ(below.status, 2);
    EXPECT_THAT(below.err, HasSubstr("; choose another place with --state\n"));
    const ProgramRun device = Run({"--state", "/dev/null"});
    EXPECT_EQ(device.status, 2);
    EXPECT_EQ(device.err, "qsbatch: the state '/dev/null' cannot be opened: it is no file; choose "
                          "another place with --state\n");
    const ProgramRun directory = Run({"--state", "directory"});
    EXPECT_EQ(directory.status, 2);
    EXPECT_EQ(directory.err, "qsbatch: the state 'directory' cannot be opened: Is a directory; "
                             "choose another place with --state\n");
}
