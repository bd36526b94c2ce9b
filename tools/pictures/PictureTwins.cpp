#include "tools/pictures/PictureTwins.h"

#include "app/CommandLine.h"
#include "app/DirectorySearch.h"
#include "app/FileWalk.h"
#include "app/Options.h"
#include "app/TargetName.h"
#include "platform/ReplacementFile.h"
#include "platform/headless/d3d9/FrameFile.h"
#include "platform/headless/win32/JoinArguments.h"

#include <unordered_map>

using namespace headless;

namespace {

/// For each picture, the number of the name that gives it.
using Givers = std::unordered_map<std::string, size_t>;

/// Reads the options and the file name as the program does. False if it finds no name.
bool TakeCommandLine(std::vector<std::string> arguments)
{
    std::vector<const char*> texts;
    for (const std::string& argument : arguments)
        texts.push_back(argument.c_str());
    const std::string line = JoinArguments(static_cast<int>(texts.size()), texts.data());
    ParseOptions(line.c_str());
    return CmdGetFileName(line.c_str(), 1, gFilePattern) >= 0;
}

bool IsDrawn(const DirectorySearch& match)
{
    const bool isKept =
        gNoOverwrite && ReplacementFile::IsTargetThere(MakeTargetName(match.Name()).c_str());
    return IsFileOfWalk(match.Attributes()) && !isKept;
}

/// Records the pictures of one directory; the first one that another name already gives is stored in
/// `twinsOut`.
void NotePictures(const char* below, size_t name, Givers& givers,
                  std::optional<std::pair<std::string, size_t>>& twinOut)
{
    for (DirectorySearch matches(gFilePattern); !matches.IsAtEnd(); matches.Next()) {
        if (!IsDrawn(matches))
            continue;
        const std::string picture = FramePath(below, matches.Name());
        const auto [giver, isNew] = givers.emplace(picture, name);
        if (!isNew && giver->second != name && !twinOut)
            twinOut.emplace(picture, giver->second);
    }
}

} // namespace

std::optional<PictureTwins> FindPictureTwins(const std::vector<std::string>& options,
                                             const std::vector<std::string>& names)
{
    Givers givers;
    for (size_t i = 0; i < names.size(); ++i) {
        std::vector<std::string> arguments = options;
        arguments.push_back(names[i]);
        if (!TakeCommandLine(std::move(arguments)))
            continue;
        std::optional<std::pair<std::string, size_t>> twin;
        WalkFilePattern(
            [&](const char*, const char* below) { NotePictures(below, i, givers, twin); });
        if (twin)
            return PictureTwins{twin->first, names[twin->second], names[i]};
    }
    return std::nullopt;
}
