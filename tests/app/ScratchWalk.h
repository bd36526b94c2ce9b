#pragma once

#include <string>

inline constexpr char kWalkScene[] = "*3DSMAX_QSAEXPORT 200\n";

/// What the walk over `pattern` prints under the given options, begun in the current directory.
std::string Walk(const char* pattern, const char* options);

/// The same with the engine and the window that are there already.
std::string WalkOn(const char* pattern);
