#pragma once

#include <cstdint>

constexpr int32_t kFontGlyphSide = 5;   ///< pixels, width and height
constexpr int32_t kFontGlyphCount = 62; ///< characters 0x20 to 0x5D: no lower-case letters

/// The engine's own glyphs, the space first. Each is 25 characters, row by row: X or a space.
extern const char* const kFontGlyphs[kFontGlyphCount];
