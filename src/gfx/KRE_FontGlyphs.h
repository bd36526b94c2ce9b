#pragma once

#include <cstdint>

constexpr int32_t kFontGlyphSide = 5;   ///< pixels, width and height
constexpr int32_t kFontGlyphCount = 62; ///< characters 0x20 to 0x5D: there are no small letters

/// The engine's own letters, the blank first. Each is 25 characters, row by row: X or a blank.
extern const char* const kFontGlyphs[kFontGlyphCount];
