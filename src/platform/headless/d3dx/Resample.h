#pragma once

#include <cstddef>
#include <cstdint>

#include <d3dx9.h>

namespace headless {

/// Scales a picture of A8R8G8B8 pixels, both sides tightly packed and at least one pixel long.
/// `filter` is one of
/// - `D3DX_FILTER_NONE`: not scaled, the top left corners fall together, the rest becomes 0;
/// - `D3DX_FILTER_POINT`: the nearest pixel;
/// - `D3DX_FILTER_LINEAR`: between the four nearest pixels;
/// - `D3DX_FILTER_TRIANGLE`: every source pixel contributes equally;
/// - `D3DX_FILTER_BOX`: the mean of the area that the pixel covers, for a half of 2 by 2 pixels.
/// What lies beyond the border is the other side of the picture, or its mirror image with
/// `D3DX_FILTER_MIRROR_U` and `D3DX_FILTER_MIRROR_V`. False when there is not enough memory.
bool ResampleArgb(const std::uint32_t* source, UINT sourceWidth, UINT sourceHeight, DWORD filter,
                  UINT targetWidth, UINT targetHeight, std::uint32_t* targetOut);

/// The usual step of a mip chain: `D3DX_FILTER_BOX` from exactly twice the size on both sides, in whole
/// numbers. Gives what the general way gives, many times faster, for any format of four 8-bit
/// channels in whatever order. Pixels need no alignment.
void HalveExactly(const void* source, std::size_t sourcePitchBytes, UINT targetWidth,
                  UINT targetHeight, void* targetOut, std::size_t targetPitchBytes);

/// The part of a filter value that names the filter.
inline constexpr DWORD kFilterKindMask = 0xFFFF;

} // namespace headless
