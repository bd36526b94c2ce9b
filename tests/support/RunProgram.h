#pragma once

#include <string>
#include <vector>

/// What a finished run of the program left behind.
struct ProgramRun {
    int status = -1;
    std::string out; ///< standard output, line ends as "\n"
    /// Message boxes, title, line end, text, line end for each, and what went to standard error.
    std::string err;
};

/// Starts the built program in the current directory and waits for it. On Windows its message boxes
/// are answered with OK and its file dialogs cancelled; the headless program does that by itself.
ProgramRun RunProgram(const std::vector<std::string>& arguments);

/// The same with another program, by its path.
ProgramRun RunProgramFile(const std::string& file, const std::vector<std::string>& arguments);
