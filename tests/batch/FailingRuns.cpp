#include "tests/batch/FailingRuns.h"

#include <cstdio>
#include <functional>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "batch/RunBatch.h"
#include "tests/support/FileContent.h"
#include "tests/support/TreePaths.h"

namespace batch_testing {

/// What a child process that runs `work` prints, and its status.
static ProgramRun RunOf(const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("run.out", O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        dup2(open("run.err", O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        const int status = work();
        std::fflush(stdout);
        _exit(status);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            FileContent("run.out"), FileContent("run.err")};
}

ProgramRun BatchWith(const std::vector<FailingCall>& calls, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), BuildPath("qsbatch"));
    std::vector<char*> words;
    for (std::string& argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);
    return RunOf([&] {
        if (LetFail(calls))
            execv(words[0], words.data());
        return 127;
    });
}

ProgramRun CommandWith(const std::vector<FailingCall>& calls,
                       const std::vector<std::string>& arguments)
{
    return RunOf([&] { return LetFail(calls) ? RunBatch(arguments) : 127; });
}

} // namespace batch_testing
