#pragma once

#include <string>

// Where the tests' tree is. Only one source knows the paths, so the others compile to the same
// result in each clone.

/// The absolute path of a file or directory of the source tree, such as "examples/harbour.qsa".
std::string SourcePath(const std::string& name);

/// The same in the build directory.
std::string BuildPath(const std::string& name);

/// The built converter.
const char* ProgramPath();

/// The built program that describes scene files.
const char* InfoProgramPath();
