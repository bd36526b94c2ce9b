#pragma once

#include <cstdint>

#include "base/HeapArray.h"

/// A value for each map slot of a texture, zero until it is set. Scenes hold very many textures that set
/// none, so memory is allocated only on the first request for write access.
template <class T>
class KRE_SlotValues {
public:
    static constexpr int32_t kSlots = 4;

    /// Not checked: 0 <= slot < kSlots.
    const T& operator[](int32_t slot) const
    {
        static constexpr T kZero{};
        return all ? all[slot] : kZero;
    }
    T& operator[](int32_t slot)
    {
        if (!all)
            all = HeapArray<T>(kSlots);
        return all[slot];
    }
    void CopyFrom(const KRE_SlotValues& other)
    {
        if (other.all || all) {
            for (int32_t slot = 0; slot < kSlots; ++slot)
                (*this)[slot] = other[slot];
        }
    }

private:
    HeapArray<T> all; ///< owned; `kSlots` of them, or none
};
