#include "tests/batch/BackgroundBatch.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/FileContent.h"
#include "tests/support/TreePaths.h"

extern char** environ;

namespace fs = std::filesystem;

namespace {

/// The state letter of a process; 0 if it is gone.
char StateOf(pid_t process)
{
    const std::string stat = FileContent("/proc/" + std::to_string(process) + "/stat");
    const size_t bracket = stat.rfind(')');
    return bracket != std::string::npos && bracket + 2 < stat.size() ? stat[bracket + 2] : '\0';
}

/// The signals that wait for a process, a bit each; 0 if it is gone.
uint64_t WaitingSignals(pid_t process)
{
    const std::string status = FileContent("/proc/" + std::to_string(process) + "/status");
    const std::string label = "\nShdPnd:";
    const size_t line = status.find(label);
    constexpr int kHexadecimal = 16;
    return line == std::string::npos
               ? 0
               : std::strtoull(&status[line + label.size()], nullptr, kHexadecimal);
}

} // namespace

void SleepFor(int milliseconds)
{
    usleep(static_cast<useconds_t>(milliseconds) * 1000);
}

BackgroundBatch::BackgroundBatch(const std::vector<std::string>& arguments)
    : base(fs::temp_directory_path() / ("qsbatch-run-" + std::to_string(getpid())))
{
    std::vector<std::string> words = {BuildPath("qsbatch")};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, (base + ".out").c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, (base + ".err").c_str(), flags, 0600);
    if (posix_spawn(&process, argv[0], &actions, nullptr, argv.data(), environ) != 0)
        process = -1;
    posix_spawn_file_actions_destroy(&actions);
}

BackgroundBatch::~BackgroundBatch()
{
    if (process > 0) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    fs::remove(base + ".out");
    fs::remove(base + ".err");
}

std::vector<pid_t> BackgroundBatch::Workers() const
{
    const std::string number = std::to_string(process);
    std::ifstream children("/proc/" + number + "/task/" + number + "/children");
    std::vector<pid_t> workers{std::istream_iterator<pid_t>(children), {}};
    // Other children are helpers of a sanitizer, which must live, or workers that are not yet their program.
    std::erase_if(workers, [](pid_t worker) {
        const std::string words = FileContent("/proc/" + std::to_string(worker) + "/cmdline");
        return words.find("--worker") == std::string::npos;
    });
    return workers;
}

std::vector<pid_t> BackgroundBatch::WaitingWorkers() const
{
    std::vector<pid_t> waiting = Workers();
    std::erase_if(waiting, [](pid_t worker) {
        // A worker without a scene is where the run was started.
        std::error_code ignored;
        const fs::path place =
            fs::read_symlink("/proc/" + std::to_string(worker) + "/cwd", ignored);
        return StateOf(worker) != 'S' || place.filename() != "in";
    });
    return waiting;
}

pid_t BackgroundBatch::AwaitWorker(pid_t than) const
{
    pid_t found = 0;
    Eventually([&] {
        for (const pid_t worker : WaitingWorkers()) {
            if (worker != than)
                found = worker;
        }
        return found != 0 || HasEnded();
    });
    return found;
}

void BackgroundBatch::Signal(int number) const
{
    kill(process, number);
}

void BackgroundBatch::SignalAndAwait(int number) const
{
    Signal(number);
    // A process that ends by a signal keeps it to the last.
    Eventually([&] { return HasEnded() || (WaitingSignals(process) >> (number - 1) & 1) == 0; });
}

bool BackgroundBatch::HasEnded() const
{
    const char state = StateOf(process);
    return state == 'Z' || state == '\0';
}

bool BackgroundBatch::IsAsleep() const
{
    return StateOf(process) == 'S';
}

double BackgroundBatch::ProcessorSeconds() const
{
    const std::string stat = FileContent("/proc/" + std::to_string(process) + "/stat");
    const size_t bracket = stat.rfind(')');
    if (bracket == std::string::npos)
        return 0;
    std::istringstream fields(stat.substr(bracket + 2));
    std::string field;
    double ticks = 0;
    for (int i = 3; i <= 15 && fields >> field; ++i) { // fields 14 and 15 of the whole line
        if (i >= 14)
            ticks += std::strtod(field.c_str(), nullptr);
    }
    return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

ProgramRun BackgroundBatch::Wait()
{
    int status = 0;
    waitpid(process, &status, 0);
    process = -1;
    ProgramRun run;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.out = FileContent(base + ".out");
    run.err = FileContent(base + ".err");
    return run;
}
