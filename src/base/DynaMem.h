#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "base/ErrorClass.h"
#include "base/HeapArray.h"

/// List of owned heap objects. An element stays at its slot while the list does not grow; public
/// indices count the live elements in slot order, through `order`, which is rebuilt when needed.
/// `N` is the first capacity. Growing (`Add` on a full list, `SetSize`) renumbers the slots.
template <class T, int32_t N, int32_t kFlag = 1>
class DynaMem : public ErrorClassSimple {
public:
    /// Visits the live elements in slot order, as pointers, not owned. Invalid after any change.
    template <class Element>
    class Iterator {
    public:
        Iterator(const std::unique_ptr<T>* slotsIn, const int32_t* orderIn)
            : slots(slotsIn),
              at(orderIn)
        {}
        Element* operator*() const { return slots[*at].get(); }
        Iterator& operator++()
        {
            ++at;
            return *this;
        }
        bool operator==(const Iterator& other) const { return at == other.at; }
        bool operator!=(const Iterator& other) const { return at != other.at; }

    private:
        const std::unique_ptr<T>* slots;
        const int32_t* at;
    };

    DynaMem() = default;
    ~DynaMem() override { Clear(); }
    DynaMem(const DynaMem&) = delete;
    DynaMem& operator=(const DynaMem&) = delete;

    /// Adds a default-constructed element and returns its slot.
    int32_t Add()
    {
        return Place(nullptr, [](const T*) { return new (std::nothrow) T(); });
    }
    /// Adds a copy and returns its slot; null is an `Error`.
    int32_t Add(const T* item);

    /// The i-th live element, owned by the list. Not checked: 0 <= i < Count().
    /// QUIRK: a fixed list keeps the order it had when it was fixed; null if that slot is empty.
    T* Get(int32_t i)
    {
        UpdateOrder();
        return data[order[i]].get();
    }
    const T* Get(int32_t i) const
    {
        UpdateOrder();
        return data[order[i]].get();
    }
    /// The element at a slot, or null for a free slot or a number outside the table.
    T* GetSlot(int32_t slot) { return IsUsedSlot(slot) ? data[slot].get() : nullptr; }
    const T* GetSlot(int32_t slot) const { return IsUsedSlot(slot) ? data[slot].get() : nullptr; }
    /// The element in the slot that `Add` has just returned. If there was no memory for it, the slot is
    /// free again and `std::bad_alloc` is thrown.
    T& Added(int32_t slot);
    int32_t Count() const { return count; }
    int32_t Capacity() const { return capacity; }

    Iterator<T> begin() { return {SlotsForWalk(), order.Get()}; }
    Iterator<T> end() { return {data.Get(), order.Get() + (data ? count : 0)}; }
    Iterator<const T> begin() const { return {SlotsForWalk(), order.Get()}; }
    Iterator<const T> end() const { return {data.Get(), order.Get() + (data ? count : 0)}; }

    /// Destroys the i-th live element. An index or slot without an element is an `Error`.
    bool Delete(int32_t i);
    bool DeleteSlot(int32_t slot);
    /// Destroys all elements and keeps the arrays.
    void Clear();
    /// Sets the capacity, which must not be below `Count()`; -1 trims it to `Count()`. Compacts: the
    /// slots are renumbered without gaps.
    void SetSize(int32_t newCapacity);
    /// A fixed list cannot grow.
    void SetFixed(bool isFixed) { fixed = isFixed ? 1 : 0; }

    mutable HeapArray<std::unique_ptr<T>> data; ///< owned slots, null where free
    mutable HeapArray<int32_t> order; ///< slot of the i-th live element; `capacity` entries
    int32_t count = 0;                ///< live elements
    int32_t firstFree = 0;            ///< the search for a free slot starts here
    int32_t capacity = N;
    int32_t fixed = 0;              ///< above 0 the list may not grow
    int32_t reserved = -1;          ///< not used
    mutable int32_t orderDirty = 1; ///< `order` must be rebuilt before use
    int32_t flag = kFlag;           ///< not used

private:
    template <class Make>
    int32_t Place(const T* item, Make make);
    void MakeArrays() const;
    void UpdateOrder() const;
    void RebuildOrder() const;
    bool IsUsedSlot(int32_t slot) const
    {
        return data && slot >= 0 && slot < capacity && data[slot] != nullptr;
    }
    const std::unique_ptr<T>* SlotsForWalk() const
    {
        if (data)
            UpdateOrder();
        return data.Get();
    }
};

