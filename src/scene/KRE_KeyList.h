#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <utility>

#include "scene/KRE_KeyMemory.h"

/// Owns the keys of one track of an object, in time order. `T` is a class of `KRE_KeyData.h`.
/// Adding in time order takes constant time, any other order a logarithmic one.
template <class T>
class KRE_KeyList {
public:
    KRE_KeyList() = default;
    KRE_KeyList(const KRE_KeyList& other) { CopyFrom(other); }
    KRE_KeyList(KRE_KeyList&& other) noexcept
        : memory(std::move(other.memory)),
          head(std::exchange(other.head, nullptr)),
          tail(other.tail),
          latest(other.latest),
          isLatestKnown(other.isLatestKnown),
          laterKeys(std::move(other.laterKeys))
    {}
    KRE_KeyList& operator=(KRE_KeyList&& other) noexcept
    {
        memory = std::move(other.memory); // the other list gets the old keys
        std::swap(head, other.head);
        std::swap(tail, other.tail);
        std::swap(latest, other.latest);
        std::swap(isLatestKnown, other.isLatestKnown);
        std::swap(laterKeys, other.laterKeys);
        return *this;
    }
    KRE_KeyList& operator=(const KRE_KeyList& other)
    {
        if (this != &other)
            CopyFrom(other);
        return *this;
    }
    ~KRE_KeyList() = default;

    T* Head() const { return head; }
    T* Tail() const { return head ? tail : nullptr; }
    explicit operator bool() const { return head != nullptr; }

    /// Inserts a copy of `key` before the first later key, or at the end, so of keys with equal
    /// times the newest comes last. Returns the new key, owned here.
    /// QUIRK: the head stays the head. A key before it is dropped, and the result is null; the
    /// owner still counts it, and `BuildKeyIndex` then reports the difference.
    T* Insert(const T& key);
    /// Appends a copy of `key`, whatever its time, and returns it.
    T* Append(const T& key);
    void Clear() { *this = KRE_KeyList(); }

    /// The last key that is not after `time`, or the first; null in an empty list. Walks the list.
    T* FindKey(float time) const;
    /// Moves the window from `from` to `to` to time 0 and removes keys outside it, except the one
    /// to start from and the last. Returns the number of keys removed.
    int32_t Trim(float from, float to);
    /// Call it after changing times in place, before the next `Insert`.
    void TimesChanged()
    {
        laterKeys.reset();
        isLatestKnown = false;
    }

private:
    void CopyFrom(const KRE_KeyList& other);
    T* Link(T* before, const T& key);
    void Unlink(T* key);
    T* FirstLaterKey(float time);
    void NoteTime(T* key);
    void FindLatest();

    KRE_KeyMemory<T> memory; ///< of all keys, also of those that were removed
    T* head = nullptr;
    T* tail = nullptr; ///< valid while there is a head
    float latest = 0;  ///< highest time in the list, valid while there is a head and it is known
    bool isLatestKnown = true;
    /// The keys that are later than all keys before them, by time: the first key after a time is
    /// always one of these. Created by the first key that is added out of order.
    std::unique_ptr<std::map<float, T*>> laterKeys;
};

template <class T>
T* KRE_KeyList<T>::Insert(const T& key)
{
    if (head && head->time > key.time)
        return nullptr;
    if (!isLatestKnown)
        FindLatest();
    if (!head || !(latest > key.time))
        return Append(key);
    T* added = Link(FirstLaterKey(key.time), key);
    NoteTime(added);
    return added;
}

template <class T>
T* KRE_KeyList<T>::Append(const T& key)
{
    if (!isLatestKnown)
        FindLatest();
    if (!head)
        latest = key.time;
    T* added = Link(nullptr, key);
    // NaN is after nothing, and nothing is after NaN.
    if (key.time > latest || latest != latest)
        latest = key.time;
    NoteTime(added);
    return added;
}

/// Links a copy of `key` in front of `before`, which is not the head; null means the end.
template <class T>
T* KRE_KeyList<T>::Link(T* before, const T& key)
{
    T* const added = memory.Add(key);
    if (before) {
        added->prev = before->prev;
        added->next = before;
        before->prev = added;
        added->prev->next = added;
        return added;
    }
    added->prev = Tail();
    (head ? tail->next : head) = added;
    tail = added;
    return added;
}

template <class T>
void KRE_KeyList<T>::Unlink(T* key)
{
    if (key->next)
        key->next->prev = key->prev;
    else
        tail = key->prev;
    (key->prev ? key->prev->next : head) = key->next;
}

template <class T>
T* KRE_KeyList<T>::FirstLaterKey(float time)
{
    if (!laterKeys) {
        laterKeys = std::make_unique<std::map<float, T*>>();
        for (T* key = head; key; key = key->next)
            NoteTime(key);
    }
    const auto found = laterKeys->upper_bound(time);
    return found == laterKeys->end() ? nullptr : found->second;
}

/// Keys come here in list order, or with no earlier key after them; of keys with equal times the
/// first is kept.
template <class T>
void KRE_KeyList<T>::NoteTime(T* key)
{
    if (!laterKeys || key->time != key->time)
        return;
    const auto after = laterKeys->upper_bound(key->time);
    // A key after a later one is never the first one after any time.
    if (after == laterKeys->end() || key->next == after->second)
        laterKeys->emplace_hint(after, key->time, key);
}

template <class T>
T* KRE_KeyList<T>::FindKey(float time) const
{
    T* key = head;
    while (key && key->next && !(key->next->time > time))
        key = key->next;
    return key;
}

template <class T>
int32_t KRE_KeyList<T>::Trim(float from, float to)
{
    int32_t removed = 0;
    T* key = head;
    while (key) {
        T* next = key->next;
        const bool isBefore = key->time < from && next && !(next->time > from);
        const bool isOutside = isBefore || key->time > to;
        if (isOutside && next) {
            Unlink(key);
            ++removed;
        } else {
            key->time -= from;
        }
        key = next;
    }
    TimesChanged();
    return removed;
}

/// Only once a key is added: most lists are complete when their times change.
template <class T>
void KRE_KeyList<T>::FindLatest()
{
    isLatestKnown = true;
    latest = head ? head->time : 0;
    for (T* key = head; key; key = key->next) {
        if (key->time > latest || latest != latest)
            latest = key->time;
    }
}

template <class T>
void KRE_KeyList<T>::CopyFrom(const KRE_KeyList& other)
{
    Clear();
    for (const T* key = other.Head(); key; key = key->next)
        Append(*key);
}
