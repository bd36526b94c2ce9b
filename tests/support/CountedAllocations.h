#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

// Replaces the program's allocation, so that it can be counted: to be included by one source file of
// a program. Inlined, the operators would look like mismatched pairs to the compiler. The forms for
// arrays are replaced too: a sanitizer's own would take memory that is not counted.

static std::atomic<int64_t> gAllocations = 0; ///< since the program began

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    ++gAllocations;
    return std::malloc(size ? size : 1);
}

[[gnu::noinline]] void* operator new(std::size_t size)
{
    if (void* memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return operator new(size, std::nothrow);
}

[[gnu::noinline]] void* operator new[](std::size_t size)
{
    return operator new(size);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
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

[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
