#include "batch/Confinement.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/resource.h>

#include "batch/CallFilter.h"

namespace {

bool LimitResource(__rlimit_resource which, uint64_t most)
{
    rlimit limit = {};
    if (getrlimit(which, &limit) != 0)
        return false;
    limit.rlim_max = std::min<rlim_t>(limit.rlim_max, most);
    limit.rlim_cur = limit.rlim_max;
    return setrlimit(which, &limit) == 0;
}

/// Why system calls cannot be filtered; null if they can.
const char* WhyNoCallFilter()
{
    if constexpr (QSA_FILTERS_CALLS)
        return KernelFiltersCalls() ? nullptr : "which this kernel lacks";
    else
        return "which this build lacks";
}

std::string FilterCallsIfThere(int socket)
{
    if constexpr (QSA_FILTERS_CALLS)
        return KernelFiltersCalls() ? FilterCalls(socket) : "";
    else
        return "";
}

} // namespace

std::string MissingConfinement()
{
    std::string missing;
    if (LandlockVersion() == 0)
        missing = "Landlock, which this kernel lacks";
    if (const char* const why = WhyNoCallFilter()) {
        missing += missing.empty() ? "" : ", and ";
        missing += "the filter of system calls, ";
        missing += why;
    }
    return missing;
}

std::string Confine(const ConfinementRules& rules)
{
    const bool isLimited = LimitResource(RLIMIT_FSIZE, rules.mostFileBytes) &&
                           LimitResource(RLIMIT_CPU, rules.processorSeconds) &&
                           LimitResource(RLIMIT_NOFILE, kMostOpenFiles) &&
                           LimitResource(RLIMIT_CORE, 0);
    if (!isLimited)
        return std::string("limits: ") + std::strerror(errno);
    const int version = std::min(LandlockVersion(), rules.landlock);
    std::string failure;
    if (version > 0)
        failure = LimitFiles(rules.readable, rules.writable, version);
    return failure.empty() ? FilterCallsIfThere(rules.socket) : failure;
}
