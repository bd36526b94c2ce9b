#pragma once

#include <cstdint>
#include <utility>

/// Swaps entries of `order` so that those that are not transparent come first, and gives their
/// number. Each transparent entry changes places with the first one behind it that is not, so the
/// order within the two groups is not kept. `isTransparent(entry)` is asked about entries.
template <class IsTransparent>
int32_t PartitionOrder(int32_t* order, int32_t count, IsTransparent isTransparent)
{
    int32_t other = 0;
    for (int32_t i = 0; i < count; ++i) {
        if (!isTransparent(order[i]))
            continue;
        // What lies between `i` and the last find is transparent since the swaps: no need to look.
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
