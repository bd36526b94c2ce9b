#include "tests/support/HostCost.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#ifdef __SANITIZE_ADDRESS__
const int kHostSlowness = 5;
#else
const int kHostSlowness = 1;
#endif

namespace {

int64_t gResidentBefore = -1; // bytes

struct Closer {
    void operator()(FILE* file) const { std::fclose(file); }
};
using Stream = std::unique_ptr<FILE, Closer>;

/// Bytes given by a line of the process's status, "VmHWM:" or "VmRSS:".
int64_t StateBytes(const char* what)
{
    const Stream file(std::fopen("/proc/self/status", "r"));
    char line[256];
    while (file && std::fgets(line, sizeof line, file.get())) {
        if (std::strncmp(line, what, std::strlen(what)) == 0)
            return std::atoll(line + std::strlen(what)) * 1024;
    }
    return -1;
}

} // namespace

void ForgetPeakMemory()
{
    const Stream file(std::fopen("/proc/self/clear_refs", "w"));
    const bool isForgotten = file && std::fputs("5", file.get()) >= 0;
    gResidentBefore = isForgotten ? StateBytes("VmRSS:") : -1;
}

int64_t PeakMemoryGrowth()
{
#ifdef __SANITIZE_ADDRESS__
    return -1;
#else
    const int64_t peak = StateBytes("VmHWM:");
    return gResidentBefore < 0 || peak < 0 ? -1 : peak - gResidentBefore;
#endif
}
