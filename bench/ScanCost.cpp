// bare_scan FILE   scans a text that is mapped into memory, and does nothing else: its cost as a process is the unit
// of tools/bench-convert.
#include <cstdio>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include "bench/BareScan.h"

int main(int count, char** arguments)
{
    const int file = count == 2 ? open(arguments[1], O_RDONLY | O_CLOEXEC) : -1;
    struct stat info = {};
    if (file < 0 || fstat(file, &info) != 0 || info.st_size == 0)
        return 2;
    const size_t size = static_cast<size_t>(info.st_size);
    void* const text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
    if (text == MAP_FAILED)
        return 2;
    const BareScanResult result = BareScan(static_cast<const char*>(text), size);
    std::printf("%zu keywords, %zu numbers, sum %g, hash %u, depth %zu\n", result.words,
                result.numbers, result.sum, result.hash, result.depth);
    return 0;
}
