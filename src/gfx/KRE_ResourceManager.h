#pragma once

#include "base/DynaMem.h"
#include "base/KRE_Base.h"

/// One shared object: what it is, the name it was registered under, and its users.
struct KRE_Resource {
    /// Not owned here: the last user releases it. Null after a device reset released it.
    void* pointer = nullptr;
    char name[256] = ""; ///< truncated at 255 bytes
    int32_t useCount = 0;
};

/// Shares device objects by name and counts their users, so that a file that ten materials name is
/// loaded once. An id is valid until its last user is gone. The manager owns none of the objects:
/// whoever gets true from `Unacquire` must release the object.
class KRE_ResourceManager : public KRE_Base {
public:
    static constexpr int32_t kCapacity = 4096;

    KRE_ResourceManager();

    /// Registers an object with one user and returns its id. Does not look the name up: call
    /// `Acquire(name)` first. One object too many raises DynaMem's "Can not expand fixed list".
    int32_t Add(void* pointer, const char* name);
    /// Adds a user and returns the id; -1 is passed through. Any other id without an entry is an
    /// `Error`.
    int32_t Acquire(int32_t id);
    /// Adds a user to the first entry of exactly this name and returns its id, or -1 if there is
    /// none. A null or empty name is an `Error`.
    int32_t Acquire(const char* name);
    /// True if the caller was the last user and must now release the object. Always true for -1,
    /// the id of an object that is not shared; any other id without an entry is an `Error`.
    bool Unacquire(int32_t id);

    /// The object of an id; null for an id without an entry.
    void* GetPointer(int32_t id) const;
    int32_t GetCount() const { return resources.Count(); }
    /// The i-th used entry, owned here; null outside 0..GetCount()-1. Invalid after the next
    /// change.
    KRE_Resource* GetEntry(int32_t i);

    DynaMem<KRE_Resource, kCapacity, 1> resources; ///< the slot is the id
    bool reuse = true; ///< whether loaders look a name up before they load
};
