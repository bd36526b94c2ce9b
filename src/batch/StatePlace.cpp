// Where the state of a run is kept.

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>

#include "batch/BatchState.h"
#include "batch/SourceTrees.h"
#include "batch/WorkingDirectory.h"

namespace {

constexpr const char* kNameInOut = ".qsbatch-state";

std::string AbsoluteDirectoryOf(const std::string& path)
{
    struct stat info;
    const bool isDirectory = stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
    const std::string directory = isDirectory ? path : SplitPath(path).directory;
    const std::unique_ptr<char, void (*)(void*)> found(realpath(directory.c_str(), nullptr),
                                                       std::free);
    const std::string absolute = found ? found.get() : directory;
    return absolute == "/" ? "" : absolute;
}

/// The part of both that is a directory.
std::string CommonDirectory(const std::string& a, const std::string& b)
{
    const size_t shorter = std::min(a.size(), b.size());
    size_t same = 0;
    while (same < shorter && a[same] == b[same])
        ++same;
    const bool isWhole =
        (same == a.size() || a[same] == '/') && (same == b.size() || b[same] == '/');
    if (isWhole)
        return a.substr(0, same);
    const size_t slash = a.rfind('/', same);
    return slash == std::string::npos ? "" : a.substr(0, slash);
}

/// The directory that all paths are below; empty for that of the whole system.
std::string RootOf(const BatchOptions& options)
{
    std::vector<std::string> paths = options.paths;
    if (!options.listFile.empty())
        paths.emplace_back("."); // most lists name files below the directory in which they are made
    std::string root = AbsoluteDirectoryOf(paths.front());
    for (const std::string& path : paths)
        root = CommonDirectory(root, AbsoluteDirectoryOf(path));
    return root;
}

std::string StateHome()
{
    const char* const given = std::getenv("XDG_STATE_HOME");
    if (given && given[0] == '/')
        return given;
    const char* const home = std::getenv("HOME");
    return std::string(home ? home : "") + "/.local/state";
}

} // namespace

std::string BatchState::DefaultPath(const BatchOptions& options)
{
    if (options.IsConfined()) // untrusted scenes write below the directory
        return StateHome() + "/qsbatch/" + HashText(HashOf(RealPathOf(options.outDirectory))) +
               ".state";
    if (!options.outDirectory.empty())
        return options.outDirectory + "/" + kNameInOut;
    return StateHome() + "/qsbatch/" + HashText(HashOf(RootOf(options))) + ".state";
}
