#include "platform/ExpectMemory.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

/// Below this, making a large page costs more than the small ones that are used of it.
constexpr int64_t kLeast = int64_t{16} << 20;
/// The largest piece that the C library takes from its heap, so that asking for it makes the heap grow.
constexpr size_t kLargestPiece = size_t{31} << 20;

int64_t gExpected = 0; ///< bytes that the heap has grown by here

/// Makes the heap grow by one piece and `more`, and keeps them in it.
void GrowHeap(int64_t more)
{
    const int most = std::numeric_limits<int>::max();
    mallopt(M_MMAP_THRESHOLD, static_cast<int>(kLargestPiece) + (1 << 20));
    mallopt(M_TRIM_THRESHOLD, most);
    mallopt(M_TOP_PAD, static_cast<int>(std::min<int64_t>(more, most)));
    void* volatile piece = std::malloc(kLargestPiece); // a compiler may drop an unused one
    std::free(piece);
    mallopt(M_TOP_PAD, 1 << 20);
}

} // namespace

void ExpectMemory(int64_t bytes)
{
    if (bytes < kLeast || bytes <= gExpected)
        return;
    auto* const before = static_cast<char*>(sbrk(0));
    GrowHeap(bytes - gExpected);
    gExpected = bytes;
    const auto start = (reinterpret_cast<uintptr_t>(before) + 4095) / 4096 * 4096;
    const auto end = reinterpret_cast<uintptr_t>(sbrk(0));
    if (end > start) // a heap that could not grow stays as it is
        madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}
