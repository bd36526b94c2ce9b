#include "platform/headless/win32/SyncedFiles.h"

#include "platform/headless/win32/Uninterrupted.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace headless {

namespace {

/// An open directory, or none.
class OpenedDirectory {
public:
    OpenedDirectory(int base, const char* path) : file(open(base, path)) {}
    ~OpenedDirectory()
    {
        if (file >= 0)
            close(file);
    }
    OpenedDirectory(const OpenedDirectory&) = delete;
    OpenedDirectory& operator=(const OpenedDirectory&) = delete;

    /// Goes to the directory above. False if it may not be opened, or if there is none.
    bool GoUp()
    {
        const int above = open(file, "..");
        struct stat here;
        struct stat there;
        const bool isOther = above >= 0 && fstat(file, &here) == 0 && fstat(above, &there) == 0 &&
                             (here.st_ino != there.st_ino || here.st_dev != there.st_dev);
        if (above >= 0)
            close(std::exchange(file, above));
        return isOther;
    }
    bool Sync() const
    {
        return file >= 0 && Uninterrupted([this] { return fsync(file); }) == 0;
    }
    bool IsOpen() const { return file >= 0; }

private:
    static int open(int base, const char* path)
    {
        return Uninterrupted(
            [&] { return openat(base, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    }

    int file;
};

} // namespace

bool gSyncsReplacements = false;

bool SyncDirectory(const std::string& path)
{
    return OpenedDirectory(AT_FDCWD, path.empty() ? "." : path.c_str()).Sync();
}

bool SyncNamesAbove(const std::string& path)
{
    OpenedDirectory directory(AT_FDCWD, path.c_str());
    if (!directory.IsOpen())
        return false;
    while (directory.GoUp()) {
        if (!directory.Sync() && errno != EROFS) // nothing is new on a disk that is only read
            return false;
    }
    return true;
}

} // namespace headless
