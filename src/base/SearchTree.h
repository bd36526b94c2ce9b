#pragma once

#include <cstdint>
#include <cstring>
#include <memory>

#include "base/Ascii.h"
#include "base/DynaMem.h"
#include "base/ErrorClass.h"
#include "base/HeapArray.h"
#include "base/NameIndex.h"
#include "base/String.h"

/// Finds records by name. Each node has one child for each allowed character; with the defaults
/// the tree has one level of 96 buckets, keyed on the first character. An empty name, and one with a
/// character outside the range, is an `Error` of `Insert` and `Find` alike.
template <class T>
class SearchTree : public ErrorClass {
public:
    struct DataEntry {
        T data{};
        String name;
    };

    SearchTree() { SetClassName("SearchTree"); }
    SearchTree(const SearchTree&) = delete;
    SearchTree& operator=(const SearchTree&) = delete;

    /// The entry of that name, owned by the tree, or null.
    DataEntry* Find(const char* name);
    DataEntry* Find(const String& name) { return Find(name.c_str()); }
    /// A new entry, owned by the tree, or null if the name exists already: the first one stays.
    DataEntry* Insert(const char* name);
    DataEntry* Insert(const String& name) { return Insert(name.c_str()); }
    /// Destroys all entries; the settings stay.
    void Clear();

    /// The settings, to be called before the first `Insert`. Characters are signed bytes.
    void SetCharRange(int32_t first, int32_t number);
    /// The number of levels, at least 1. The depth of the tree is bounded by it.
    void SetMaxLevel(int32_t levels) { maxLevel = levels < 1 ? 1 : levels; }
    void SetCaseSensitive(bool isSensitive) { caseSensitive = isSensitive ? 1 : 0; }

private:
    /// Below this number of entries comparing them in turn is faster than any index.
    static constexpr int32_t kIndexThreshold = 16;

    bool IsLeafFor(const char* name) const;
    bool InRange(int32_t c) const { return c >= firstChar && c < firstChar + charCount; }
    SearchTree* Child(int32_t c) { return InRange(c) ? &children[c - firstChar] : nullptr; }
    void MakeChildren();
    bool IsEntry(int32_t slot, const char* name) const;
    DataEntry* FindHere(const char* name);
    DataEntry* InsertHere(const char* name);
    DataEntry* FindBelow(const char* name);
    uint32_t HashHere(const char* name) const { return HashName(name + level, caseSensitive == 0); }

    HeapArray<SearchTree> children; ///< owned; `charCount` nodes, made when first needed
    std::unique_ptr<DynaMem<DataEntry, 8, 1>> entries; ///< owned; made when first needed
    NameIndex index;                                   ///< slots of `entries`, once there are many
    int32_t caseSensitive = 0;
    int32_t firstChar = 32;
    int32_t charCount = 96;
    int32_t level = 0; ///< depth of this node; the root is 0
    int32_t maxLevel = 2;
};

template <class T>
typename SearchTree<T>::DataEntry* SearchTree<T>::Insert(const char* name)
{
    if (!name || !*name) {
        Error("Empty name string");
        return nullptr;
    }
    SearchTree* node = this;
    while (!node->IsLeafFor(name)) {
        node->MakeChildren();
        const int32_t c = static_cast<signed char>(name[node->level]);
        const int32_t folded = caseSensitive ? c : ToUpperAscii(static_cast<char>(c));
        SearchTree* child = node->InRange(c) ? node->Child(folded) : nullptr;
        if (!child) {
            node->Error("Character in name string out of range: %i", c);
            return nullptr;
        }
        node = child;
    }
    return node->InsertHere(name);
}

template <class T>
typename SearchTree<T>::DataEntry* SearchTree<T>::Find(const char* name)
{
    if (!name || !*name) {
        Error("Empty name string");
        return nullptr;
    }
    return FindBelow(name);
}

template <class T>
typename SearchTree<T>::DataEntry* SearchTree<T>::FindBelow(const char* name)
{
    if (IsLeafFor(name))
        return FindHere(name);
    const int32_t c = static_cast<signed char>(name[level]);
    if (!InRange(c)) {
        Error("Character in name string out of range: %i", c);
        return nullptr;
    }
    if (!children)
        return nullptr;
    if (caseSensitive)
        return Child(c)->FindBelow(name);

    // QUIRK: `Insert` folds to upper case, so the second look finds nothing. The order of the two
    // decides which entry wins should a tree ever hold both.
    SearchTree* upper = Child(ToUpperAscii(static_cast<char>(c)));
    DataEntry* found = upper ? upper->FindBelow(name) : nullptr;
    SearchTree* lower = Child(ToLowerAscii(static_cast<char>(c)));
    if (!found && lower && lower != upper)
        found = lower->FindBelow(name);
    return found;
}

template <class T>
void SearchTree<T>::Clear()
{
    entries.reset();
    index.Clear();
    children.Free();
}

template <class T>
void SearchTree<T>::SetCharRange(int32_t first, int32_t number)
{
    firstChar = first;
    charCount = number < 0 ? 0 : number;
}

template <class T>
bool SearchTree<T>::IsLeafFor(const char* name) const
{
    // The path to this node took one character for each level, so `name` has at least that many.
    return level == maxLevel - 1 || name[level] == 0;
}

template <class T>
void SearchTree<T>::MakeChildren()
{
    if (children)
        return;
    children = HeapArray<SearchTree>(charCount);
    for (int32_t i = 0; i < charCount; ++i) {
        SearchTree& child = children[i];
        child.level = level + 1;
        child.charCount = charCount;
        child.firstChar = firstChar;
        child.maxLevel = maxLevel;
        child.caseSensitive = caseSensitive;
    }
}

template <class T>
bool SearchTree<T>::IsEntry(int32_t slot, const char* name) const
{
    const DataEntry* entry = entries->GetSlot(slot);
    if (!entry)
        return false;
    const char* held = entry->name.c_str() + level;
    return (caseSensitive ? std::strcmp(held, name + level) : CompareNoCase(held, name + level)) ==
           0;
}

template <class T>
typename SearchTree<T>::DataEntry* SearchTree<T>::FindHere(const char* name)
{
    if (!entries)
        return nullptr;
    const auto isEqual = [this, name](int32_t slot) { return IsEntry(slot, name); };
    if (entries->Count() > kIndexThreshold)
        return entries->GetSlot(index.Find(HashHere(name), isEqual));
    for (int32_t slot = 0; slot < entries->Count(); ++slot) {
        if (isEqual(slot))
            return entries->GetSlot(slot);
    }
    return nullptr;
}

template <class T>
typename SearchTree<T>::DataEntry* SearchTree<T>::InsertHere(const char* name)
{
    if (FindHere(name))
        return nullptr;
    if (!entries)
        entries = std::make_unique<DynaMem<DataEntry, 8, 1>>();
    // Entries are never taken out one by one, so slots run from 0 in order of insertion.
    const int32_t slot = entries->Add();
    DataEntry* entry = entries->GetSlot(slot);
    if (!entry) {
        Error("Out of memory for resource '%s'", name);
        return nullptr;
    }
    entry->name.Assign(name);
    index.Add(HashHere(name), slot);
    return entry;
}
