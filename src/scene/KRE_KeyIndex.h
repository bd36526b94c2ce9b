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

/// The keys of a list as a flat array, so that finding one takes no walk. Holds pointers into the
/// list and becomes invalid when a key is added or removed. A copy is empty, because its list has
/// other keys.
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
    int32_t Count() const { return count; }

private:
    HeapArray<KRE_KeyIndexEntry<T>> entries; ///< owned
    int32_t count = 0;
};

template <class T>
bool KRE_KeyIndex<T>::Build(const KRE_KeyList<T>& keys, int32_t expectedCount)
{
    Free();
    // Counted first: the expected number may come from a file and must not size an allocation.
    int64_t visited = 0;
    for (const T* key = keys.Head(); key; key = key->next)
        ++visited;
    if (visited != expectedCount)
        return false;
    if (expectedCount == 0)
        return true;

    entries = HeapArray<KRE_KeyIndexEntry<T>>(expectedCount);
    for (T* key = keys.Head(); key; key = key->next)
        entries[count++] = {key, key->time};
    return true;
}
