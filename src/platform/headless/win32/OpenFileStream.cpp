#include "platform/OpenFileStream.h"

#include "platform/headless/win32/DirectoryIndex.h"
#include "platform/headless/win32/HostPath.h"

#include <cerrno>
#include <string>
#include <sys/stat.h>

using namespace headless;

FILE* OpenFileStream(const char* path, const char* mode)
{
    const bool mayMake = mode[0] != 'r';
    const std::string resolved = mayMake ? ResolveTargetPath(path) : ResolveHostPath(path);
    FILE* stream = std::fopen(resolved.c_str(), mode);
    if (stream == nullptr)
        return nullptr;

    // On Windows opening a directory fails; here it succeeds for reading, and only reading fails.
    struct stat info;
    if (fstat(fileno(stream), &info) == 0 && S_ISDIR(info.st_mode)) {
        std::fclose(stream);
        errno = EISDIR;
        return nullptr;
    }
    if (mayMake)
        NoteEntryChanged(resolved);
    return stream;
}
