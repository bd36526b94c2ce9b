#pragma once

#include <cstdint>

#include "base/HeapArray.h"
#include "scene/KRE_KeyList.h"

template <class T>
struct KRE_KeyIndexEntry {
    T* key = nullptr; ///< not owned, lives in the list
    float time = 0;   ///< seconds, the key's
};

/// Binary search in an index for the position of the last key that is not after `time`, or of the
/// first one. `count` is above 0; the search starts at entry `low`.
template <class T>
int32_t FindEntry(float time, const KRE_KeyIndexEntry<T>* index, int32_t count, int32_t low = 0)
{
    int32_t high = count;
    while (high - 1 > low) {
        const int32_t mid = low + (high - low) / 2;
        if (!(index[mid].time > time))
            low = mid;
        else
            high = mid;
    }
    return low;
}

/// The key at that position.
template <class T>
T* FindKey(float time, const KRE_KeyIndexEntry<T>* index, int32_t count, int32_t low = 0)
{
    return index[FindEntry(time, index, count, low)].key;
}

/// A key and the one after it, which is null after the last key.
template <class T>
struct KRE_KeyPair {
    T* key;
    T* next;
};

/// The keys of a list as a flat array, so that finding one takes no walk. Of a long list in order of
/// time it has every 16th key, and finding one takes a walk of at most 15: a scene may hold millions
/// of keys and look at few of them. Holds pointers into the list and becomes invalid when a key is
/// added or removed. A copy is empty, because its list has other keys.
template <class T>
class KRE_KeyIndex {
public:
    KRE_KeyIndex() = default;
    KRE_KeyIndex(const KRE_KeyIndex&) {}
    KRE_KeyIndex(KRE_KeyIndex&&) noexcept = default;
    KRE_KeyIndex& operator=(KRE_KeyIndex&&) noexcept = default;
    KRE_KeyIndex& operator=(const KRE_KeyIndex& other)
    {
        if (this != &other)
            Free();
        return *this;
    }
    ~KRE_KeyIndex() = default;

    /// Indexes all keys of `keys`. Returns false, with no index, unless there are `expectedCount`
    /// of them; 0 keys need no index.
    bool Build(const KRE_KeyList<T>& keys, int32_t expectedCount);
    void Free() { *this = KRE_KeyIndex(); }
    explicit operator bool() const { return static_cast<bool>(entries); }
    const KRE_KeyIndexEntry<T>* Entries() const { return entries.Get(); }
    int32_t Count() const { return count; } ///< of keys
    /// Keys from one entry to the next: 1 for a list of fewer than `kLongList`.
    int32_t Step() const { return step; }
    int32_t EntryCount() const { return (count + step - 1) / step; }
    /// The last key that is not after `time`, or the first one. Not for an empty index.
    KRE_KeyPair<T> Find(float time) const;

    static constexpr int32_t kLongList = 64;

private:
    static constexpr int32_t kLongStep = 16;

    HeapArray<KRE_KeyIndexEntry<T>> entries; ///< owned
    int32_t count = 0;                       ///< of keys
    int32_t step = 1;                        ///< keys from one entry to the next
};

template <class T>
bool KRE_KeyIndex<T>::Build(const KRE_KeyList<T>& keys, int32_t expectedCount)
{
    Free();
    // Counted first: the expected number may come from a file and must not size an allocation.
    int64_t visited = 0;
    bool isInOrder = true; // NaN is not
    for (const T* key = keys.Head(); key; key = key->next) {
        isInOrder = isInOrder && key->time >= (key->prev ? key->prev->time : key->time);
        ++visited;
    }
    if (visited != expectedCount)
        return false;
    if (expectedCount == 0)
        return true;

    step = isInOrder && expectedCount >= kLongList ? kLongStep : 1;
    entries = HeapArray<KRE_KeyIndexEntry<T>>((expectedCount - 1) / step + 1);
    count = expectedCount;
    int32_t place = 0;
    for (T* key = keys.Head(); key; key = key->next, ++place) {
        if (place % step == 0)
            entries[place / step] = {key, key->time};
    }
    return true;
}

template <class T>
KRE_KeyPair<T> KRE_KeyIndex<T>::Find(float time) const
{
    const int32_t place = FindEntry(time, entries.Get(), EntryCount());
    T* key = entries[place].key;
    if (step == 1)
        return {key, place + 1 < count ? entries[place + 1].key : nullptr};
    while (key->next && !(key->next->time > time))
        key = key->next;
    return {key, key->next};
}
