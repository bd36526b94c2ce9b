// cpu_time REPETITIONS PROGRAM [ARGUMENT...]   runs a program without its output and prints the least
// CPU time of a run in milliseconds and the largest resident memory in KiB. The caller removes the scenes
// that a run writes.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

extern char** environ;

namespace {

double Milliseconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
}

/// False if the program could not be started or was killed by a signal.
bool Run(char** program, rusage* usageOut)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int failure = posix_spawnp(&child, program[0], &actions, nullptr, program, environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    return failure == 0 && wait4(child, &status, 0, usageOut) == child && WIFEXITED(status);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 3) {
        std::fprintf(stderr, "cpu_time REPETITIONS PROGRAM [ARGUMENT...]\n");
        return 2;
    }
    double least = 1e12;
    long memoryKiB = 0;
    for (int i = std::atoi(arguments[1]); i > 0; --i) {
        rusage usage = {};
        if (!Run(arguments + 2, &usage)) {
            std::fprintf(stderr, "%s failed\n", arguments[2]);
            return 1;
        }
        least = std::min(least, Milliseconds(usage.ru_utime) + Milliseconds(usage.ru_stime));
        memoryKiB = std::max(memoryKiB, usage.ru_maxrss);
    }
    std::printf("%.2f %ld\n", least, memoryKiB);
    return 0;
}
