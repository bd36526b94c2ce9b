#pragma once

#include <memory>
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

/// All options of qsaimport, for any number of command lines.
class ImportCommandLine {
public:
    ImportCommandLine();
    ~ImportCommandLine();
    ImportCommandLine(const ImportCommandLine&) = delete;
    ImportCommandLine& operator=(const ImportCommandLine&) = delete;

    /// Reads the arguments after the program's name.
    ImportArguments Read(std::vector<std::string> arguments);
    /// The usage and all options.
    std::string Help() const;

private:
    struct Options;
    std::unique_ptr<Options> options; ///< never null
};

extern const char* const kImportUsage;   ///< one line per call
extern const char* const kImportVersion; ///< one line
