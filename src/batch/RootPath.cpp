#include "batch/RootPath.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Without "." and double slashes. Nothing if it has "..", which leads elsewhere where links are.
std::optional<std::string> PlainPath(const std::string& absolute)
{
    std::string plain;
    for (size_t at = 0; at < absolute.size();) {
        const size_t end = std::min(absolute.find('/', at), absolute.size());
        const std::string part = absolute.substr(at, end - at);
        if (part == "..")
            return std::nullopt;
        if (!part.empty() && part != ".")
            plain += "/" + part;
        at = end + 1;
    }
    return plain;
}

/// What follows a directory, both plain; "." for the directory itself.
std::optional<std::string> Remainder(const std::string& path, const std::string& directory)
{
    if (path == directory)
        return ".";
    const std::string prefix = directory + "/";
    if (!path.starts_with(prefix))
        return std::nullopt;
    return path.substr(prefix.size());
}

/// All links followed but that of the last part, which is a scene's own name.
std::string DirectoriesResolved(const std::string& absolute)
{
    const std::filesystem::path path(absolute);
    std::error_code ignored;
    if (path.filename().empty() || path.filename() == "..")
        return std::filesystem::weakly_canonical(path, ignored).string();
    return (std::filesystem::weakly_canonical(path.parent_path(), ignored) / path.filename())
        .string();
}

} // namespace

bool RootPath::Open(const std::string& directory)
{
    std::error_code failure;
    started = std::filesystem::current_path(failure).string();
    if (failure && failure != std::errc::no_such_file_or_directory) {
        errno = failure.value();
        return false;
    }
    const std::unique_ptr<char, void (*)(void*)> found(
        realpath(directory.empty() ? "." : directory.c_str(), nullptr), std::free);
    struct stat info;
    if (!found || stat(found.get(), &info) != 0)
        return false;
    if (!S_ISDIR(info.st_mode)) {
        errno = ENOTDIR;
        return false;
    }
    place = PlainPath(found.get()).value_or("");
    named = PlainPath(Absolute(directory)).value_or(place);
    return true;
}

bool RootPath::Enter() const
{
    return chdir(place.empty() ? "/" : place.c_str()) == 0;
}

std::string RootPath::Absolute(const std::string& path) const
{
    return path.starts_with('/') ? path : started + "/" + path;
}

std::optional<std::string> RootPath::Below(const std::string& path) const
{
    const std::string absolute = Absolute(path);
    if (const auto plain = PlainPath(absolute)) {
        for (const std::string& root : {named, place}) {
            if (auto rest = Remainder(*plain, root))
                return rest;
        }
    }
    const auto resolved = PlainPath(DirectoriesResolved(absolute));
    return resolved ? Remainder(*resolved, place) : std::nullopt;
}

std::string RootPath::FromRoot(const std::string& path) const
{
    if (path.empty())
        return "";
    if (const auto below = Below(path))
        return *below;
    const std::string absolute = Absolute(path);
    return PlainPath(absolute).value_or(DirectoriesResolved(absolute));
}
