// answerboxes [--hold FILE] PROGRAM.exe [ARGUMENT...]
// Runs a Windows program without a user: writes its message boxes to standard error,
// title, line end, text and line end, and answers them with OK; cancels its file dialogs. The headless
// program does the same. Returns the program's exit status.
// With --hold its first frame stays on the screen until FILE, which contains its position, is removed.

#include "tools/win32/BoxAnswers.h"
#include "tools/win32/FrameHold.h"

#include <cstdio>
#include <cstring>
#include <optional>

namespace {

/// The rest of a command line after its first argument, which may be quoted.
char* SkipFirstArgument(char* line)
{
    const bool isQuoted = *line == '"';
    line += isQuoted ? 1 : 0;
    while (*line != '\0' && *line != (isQuoted ? '"' : ' '))
        ++line;
    line += *line == '"' ? 1 : 0;
    return line + std::strspn(line, " ");
}

} // namespace

int main(int argumentCount, char** arguments)
{
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    char* command = SkipFirstArgument(GetCommandLineA());
    std::optional<FrameHold> hold;
    if (argumentCount > 2 && std::strcmp(arguments[1], "--hold") == 0) {
        hold.emplace(arguments[2]);
        command = SkipFirstArgument(SkipFirstArgument(command));
    }
    if (!CreateProcessA(nullptr, command, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &process)) {
        std::fprintf(stderr, "cannot start %s\n", command);
        return 0;
    }
    while (WaitForSingleObject(process.hProcess, 10) == WAIT_TIMEOUT) {
        const std::string report = AnswerOpenBoxes(process.dwProcessId);
        std::fputs(report.c_str(), stderr);
        if (hold)
            hold->Step(process.dwProcessId);
    }
    DWORD status = 0;
    GetExitCodeProcess(process.hProcess, &status);
    return static_cast<int>(status);
}
