#pragma once

#include <d3d9.h>

namespace headless {

/// Bytes of one vertex of a flexible vertex format, 0 if `fvf` is 0. The weights of
/// `D3DFVF_XYZBn` are n floats, of which `D3DFVF_LASTBETA_UBYTE4` replaces the last by four indices
/// of the same total size.
UINT VertexSize(DWORD fvf);

/// Floats of texture set `set` of the format.
constexpr UINT TextureSetFloats(DWORD fvf, UINT set)
{
    constexpr UINT kFloats[] = {2, 3, 4, 1}; // by the two bits that the format keeps for a set
    return kFloats[fvf >> (16 + set * 2) & 3];
}

} // namespace headless
