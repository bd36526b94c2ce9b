#include "batch/RunBatch.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/Log.h"
#include "batch/BatchArguments.h"
#include "batch/BatchState.h"
#include "batch/BatchText.h"
#include "batch/Confinement.h"
#include "batch/ConvertScenes.h"
#include "batch/FarmArguments.h"
#include "batch/RunFarm.h"
#include "batch/ScenePlan.h"
#include "batch/SourceTrees.h"
#include "batch/SteadyClock.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/SyncedFiles.h"
#include "platform/headless/win32/Uninterrupted.h"

namespace {

/// Everything of a run, from its options on.
class BatchRun {
public:
    explicit BatchRun(const BatchOptions& optionsIn) : options(optionsIn), layout(options) {}
    int Run();

private:
    bool FindTrees();
    std::string StatePath() const;
    bool OpenState();
    int PrintPlan();

    const BatchOptions& options; // not owned
    const double began = SecondsOfClock();
    SceneList list;
    TargetLayout layout;
    std::unique_ptr<SourceTrees> trees; ///< null if scenes are trusted
    std::unique_ptr<BatchState> state;
    std::string error;
};

/// A file of this run that took the number of a closed stream would get what is printed. Writing to
/// such a stream fails, as it did before.
void OpenStandardStreams()
{
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(number, F_GETFD) < 0)
            headless::Uninterrupted(
                [&] { return open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY); });
    }
}

/// False if untrusted scenes could not be closed in.
bool BatchRun::FindTrees()
{
    const std::string missing = MissingConfinement();
    if (!missing.empty() && options.confining == Confining::kWhole) {
        error = "'--untrusted' needs " + missing + "; '--untrusted=best-effort' does without";
        return false;
    }
    if (!missing.empty() && !options.quiet)
        std::fprintf(stderr, "qsbatch: scenes are converted without %s\n", missing.c_str());
    trees = std::make_unique<SourceTrees>(list);
    error = trees->FaultOfPlaces(options, StatePath());
    return error.empty();
}

std::string BatchRun::StatePath() const
{
    return options.stateFile.empty() ? BatchState::DefaultPath(options) : options.stateFile;
}

bool BatchRun::OpenState()
{
    const std::string path = StatePath();
    struct stat info;
    if (options.dryRun && stat(path.c_str(), &info) != 0)
        return true; // everything is new, and nothing is made
    const std::string directory = SplitPath(path).directory;
    if (!MakeDirectory(AT_FDCWD, directory).IsOpen() ||
        (options.durable && !headless::SyncNamesAbove(directory))) {
        error = "the directory '" + directory +
                "' of the state cannot be made: " + std::strerror(errno) +
                "; choose another place with --state";
        return false;
    }
    try {
        state = std::make_unique<BatchState>(path, options, trees.get());
    } catch (const StateError& failure) {
        error = failure.text;
        return false;
    }
    return true;
}

/// What would be done, and why.
int BatchRun::PrintPlan()
{
    ScenePlan plan(options, list, layout, state.get());
    size_t upToDate = 0;
    bool hasFailures = false;
    for (PlannedScene scene = plan.Next(); scene.kind != PlannedScene::Kind::kDone;
         scene = plan.Next()) {
        const std::string path = OneLine(list.Entries()[scene.number].path);
        if (scene.kind == PlannedScene::Kind::kJob) {
            const char* const what = scene.job.writesTarget ? "convert" : "draw";
            std::printf("%s: %s, %s\n", path.c_str(), what, OneLine(scene.why).c_str());
        } else if (IsFailure(scene.result.status)) {
            hasFailures = true;
            std::printf("%s: fail, %s\n", path.c_str(),
                        OneLine(scene.result.messages.front().text).c_str());
        } else {
            ++upToDate;
        }
    }
    std::printf("%s up to date\n", GroupedNumber(upToDate).c_str());
    return hasFailures ? kBatchFailures : kBatchWell;
}

int BatchRun::Run()
{
    if (!list.Collect(options))
        return BatchTrouble(list.error);
    SayUnread(list);
    if (list.Entries().empty() && !options.quiet)
        std::fprintf(stderr, "qsbatch: no scenes are found, see --include\n");
    layout.FindConflicts(list.Entries());
    if ((options.IsConfined() && !FindTrees()) || !OpenState())
        return BatchTrouble(error);
    try {
        return options.dryRun
                   ? PrintPlan()
                   : ConvertScenes(options, list, layout, state.get(), began, nullptr, trees.get())
                         .status;
    } catch (const StateError& failure) {
        return BatchTrouble("the state '" + state->Path() + "' cannot be used: " + failure.text +
                            "; remove it, or choose another one with --state");
    }
}

} // namespace

int RunBatch(const std::vector<std::string>& arguments)
{
    OpenStandardStreams();
    std::signal(SIGCHLD, SIG_DFL);              // whoever starts the program may ignore it
    gLogSink = [](const char*) {};              // never to a log file
    for (const int number : {SIGPIPE, SIGXFSZ}) // such failures come as errors of the calls
        std::signal(number, SIG_IGN);
    if (IsFarmCommand(arguments))
        return RunFarm(arguments);
    BatchArguments line;
    const BatchOptions options = line.Read(arguments);
    if (!options.error.empty()) {
        std::fprintf(stderr, "qsbatch: %s\n%s", OneLine(options.error).c_str(), kBatchUsage);
        return kBatchTrouble;
    }
    if (options.help || options.version) {
        std::fputs(options.help ? line.Help().c_str() : kBatchVersion, stdout);
        return std::fflush(stdout) == 0 ? kBatchWell : kBatchTrouble;
    }
    return BatchRun(options).Run();
}
