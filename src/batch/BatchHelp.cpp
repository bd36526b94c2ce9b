#include "batch/BatchHelp.h"

#include <cstring>

#include "batch/BatchArguments.h"

const char* const kBatchUsage = "Usage: qsbatch [OPTION...] PATH...\n"
                                "       qsbatch [OPTION...] --from-file LIST\n"
                                "       qsbatch plan|run|merge [OPTION...]\n"
                                "       qsbatch --help | --version\n";

const char* const kBatchVersion = "qsbatch " QSA_VERSION "\n";

const char* const kBatchWhat =
    "Converts many QSA scenes to QSB. A scene that fails does not stop the others, and what\n"
    "is up to date is left alone. Directories are searched with all below them.";

const char* const kBatchEnd =
    "All arguments after -- are paths.\n"
    "Commands for several machines, each with its own --help; a directory of such a name is\n"
    "given as ./plan:\n"
    "  plan                    shares scenes out to chunks\n"
    "  run                     converts a chunk\n"
    "  merge                   puts the journals of all chunks together\n"
    "Exit status: 0 all done, 1 some scenes failed, 2 wrong usage or surroundings,\n"
    "130 and 143 interrupted.";

const char* const kFarmEnd =
    "All arguments after -- are paths.\n"
    "Exit status: 0 all done, 1 some scenes failed, 2 wrong usage or surroundings,\n"
    "130 and 143 interrupted.";

namespace {

struct OptionHelp {
    const char* name;
    const char* help;
};

// clang-format off
const OptionHelp kOptionHelps[] = {
    {"--version", "the program's version"},
    {"--include", "take files with such names from directories (*.qsa)"},
    {"--exclude", "leave out files and directories with such names or paths"},
    {"--from-file", "read paths from LIST, one a line; - is standard input"},
    {"-0", "paths in LIST end in NUL, not in a line end"},
    {"--out", "write the targets below DIR, in the directories of their sources"},
    {"--import", "take models (glTF, OBJ, FBX, ...) instead of scenes; their texts and pictures go\n"
                 "beside the targets"},
    {"--import-options", "options of qsaimport for --import, as one text"},
    {"--frames", "draw a frame of each scene and keep it below DIR"},
    {"--draw", "draw the frames without keeping them"},
    {"--frame-size", "size of the frames in pixels (320x240)"},
    {"--camera", "draw by the scene's camera N, from 0 (0)"},
    {"--time", "draw the scene at S seconds (0)"},
    {"--loop", "repeat the animation; stored in the target"},
    {"--fit", "fit the near and far planes to the scene"},
    {"--no-light", "draw without lighting"},
    {"--no-specular", "draw without specular highlights"},
    {"--z-buffer", "draw with a Z buffer instead of a W buffer"},
    {"-j,--jobs", "worker processes (as many as processors)"},
    {"--timeout", "seconds for one scene (60); 0 for no limit"},
    {"--memory", "memory for one worker, as in 500M (4G); 0 for no limit"},
    {"--strict", "a warning fails the scene; its target stays as it was"},
    {"--check", "read each target again and look for damage"},
    {"--untrusted", "close each scene into a process of its own that reads sources and writes to\n"
                    "--out only; =best-effort: without what the kernel lacks"},
    {"--durable", "what is reported as done stays even if the power fails"},
    {"--fail-fast", "start no more scenes after the first failure"},
    {"--state", "remember in FILE what is up to date"},
    {"--force", "convert what is up to date, too"},
    {"--rehash", "compare contents even if sizes and times are the same"},
    {"-n,--dry-run", "print what would be done, and why; change nothing"},
    {"-q,--quiet", "print failures only"},
    {"-v,--verbose", "print notes, and a line for each scene"},
    {"--journal", "write a line of JSON for each scene to FILE"},
    {"--report", "write a page with all scenes to FILE"},
};
// clang-format on

} // namespace

const char* HelpOf(const char* name)
{
    for (const OptionHelp& entry : kOptionHelps) {
        if (std::strcmp(entry.name, name) == 0)
            return entry.help;
    }
    return "";
}
