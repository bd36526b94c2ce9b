#include "platform/headless/win32/DirectoryEntries.h"

#include "platform/headless/win32/Uninterrupted.h"

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace headless {

namespace {

struct DirectoryCloser {
    void operator()(DIR* opened) const { closedir(opened); }
};

using DirectoryStream = std::unique_ptr<DIR, DirectoryCloser>;

DirectoryStream OpenEntries(int descriptor)
{
    DirectoryStream opened(descriptor >= 0 ? fdopendir(descriptor) : nullptr);
    if (!opened && descriptor >= 0) {
        const int reason = errno;
        close(descriptor);
        errno = reason;
    }
    return opened;
}

/// Null with `errno` 0 at the end.
const dirent* NextEntry(DIR* entries)
{
    const dirent* entry = nullptr;
    do {
        errno = 0;
        entry = readdir(entries);
    } while (!entry && errno == EINTR);
    return entry;
}

} // namespace

bool VisitEntries(const std::string& directory, const std::function<void(const dirent&)>& visit)
{
    const char* const path = directory.empty() ? "." : directory.c_str();
    constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
    return VisitEntries(Uninterrupted([&] { return open(path, kFlags); }), visit);
}

bool VisitEntries(int descriptor, const std::function<void(const dirent&)>& visit)
{
    const DirectoryStream entries = OpenEntries(descriptor);
    if (!entries)
        return false;
    while (const dirent* entry = NextEntry(entries.get()))
        visit(*entry);
    return errno == 0;
}

} // namespace headless