template <class T, int32_t N, int32_t kFlag>
int32_t DynaMem<T, N, kFlag>::Add(const T* item)
{
    if (!item) {
        Error("Null pointer added !");
        return -1;
    }
    return Place(item, [](const T* source) { return new (std::nothrow) T(*source); });
}

template <class T, int32_t N, int32_t kFlag>
template <class Make>
int32_t DynaMem<T, N, kFlag>::Place(const T* item, Make make)
{
    MakeArrays();
    if (count == capacity) {
        if (fixed > 0)
            Error("Can not expand fixed list");
        SetSize(capacity + capacity / 4 + 8);
    }
    int32_t slot = firstFree;
    while (slot < capacity && data[slot])
        ++slot;
    if (slot >= capacity) {
        Error("Maximum number of data elements reached: %i", capacity);
        return -1;
    }
    // Growing moved only pointers, so an `item` of this list is still where it was. If there is no
    // memory for the element, the slot stays null but is counted.
    data[slot].reset(make(item));
    ++count;
    firstFree = slot + 1;
    orderDirty = 1;
    return slot;
}

template <class T, int32_t N, int32_t kFlag>
T& DynaMem<T, N, kFlag>::Added(int32_t slot)
{
    if (data[slot])
        return *data[slot];
    --count;
    firstFree = slot;
    throw std::bad_alloc();
}

template <class T, int32_t N, int32_t kFlag>
bool DynaMem<T, N, kFlag>::Delete(int32_t i)
{
    if (i < 0 || i >= count) {
        Error("Can not delete object nr: %i", i);
        return false;
    }
    UpdateOrder();
    return DeleteSlot(order[i]);
}

template <class T, int32_t N, int32_t kFlag>
bool DynaMem<T, N, kFlag>::DeleteSlot(int32_t slot)
{
    if (!IsUsedSlot(slot)) {
        Error("Can not delete object nr: %i", slot);
        return false;
    }
    data[slot].reset();
    if (slot < firstFree)
        firstFree = slot;
    --count;
    orderDirty = 1;
    return true;
}

template <class T, int32_t N, int32_t kFlag>
void DynaMem<T, N, kFlag>::Clear()
{
    if (!data)
        return;
    int32_t met = 0;
    for (int32_t slot = 0; slot < capacity && met < count; ++slot) {
        if (data[slot]) {
            data[slot].reset();
            ++met;
        }
    }
    count = 0;
    firstFree = 0;
    orderDirty = 1;
}

template <class T, int32_t N, int32_t kFlag>
void DynaMem<T, N, kFlag>::SetSize(int32_t newCapacity)
{
    if (fixed > 0) {
        Error("Can not SetSize() of fixed list");
        return;
    }
    MakeArrays();
    UpdateOrder();
    if (newCapacity == -1)
        newCapacity = count;
    if (newCapacity < count) {
        Error("New size too small");
        return;
    }
    HeapArray<std::unique_ptr<T>> newData(newCapacity);
    HeapArray<int32_t> newOrder(newCapacity);
    for (int32_t i = 0; i < count; ++i) {
        newData[i] = std::move(data[order[i]]);
        newOrder[i] = i;
    }
    data = std::move(newData);
    order = std::move(newOrder);
    capacity = newCapacity;
    firstFree = count;
    orderDirty = 0;
}

template <class T, int32_t N, int32_t kFlag>
void DynaMem<T, N, kFlag>::MakeArrays() const
{
    if (data)
        return;
    HeapArray<int32_t> newOrder(capacity); // first: `data` marks both as allocated
    data = HeapArray<std::unique_ptr<T>>(capacity);
    order = std::move(newOrder);
}

template <class T, int32_t N, int32_t kFlag>
inline void DynaMem<T, N, kFlag>::UpdateOrder() const
{
    if (orderDirty)
        RebuildOrder();
}

template <class T, int32_t N, int32_t kFlag>
void DynaMem<T, N, kFlag>::RebuildOrder() const
{
    MakeArrays();
    if (fixed > 0)
        return;
    int32_t met = 0;
    int32_t emptySlot = 0;
    for (int32_t slot = 0; slot < capacity && met < count; ++slot) {
        if (data[slot])
            order[met++] = slot;
        else
            emptySlot = slot;
    }
    // Fewer than `count` are found only if there was no memory for an element; then a slot is empty.
    while (met < count)
        order[met++] = emptySlot;
    orderDirty = 0;
}
