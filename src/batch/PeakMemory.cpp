#include "batch/PeakMemory.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "batch/Descriptor.h"

/// The start of a file of the system; `partOut` ends in a NUL.
template <size_t size>
static bool ReadSystemFile(const char* path, char (&partOut)[size])
{
    const Descriptor file(open(path, O_RDONLY | O_CLOEXEC));
    const ssize_t got = file.IsOpen() ? read(file.Get(), partOut, size - 1) : -1;
    partOut[got > 0 ? got : 0] = 0;
    return got > 0;
}

void ResetPeakMemory()
{
    static const Descriptor file(open("/proc/self/clear_refs", O_WRONLY | O_CLOEXEC));
    constexpr char kForgetPeak = '5';
    if (file.IsOpen() && pwrite(file.Get(), &kForgetPeak, 1, 0) < 0)
        return; // the peak is then that of the process
}

uint64_t PeakMemoryKiB()
{
    char status[4096];
    if (ReadSystemFile("/proc/self/status", status)) {
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
    if (!ReadSystemFile(path.c_str(), counts))
        return 0;
    char* end = nullptr;
    std::strtoull(counts, &end, 10); // the first count is address space
    return std::strtoull(end, nullptr, 10) * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}
