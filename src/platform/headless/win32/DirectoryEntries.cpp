#include "platform/headless/win32/DirectoryEntries.h"

#include "platform/headless/win32/DescriptorCloser.h"
#include "platform/headless/win32/Uninterrupted.h"

#include <cerrno>
#include <cstddef>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace headless {

namespace {

constexpr size_t kBufferBytes = 8192; // some two hundred entries at a time

/// Without the C library's stream of entries, which asks for memory.
bool VisitEach(int descriptor, const std::function<void(const dirent&)>& visit)
{
    static_assert(offsetof(dirent, d_name) == 19); // as the kernel has it
    alignas(dirent) char buffer[kBufferBytes];
    for (;;) {
        const ssize_t got =
            Uninterrupted([&] { return getdents64(descriptor, buffer, sizeof buffer); });
        if (got <= 0)
            return got == 0;
        for (ssize_t at = 0; at < got;) {
            const auto& entry = *reinterpret_cast<const dirent*>(buffer + at);
            at += entry.d_reclen;
            visit(entry);
        }
    }
}

} // namespace

bool VisitEntries(const std::string& directory, const std::function<void(const dirent&)>& visit)
{
    const char* const path = directory.empty() ? "." : directory.c_str();
    constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
    return VisitEntries(Uninterrupted([&] { return open(path, kFlags); }), visit);
}

bool VisitEntries(int descriptor, const std::function<void(const dirent&)>& visit)
{
    if (descriptor < 0)
        return false;
    const DescriptorCloser closer(descriptor);
    return VisitEach(descriptor, visit);
}

} // namespace headless
