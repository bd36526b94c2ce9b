#include "batch/WorkingDirectory.h"

#include <cerrno>

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>

#include "batch/SteadyCalls.h"

Descriptor OpenDirectory(int base, const std::string& path)
{
    return OpenAt(base, path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

Descriptor MakeDirectory(int base, const std::string& path)
{
    Descriptor opened = OpenDirectory(base, path);
    if (opened.IsOpen() || errno != ENOENT)
        return opened;
    for (size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string part = path.substr(0, end);
        if (mkdirat(base, part.c_str(), 0777) != 0 && errno != EEXIST)
            return Descriptor();
        if (end == std::string::npos)
            return OpenDirectory(base, path);
    }
}

std::string PathOfDirectory(const Descriptor& directory)
{
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(directory.Get());
    const ssize_t length = readlink(link.c_str(), path, sizeof path);
    return length > 0 ? std::string(path, static_cast<size_t>(length)) : std::string();
}

SplitPath::SplitPath(const std::string& path)
{
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        directory = ".";
        leaf = path;
        return;
    }
    directory = path.substr(0, slash == 0 ? 1 : slash);
    leaf = path.substr(slash + 1);
}

WorkingDirectory::WorkingDirectory(const Descriptor& directory, const Descriptor& beforeIn)
    : before(beforeIn),
      isChanged(fchdir(directory.Get()) == 0)
{}

WorkingDirectory::~WorkingDirectory()
{
    if (isChanged && fchdir(before.Get()) != 0)
        return; // it may not be entered any more
}
