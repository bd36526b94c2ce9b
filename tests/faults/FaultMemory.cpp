// The interposed allocator: it counts requests, lets some fail, and keeps a table of what is in use.

#include "tests/faults/FaultMemory.h"

#include "tests/faults/FaultOrder.h"
#include "tests/faults/FaultTrace.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>

// The C library's own, by the names that it gives to interposers.
extern "C" void* __libc_malloc(size_t);
extern "C" void* __libc_calloc(size_t, size_t);
extern "C" void* __libc_realloc(void*, size_t);
extern "C" void* __libc_memalign(size_t, size_t);
extern "C" void __libc_free(void*);

namespace faults {

namespace {

struct Block {
    uintptr_t at; ///< 0: never used; 1: free again
    size_t size;
    int64_t number; ///< of the request; 0 if it came before `main`
    bool isReached;
};

constexpr size_t kFirstSlots = 4096;
constexpr uintptr_t kGone = 1;

Block* gBlocks = nullptr;
size_t gSlots = 0;          // of which at most half are in use, a power of two
size_t gUsed = 0;           // with those that are free again
Block** gReached = nullptr; // blocks to look through
size_t gReachedCount = 0;

template <class T>
T* Map(size_t count)
{
    void* mapped = mmap(nullptr, count * sizeof(T), PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped == MAP_FAILED)
        __builtin_trap();
    return static_cast<T*>(mapped);
}

size_t SlotOf(uintptr_t at)
{
    return static_cast<size_t>((at >> 4) * 0x9E3779B97F4A7C15ull >> 32) & (gSlots - 1);
}

void Insert(const Block& block)
{
    size_t slot = SlotOf(block.at);
    while (gBlocks[slot].at > kGone)
        slot = (slot + 1) & (gSlots - 1);
    gUsed += gBlocks[slot].at == 0 ? 1 : 0;
    gBlocks[slot] = block;
}

void Grow()
{
    const Block* const old = gBlocks;
    const size_t oldSlots = gSlots;
    gSlots = gSlots == 0 ? kFirstSlots : 2 * gSlots;
    gBlocks = Map<Block>(gSlots);
    gUsed = 0;
    for (size_t slot = 0; slot < oldSlots; ++slot) {
        if (old[slot].at > kGone)
            Insert(old[slot]);
    }
    if (old)
        munmap(const_cast<Block*>(old), oldSlots * sizeof(Block));
}

void Note(void* memory, size_t size)
{
    if (!memory)
        return;
    if (2 * gUsed >= gSlots)
        Grow();
    const int64_t number = gIsArmed ? gResult->counts[static_cast<int>(Kind::kMemory)] : 0;
    Insert({reinterpret_cast<uintptr_t>(memory), size, number, false});
}

void Forget(void* memory)
{
    const auto at = reinterpret_cast<uintptr_t>(memory);
    if (!at || !gBlocks)
        return;
    for (size_t slot = SlotOf(at); gBlocks[slot].at != 0; slot = (slot + 1) & (gSlots - 1)) {
        if (gBlocks[slot].at != at)
            continue;
        gBlocks[slot].at = kGone;
        return;
    }
}

bool Fail()
{
    ++gResult->hits;
    TraceFault();
    errno = ENOMEM;
    return true;
}

bool Fails()
{
    if (!gIsArmed)
        return false;
    const int64_t count = ++gResult->counts[static_cast<int>(Kind::kMemory)];
    return gOrder.kind == Kind::kMemory && gOrder.Hits(count) && Fail();
}

// ---- Leaks

/// All blocks in use, by address, for a search by halves.
Block** gSorted = nullptr;
size_t gSortedCount = 0;

void SiftDown(size_t root, size_t end)
{
    for (size_t child = 2 * root + 1; child < end; child = 2 * root + 1) {
        if (child + 1 < end && gSorted[child]->at < gSorted[child + 1]->at)
            ++child;
        if (gSorted[root]->at >= gSorted[child]->at)
            return;
        Block* const held = gSorted[root];
        gSorted[root] = gSorted[child];
        gSorted[child] = held;
        root = child;
    }
}

/// Without the library's sorting, which may ask for memory.
void SortBlocks()
{
    gSorted = Map<Block*>(gSlots + 1);
    for (size_t slot = 0; slot < gSlots; ++slot) {
        if (gBlocks[slot].at > kGone)
            gSorted[gSortedCount++] = &gBlocks[slot];
    }
    for (size_t i = gSortedCount / 2; i-- > 0;)
        SiftDown(i, gSortedCount);
    for (size_t end = gSortedCount; end-- > 1;) {
        Block* const held = gSorted[0];
        gSorted[0] = gSorted[end];
        gSorted[end] = held;
        SiftDown(0, end);
    }
}

void Reach(uintptr_t value)
{
    size_t low = 0;
    size_t high = gSortedCount;
    while (low < high) {
        const size_t middle = (low + high) / 2;
        if (gSorted[middle]->at <= value)
            low = middle + 1;
        else
            high = middle;
    }
    if (low == 0)
        return;
    Block* const block = gSorted[low - 1];
    if (block->isReached || value > block->at + block->size)
        return;
    block->isReached = true;
    gReached[gReachedCount++] = block;
}

void ReachAll(const void* begin, size_t size)
{
    const uintptr_t first = (reinterpret_cast<uintptr_t>(begin) + 7) & ~uintptr_t{7};
    const uintptr_t end = reinterpret_cast<uintptr_t>(begin) + size;
    for (uintptr_t at = first; at + sizeof(uintptr_t) <= end; at += sizeof(uintptr_t))
        Reach(*reinterpret_cast<const uintptr_t*>(at));
}

int ReachFromObject(dl_phdr_info* object, size_t, void*)
{
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr)& part = object->dlpi_phdr[i];
        if (part.p_type == PT_LOAD && (part.p_flags & PF_W))
            ReachAll(reinterpret_cast<const void*>(object->dlpi_addr + part.p_vaddr), part.p_memsz);
        if (part.p_type == PT_TLS && object->dlpi_tls_data)
            ReachAll(object->dlpi_tls_data, part.p_memsz);
    }
    return 0;
}

} // namespace

