#pragma once

#include <cstdint>

namespace headless {

/// Writes a picture as a BMP file, 32 bits per pixel with `withAlpha`, else 24 bits, on the same
/// terms as `WritePngFile`. False if the file cannot be written.
bool WriteBmpFile(const char* path, int width, int height, const uint32_t* argb, bool withAlpha);

} // namespace headless
