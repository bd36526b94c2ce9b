#pragma once

#include <cerrno>

namespace headless {

/// Makes a call of the system again as long as a signal interrupts it; -1 is the call's failure. Not for `close`:
/// a descriptor is free again whatever the call says, and may be another file's by then.
template <class Call>
auto Uninterrupted(const Call& call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace headless
