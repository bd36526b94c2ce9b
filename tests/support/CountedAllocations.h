#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

// Replaces the program's allocation functions to count allocations and to let some fail; include it
// in exactly one source file of a program. Not inlined, because the compiler would see mismatched pairs. The array
// forms are replaced too: a sanitizer's own would not be counted.

static std::atomic<int64_t> gAllocations = 0;          ///< since the program started
static std::atomic<int64_t> gFirstFailing = INT64_MAX; ///< numbers of the allocations that fail
static std::atomic<int64_t> gLastFailing = INT64_MAX;

[[gnu::noinline]] void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    const int64_t number = ++gAllocations;
    if (number >= gFirstFailing && number <= gLastFailing)
        return nullptr;
    return std::malloc(size ? size : 1);
}

[[gnu::noinline]] void* operator new(size_t size)
{
    if (void* memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new[](size_t size, const std::nothrow_t&) noexcept
{
    return operator new(size, std::nothrow);
}

[[gnu::noinline]] void* operator new[](size_t size)
{
    return operator new(size);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, size_t) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory, size_t) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
