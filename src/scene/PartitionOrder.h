#pragma once

#include <cstdint>
#include <utility>

/// Swaps entries of `order` so that opaque ones come first, and returns their number. Each
/// transparent entry swaps places with the next opaque one, so the order within the two groups is
/// not preserved. `isTransparent(entry)` classifies an entry.
template <class IsTransparent>
int32_t PartitionOrder(int32_t* order, int32_t count, IsTransparent isTransparent)
{
    int32_t other = 0;
    for (int32_t i = 0; i < count; ++i) {
        if (!isTransparent(order[i]))
            continue;
        // After the swaps, everything between `i` and the last find is transparent: skip it.
        if (other <= i)
            other = i + 1;
        while (other < count && isTransparent(order[other]))
            ++other;
        if (other == count)
            return i;
        std::swap(order[i], order[other]);
    }
    return count;
}
