// The name of a file tells its owner: host, start of the machine and process. On one machine a file in use
// is locked too. On a share, locks may hold on one machine only, so files of others are left alone for a
// day.

#include "platform/ReplacementFile.h"

#include "platform/headless/win32/DirectoryIndex.h"
#include "platform/headless/win32/HostPath.h"
#include "platform/headless/win32/TemporaryName.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace headless {

namespace {

constexpr int kMostAttempts = 1000;
constexpr time_t kSecondsOfOthers =
    24 * 60 * 60; // after which a file of another host is left behind

dev_t gClearedDevice; ///< of the directory cleaned last
ino_t gClearedDirectory;

/// Includes the separator; empty for the current directory.
std::string DirectoryOf(const std::string& path)
{
    return path.substr(0, path.find_last_of('/') + 1);
}

/// Times are those of the file system's clock, not of this machine's.
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
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0)
        return;
    struct stat info;
    if (fstat(file, &info) == 0 && MayBeAbandoned(name, info, now) &&
        flock(file, LOCK_EX | LOCK_NB) == 0 && unlink(path.c_str()) == 0)
        NoteEntryChanged(path);
    close(file);
}

/// Cleans a directory only if it is not the last one cleaned, so that a run over many files does
/// not read it for each of them.
void RemoveAbandoned(const std::string& directory, time_t now)
{
    struct DirectoryCloser {
        void operator()(DIR* opened) const { closedir(opened); }
    };
    const char* name = directory.empty() ? "." : directory.c_str();
    struct stat info;
    if (stat(name, &info) != 0 ||
        (info.st_dev == gClearedDevice && info.st_ino == gClearedDirectory))
        return;
    const std::unique_ptr<DIR, DirectoryCloser> entries(opendir(name));
    if (!entries)
        return;
    while (const dirent* entry = readdir(entries.get()))
        if (IsTemporaryName(entry->d_name))
            RemoveIfAbandoned(directory, entry->d_name, now);
    gClearedDevice = info.st_dev;
    gClearedDirectory = info.st_ino;
}

std::string NewName()
{
    static uint32_t number = 0;
    return TemporaryName(number++);
}

/// The file that a link leads to, so that replacing it keeps the link.
std::string FollowLinks(const std::string& path)
{
    const std::unique_ptr<char, void (*)(void*)> followed(realpath(path.c_str(), nullptr),
                                                          std::free);
    return followed ? followed.get() : path;
}

} // namespace

} // namespace headless

using namespace headless;

ReplacementFile::~ReplacementFile()
{
    if (!path.empty() && !isInPlace && unlink(path.c_str()) == 0)
        NoteEntryChanged(path);
    if (claim >= 0)
        close(claim);
}

bool ReplacementFile::IsTargetThere(const char* targetPath)
{
    const std::string path = ResolveTargetPath(targetPath);
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    struct stat info;
    return file && fstat(fileno(file.get()), &info) == 0 && !S_ISDIR(info.st_mode);
}

bool ReplacementFile::Make(const char* targetPath)
{
    target = ResolveTargetPath(targetPath);
    struct stat info;
    const bool isThere = stat(target.c_str(), &info) == 0;
    if (isThere && S_ISDIR(info.st_mode)) {
        errno = EISDIR;
        return false;
    }
    if (isThere && access(target.c_str(), W_OK) != 0)
        return false;
    isInPlace = isThere && !S_ISREG(info.st_mode);
    if (isInPlace) {
        path = target;
        return true;
    }
    if (isThere)
        target = FollowLinks(target);
    if (!MakeBeside())
        return false;
    if (isThere && fchmod(claim, info.st_mode & 07777) != 0)
        errno = 0; // a file system without permissions has none to keep
    return true;
}

bool ReplacementFile::MakeBeside()
{
    const std::string directory = DirectoryOf(target);
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        std::string made = directory + NewName();
        claim = open(made.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666);
        if (claim < 0) {
            if (errno != EEXIST)
                return false;
            continue;
        }
        // Another process may take the file for abandoned before it is locked here: that process
        // then holds the lock, or has already removed the file. Without file locks no file is taken
        // for abandoned.
        struct stat info;
        const bool isLost = flock(claim, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (!isLost && fstat(claim, &info) == 0 && info.st_nlink > 0) {
            path = std::move(made);
            RemoveAbandoned(directory, info.st_mtime);
            return true;
        }
        close(claim);
        claim = -1;
    }
    errno = EEXIST;
    return false;
}

bool ReplacementFile::MoveOverTarget()
{
    if (isInPlace)
        return true;
    if (std::rename(path.c_str(), target.c_str()) != 0)
        return false;
    NoteEntryChanged(path);
    NoteEntryChanged(target);
    path.clear();
    return true;
}
