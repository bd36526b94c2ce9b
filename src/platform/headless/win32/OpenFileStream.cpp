#include "platform/OpenFileStream.h"

#include "platform/headless/win32/DirectoryIndex.h"
#include "platform/headless/win32/FileLookups.h"
#include "platform/headless/win32/HostPath.h"

#include <cerrno>
#include <string>
#include <sys/stat.h>

using namespace headless;

void (*headless::gLookupSink)(const char* path, const struct stat* found) = nullptr;

static void TellOfLookup(const char* path, const struct stat* found)
{
    if (gLookupSink)
        gLookupSink(path, found);
}

FILE* OpenFileStream(const char* path, const char* mode)
{
    const bool mayMake = mode[0] != 'r';
    const std::string resolved = mayMake ? ResolveTargetPath(path) : ResolveHostPath(path);
    FILE* stream = std::fopen(resolved.c_str(), mode);
    if (stream == nullptr) {
        const int reason = errno;
        if (!mayMake)
            TellOfLookup(path, nullptr);
        errno = reason;
        return nullptr;
    }

    // On Windows opening a directory fails; here it succeeds for reading, and only reading fails.
    struct stat info;
    const bool isKnown = fstat(fileno(stream), &info) == 0;
    const bool isDirectory = isKnown && S_ISDIR(info.st_mode);
    if (!mayMake)
        TellOfLookup(path, isKnown && !isDirectory ? &info : nullptr);
    if (isDirectory) {
        std::fclose(stream);
        errno = EISDIR;
        return nullptr;
    }
    if (mayMake)
        NoteEntryChanged(resolved);
    return stream;
}
