#include "tests/support/RunProgram.h"
#include "tests/support/FileContent.h"
#include "tests/support/TreePaths.h"

#include "tools/win32/BoxAnswers.h"

#include <windows.h>

namespace {

constexpr int kMostStarts = 3;

HANDLE CreateInheritedFile(const std::string& path)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0,
                       nullptr);
}

std::string TakeTextFile(const std::string& path)
{
    std::string text = FileContent(path, {}); // line ends are read as "\n"
    DeleteFileA(path.c_str());
    return text;
}

/// Quotes arguments that contain blanks, as a shell would.
std::string CommandLine(const std::string& file, const std::vector<std::string>& arguments)
{
    std::string line = '"' + file + '"';
    for (const std::string& argument : arguments) {
        const bool needsQuotes = argument.find(' ') != std::string::npos;
        line += needsQuotes ? " \"" + argument + "\"" : " " + argument;
    }
    return line;
}

/// One start of a program. Its status is -1 if it did not come to its first instruction.
ProgramRun StartOnce(const std::string& file, const std::vector<std::string>& arguments)
{
    char folder[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    const std::string outFile =
        std::string(folder) + "qsa2qsb-run-" + std::to_string(GetCurrentProcessId());
    const std::string errFile = outFile + ".err";
    const HANDLE out = CreateInheritedFile(outFile);
    const HANDLE err = CreateInheritedFile(errFile);

    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = out;
    startup.hStdError = err;
    PROCESS_INFORMATION process = {};
    std::string line = CommandLine(file, arguments);
    ProgramRun run;
    if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                       &process)) {
        while (WaitForSingleObject(process.hProcess, 10) == WAIT_TIMEOUT)
            run.err += AnswerOpenBoxes(process.dwProcessId);
        DWORD status = 0;
        GetExitCodeProcess(process.hProcess, &status);
        run.status = static_cast<int>(status);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    } else {
        run.err = "the program cannot be started: error " + std::to_string(GetLastError());
    }
    CloseHandle(out);
    CloseHandle(err);
    run.out = TakeTextFile(outFile);
    run.err += TakeTextFile(errFile);
    return run;
}

} // namespace

ProgramRun RunProgram(const std::vector<std::string>& arguments)
{
    return RunProgramFile(ProgramPath(), arguments);
}

ProgramRun RunProgramFile(const std::string& file, const std::vector<std::string>& arguments)
{
    // Wine fails in one of some thousand starts, and gives no reason.
    ProgramRun run;
    for (int attempt = 0; attempt < kMostStarts; ++attempt) {
        run = StartOnce(file, arguments);
        if (run.status != -1 || !run.out.empty())
            break;
    }
    return run;
}
