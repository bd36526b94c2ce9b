#include "platform/ReplacementFile.h"

#include "platform/HostStream.h"
#include "platform/headless/win32/AbandonedFiles.h"
#include "platform/headless/win32/DirectoryIndex.h"
#include "platform/headless/win32/HostPath.h"
#include "platform/headless/win32/SyncedFiles.h"
#include "platform/headless/win32/TemporaryName.h"
#include "platform/headless/win32/Uninterrupted.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace headless {

namespace {

constexpr int kMostAttempts = 1000;

/// Includes the separator; empty for the current directory.
std::string DirectoryOf(const std::string& path)
{
    return path.substr(0, path.find_last_of('/') + 1);
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
    const std::unique_ptr<FILE, int (*)(FILE*)> file(OpenHostStream(path.c_str(), "rb"),
                                                     std::fclose);
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
        claim = Uninterrupted(
            [&] { return open(made.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666); });
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
    // The contents go first: a disk may keep the new name without them.
    if (gSyncsReplacements && Uninterrupted([&] { return fsync(claim); }) != 0)
        return false;
    if (Uninterrupted([&] { return std::rename(path.c_str(), target.c_str()); }) != 0)
        return false;
    NoteEntryChanged(path);
    NoteEntryChanged(target);
    path.clear();
    return !gSyncsReplacements || SyncDirectory(DirectoryOf(target));
}
