#pragma once

#include <memory>
#include <string>
#include <vector>

#include "batch/BatchOptions.h"

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

/// All options of the program or of a command of it, for any number of command lines.
class BatchArguments {
public:
    BatchArguments();
    /// `form` and the texts that its options fill live as long as this object.
    explicit BatchArguments(const CommandForm& form);
    ~BatchArguments();
    BatchArguments(const BatchArguments&) = delete;
    BatchArguments& operator=(const BatchArguments&) = delete;

    /// Reads the arguments after the name of the program or command. Options may appear anywhere; after "--"
    /// everything is a path. Texts of a command's own options that are not given stay as they are.
    BatchOptions Read(const std::vector<std::string>& arguments);
    /// The usage and all options.
    std::string Help() const;

private:
    class Line;
    std::unique_ptr<Line> line; ///< never null
};

extern const char* const kBatchUsage;   ///< the short form
extern const char* const kBatchVersion; ///< one line
