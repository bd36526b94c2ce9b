#pragma once

#include <string>

namespace headless {

/// Joins a program's arguments with blanks into one command line, as a Windows program receives it.
/// `arguments` are those after the program's name. An argument is put in double quotes if it
/// contains a blank, or if it starts with `/` but is a path rather than an option (it has a second
/// `/`, or names an existing file). Empty arguments are dropped.
std::string JoinArguments(int count, const char* const* arguments);

} // namespace headless
