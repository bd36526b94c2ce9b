#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace headless {

/// Writes a picture as a PNG file: 32 bits per pixel with `withAlpha`, else 24 bits. `argb` holds
/// `width` * `height` A8R8G8B8 pixels, row by row from the top, tightly packed; both sides are in
/// 1..16384. The same pixels always give the same bytes. The file is written under a temporary name
/// in the same directory and renamed when complete, so `path` never holds half a picture. On
/// failure returns false, leaves the old file at `path` alone and stores the reason in `errorOut`.
bool WritePngFile(const char* path, int width, int height, const uint32_t* argb, bool withAlpha,
                  std::string& errorOut);

/// The same into an open stream, for callers with a way of their own to put a file in its place.
bool WritePngStream(FILE* stream, int width, int height, const uint32_t* argb, bool withAlpha,
                    std::string& errorOut);

} // namespace headless
