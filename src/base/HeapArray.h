#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

/// Owner of a heap array whose length its user keeps: a `unique_ptr` with the signed index that
/// counts and offsets of files have. Null until it is made.
template <class T>
class HeapArray {
public:
    HeapArray() = default;
    /// `count` value-initialised elements, 0 or above.
    explicit HeapArray(int32_t count) : items(new T[static_cast<size_t>(count)]()) {}
    /// The same, but null when memory does not suffice and for a count below 0. For counts that a
    /// file decides.
    static HeapArray Try(int32_t count)
    {
        HeapArray array;
        if (count >= 0)
            array.items.reset(new (std::nothrow) T[static_cast<size_t>(count)]());
        return array;
    }

    /// Not checked, as with a pointer.
    T& operator[](int32_t i) { return items.get()[i]; }
    const T& operator[](int32_t i) const { return items.get()[i]; }
    T* Get() { return items.get(); }
    const T* Get() const { return items.get(); }
    explicit operator bool() const { return items != nullptr; }
    void Free() { items.reset(); }

private:
    std::unique_ptr<T[]> items;
};
