#pragma once

#include <string>

inline constexpr char kWalkScene[] = "*3DSMAX_QSAEXPORT 200\n";

/// The output of the walk over `pattern` with the given options, from the current directory.
std::string Walk(const char* pattern, const char* options);

/// The same with the existing engine and window.
std::string WalkOn(const char* pattern);
