#pragma once

#include <cstddef>
#include <cstdint>

#include <d3d9.h>

/// What a vertex format code (FVF) says about its vertices. Sizes and offsets in bytes.
struct VertexInfo {
    static constexpr int32_t kNoOffset = -1; ///< offset of an element that the format lacks

    /// Fills all fields but `processing` from the code. Any code is accepted; texture sets beyond
    /// eight are not counted.
    /// QUIRK: blended positions count one weight too few, which the matrix indices make up for
    /// (`D3DFVF_LASTBETA_UBYTE4`); without them the stride comes out 4 bytes short.
    void SetFVFInfo(DWORD newFvf);

    int32_t processing = 0; ///< 0 software, 1 hardware, 2 effect
    DWORD fvf = 0;
    int32_t stride = 0;
    int32_t blendCount = 0;   ///< 0 to 4 weights
    int32_t textureCount = 0; ///< 0 to 8 sets
    int32_t weightOffset = kNoOffset;
    int32_t matrixIndexOffset = kNoOffset;
    int32_t normalOffset = kNoOffset;
    int32_t pointSizeOffset = kNoOffset;
    int32_t diffuseOffset = kNoOffset;
    int32_t specularOffset = kNoOffset;
    int32_t textureOffset = kNoOffset; ///< of the first set
};

/// The specular colour of a vertex without one: black with full alpha, which means "no fog" to vertex
/// fog.
constexpr D3DCOLOR kNoSpecular = 0xFF000000;

/// On the screen, lit: position in pixels, reciprocal w.
struct KRE_TLVertex {
    static constexpr DWORD kFvf = D3DFVF_XYZRHW | D3DFVF_DIFFUSE | D3DFVF_SPECULAR | D3DFVF_TEX1;
    float x, y, z, rhw;
    D3DCOLOR diffuse, specular;
    float tu, tv;
};
static_assert(KRE_TLVertex::kFvf == 0x1C4 && sizeof(KRE_TLVertex) == 32);
static_assert(offsetof(KRE_TLVertex, diffuse) == 16 && offsetof(KRE_TLVertex, tu) == 24);

/// Untransformed, lit.
struct KRE_LVertex {
    static constexpr DWORD kFvf = D3DFVF_XYZ | D3DFVF_DIFFUSE | D3DFVF_SPECULAR | D3DFVF_TEX1;
    float x, y, z;
    D3DCOLOR diffuse, specular;
    float tu, tv;
};
static_assert(KRE_LVertex::kFvf == 0x1C2 && sizeof(KRE_LVertex) == 28);
static_assert(offsetof(KRE_LVertex, diffuse) == 12 && offsetof(KRE_LVertex, tu) == 20);

/// Untransformed, with texture coordinates only.
struct KRE_VertexPosTex {
    static constexpr DWORD kFvf = D3DFVF_XYZ | D3DFVF_TEX1;
    float x, y, z;
    float tu, tv;
};
static_assert(KRE_VertexPosTex::kFvf == 0x102 && sizeof(KRE_VertexPosTex) == 20);
static_assert(offsetof(KRE_VertexPosTex, tu) == 12);

/// A coloured untransformed point.
struct KRE_PointVertex {
    static constexpr DWORD kFvf = D3DFVF_XYZ | D3DFVF_DIFFUSE;
    float x, y, z;
    D3DCOLOR diffuse;
};
static_assert(KRE_PointVertex::kFvf == 0x42 && sizeof(KRE_PointVertex) == 16);
static_assert(offsetof(KRE_PointVertex, diffuse) == 12);
