#include "platform/AppendedFile.h"

#include "platform/headless/win32/DirectoryIndex.h"
#include "platform/headless/win32/HostPath.h"
#include "platform/headless/win32/Uninterrupted.h"

#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace headless;

static AppendedFile::Identity IdentityOf(const struct stat& info)
{
    return {info.st_dev, info.st_ino, info.st_mode, info.st_uid, info.st_gid};
}

/// Whether opening the path would give the file that is open. While it is open, no other file of its
/// device can have its number.
bool AppendedFile::IsOpen(const char* path) const
{
    struct stat info;
    return descriptor >= 0 && stat(path, &info) == 0 && IdentityOf(info) == identity;
}

bool AppendedFile::Open(const char* path, bool startEmpty)
{
    if (!startEmpty && IsOpen(path))
        return true;

    Close();
    const std::string resolved = ResolveTargetPath(path);
    const int flags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | (startEmpty ? O_TRUNC : 0);
    descriptor = Uninterrupted([&] { return open(resolved.c_str(), flags, 0666); });
    struct stat info;
    if (descriptor < 0 || fstat(descriptor, &info) != 0)
        return false;
    NoteEntryChanged(resolved);
    identity = IdentityOf(info);
    return true;
}

void AppendedFile::Append(const char* text, size_t length)
{
    while (length > 0) {
        const ssize_t written = Uninterrupted([&] { return write(descriptor, text, length); });
        if (written <= 0)
            break;
        text += written;
        length -= static_cast<size_t>(written);
    }
    if (!S_ISREG(identity.mode)) // the reader of a pipe sees an end after each text
        Close();
}

void AppendedFile::Close()
{
    if (descriptor >= 0)
        close(descriptor);
    descriptor = -1;
}
