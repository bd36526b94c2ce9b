#pragma once

#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

/// A file without a disk that has a path, for readers that open their file themselves.
class MemoryFile {
public:
    MemoryFile() : file(memfd_create("fuzz", MFD_CLOEXEC)) {}
    ~MemoryFile() { close(file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(file); }
    void Put(std::string_view bytes) const
    {
        if (ftruncate(file, 0) != 0 ||
            pwrite(file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
            std::abort();
    }

private:
    int file;
};
