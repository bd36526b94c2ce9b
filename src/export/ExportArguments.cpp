#include "export/ExportArguments.h"

#include <algorithm>
#include <filesystem>

#include <CLI/CLI.hpp>

const char* const kExportUsage = "Usage: qsbexport SCENE [-o FILE.glb|FILE.gltf] [--quiet]\n"
                                 "       qsbexport --help | --version\n";
const char* const kExportVersion = "qsbexport " QSA_VERSION "\n";

namespace {

bool EndsIn(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// The options and the places that they fill.
class ExportCommandLine {
public:
    explicit ExportCommandLine(ExportArguments& read)
        : app("Writes a QSA or QSB scene as glTF 2.0, for other tools to open.")
    {
        app.set_help_flag("-h,--help", "this text");
        app.add_flag("--version", read.version, "the program's version");
        app.add_flag("-q,--quiet", read.quiet, "do not tell what the file cannot carry");
        app.add_option("-o,--output", read.target,
                       "the file to write: one .glb, or a .gltf with its\n"
                       "buffer and pictures beside it; without: SCENE.glb")
            ->option_text("FILE");
        app.add_option("SCENE", read.scene)->group("");
        app.footer("Exit status: 0 success, 2 an error.");
    }

    CLI::App app;
};

std::string FaultOf(const ExportArguments& read)
{
    if (read.help || read.version)
        return "";
    if (read.scene.empty())
        return "a scene is needed";
    if (!EndsIn(read.target, ".glb") && !EndsIn(read.target, ".gltf"))
        return "the file of '-o' must end in .glb or .gltf";
    return "";
}

} // namespace

ExportArguments ReadExportArguments(std::vector<std::string> arguments)
{
    ExportArguments read;
    ExportCommandLine line(read);
    std::reverse(arguments.begin(), arguments.end()); // the library wants them in reverse order
    try {
        line.app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        read.help = true;
    } catch (const CLI::ParseError& error) {
        read.error = error.what();
        return read;
    }
    if (read.target.empty())
        read.target = std::filesystem::path(read.scene).replace_extension(".glb").string();
    read.error = FaultOf(read);
    return read;
}

std::string ExportHelp()
{
    ExportArguments read;
    ExportCommandLine line(read);
    return std::string(kExportUsage) + "\n" + line.app.help("", CLI::AppFormatMode::Sub);
}
