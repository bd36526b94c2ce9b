#pragma once

#include <optional>
#include <string>
#include <vector>

#include "info/SceneDiff.h"

enum class InfoMode {
    kReport,
    kTree,
    kEffects,
    kJson,
    kCheck,
    kDiff,
    kDisassemble,
    kCompile,
    kHelp,
    kVersion
};

/// What the command line requests.
struct InfoArguments {
    InfoMode mode = InfoMode::kReport;
    bool all = false;
    std::optional<double> tolerance; ///< 0 for --exact
    std::vector<std::string> files;  ///< one; two for a comparison
    std::string target;              ///< of --compile; empty for none
    std::string error;               ///< what is wrong with the command line; empty if nothing is
};

/// Reads the arguments after the program's name. Options may appear anywhere; after "--" everything
/// is a file. "diff" as the first argument requests a comparison.
InfoArguments ReadArguments(const std::vector<std::string>& arguments);

/// The usage and all options.
std::string InfoHelp();

/// The texts of the help: the program's, and one for each option.
struct InfoHelpTexts {
    const char* what;
    const char* end;
    const char* help;
    const char* tree;
    const char* effects;
    const char* json;
    const char* check;
    const char* disassemble;
    const char* compile;
    const char* output;
    const char* version;
    const char* all;
    const char* tolerance;
    const char* exact;
};
extern const InfoHelpTexts kInfoHelp;
extern const char* const kInfoUsage;   ///< the short form, one line per call
extern const char* const kInfoVersion; ///< one line
