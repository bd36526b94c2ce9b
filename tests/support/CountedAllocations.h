#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

// Replaces the program's allocation functions to count allocations; include it in exactly one
// source file of a program. Not inlined, because the compiler would see mismatched pairs. The array
// forms are replaced too: a sanitizer's own would not be counted.

static std::atomic<int64_t> gAllocations = 0; ///< since the program started

[[gnu::noinline]] void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    ++gAllocations;
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
