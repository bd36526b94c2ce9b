// The name of a file tells its owner: host, start of the machine and process. On one machine a file in use
// is locked too. On a share, locks may hold on one machine only, so files of others are left alone for a
// day.

#include "platform/headless/win32/AbandonedFiles.h"

#include "platform/headless/win32/DescriptorCloser.h"
#include "platform/headless/win32/DirectoryEntries.h"
#include "platform/headless/win32/DirectoryIndex.h"
#include "platform/headless/win32/TemporaryName.h"
#include "platform/headless/win32/Uninterrupted.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace headless {

namespace {

constexpr time_t kSecondsOfOthers =
    24 * 60 * 60; // after which a file of another host is left behind

dev_t gClearedDevice; ///< of the directory cleaned last
ino_t gClearedDirectory;

bool MayBeAbandoned(const char* name, const struct stat& info, time_t now)
{
    TemporaryOwner owner;
    if (owner.Read(name) && owner.IsGone())
        return true;
    return info.st_mtime < now - kSecondsOfOthers;
}

void RemoveIfAbandoned(const std::string& directory, const char* name, time_t now)
{
    const std::string path = directory + name;
    const int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int file = Uninterrupted([&] { return open(path.c_str(), flags); });
    if (file < 0)
        return;
    const DescriptorCloser closer(file);
    struct stat info;
    if (fstat(file, &info) == 0 && MayBeAbandoned(name, info, now) &&
        flock(file, LOCK_EX | LOCK_NB) == 0 && unlink(path.c_str()) == 0)
        NoteEntryChanged(path);
}

} // namespace

void RemoveAbandoned(const std::string& directory, time_t now)
{
    const char* name = directory.empty() ? "." : directory.c_str();
    struct stat info;
    if (stat(name, &info) != 0 ||
        (info.st_dev == gClearedDevice && info.st_ino == gClearedDirectory))
        return;
    const bool isRead = VisitEntries(directory, [&](const dirent& entry) {
        if (IsTemporaryName(entry.d_name))
            RemoveIfAbandoned(directory, entry.d_name, now);
    });
    if (!isRead)
        return;
    gClearedDevice = info.st_dev;
    gClearedDirectory = info.st_ino;
}

} // namespace headless
