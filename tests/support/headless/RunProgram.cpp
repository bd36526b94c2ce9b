#include "tests/support/RunProgram.h"
#include "tests/support/Emulator.h"
#include "tests/support/FileContent.h"
#include "tests/support/TreePaths.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

std::string TakeFile(const std::string& path)
{
    std::string bytes = FileContent(path);
    std::filesystem::remove(path);
    return bytes;
}

std::vector<std::string> EmulatorWords()
{
    std::istringstream text(EmulatorCommand());
    return {std::istream_iterator<std::string>(text), {}};
}

} // namespace

ProgramRun RunProgram(const std::vector<std::string>& arguments)
{
    return RunProgramFile(ProgramPath(), arguments);
}

ProgramRun RunProgramFile(const std::string& file, const std::vector<std::string>& arguments)
{
    std::vector<std::string> words = EmulatorWords();
    words.push_back(file);
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    const std::string base =
        std::filesystem::temp_directory_path() / ("qsa2qsb-run-" + std::to_string(getpid()));
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, (base + ".out").c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, (base + ".err").c_str(), flags, 0600);

    ProgramRun run;
    pid_t child = 0;
    if (posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
        int status = 0;
        waitpid(child, &status, 0);
        run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    posix_spawn_file_actions_destroy(&actions);
    run.out = TakeFile(base + ".out");
    run.err = TakeFile(base + ".err");
    return run;
}
