#pragma once

#include <string>

// Where the tests' tree lies. The paths are known to one source alone, so that the others compile to
// the same in each clone.

/// A file or directory of the source tree, absolute, by its name in it: "examples/harbour.qsa".
std::string SourcePath(const std::string& name);

/// The same in the build directory.
std::string BuildPath(const std::string& name);

/// The built converter.
const char* ProgramPath();

/// The built program that tells of scene files.
const char* InfoProgramPath();
