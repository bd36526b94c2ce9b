#pragma once

#include <string>

namespace headless {

/// Joins a program's arguments with blanks into one command line, as a Windows program receives it.
/// `arguments` are those behind the program's name. One that holds a blank, or that starts with `/`
/// and is a path rather than an option (it has a second `/`, or names an existing file), is put in
/// double quotes. Empty arguments are left out.
std::string JoinArguments(int count, const char* const* arguments);

} // namespace headless
