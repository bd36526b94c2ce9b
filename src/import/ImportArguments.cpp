#include "import/ImportArguments.h"

#include <algorithm>

#include <CLI/CLI.hpp>

const char* const kImportUsage =
    "Usage: qsaimport MODEL... [-o DIR] [--up y|z] [--scale S] [--fps N] [--animation A]\n"
    "                 [--time S] [--memory MIB] [--quiet]\n"
    "       qsaimport --help | --version\n";
const char* const kImportVersion = "qsaimport " QSA_VERSION "\n";

/// The options and the places that they fill.
struct ImportCommandLine::Options {
    Options()
    {
        app.set_help_flag("-h,--help", "this text");
        app.add_flag("--version", read.version, "the program's version");
        app.add_flag("-q,--quiet", read.quiet, "do not tell what a scene cannot carry");
        app.add_option("-o,--output", read.options.folder,
                       "the folder for the scenes, made if it is missing;\n"
                       "without: beside each model")
            ->option_text("DIR");
        app.add_option("--up", up,
                       "the axis that points up in the models; without: as their\n"
                       "format says")
            ->option_text("y|z")
            ->check(CLI::IsMember({"y", "z"}));
        app.add_option("--scale", read.options.plan.unit, "multiply all lengths")
            ->option_text("S")
            ->check(CLI::Range(1e-9, 1e9));
        app.add_option("--fps", read.options.plan.framesPerSecond, "frames per second; without: 30")
            ->option_text("N")
            ->check(CLI::Range(0.1, 1000.0));
        app.add_option("--animation", read.options.animation,
                       "the animation to carry, by name or number from 0; without:\n"
                       "the first")
            ->option_text("A");
        app.add_option("--time", read.options.mostSeconds,
                       "seconds for a model that is read by a child process;\n"
                       "without: 10, and 1 for each MiB")
            ->option_text("S")
            ->check(CLI::Range(0.1, 1e6));
        app.add_option("--memory", megabytes, "its memory in MiB; without: 2048")
            ->option_text("MIB")
            ->check(CLI::Range(64.0, 1e6));
        app.add_option("MODEL", read.models)->group("");
        app.footer("Exit status: 0 success, 1 a model could not be read, 2 wrong usage.");
    }

    CLI::App app{"Writes models of other programs as QSA scenes, with their pictures."};
    ImportArguments read; ///< of the last command line
    std::string up;
    double megabytes = 0;
};

ImportCommandLine::ImportCommandLine() : options(std::make_unique<Options>())
{}

ImportCommandLine::~ImportCommandLine() = default;

ImportArguments ImportCommandLine::Read(std::vector<std::string> arguments)
{
    ImportArguments& read = options->read;
    read = {};
    options->up.clear();
    options->megabytes = 0;
    std::reverse(arguments.begin(), arguments.end()); // the library wants them in reverse order
    try {
        options->app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        read.help = true;
        return read;
    } catch (const CLI::ParseError& error) {
        read.error = error.what();
        return read;
    }
    if (!options->up.empty())
        read.options.plan.up = options->up == "y" ? PlanOptions::Up::kY : PlanOptions::Up::kZ;
    if (options->megabytes > 0)
        read.options.mostBytes = static_cast<uint64_t>(options->megabytes) << 20;
    if (!read.version && read.models.empty())
        read.error = "a model is needed";
    return read;
}

std::string ImportCommandLine::Help() const
{
    return std::string(kImportUsage) + "\n" + options->app.help("", CLI::AppFormatMode::Sub);
}
