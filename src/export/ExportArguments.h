#pragma once

#include <string>
#include <vector>

/// What the command line of qsbexport requests.
struct ExportArguments {
    bool help = false;
    bool version = false;
    bool quiet = false; ///< no warnings
    std::string scene;  ///< QSA or QSB
    std::string target; ///< .glb or .gltf; never empty after a successful read
    std::string error;  ///< what is wrong with the command line; empty if nothing is
};

/// Reads the arguments after the program's name.
ExportArguments ReadExportArguments(std::vector<std::string> arguments);
std::string ExportHelp();
extern const char* const kExportUsage;   ///< one line per call
extern const char* const kExportVersion; ///< one line
