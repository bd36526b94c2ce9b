#include "gfx/KRE_VertexLayout.h"

#include <algorithm>

namespace {

constexpr int32_t kXyzBytes = 12;
constexpr int32_t kXyzRhwBytes = 16;
constexpr int32_t kWeightBytes = 4;
constexpr int32_t kMatrixIndexBytes = 4;
constexpr int32_t kMaxTextureSets = 8;

/// Number of weights of a blended position, 0 for the others.
int32_t BlendCount(DWORD fvf)
{
    switch (fvf & (D3DFVF_XYZ | D3DFVF_XYZRHW | D3DFVF_XYZB2)) {
    case D3DFVF_XYZB1:
        return 1;
    case D3DFVF_XYZB2:
        return 2;
    case D3DFVF_XYZB3:
        return 3;
    case D3DFVF_XYZB4:
        return 4;
    default:
        return 0;
    }
}

/// Bytes of the position without its weights; D3DFVF_XYZB5 is not handled and has none.
int32_t PositionBytes(DWORD fvf)
{
    const DWORD position = fvf & (D3DFVF_XYZ | D3DFVF_XYZRHW | D3DFVF_XYZB2);
    if (position == D3DFVF_XYZRHW)
        return kXyzRhwBytes;
    return position == D3DFVF_XYZ || BlendCount(fvf) > 0 ? kXyzBytes : 0;
}

/// Bytes of the texture set, by its two format bits.
int32_t TextureSetBytes(DWORD fvf, int32_t set)
{
    static constexpr int32_t kBytes[4] = {8, 12, 16, 4};
    return kBytes[(fvf >> (16 + 2 * set)) & 3];
}

} // namespace

void VertexInfo::SetFVFInfo(DWORD newFvf)
{
    const int32_t keptProcessing = processing;
    *this = VertexInfo();
    processing = keptProcessing;
    fvf = newFvf;
    stride = PositionBytes(fvf);
    blendCount = BlendCount(fvf);
    if (blendCount > 0) {
        weightOffset = stride;
        stride += kWeightBytes * (blendCount - 1);
        if (fvf & D3DFVF_LASTBETA_UBYTE4) {
            matrixIndexOffset = stride;
            stride += kMatrixIndexBytes;
        }
    }

    const struct {
        DWORD bit;
        int32_t bytes;
        int32_t& offset;
    } elements[] = {
        {D3DFVF_NORMAL, 12, normalOffset},
        {D3DFVF_PSIZE, 4, pointSizeOffset},
        {D3DFVF_DIFFUSE, 4, diffuseOffset},
        {D3DFVF_SPECULAR, 4, specularOffset},
    };
    for (const auto& element : elements) {
        if (!(fvf & element.bit))
            continue;
        element.offset = stride;
        stride += element.bytes;
    }

    const auto sets = static_cast<int32_t>((fvf & D3DFVF_TEXCOUNT_MASK) >> D3DFVF_TEXCOUNT_SHIFT);
    textureCount = std::min(sets, kMaxTextureSets);
    if (textureCount > 0)
        textureOffset = stride;
    for (int32_t set = 0; set < textureCount; ++set)
        stride += TextureSetBytes(fvf, set);
}
