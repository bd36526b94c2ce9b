#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

/// Memory for the keys of one list, in blocks: a key costs no allocation of its own. It is freed all at
/// once, so running out of it is the trouble of the object whose keys are being added.
template <class T>
class KRE_KeyMemory {
public:
    KRE_KeyMemory() = default;
    KRE_KeyMemory(KRE_KeyMemory&& other) noexcept : last(std::exchange(other.last, nullptr)) {}
    KRE_KeyMemory& operator=(KRE_KeyMemory&& other) noexcept
    {
        std::swap(last, other.last);
        return *this;
    }
    /// In a loop: recursion over a file's number of keys could overflow the stack.
    ~KRE_KeyMemory()
    {
        while (last)
            ::operator delete(std::exchange(last, last->before));
    }

    /// A copy of `key` without links, which lives as long as this object.
    T* Add(const T& key)
    {
        if (!last || last->used == last->capacity)
            AddBlock();
        return new (reinterpret_cast<T*>(last + 1) + last->used++) T(key);
    }

private:
    struct Block {
        Block* before;
        uint32_t capacity; ///< in keys, which follow
        uint32_t used;
    };
    static_assert(std::is_trivially_destructible_v<T>);
    static_assert(sizeof(Block) % alignof(T) == 0 && alignof(T) <= alignof(std::max_align_t));

    static constexpr uint32_t kGrowth = 4;
    static constexpr uint32_t kMostKeys = 64; // few enough that what stays unused does not matter

    void AddBlock()
    {
        const uint32_t capacity = last ? std::min(last->capacity * kGrowth, kMostKeys) : 1;
        void* const memory = ::operator new(sizeof(Block) + capacity * sizeof(T));
        last = new (memory) Block{last, capacity, 0};
    }

    Block* last = nullptr; ///< owned, as those before
};
