#include "platform/headless/d3d9/VertexFormat.h"

namespace headless {

namespace {

struct PartSize {
    DWORD bits;
    UINT bytes;
};

constexpr PartSize kPositions[] = {
    {D3DFVF_XYZ, 12},   {D3DFVF_XYZRHW, 16}, {D3DFVF_XYZB1, 16}, {D3DFVF_XYZB2, 20},
    {D3DFVF_XYZB3, 24}, {D3DFVF_XYZB4, 28},  {D3DFVF_XYZB5, 32}, {D3DFVF_XYZW, 16},
};

constexpr PartSize kParts[] = {
    {D3DFVF_NORMAL, 12}, {D3DFVF_PSIZE, 4}, {D3DFVF_DIFFUSE, 4}, {D3DFVF_SPECULAR, 4}};

/// Number of floats of a texture set, indexed by its two format bits.
constexpr UINT kSetFloats[] = {2, 3, 4, 1};

} // namespace

UINT VertexSize(DWORD fvf)
{
    UINT size = 0;
    for (const PartSize& position : kPositions)
        if ((fvf & D3DFVF_POSITION_MASK) == position.bits)
            size += position.bytes;
    for (const PartSize& part : kParts)
        if (fvf & part.bits)
            size += part.bytes;
    const UINT sets = (fvf & D3DFVF_TEXCOUNT_MASK) >> D3DFVF_TEXCOUNT_SHIFT;
    for (UINT set = 0; set < sets && set < D3DDP_MAXTEXCOORD; ++set)
        size += kSetFloats[fvf >> (16 + set * 2) & 3] * 4;
    return size;
}

} // namespace headless
