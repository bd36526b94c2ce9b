#pragma once

#include <string>
#include <vector>

#include "import/ImportModel.h"

/// What the command line of qsaimport requests.
struct ImportArguments {
    bool help = false;
    bool version = false;
    bool quiet = false; ///< no warnings
    std::vector<std::string> models;
    ImportOptions options;
    std::string error; ///< what is wrong with the command line; empty if nothing is
};

/// Reads the arguments after the program's name.
ImportArguments ReadImportArguments(std::vector<std::string> arguments);
std::string ImportHelp();
extern const char* const kImportUsage;   ///< one line per call
extern const char* const kImportVersion; ///< one line
