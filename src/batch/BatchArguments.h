#pragma once

#include <string>
#include <vector>

#include "batch/BatchOptions.h"

/// Reads the arguments after the program's name. Options may appear anywhere; after "--" everything is a
/// path.
BatchOptions ReadBatchArguments(const std::vector<std::string>& arguments);

/// The usage and all options.
std::string BatchHelp();

extern const char* const kBatchUsage;   ///< the short form
extern const char* const kBatchVersion; ///< one line
