#include "batch/SourceTrees.h"

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

#include "app/StartGraphics.h"
#include "batch/WorkingDirectory.h"
#include "gfx/DefaultPaths.h"
#include "platform/headless/win32/HostPath.h"

namespace fs = std::filesystem;

std::string RealPathOf(const std::string& path)
{
    std::error_code ignored;
    std::string real = fs::weakly_canonical(fs::absolute(path, ignored), ignored).string();
    if (real.size() > 1 && real.back() == '/')
        real.pop_back();
    return real;
}

bool IsInDirectory(const std::string& path, const std::string& directory)
{
    return path == directory || directory == "/" || path.starts_with(directory + "/");
}

SourceTrees::SourceTrees(const SceneList& list)
{
    for (const std::string& directory : list.NamedDirectories())
        AddDirectory(directory);
    MakeEngine();
    ReadDefaultPaths();
    ShutdownGraphics();
    for (const char* const path : {gDefaultTexturePath, gDefaultBasePath}) {
        const std::string host = headless::ResolveHostPath(path);
        if (host.starts_with('/')) // another one is relative to the scene
            AddDirectory(host);
    }
}

void SourceTrees::AddDirectory(const std::string& path)
{
    const std::string real = RealPathOf(path);
    const auto has = [&](const std::string& tree) { return IsInDirectory(real, tree); };
    if (std::any_of(paths.begin(), paths.end(), has))
        return;
    std::erase_if(paths, [&](const std::string& tree) { return IsInDirectory(tree, real); });
    paths.push_back(real);
}

bool SourceTrees::HaveFile(const std::string& path) const
{
    struct stat info;
    if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    const std::string real = RealPathOf(path);
    return std::any_of(paths.begin(), paths.end(),
                       [&](const std::string& tree) { return IsInDirectory(real, tree); });
}

std::string SourceTrees::FaultOfResults(const std::string& option,
                                        const std::string& directory) const
{
    const std::string real = RealPathOf(directory);
    for (const std::string& tree : paths) {
        if (IsInDirectory(real, tree) || IsInDirectory(tree, real))
            return "'--untrusted' needs '" + option + "' outside of '" + tree +
                   "', which scenes may read; name another directory";
    }
    return "";
}

std::string SourceTrees::FaultOfPlaces(const BatchOptions& options,
                                       const std::string& statePath) const
{
    std::string fault = FaultOfResults("--out", options.outDirectory);
    if (fault.empty() && !options.framesDirectory.empty())
        fault = FaultOfResults("--frames", options.framesDirectory);
    for (const std::string& file : {statePath, options.journalFile, options.reportFile}) {
        for (const std::string& directory : {options.outDirectory, options.framesDirectory}) {
            const bool isExposed = !file.empty() && !directory.empty() &&
                                   IsInDirectory(RealPathOf(file), RealPathOf(directory));
            if (fault.empty() && isExposed)
                fault = "'" + file + "' is where scenes may write, below '" + directory +
                        "'; with '--untrusted' choose another place";
        }
    }
    return fault;
}
