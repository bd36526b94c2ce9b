// answerboxes PROGRAM.exe [ARGUMENT...]
// Runs a Windows program where nobody can click: its message boxes are written to standard error,
// title, line end, text and line end, and answered with OK; its file dialogs are cancelled. This is
// what the headless program does with the same calls. Ends with the program's exit status.

#include "tools/win32/BoxAnswers.h"

#include <cstdio>
#include <cstring>

namespace {

/// The rest of a command line behind its first argument, which may be quoted.
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

int main()
{
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    char* command = SkipFirstArgument(GetCommandLineA());
    if (!CreateProcessA(nullptr, command, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &process)) {
        std::fprintf(stderr, "cannot start %s\n", command);
        return 0;
    }
    while (WaitForSingleObject(process.hProcess, 10) == WAIT_TIMEOUT) {
        const std::string report = AnswerOpenBoxes(process.dwProcessId);
        std::fputs(report.c_str(), stderr);
    }
    DWORD status = 0;
    GetExitCodeProcess(process.hProcess, &status);
    return static_cast<int>(status);
}
