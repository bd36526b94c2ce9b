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
    bool IsEmpty() const { return (bits[0] | bits[1] | bits[2] | bits[3]) == 0; }

    friend QSA_SmoothingSet operator&(const QSA_SmoothingSet& a, const QSA_SmoothingSet& b)
    {
        return {{a.bits[0] & b.bits[0], a.bits[1] & b.bits[1], a.bits[2] & b.bits[2],
                 a.bits[3] & b.bits[3]}};
    }
};
