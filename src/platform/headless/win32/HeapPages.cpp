#include "platform/HeapPages.h"

#include <cstdint>

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#ifndef MADV_POPULATE_WRITE
#define MADV_POPULATE_WRITE 23
#endif

namespace {

constexpr int kGrowthBytes = 512 << 10; // more, and there would be many pages that nothing uses
constexpr int kKeptBytes = 8 << 20; // at the end of the heap, not given back when they are freed

/// The heap has to grow by many pages at a time, or there is nothing to gain.
bool LetHeapGrowFaster()
{
    mallopt(M_TOP_PAD, kGrowthBytes);
    mallopt(M_TRIM_THRESHOLD, kKeptBytes);
    return true;
}

} // namespace

void MakeHeapPages()
{
    static const bool isPrepared = LetHeapGrowFaster();
    static uintptr_t known = 0; // the end of the heap at the last call
    const auto end = reinterpret_cast<uintptr_t>(sbrk(0));
    const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t begin = (known + page - 1) / page * page;
    // Without memory to spare the pages come when they are touched, as ever.
    if (isPrepared && known != 0 && begin < end)
        madvise(reinterpret_cast<void*>(begin), (end - begin) / page * page, MADV_POPULATE_WRITE);
    known = end;
}
