#include "batch/BatchArguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include <CLI/CLI.hpp>

#include "batch/BatchHelp.h"
#include "batch/SceneImport.h"

namespace {

constexpr int kMostPixels = 16384; // a side
constexpr int kMostWorkers = 1024;
constexpr const char* kModelPatterns[] = {"*.glb", "*.gltf", "*.obj", "*.fbx",     "*.dae",
                                          "*.3ds", "*.ply",  "*.md3", "*.md5mesh", "*.bvh"};

class BatchFormatter : public CLI::Formatter {
public:
    BatchFormatter() { column_width(26); }
    /// The usage is printed before the description instead.
    std::string make_usage(const CLI::App*, std::string) const override { return ""; }
};

bool ReadNumber(const std::string& text, double& numberOut)
{
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, numberOut);
    return read.ec == std::errc() && read.ptr == end && std::isfinite(numberOut);
}

bool ReadWhole(const std::string& text, int& numberOut)
{
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, numberOut);
    return read.ec == std::errc() && read.ptr == end;
}

/// "320x240".
bool ReadFrameSize(const std::string& text, BatchOptions& options)
{
    const size_t cross = text.find('x');
    return cross != std::string::npos && ReadWhole(text.substr(0, cross), options.frameWidth) &&
           ReadWhole(text.substr(cross + 1), options.frameHeight) &&
           std::min(options.frameWidth, options.frameHeight) >= 1 &&
           std::max(options.frameWidth, options.frameHeight) <= kMostPixels;
}

/// A number with K, M, G or T for powers of 1024. The text is not empty.
bool ReadBytes(std::string text, uint64_t& bytesOut)
{
    static constexpr std::string_view kUnits = "KMGT";
    double factor = 1;
    const size_t unit = kUnits.find(text.back());
    if (unit != std::string::npos) {
        factor = std::ldexp(1.0, 10 * static_cast<int>(unit + 1));
        text.pop_back();
    }
    double number = 0;
    if (!ReadNumber(text, number) || number < 0 || number * factor > 1e18)
        return false;
    bytesOut = static_cast<uint64_t>(number * factor);
    return true;
}

} // namespace

/// The options. Paths are whatever is left over: the library would take names in brackets for lists.
class BatchArguments::Line {
public:
    Line();
    /// For a command with options of its own.
    explicit Line(const CommandForm& form);
    BatchOptions Read(const std::vector<std::string>& arguments);
    std::string Help() const { return std::string(usage) + "\n" + app.help(); }

private:
    void Flag(const char* name, bool& valueOut)
    {
        app.add_flag(name, valueOut, HelpOf(name))->disable_flag_override();
    }
    /// An option with one text; the last one counts.
    CLI::Option* Value(const char* name, std::string& valueOut, const char* type)
    {
        return app.add_option(name, valueOut, HelpOf(name))
            ->type_name(type)
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    }
    void Values(const char* name, std::vector<std::string>& valuesOut)
    {
        app.add_option(name, valuesOut, HelpOf(name))->type_name("GLOB")->expected(1)->take_all();
    }
    void AddSourceOptions();
    void AddFrameOptions();
    void AddRunOptions();
    void AddOutputOptions();
    void Clear();
    std::string ReadLine(std::vector<std::string> arguments);
    std::string ReadTexts();
    std::string ReadConfining();
    std::string ReadPaths();
    std::string FaultOfTogether() const;

    CLI::App app{"", "qsbatch"};
    const char* usage = kBatchUsage;
    BatchOptions options; ///< of the last command line
    std::string frameSize, camera, time, jobs, timeout, memory, untrusted;
    bool takesPaths = true;
};

BatchArguments::Line::Line()
{
    app.description(kBatchWhat);
    app.formatter(std::make_shared<BatchFormatter>());
    app.footer(kBatchEnd);
    app.allow_windows_style_options(false);
    app.allow_extras();
    app.set_help_flag("-h,--help", "this text");
    Flag("--version", options.version);
    AddSourceOptions();
    AddFrameOptions();
    AddRunOptions();
    AddOutputOptions();
}

BatchArguments::Line::Line(const CommandForm& form) : Line()
{
    usage = form.usage;
    app.description(form.what);
    app.footer(kFarmEnd);
    takesPaths = form.takesPaths;
    for (const char* const name : form.without)
        app.remove_option(app.get_option(name));
    for (const CommandOption& option : form.own)
        Value(option.name, *option.valueOut, option.type)->description(option.help);
}

void BatchArguments::Line::AddSourceOptions()
{
    Values("--include", options.includes);
    Values("--exclude", options.excludes);
    Value("--from-file", options.listFile, "LIST");
    Flag("-0", options.listHasNulls);
    Value("--out", options.outDirectory, "DIR");
    Flag("--import", options.import);
    Value("--import-options", options.importOptions, "TEXT");
}

void BatchArguments::Line::AddFrameOptions()
{
    Value("--frames", options.framesDirectory, "DIR");
    Flag("--draw", options.draw);
    Value("--frame-size", frameSize, "WxH");
    Value("--camera", camera, "N");
    Value("--time", time, "S");
    Flag("--loop", options.loop);
    Flag("--fit", options.fit);
    Flag("--no-light", options.noLight);
    Flag("--no-specular", options.noSpecular);
    Flag("--z-buffer", options.zBuffer);
}

