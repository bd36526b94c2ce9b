#pragma once

#include <cstdint>

/// The smoothing groups of a face or a built vertex. Only whether two sets meet matters, so a
/// repeated group is stored once.
struct QSA_SmoothingSet {
    uint64_t bits[4] = {}; ///< one bit per group number modulo 256

    void Clear() { *this = QSA_SmoothingSet{}; }
    void Add(int32_t group)
    {
        const uint32_t number = static_cast<uint8_t>(group);
        bits[number / 64] |= uint64_t{1} << (number % 64);
    }

    bool Meets(const QSA_SmoothingSet& other) const
    {
        return ((bits[0] & other.bits[0]) | (bits[1] & other.bits[1]) | (bits[2] & other.bits[2]) |
                (bits[3] & other.bits[3])) != 0;
    }
    /// Keeps only groups that are in `other`, too.
    void Narrow(const QSA_SmoothingSet& other)
    {
        for (int i = 0; i < 4; ++i)
            bits[i] &= other.bits[i];
    }
};
