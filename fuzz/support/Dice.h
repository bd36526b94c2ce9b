#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

/// The choices of a mutator: the same seed gives the same ones.
class Dice {
public:
    explicit Dice(uint32_t seed) : state((seed + 1) * 0x9E3779B97F4A7C15u | 1) {}

    /// 0 to `limit` - 1; 0 for a limit of 0.
    size_t Below(size_t limit) { return limit > 0 ? Next() % limit : 0; }
    /// True once in `count` times.
    bool OneIn(size_t count) { return Below(count) == 0; }
    uint32_t Bits() { return static_cast<uint32_t>(Next()); }

    template <class List>
    auto& Pick(List& list)
    {
        return *(std::begin(list) + static_cast<ptrdiff_t>(Below(std::size(list))));
    }

private:
    uint64_t Next()
    {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return state >> 11;
    }

    uint64_t state;
};
