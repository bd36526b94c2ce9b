#pragma once

#include <cstddef>
#include <cstdint>

#include <d3dx9.h>

namespace headless {

/// Scales a picture of A8R8G8B8 pixels; source and target are tightly packed, with sides of at
/// least one pixel. `filter` is one of
/// - `D3DX_FILTER_NONE`: not scaled, the top left corners are aligned, the rest becomes 0;
/// - `D3DX_FILTER_POINT`: the nearest pixel;
/// - `D3DX_FILTER_LINEAR`: interpolates the four nearest pixels;
/// - `D3DX_FILTER_TRIANGLE`: every source pixel contributes equally;
/// - `D3DX_FILTER_BOX`: the mean of the covered area, 2 by 2 pixels when halving.
/// Outside the picture it repeats, or is mirrored with `D3DX_FILTER_MIRROR_U` and
/// `D3DX_FILTER_MIRROR_V`. False if memory runs out.
bool ResampleArgb(const uint32_t* source, UINT sourceWidth, UINT sourceHeight, DWORD filter,
                  UINT targetWidth, UINT targetHeight, uint32_t* targetOut);

/// The usual step of a mip chain: `D3DX_FILTER_BOX` from exactly twice the size on both sides, in
/// integer arithmetic. Gives the same result as the general code, many times faster, for any format
/// of four 8-bit channels in any order. Pixels need no alignment.
void HalveExactly(const void* source, size_t sourcePitchBytes, UINT targetWidth, UINT targetHeight,
                  void* targetOut, size_t targetPitchBytes);

/// The bits of a filter value that select the filter.
inline constexpr DWORD kFilterKindMask = 0xFFFF;

} // namespace headless
