#include "info/Arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <CLI/CLI.hpp>

namespace {

struct ModeOption {
    const char* name;
    InfoMode mode;
};
constexpr ModeOption kModes[] = {
    {"--tree", InfoMode::kTree},       {"--effects", InfoMode::kEffects},
    {"--json", InfoMode::kJson},       {"--check", InfoMode::kCheck},
    {"--version", InfoMode::kVersion}, {"--disassemble", InfoMode::kDisassemble},
    {"--compile", InfoMode::kCompile},
};

class InfoFormatter : public CLI::Formatter {
public:
    InfoFormatter() { column_width(22); }
    /// The usage is printed before the description instead.
    std::string make_usage(const CLI::App*, std::string) const override { return ""; }
};

/// The options. Files are whatever is left over: the library would take names in brackets for
/// lists.
class CommandLine {
public:
    CommandLine()
    {
        app.description(kInfoHelp.what);
        app.formatter(std::make_shared<InfoFormatter>());
        app.footer(kInfoHelp.end);
        app.allow_windows_style_options(false);
        app.allow_extras();
        app.set_help_flag("-h,--help", kInfoHelp.help);
        AddFlag("--tree", kInfoHelp.tree);
        AddFlag("--effects", kInfoHelp.effects);
        AddFlag("--json", kInfoHelp.json);
        AddFlag("--check", kInfoHelp.check);
        AddFlag("--disassemble", kInfoHelp.disassemble);
        AddFlag("--compile", kInfoHelp.compile);
        app.add_option("-o,--output", kInfoHelp.output)
            ->type_name("FILE")
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
        AddFlag("--version", kInfoHelp.version);
        AddFlag("--all", kInfoHelp.all);
        app.add_option("--tolerance", kInfoHelp.tolerance)
            ->type_name("T")
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
        AddFlag("--exact", kInfoHelp.exact);
    }

    /// Returns what is wrong with the command line; empty if nothing is.
    std::string Read(std::vector<std::string> arguments, InfoArguments& readOut);
    std::string Help() const { return app.help(); }

private:
    /// A flag that takes no value.
    void AddFlag(const char* const name, const char* const help)
    {
        app.add_flag(name, help)->disable_flag_override();
    }
    std::string ReadMode(InfoArguments& readOut) const;
    std::string ReadTolerance(InfoArguments& readOut) const;
    std::string ReadFiles(InfoArguments& readOut) const;

    CLI::App app{"", "qsbinfo"};
};

/// The one requested mode, `diff` included.
std::string CommandLine::ReadMode(InfoArguments& readOut) const
{
    for (const CLI::Option* option : app.parse_order()) {
        const auto mode =
            std::find_if(std::begin(kModes), std::end(kModes), [option](const ModeOption& known) {
                return option->get_name() == known.name;
            });
        if (mode == std::end(kModes))
            continue;
        if (readOut.mode != InfoMode::kReport && readOut.mode != mode->mode)
            return "option '" + option->get_name() + "' does not go with the others";
        readOut.mode = mode->mode;
    }
    return "";
}

std::string CommandLine::ReadTolerance(InfoArguments& readOut) const
{
    const CLI::Option& given = *app.get_option("--tolerance");
    const size_t exacts = app.get_option("--exact")->count();
    if (given.count() + exacts > 1)
        return "'--tolerance' and '--exact' are given only once, and not together";
    if (exacts == 1)
        readOut.tolerance = 0;
    if (given.empty())
        return "";
    const std::string text = given.results().front();
    const char* const end = text.data() + text.size();
    double tolerance = 0;
    const auto read = std::from_chars(text.data(), end, tolerance);
    const bool isNumber = read.ec == std::errc() && read.ptr == end;
    if (!isNumber || !std::isfinite(tolerance) || tolerance < 0)
        return "option '--tolerance' needs a number from 0 on";
    readOut.tolerance = tolerance;
    return "";
}

std::string CommandLine::ReadFiles(InfoArguments& readOut) const
{
    bool areFiles = false;
    for (const std::string& text : app.remaining()) {
        const bool isOption = !areFiles && text.size() > 1 && text[0] == '-';
        if (isOption && text != "--")
            return "unknown option '" + text + "'";
        if (isOption)
            areFiles = true;
        else
            readOut.files.push_back(text);
    }
    return "";
}

std::string CommandLine::Read(std::vector<std::string> arguments, InfoArguments& readOut)
{
    std::reverse(arguments.begin(), arguments.end()); // the library wants them in reverse order
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        readOut.mode = InfoMode::kHelp;
        return "";
    } catch (const CLI::ArgumentMismatch&) { // of the two options that take a value
        return app.get_option("--compile")->count() > 0
                   ? "option '-o' needs a file"
                   : "option '--tolerance' needs a number from 0 on";
    } catch (const CLI::ParseError& error) {
        return error.what();
    }
    for (const std::string& error :
         {ReadFiles(readOut), ReadMode(readOut), ReadTolerance(readOut)}) {
        if (!error.empty())
            return error;
    }
    if (const CLI::Option& output = *app.get_option("--output"); !output.empty())
        readOut.target = output.results().front();
    readOut.all = app.get_option("--all")->count() > 0;
    return "";
}

/// Returns what is wrong with options and files that are each valid on their own.
std::string FaultOfWhole(const InfoArguments& read)
{
    if (read.mode == InfoMode::kHelp || read.mode == InfoMode::kVersion)
        return "";
    const size_t wanted = read.mode == InfoMode::kDiff ? 2 : 1;
    if (read.files.size() < wanted)
        return wanted == 2 ? "two files are needed" : "a file is needed";
    if (read.files.size() > wanted)
        return "one file too many: '" + read.files[wanted] + "'";
    if ((read.mode == InfoMode::kCompile) != !read.target.empty())
        return "'--compile' and '-o FILE' go together";
    if (read.tolerance && read.mode != InfoMode::kDiff)
        return "'--tolerance' and '--exact' go with diff only";
    return "";
}

} // namespace

InfoArguments ReadArguments(const std::vector<std::string>& arguments)
{
    InfoArguments read;
    const bool isDiff = !arguments.empty() && arguments[0] == "diff";
    if (isDiff)
        read.mode = InfoMode::kDiff;
    read.error = CommandLine().Read({arguments.begin() + (isDiff ? 1 : 0), arguments.end()}, read);
    if (read.error.empty())
        read.error = FaultOfWhole(read);
    return read;
}

std::string InfoHelp()
{
    return std::string(kInfoUsage) + "\n" + CommandLine().Help();
}
