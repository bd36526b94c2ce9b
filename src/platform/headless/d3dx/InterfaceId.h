#pragma once

#include <d3d9.h>

#include <cstring>

namespace headless {

/// True if the two interface ids are the same.
inline bool IsSameId(REFIID a, REFIID b)
{
    return std::memcmp(&a, &b, sizeof(IID)) == 0;
}

} // namespace headless
