#pragma once

#include <new>
#include <stdexcept>

/// Runs `work`. If its memory runs out, `fail` raises the `Error` of whoever knows what the memory
/// was for. What `work` held is free again by then, but there may be little of it: `fail` should not
/// allocate. For work whose size a file decides.
template <class Work, class Fail>
void WithMemory(const Work& work, const Fail& fail)
{
    try {
        work();
        return;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) { // more elements than any memory has room for
    }
    fail();
}
