#include "batch/PeakMemory.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "batch/SteadyCalls.h"
#include "platform/headless/win32/Uninterrupted.h"

/// The start of a file of the system, as it is now; `partOut` ends in a NUL.
template <size_t size>
static bool ReadPart(const Descriptor& file, char (&partOut)[size])
{
    const ssize_t got = file.IsOpen() ? ReadAt(file.Get(), partOut, size - 1, 0) : -1;
    partOut[got > 0 ? got : 0] = 0;
    return got > 0;
}

void ResetPeakMemory()
{
    static const Descriptor file = OpenAt(AT_FDCWD, "/proc/self/clear_refs", O_WRONLY | O_CLOEXEC);
    constexpr char kForgetPeak = '5';
    const auto forget = [&] { return pwrite(file.Get(), &kForgetPeak, 1, 0); };
    if (file.IsOpen() && headless::Uninterrupted(forget) < 0)
        return; // the peak is then that of the process
}

uint64_t PeakMemoryKiB()
{
    static const Descriptor file = OpenAt(AT_FDCWD, "/proc/self/status", O_RDONLY | O_CLOEXEC);
    char status[4096];
    if (ReadPart(file, status)) {
        const char* const line = std::strstr(status, "VmHWM:");
        if (line)
            return std::strtoull(line + 6, nullptr, 10);
    }
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<uint64_t>(usage.ru_maxrss);
}

uint64_t MemoryOfProcess(pid_t process)
{
    char counts[256];
    const std::string path = "/proc/" + std::to_string(process) + "/statm";
    if (!ReadPart(Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)), counts))
        return 0;
    char* end = nullptr;
    std::strtoull(counts, &end, 10); // the first count is address space
    return std::strtoull(end, nullptr, 10) * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}
