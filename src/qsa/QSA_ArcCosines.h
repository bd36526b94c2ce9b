#pragma once

#include <cstddef>

/// What is computed at a time: any number of cosines is rounded up to a multiple of it.
inline constexpr size_t kArcCosineStep = 4;

/// Replaces cosines by their arc cosines in radians, computed in double and rounded to float. For each
/// float in [-1, 1] that is what the C library gives, rounded so; for others it is NaN. `values` is aligned
/// to 16 bytes and has room for `number` rounded up to a multiple of `kArcCosineStep`; all of that may be changed.
void ArcCosines(float* values, size_t number);

/// The same by instructions that every processor of the build has.
void PlainArcCosines(float* values, size_t number);

/// The same four at a time with the same bits, for processors that have AVX2. Null on others.
using ArcCosinesFunction = void (*)(float* values, size_t number);
ArcCosinesFunction FourArcCosines();
