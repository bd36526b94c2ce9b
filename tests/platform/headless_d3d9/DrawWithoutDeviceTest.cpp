// The rasterizer alone: states, pictures and vertices in memory, without a device.

#include "platform/headless/d3d9/Rasterizer.h"
#include "platform/headless/d3d9/TargetCopy.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace headless;

namespace {

constexpr UINT kSide = 8;
constexpr uint32_t kOpaqueRed = 0xFFFF0000, kOpaqueGreen = 0xFF00FF00, kOpaqueBlue = 0xFF0000FF;
constexpr uint32_t kOpaqueWhite = 0xFFFFFFFF;

struct PlacedVertex {
    float x, y, z, rhw;
    D3DCOLOR diffuse;
    float u, v;
};
constexpr DWORD kCornerFormat = D3DFVF_XYZRHW | D3DFVF_DIFFUSE | D3DFVF_TEX1;

/// A target and a depth buffer of 8 by 8 pixels, and the states of a new device.
class DrawWithoutDevice : public ::testing::Test {
protected:
    DrawWithoutDevice()
    {
        target.Allocate(*FindPixelFormat(D3DFMT_A8R8G8B8), kSide, kSide);
        depth.Allocate(*FindPixelFormat(D3DFMT_D24X8), kSide, kSide);
        SetDrawDefaults(state, false);
        state.render[D3DRS_CULLMODE] = D3DCULL_NONE;
        state.viewport = {0, 0, kSide, kSide, 0.0f, 1.0f};
        state.target = &target;
    }

    /// Fills the pixels left <= x < right of all rows.
    HRESULT DrawColumns(float left, float right, float z, D3DCOLOR colour)
    {
        const float l = left - 0.5f, r = right - 0.5f, t = -0.5f, b = kSide - 0.5f;
        const PlacedVertex corners[] = {{l, t, z, 1, colour, 0, 0},
                                        {r, t, z, 1, colour, 1, 0},
                                        {l, b, z, 1, colour, 0, 1},
                                        {r, b, z, 1, colour, 1, 1}};
        VertexLayout layout;
        EXPECT_TRUE(MakeVertexLayout(kCornerFormat, layout));
        const VertexStream stream = {reinterpret_cast<const uint8_t*>(corners),
                                     sizeof(PlacedVertex), 4};
        return rasterizer.Draw(state, layout, {D3DPT_TRIANGLESTRIP, 2, {}, stream});
    }

    uint32_t PixelAt(UINT x, UINT y) const
    {
        uint32_t word = 0;
        std::memcpy(&word, target.At(x, y), sizeof word);
        return word;
    }

    DrawState state;
    PixelBuffer target, depth;
    Rasterizer rasterizer;
};

} // namespace

TEST_F(DrawWithoutDevice, FillsWhatAPrimitiveCoversAndNothingElse)
{
    ASSERT_EQ(DrawColumns(2, 5, 0.5f, kOpaqueRed), D3D_OK);
    for (UINT y = 0; y < kSide; ++y)
        for (UINT x = 0; x < kSide; ++x)
            EXPECT_EQ(PixelAt(x, y), x >= 2 && x < 5 ? kOpaqueRed : 0u) << x << ", " << y;
}

TEST_F(DrawWithoutDevice, ADrawCountsAsAChangeOfTheTarget)
{
    const uint32_t before = target.changes;
    ASSERT_EQ(DrawColumns(0, 1, 0.5f, kOpaqueRed), D3D_OK);
    EXPECT_NE(target.changes, before);
}

TEST_F(DrawWithoutDevice, TheNearerOneCoversTheOther)
{
    state.depth = &depth;
    state.render[D3DRS_ZENABLE] = D3DZB_TRUE;
    FillArea(depth, depth.Bounds(), 0xFFFFFFFF, 0xFFFFFFFF);
    ASSERT_EQ(DrawColumns(0, 4, 0.25f, kOpaqueRed), D3D_OK);
    ASSERT_EQ(DrawColumns(2, 8, 0.75f, kOpaqueGreen), D3D_OK);
    EXPECT_EQ(PixelAt(3, 0), kOpaqueRed);
    EXPECT_EQ(PixelAt(4, 0), kOpaqueGreen);
}

TEST_F(DrawWithoutDevice, ReadsATextureFromMemory)
{
    SampledPicture picture;
    picture.pixels.Allocate(*FindPixelFormat(D3DFMT_A8R8G8B8), 2, 1);
    const uint32_t texels[] = {kOpaqueBlue, kOpaqueGreen};
    std::memcpy(picture.pixels.At(0, 0), texels, sizeof texels);
    TexturePicture texture = {{&picture}, 0};
    state.pictures[0] = &texture;
    ASSERT_EQ(DrawColumns(0, 8, 0.5f, kOpaqueWhite), D3D_OK);
    EXPECT_EQ(PixelAt(0, 0), kOpaqueBlue);
    EXPECT_EQ(PixelAt(3, 7), kOpaqueBlue);
    EXPECT_EQ(PixelAt(4, 0), kOpaqueGreen);
    EXPECT_EQ(PixelAt(7, 7), kOpaqueGreen);
}

TEST_F(DrawWithoutDevice, LevelsLargerThanTheLeastLevelAreNotRead)
{
    SampledPicture levels[2];
    const uint32_t colours[] = {kOpaqueBlue, kOpaqueGreen};
    TexturePicture texture;
    for (int i = 0; i < 2; ++i) {
        levels[i].pixels.Allocate(*FindPixelFormat(D3DFMT_A8R8G8B8), i == 0 ? 2 : 1, 1);
        FillArea(levels[i].pixels, levels[i].pixels.Bounds(), colours[i], 0xFFFFFFFF);
        texture.levels.push_back(&levels[i]);
    }
    texture.leastLevel = 1;
    state.pictures[0] = &texture;
    state.sampler[0][D3DSAMP_MIPFILTER] = D3DTEXF_POINT;
    ASSERT_EQ(DrawColumns(0, 8, 0.5f, kOpaqueWhite), D3D_OK);
    EXPECT_EQ(PixelAt(4, 4), kOpaqueGreen);
}

TEST_F(DrawWithoutDevice, ATextureThatIsTheTargetIsReadFromACopy)
{
    SampledPicture picture;
    picture.pixels.Allocate(*FindPixelFormat(D3DFMT_A8R8G8B8), kSide, kSide);
    TexturePicture texture = {{&picture}, 0};
    state.pictures[0] = &texture;
    state.target = &picture.pixels;
    TargetCopy copy;
    ASSERT_TRUE(copy.Replace(state));
    ASSERT_NE(state.pictures[0], &texture);
    EXPECT_NE(state.pictures[0]->levels[0], &picture);
    EXPECT_EQ(DrawColumns(0, 8, 0.5f, kOpaqueWhite), D3D_OK);
}

TEST_F(DrawWithoutDevice, AVertexOutsideOfTheStreamIsRefused)
{
    VertexLayout layout;
    ASSERT_TRUE(MakeVertexLayout(kCornerFormat, layout));
    const PlacedVertex corners[2] = {};
    const VertexStream stream = {reinterpret_cast<const uint8_t*>(corners), sizeof(PlacedVertex),
                                 2};
    EXPECT_EQ(rasterizer.Draw(state, layout, {D3DPT_TRIANGLELIST, 1, {}, stream}),
              D3DERR_INVALIDCALL);
}
