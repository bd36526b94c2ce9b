#pragma once

#include <d3d9.h>

namespace headless {

/// Bytes of one vertex of a flexible vertex format, 0 for no format. The weights of `D3DFVF_XYZBn` are
/// n floats, of which `D3DFVF_LASTBETA_UBYTE4` makes the last one four indices of the same size.
UINT VertexSize(DWORD fvf);

} // namespace headless
