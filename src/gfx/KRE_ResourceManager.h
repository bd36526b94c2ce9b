#pragma once

#include "base/DynaMem.h"
#include "base/KRE_Base.h"

/// One shared object: what it is, the name it was registered under, and its users.
struct KRE_Resource {
    /// Not owned here: the last user releases it. Null once a device reset took it away.
    void* pointer = nullptr;
    char name[256] = ""; ///< cut at 255 bytes
    int32_t useCount = 0;
};

/// Shares device objects by name and counts their users, so that a file that ten materials name is
/// loaded once. An id is good until its last user is gone. The manager owns none of the objects: the
/// user to whom `Unacquire` gives true releases the object.
class KRE_ResourceManager : public KRE_Base {
public:
    static constexpr int32_t kCapacity = 4096;

    KRE_ResourceManager();

    /// Registers an object with one user and gives its id. Does not look for the name: ask with
    /// `Acquire(name)` first. One object too many is DynaMem's "Can not expand fixed list".
    int32_t Add(void* pointer, const char* name);
    /// Counts one more user and gives the id; -1 passes. Any other id without an entry is an `Error`.
    int32_t Acquire(int32_t id);
    /// The first entry of exactly this name, with one more user, or -1. No name is an `Error`.
    int32_t Acquire(const char* name);
    /// True when the caller was the last user and now has to release the object. -1, the id of an
    /// object that is not shared, is always true; any other id without an entry is an `Error`.
    bool Unacquire(int32_t id);

    /// The object of an id; null for an id without an entry.
    void* GetPointer(int32_t id) const;
    int32_t GetCount() const { return resources.Count(); }
    /// The i-th used entry, owned here; null outside 0..GetCount()-1. Void after the next change.
    KRE_Resource* GetEntry(int32_t i);

    DynaMem<KRE_Resource, kCapacity, 1> resources; ///< the slot is the id
    bool reuse = true; ///< whether loaders ask for a name before they load
};