void BatchArguments::Line::AddRunOptions()
{
    Value("-j,--jobs", jobs, "N");
    Value("--timeout", timeout, "S");
    Value("--memory", memory, "BYTES");
    Flag("--strict", options.strict);
    Flag("--check", options.check);
    Flag("--fail-fast", options.failFast);
    app.add_flag("--untrusted", untrusted, HelpOf("--untrusted"));
    Flag("--durable", options.durable);
    Value("--state", options.stateFile, "FILE");
    Flag("--force", options.force);
    Flag("--rehash", options.rehash);
    Flag("-n,--dry-run", options.dryRun);
}

void BatchArguments::Line::AddOutputOptions()
{
    Flag("-q,--quiet", options.quiet);
    Flag("-v,--verbose", options.verbose);
    Value("--journal", options.journalFile, "FILE");
    Value("--report", options.reportFile, "FILE.html");
}

std::string BatchArguments::Line::ReadTexts()
{
    double number = 0;
    int whole = 0;
    if (!frameSize.empty() && !ReadFrameSize(frameSize, options))
        return "option '--frame-size' needs two numbers from 1 to 16384, as in 320x240";
    if (!camera.empty()) {
        if (!ReadWhole(camera, whole) || whole < 0)
            return "option '--camera' needs a whole number from 0 on";
        options.camera = whole;
    }
    if (!time.empty()) {
        if (!ReadNumber(time, number))
            return "option '--time' needs a number of seconds";
        options.timeSeconds = number;
    }
    if (!jobs.empty() && (!ReadWhole(jobs, options.workers) || options.workers < 1 ||
                          options.workers > kMostWorkers))
        return "option '-j' needs a whole number from 1 to 1024";
    if (!timeout.empty() &&
        (!ReadNumber(timeout, options.timeoutSeconds) || options.timeoutSeconds < 0))
        return "option '--timeout' needs a number of seconds, 0 for none";
    if (!memory.empty() && !ReadBytes(memory, options.memoryBytes))
        return "option '--memory' needs a size, as in 500M or 4G, 0 for no limit";
    return ReadConfining();
}

std::string BatchArguments::Line::ReadConfining()
{
    if (untrusted.empty())
        return "";
    if (untrusted != "true" && untrusted != "best-effort") // the library's word for a bare flag
        return "option '--untrusted' is given alone or as '--untrusted=best-effort'";
    options.confining = untrusted == "true" ? Confining::kWhole : Confining::kBestEffort;
    if (options.outDirectory.empty())
        return "'--untrusted' needs '--out', a directory outside of all sources";
    if (options.timeoutSeconds <= 0 || options.memoryBytes == 0)
        return "'--untrusted' needs limits: '--timeout' and '--memory' cannot be 0";
    return "";
}

std::string BatchArguments::Line::ReadPaths()
{
    bool arePaths = false;
    for (const std::string& text : app.remaining()) {
        const bool isOption = !arePaths && text.size() > 1 && text[0] == '-';
        if (isOption && text != "--")
            return "unknown option '" + text + "'";
        if (isOption)
            arePaths = true;
        else if (text.empty())
            return "an empty path is given";
        else
            options.paths.push_back(text);
    }
    return "";
}

std::string BatchArguments::Line::ReadLine(std::vector<std::string> arguments)
{
    std::reverse(arguments.begin(), arguments.end()); // the library wants them in reverse order
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        options.help = true;
        return "";
    } catch (const CLI::ParseError& error) {
        return error.what();
    }
    if (options.version)
        return "";
    for (const std::string& error : {ReadTexts(), ReadPaths()}) {
        if (!error.empty())
            return error;
    }
    if (options.includes.empty() && options.import)
        options.includes.assign(std::begin(kModelPatterns), std::end(kModelPatterns));
    else if (options.includes.empty())
        options.includes.push_back("*.qsa");
    return FaultOfTogether();
}

/// What is wrong with options that are right by themselves.
std::string BatchArguments::Line::FaultOfTogether() const
{
    if (!options.importOptions.empty() && !options.import)
        return "option '--import-options' goes with '--import' only";
    const std::string importFault =
        options.importOptions.empty() ? "" : FaultOfImportOptions(options.importOptions);
    if (!importFault.empty())
        return "option '--import-options': " + importFault;
    if (!takesPaths && !options.paths.empty())
        return "a path is given, '" + options.paths.front() + "', but none is taken";
    if (takesPaths && options.paths.empty() && options.listFile.empty())
        return "a file or a directory is needed";
    if (options.listHasNulls && options.listFile.empty())
        return "option '-0' goes with '--from-file' only";
    if (options.quiet && options.verbose)
        return "'--quiet' and '--verbose' do not go together";
    return "";
}

/// What the last command line left in the places that options fill.
void BatchArguments::Line::Clear()
{
    options = {};
    for (std::string* text : {&frameSize, &camera, &time, &jobs, &timeout, &memory, &untrusted})
        text->clear();
}

BatchOptions BatchArguments::Line::Read(const std::vector<std::string>& arguments)
{
    Clear();
    options.error = ReadLine(arguments);
    return options;
}

// ---- The door

BatchArguments::BatchArguments() : line(std::make_unique<Line>())
{}

BatchArguments::BatchArguments(const CommandForm& form) : line(std::make_unique<Line>(form))
{}

BatchArguments::~BatchArguments() = default;

BatchOptions BatchArguments::Read(const std::vector<std::string>& arguments)
{
    return line->Read(arguments);
}

std::string BatchArguments::Help() const
{
    return line->Help();
}
