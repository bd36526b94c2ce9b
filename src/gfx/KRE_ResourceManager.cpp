#include "gfx/KRE_ResourceManager.h"

#include "base/FormatText.h"

#include <cstring>

namespace {

/// The table must not grow, because ids are slots and growing renumbers them. It is fixed only
/// during an addition: a list that stays fixed no longer keeps its order of the used entries.
template <class List>
class FixedForAddition {
public:
    explicit FixedForAddition(List& listIn) : list(listIn) { list.SetFixed(true); }
    ~FixedForAddition() { list.SetFixed(false); }
    FixedForAddition(const FixedForAddition&) = delete;
    FixedForAddition& operator=(const FixedForAddition&) = delete;

private:
    List& list;
};

} // namespace

KRE_ResourceManager::KRE_ResourceManager()
{
    SetClassName("KRE_ResourceManager");
}

int32_t KRE_ResourceManager::Add(void* pointer, const char* name)
{
    const FixedForAddition guard(resources);
    const int32_t id = resources.Add();
    KRE_Resource* entry = resources.GetSlot(id);
    if (!entry) {
        // The list counts the element that it could not allocate, and the table outlives the error.
        --resources.count;
        resources.firstFree = id;
        Error("Out of memory for resource '%s'", name ? name : "");
    }
    entry->pointer = pointer;
    CopyText(entry->name, sizeof entry->name, name);
    entry->useCount = 1;
    return id;
}

int32_t KRE_ResourceManager::Acquire(int32_t id)
{
    if (id == -1)
        return -1;
    KRE_Resource* entry = resources.GetSlot(id);
    if (!entry)
        Error("Invalid ID number in Acquire:%i", id);
    ++entry->useCount;
    return id;
}

int32_t KRE_ResourceManager::Acquire(const char* name)
{
    if (!name || !name[0])
        Error("Invalid file name in Acquire!");
    for (int32_t i = 0; i < resources.Count(); ++i) {
        KRE_Resource* entry = resources.Get(i);
        if (std::strcmp(entry->name, name) == 0) {
            ++entry->useCount;
            return resources.order[i];
        }
    }
    return -1;
}

bool KRE_ResourceManager::Unacquire(int32_t id)
{
    if (id == -1)
        return true;
    KRE_Resource* entry = resources.GetSlot(id);
    if (!entry)
        Error("Invalid ID number in Unacquire");
    if (--entry->useCount > 0)
        return false;
    resources.DeleteSlot(id);
    return true;
}

void* KRE_ResourceManager::GetPointer(int32_t id) const
{
    const KRE_Resource* entry = resources.GetSlot(id);
    return entry ? entry->pointer : nullptr;
}

KRE_Resource* KRE_ResourceManager::GetEntry(int32_t i)
{
    return i >= 0 && i < resources.Count() ? resources.Get(i) : nullptr;
}
