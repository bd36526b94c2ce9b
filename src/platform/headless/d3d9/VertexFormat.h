#pragma once

#include <d3d9.h>

namespace headless {

/// Bytes of one vertex of a flexible vertex format, 0 if `fvf` is 0. The weights of
/// `D3DFVF_XYZBn` are n floats, of which `D3DFVF_LASTBETA_UBYTE4` replaces the last by four indices
/// of the same total size.
UINT VertexSize(DWORD fvf);

} // namespace headless
