#pragma once

#include <new>
#include <stdexcept>

/// Runs `work`, whose size a file decides. If it runs out of memory, calls `fail`, which raises an
/// `Error` that says what the memory was for. The memory of `work` is free again by then, but it may
/// be little, so `fail` should not allocate.
template <class Work, class Fail>
void WithMemory(const Work& work, const Fail& fail)
{
    try {
        work();
        return;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) { // more elements than any memory can hold
    }
    fail();
}
