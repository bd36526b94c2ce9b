#pragma once

#include <string>
#include <vector>

#include "batch/BatchOptions.h"

/// Reads the arguments after the program's name. Options may appear anywhere; after "--" everything is a
/// path.
BatchOptions ReadBatchArguments(const std::vector<std::string>& arguments);

/// An option that a command has beside those of the program.
struct CommandOption {
    const char* name;
    const char* type;
    const char* help;
    std::string* valueOut; ///< not owned
};

/// A command is another way to run the program, with options of its own.
struct CommandForm {
    const char* usage;
    const char* what; ///< it does
    std::vector<CommandOption> own;
    std::vector<const char*> without; ///< options of the program that it does not have
    bool takesPaths = true;
};

/// Reads the arguments after the command's name.
BatchOptions ReadCommandArguments(const std::vector<std::string>& arguments,
                                  const CommandForm& form);

/// The usage of a command and all its options.
std::string CommandHelp(const CommandForm& form);

/// The usage and all options.
std::string BatchHelp();

extern const char* const kBatchUsage;   ///< the short form
extern const char* const kBatchVersion; ///< one line
