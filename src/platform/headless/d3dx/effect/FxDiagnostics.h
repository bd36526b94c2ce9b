#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace headless::fx {

/// A position in one of the files of an effect. Lines and columns count from 1, columns in bytes.
struct FxPlace {
    uint32_t file = 0; ///< index given by `FxDiagnostics::AddFile`
    uint32_t line = 1;
    uint32_t column = 1;
};

/// The error numbers, by kind: 1xxx reading and macros, 3xxx language, 4xxx limits.
enum class FxError {
    UnreadableInclude = 1001,
    BadDirective = 1002,
    UnbalancedCondition = 1003,
    BadCondition = 1004,
    BadMacro = 1005,
    BadMacroCall = 1006,
    ErrorDirective = 1007,
    BadText = 1008,
    Syntax = 3000,
    UnknownName = 3001,
    Redefinition = 3002,
    UnknownType = 3003,
    TypeMismatch = 3004,
    BadInitializer = 3005,
    BadIndex = 3006,
    BadComponent = 3007,
    UnknownState = 3008,
    BadNumber = 3009,
    SharedMismatch = 3010,
    Limit = 4000,
};

/// The errors of an effect. The first one stops all processing, but for those in functions of shaders: all of
/// them are told, each once.
class FxDiagnostics {
public:
    /// Returns the index that stands for the file in places.
    uint32_t AddFile(std::string name);
    const std::string& FileName(uint32_t file) const { return files[file]; }
    /// "file(line,column)". File names are cut at 512 bytes.
    std::string PlaceText(FxPlace place) const;

    /// Stores "file(line,column): error X1234: text" unless there is an error already. Always
    /// returns false, for use in a `return` statement.
    bool Fail(FxPlace place, FxError error, const std::string& what)
    {
        if (!Failed())
            Keep(place, error, what);
        return false;
    }

    /// Stores an error in a shader's functions; reading goes on.
    void Add(FxPlace place, FxError error, const std::string& what);

    bool Failed() const { return !text.empty(); }
    const std::string& Text() const { return text; }

private:
    std::string LineOf(FxPlace place, FxError error, const std::string& what) const;
    void Keep(FxPlace place, FxError error, const std::string& what);

    std::vector<std::string> files;
    std::string text;
};

} // namespace headless::fx
