#include "platform/OpenFileStream.h"

#include "platform/HostStream.h"
#include "platform/headless/win32/DescriptorStream.h"
#include "platform/headless/win32/DirectoryIndex.h"
#include "platform/headless/win32/FileLookups.h"
#include "platform/headless/win32/HostPath.h"
#include "platform/headless/win32/ServedFile.h"
#include "platform/headless/win32/Uninterrupted.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace headless;

void (*headless::gLookupSink)(const char* path, const struct stat* found) = nullptr;
bool headless::gRegularFilesOnly = false;

static void TellOfLookup(const char* path, const struct stat* found)
{
    if (gLookupSink)
        gLookupSink(path, found);
}

/// Leaves `errno` of what failed before.
static void CloseAfterFailure(int file)
{
    const int reason = errno;
    close(file);
    errno = reason;
}

static bool IsRegular(const struct stat& info)
{
    if (S_ISREG(info.st_mode))
        return true;
    errno = S_ISDIR(info.st_mode) ? EISDIR : EACCES;
    return false;
}

/// -1, with `errno`, if it is no regular file. A device may do something as soon as it is opened, so what the name
/// leads to is looked at before; in between another file may take its place.
static int OpenRegular(const char* path, int access)
{
    struct stat info;
    if (stat(path, &info) != 0 || !IsRegular(info))
        return -1;
    const int flags = access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const int file = Uninterrupted([&] { return open(path, flags); });
    if (file < 0 || (fstat(file, &info) == 0 && IsRegular(info)))
        return file;
    CloseAfterFailure(file);
    return -1;
}

bool headless::IsReadableFile(const char* hostPath)
{
    if (!gRegularFilesOnly)
        return access(hostPath, R_OK) == 0;
    const int file = OpenRegular(hostPath, O_RDONLY);
    if (file >= 0)
        close(file);
    return file >= 0;
}

static FILE* OpenToRead(const char* path, const char* mode)
{
    if (!gRegularFilesOnly)
        return OpenHostStream(path, mode);
    const int file = OpenRegular(path, std::strchr(mode, '+') ? O_RDWR : O_RDONLY);
    FILE* const stream =
        file >= 0 ? (std::strchr(mode, '+') ? DescriptorStream(file, mode) : fdopen(file, mode))
                  : nullptr;
    if (file >= 0 && !stream)
        CloseAfterFailure(file);
    return stream;
}

/// Nearly every name is exact, so it is tried before it is looked for.
static FILE* OpenExisting(const char* path, const char* mode)
{
    const std::string exact = WithHostSeparators(path);
    if (FILE* const stream = OpenToRead(exact.c_str(), mode))
        return stream;
    const int reason = errno;
    const std::string found = ResolveHostPath(path);
    errno = reason;
    return found == exact ? nullptr : OpenToRead(found.c_str(), mode);
}

/// As `fopen` with "wb" or "w+b". A file system may begin to write a file to the disk as soon as one that was
/// truncated is closed, so that old contents are not lost with the new ones. A file that is empty, as one
/// that was just made, is not truncated: this would cost more than all other calls for a small scene.
static FILE* OpenEmpty(const char* path, const char* mode)
{
    const bool mayRead = std::strchr(mode, '+') != nullptr;
    const int flags = (mayRead ? O_RDWR : O_WRONLY) | O_CREAT;
    const int file = Uninterrupted([&] { return open(path, flags, 0666); });
    if (file < 0)
        return nullptr;
    struct stat info;
    const bool holdsNothing =
        fstat(file, &info) == 0 && (!S_ISREG(info.st_mode) || info.st_size == 0);
    FILE* const stream =
        holdsNothing || ftruncate(file, 0) == 0 ? DescriptorStream(file, mode) : nullptr;
    if (!stream)
        CloseAfterFailure(file);
    else if (!mayRead) // what is written comes in large pieces
        std::setvbuf(stream, nullptr, _IONBF, 0);
    return stream;
}

/// The system refuses to write to a directory by itself.
static FILE* MakeStream(const char* path, const char* mode)
{
    const std::string resolved = ResolveTargetPath(path);
    FILE* const stream =
        mode[0] == 'w' ? OpenEmpty(resolved.c_str(), mode) : OpenHostStream(resolved.c_str(), mode);
    if (stream)
        NoteEntryChanged(resolved);
    return stream;
}

/// Null if the file is not one that is served.
static FILE* OpenServed(const char* path, const char* mode, int64_t* sizeOut)
{
    const ServedFile* const served = FileToServe();
    if (!served || !path || std::strcmp(path, served->path) != 0 || std::strcmp(mode, "rb") != 0)
        return nullptr;
    FILE* const stream = StreamOf(*served);
    if (stream && sizeOut)
        *sizeOut = static_cast<int64_t>(served->size);
    return stream;
}

FILE* OpenFileStream(const char* path, const char* mode, int64_t* sizeOut)
{
    if (sizeOut)
        *sizeOut = -1;
    if (FILE* const served = OpenServed(path, mode, sizeOut))
        return served;
    if (mode[0] != 'r')
        return MakeStream(path, mode);
    FILE* const stream = OpenExisting(path, mode);
    if (stream == nullptr) {
        const int reason = errno;
        TellOfLookup(path, nullptr);
        errno = reason;
        return nullptr;
    }

    // On Windows opening a directory fails; here it succeeds for reading, and only reading fails.
    struct stat info;
    const bool isKnown = fstat(fileno(stream), &info) == 0;
    const bool isDirectory = isKnown && S_ISDIR(info.st_mode);
    TellOfLookup(path, isKnown && !isDirectory ? &info : nullptr);
    if (isDirectory) {
        std::fclose(stream);
        errno = EISDIR;
        return nullptr;
    }
    if (sizeOut && isKnown && S_ISREG(info.st_mode))
        *sizeOut = info.st_size;
    if (sizeOut && std::strcmp(mode, "rb") == 0)
        std::setvbuf(stream, nullptr, _IONBF, 0);
    return stream;
}
