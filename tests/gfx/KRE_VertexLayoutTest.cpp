#include "gfx/KRE_VertexLayout.h"

#include <gtest/gtest.h>

namespace {

constexpr int32_t kNo = VertexInfo::kNoOffset;

struct LayoutCase {
    const char* what;
    DWORD fvf;
    int32_t stride, blendCount, textureCount;
    int32_t weights, indices, normal, pointSize, diffuse, specular, textures;
};

// Elements follow each other in the order position, weights, indices, normal, point size, diffuse,
// specular, texture sets; the offsets are the running sums of their sizes.
const LayoutCase kLayouts[] = {
    {"position", 0x2, 12, 0, 0, kNo, kNo, kNo, kNo, kNo, kNo, kNo},
    {"on the screen", 0x4, 16, 0, 0, kNo, kNo, kNo, kNo, kNo, kNo, kNo},
    {"sprite", 0x1C4, 32, 0, 1, kNo, kNo, kNo, kNo, 16, 20, 24},
    {"lit", 0x1C2, 28, 0, 1, kNo, kNo, kNo, kNo, 12, 16, 20},
    {"position and texture", 0x102, 20, 0, 1, kNo, kNo, kNo, kNo, kNo, kNo, 12},
    {"coloured point", 0x42, 16, 0, 0, kNo, kNo, kNo, kNo, 12, kNo, kNo},
    {"everything", 0x1F2, 44, 0, 1, kNo, kNo, 12, 24, 28, 32, 36},
    {"one index", 0x1006, 16, 1, 0, 12, 12, kNo, kNo, kNo, kNo, kNo},
    {"two bones, normal", 0x1018, 32, 2, 0, 12, 16, 20, kNo, kNo, kNo, kNo},
    {"three bones, normal", 0x101A, 36, 3, 0, 12, 20, 24, kNo, kNo, kNo, kNo},
    {"four bones, normal, texture", 0x111C, 48, 4, 1, 12, 24, 28, kNo, kNo, kNo, 40},
    {"five weights are not handled", 0x1E, 12, 0, 0, kNo, kNo, 0, kNo, kNo, kNo, kNo},
    {"sets of 2, 3, 4 and 1 floats", 0xE40412, 64, 0, 4, kNo, kNo, 12, kNo, kNo, kNo, 24},
    {"eight sets", 0x802, 76, 0, 8, kNo, kNo, kNo, kNo, kNo, kNo, 12},
    {"fifteen sets count as eight", 0xF02, 76, 0, 8, kNo, kNo, kNo, kNo, kNo, kNo, 12},
    {"nothing", 0, 0, 0, 0, kNo, kNo, kNo, kNo, kNo, kNo, kNo},
};

} // namespace

TEST(KRE_VertexLayout, OffsetsAreTheRunningSumOfTheSizes)
{
    for (const LayoutCase& c : kLayouts) {
        VertexInfo info;
        info.SetFVFInfo(c.fvf);
        EXPECT_EQ(info.fvf, c.fvf) << c.what;
        EXPECT_EQ(info.stride, c.stride) << c.what;
        EXPECT_EQ(info.blendCount, c.blendCount) << c.what;
        EXPECT_EQ(info.textureCount, c.textureCount) << c.what;
        EXPECT_EQ(info.weightOffset, c.weights) << c.what;
        EXPECT_EQ(info.matrixIndexOffset, c.indices) << c.what;
        EXPECT_EQ(info.normalOffset, c.normal) << c.what;
        EXPECT_EQ(info.pointSizeOffset, c.pointSize) << c.what;
        EXPECT_EQ(info.diffuseOffset, c.diffuse) << c.what;
        EXPECT_EQ(info.specularOffset, c.specular) << c.what;
        EXPECT_EQ(info.textureOffset, c.textures) << c.what;
    }
}

TEST(KRE_VertexLayout, QuirkBlendedPositionWithoutIndicesIsOneWeightShort)
{
    // Three weights need 12 + 3 * 4 bytes; the engine's vertices have an index word in place of the
    // last one.
    VertexInfo info;
    info.SetFVFInfo(D3DFVF_XYZB3);
    EXPECT_EQ(info.stride, 20);
    info.SetFVFInfo(D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4);
    EXPECT_EQ(info.stride, 24);
}

TEST(KRE_VertexLayout, NewFormatForgetsTheOldOneAndKeepsTheProcessing)
{
    VertexInfo info;
    info.processing = 2;
    info.SetFVFInfo(0x1F2);
    info.SetFVFInfo(D3DFVF_XYZ);
    EXPECT_EQ(info.stride, 12);
    EXPECT_EQ(info.diffuseOffset, VertexInfo::kNoOffset);
    EXPECT_EQ(info.processing, 2);
}
