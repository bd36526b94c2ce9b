#pragma once

namespace headless {

/// The public curve of sRGB, both ways, for 0..1. Exact to 2^-20. `values` are aligned to 16 bytes, and
/// `count` is a multiple of 4.
void LinearOfSrgb(float* values, int count);
void SrgbOfLinear(float* values, int count);

} // namespace headless
