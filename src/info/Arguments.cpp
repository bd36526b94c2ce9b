#include "info/Arguments.h"

#include <charconv>
#include <cmath>

namespace {

struct ModeOption {
    const char* text;
    InfoMode mode;
};
constexpr ModeOption kModes[] = {
    {"--tree", InfoMode::kTree},       {"--effects", InfoMode::kEffects},
    {"--json", InfoMode::kJson},       {"--check", InfoMode::kCheck},
    {"--help", InfoMode::kHelp},       {"-h", InfoMode::kHelp},
    {"--version", InfoMode::kVersion},
};

constexpr std::string_view kTolerance = "--tolerance";

class ArgumentReader {
public:
    explicit ArgumentReader(const std::vector<std::string>& argumentsIn) : arguments(argumentsIn) {}

    InfoArguments Read()
    {
        bool areFiles = false;
        for (at = 0; at < arguments.size() && result.error.empty(); ++at) {
            const std::string& text = arguments[at];
            const bool isOption = !areFiles && text.size() > 1 && text[0] == '-';
            if (isOption && text == "--")
                areFiles = true;
            else if (isOption)
                ReadOption(text);
            else if (at == 0 && text == "diff")
                result.mode = InfoMode::kDiff;
            else
                result.files.push_back(text);
        }
        if (result.error.empty())
            CheckWhole();
        return result;
    }

private:
    void Fail(const std::string& text) { result.error = text; }

    void ReadOption(const std::string& text)
    {
        if (text == "--all") {
            result.all = true;
            return;
        }
        if (text == "--exact") {
            SetTolerance(0);
            return;
        }
        if (text.compare(0, kTolerance.size(), kTolerance) == 0) {
            ReadTolerance(text);
            return;
        }
        for (const ModeOption& option : kModes) {
            if (text != option.text)
                continue;
            const bool isFree = result.mode == InfoMode::kReport || result.mode == option.mode;
            if (!isFree && option.mode != InfoMode::kHelp)
                Fail("option '" + text + "' does not go with the others");
            else
                result.mode = option.mode;
            return;
        }
        Fail("unknown option '" + text + "'");
    }

    /// "--tolerance T" or "--tolerance=T".
    void ReadTolerance(const std::string& text)
    {
        std::string value;
        if (text.size() > kTolerance.size() && text[kTolerance.size()] == '=')
            value = text.substr(kTolerance.size() + 1);
        else if (text.size() > kTolerance.size())
            return Fail("unknown option '" + text + "'");
        else if (at + 1 < arguments.size())
            value = arguments[++at];
        const char* const end = value.data() + value.size();
        double tolerance = 0;
        const auto read = std::from_chars(value.data(), end, tolerance);
        const bool isNumber = read.ec == std::errc() && read.ptr == end;
        if (!isNumber || !std::isfinite(tolerance) || tolerance < 0)
            return Fail("option '--tolerance' needs a number from 0 on");
        SetTolerance(tolerance);
    }

    void SetTolerance(double tolerance)
    {
        if (result.tolerance)
            return Fail("'--tolerance' and '--exact' are given only once, and not together");
        result.tolerance = tolerance;
    }

    void CheckWhole()
    {
        if (result.mode == InfoMode::kHelp || result.mode == InfoMode::kVersion)
            return;
        const size_t wanted = result.mode == InfoMode::kDiff ? 2 : 1;
        if (result.files.size() < wanted)
            Fail(wanted == 2 ? "two files are needed" : "a file is needed");
        else if (result.files.size() > wanted)
            Fail("one file too many: '" + result.files[wanted] + "'");
        else if (result.tolerance && result.mode != InfoMode::kDiff)
            Fail("'--tolerance' and '--exact' go with diff only");
    }

    const std::vector<std::string>& arguments;
    size_t at = 0;
    InfoArguments result;
};

} // namespace

InfoArguments ReadArguments(const std::vector<std::string>& arguments)
{
    return ArgumentReader(arguments).Read();
}
