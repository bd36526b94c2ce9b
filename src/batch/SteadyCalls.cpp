#include "batch/SteadyCalls.h"

#include <fcntl.h>
#include <unistd.h>

#include "platform/headless/win32/Uninterrupted.h"

using headless::Uninterrupted;

Descriptor OpenAt(int directory, const char* path, int flags, mode_t mode)
{
    return Descriptor(Uninterrupted([&] { return openat(directory, path, flags, mode); }));
}

ssize_t ReadAt(int file, void* bytesOut, size_t size, off_t at)
{
    size_t done = 0;
    while (done < size) {
        char* const next = static_cast<char*>(bytesOut) + done;
        const off_t place = at + static_cast<off_t>(done);
        const ssize_t got = Uninterrupted([&] { return pread(file, next, size - done, place); });
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        done += static_cast<size_t>(got);
    }
    return static_cast<ssize_t>(done);
}
