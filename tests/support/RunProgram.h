#pragma once

#include <string>
#include <vector>

/// The results of a finished run of the program.
struct ProgramRun {
    int status = -1;
    std::string out; ///< standard output, line ends as "\n"
    /// Message boxes as title, line end, text, line end each, and standard error.
    std::string err;
};

/// Starts the built program in the current directory and waits for it. On Windows its message boxes
/// are answered with OK and its file dialogs cancelled; the headless program does that itself.
ProgramRun RunProgram(const std::vector<std::string>& arguments);

/// The same for another program, given by its path.
ProgramRun RunProgramFile(const std::string& file, const std::vector<std::string>& arguments);
