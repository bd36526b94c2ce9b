#pragma once

#include <optional>
#include <string>
#include <vector>

#include "info/SceneDiff.h"

enum class InfoMode { kReport, kTree, kEffects, kJson, kCheck, kDiff, kHelp, kVersion };

/// What the command line asks for.
struct InfoArguments {
    InfoMode mode = InfoMode::kReport;
    bool all = false;
    std::optional<double> tolerance; ///< 0 for --exact
    std::vector<std::string> files;  ///< one; two for a comparison
    std::string error;               ///< what is wrong with the line; empty for a good one
};

/// Reads the arguments behind the program's name. Options may stand anywhere; behind "--" everything
/// is a file. "diff" as the first argument asks for a comparison.
InfoArguments ReadArguments(const std::vector<std::string>& arguments);

/// The usage and all options.
std::string InfoHelp();

/// What the help says, and of each option.
struct InfoHelpTexts {
    const char* what;
    const char* end;
    const char* help;
    const char* tree;
    const char* effects;
    const char* json;
    const char* check;
    const char* version;
    const char* all;
    const char* tolerance;
    const char* exact;
};
extern const InfoHelpTexts kInfoHelp;
extern const char* const kInfoUsage;   ///< the short form, one line a call
extern const char* const kInfoVersion; ///< a line