void BeginMemory()
{
    gIsArmed = true;
}

void CheckLeaks()
{
    gReached = Map<Block*>(gSlots + 1);
    SortBlocks();
    dl_iterate_phdr(ReachFromObject, nullptr);
    while (gReachedCount > 0) {
        const Block* const block = gReached[--gReachedCount];
        ReachAll(reinterpret_cast<const void*>(block->at), block->size);
    }
    for (size_t i = 0; i < gSortedCount; ++i) {
        const Block& block = *gSorted[i];
        if (block.isReached || block.number == 0)
            continue;
        ++gResult->leakedBlocks;
        gResult->leakedBytes += static_cast<int64_t>(block.size);
        if (gResult->leakedNumber == 0 || block.number < gResult->leakedNumber)
            gResult->leakedNumber = block.number;
    }
}

} // namespace faults

// ---- What stands in front of the C library

using namespace faults;

extern "C" void* malloc(size_t size)
{
    void* const memory = Fails() ? nullptr : __libc_malloc(size);
    Note(memory, size);
    return memory;
}

extern "C" void* calloc(size_t count, size_t size)
{
    void* const memory = Fails() ? nullptr : __libc_calloc(count, size);
    Note(memory, count * size);
    return memory;
}

extern "C" void* realloc(void* old, size_t size)
{
    if (Fails())
        return nullptr;
    Forget(old);
    void* const memory = __libc_realloc(old, size);
    if (memory || size == 0)
        Note(memory, size);
    else
        Note(old, malloc_usable_size(old));
    return memory;
}

extern "C" void* memalign(size_t alignment, size_t size)
{
    void* const memory = Fails() ? nullptr : __libc_memalign(alignment, size);
    Note(memory, size);
    return memory;
}

extern "C" void* aligned_alloc(size_t alignment, size_t size)
{
    return memalign(alignment, size);
}

extern "C" int posix_memalign(void** memoryOut, size_t alignment, size_t size) noexcept
{
    void* const memory = memalign(alignment, size);
    if (!memory)
        return ENOMEM;
    *memoryOut = memory;
    return 0;
}

extern "C" void free(void* memory)
{
    Forget(memory);
    __libc_free(memory);
}
