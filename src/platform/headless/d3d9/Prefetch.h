#pragma once

#include "platform/headless/d3d9/PixelProgram.h"

namespace headless {

// Asking for memory before it is read. All of it is inlined: sources for some processors share it.

/// Asks for the cache line of an address. The empty instruction keeps it: GCC drops calls of functions that do
/// nothing but prefetch.
[[gnu::always_inline]] inline void Prefetch(const void* at)
{
    __builtin_prefetch(at);
    asm volatile("");
}

/// Asks for the ends of a row of pixels, left <= x < right: a small primitive has two cache lines of a row
/// at most.
[[gnu::always_inline]] inline void PrefetchRow(const PixelProgram& program, int y, int left,
                                               int right)
{
    if (program.depth.isOn) {
        Prefetch(program.depth.rows.At(left, y));
        Prefetch(program.depth.rows.At(right - 1, y));
    }
    Prefetch(program.output.rows.At(left, y));
    Prefetch(program.output.rows.At(right - 1, y));
}

/// Small triangles take a few pixels from each of many rows, and every row is on another cache line: asks
/// for the row behind the next one.
[[gnu::always_inline]] inline void PrefetchAhead(const PixelProgram& program, int y, int left,
                                                 int right)
{
    if (y + 2 < program.area.bottom)
        PrefetchRow(program, y + 2, left, right);
}

} // namespace headless
