// Sampling of cubes and volumes, computed by hand.

#include "platform/headless/shader/Assembler.h"
#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <cstring>

namespace {

/// Three coordinates on the target.
struct SolidVertex {
    float x, y, z, rhw;
    float u, v, w;

    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_TEX1 | D3DFVF_TEXCOORDSIZE3(0);
};

struct ReflectingVertex {
    float x, y, z, nx, ny, nz;
    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL;
};

struct SolidModelVertex {
    float x, y, z, u, v, w;
    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_TEX1 | D3DFVF_TEXCOORDSIZE3(0);
};

struct MatrixRowsVertex {
    float x, y, z, rhw;
    float map[3], rows[3][3];
    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_TEX4 | D3DFVF_TEXCOORDSIZE3(0) |
                                     D3DFVF_TEXCOORDSIZE3(1) | D3DFVF_TEXCOORDSIZE3(2) |
                                     D3DFVF_TEXCOORDSIZE3(3);
};

class DrawSolid : public DrawTest {
protected:
    void SetUp() override
    {
        DrawTest::SetUp();
        Stage(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
        Stage(0, D3DTSS_COLORARG1, D3DTA_TEXTURE);
    }
    void TearDown() override
    {
        device->SetTexture(0, nullptr);
        device->SetPixelShader(nullptr);
        shader.Release();
        cube.Release();
        volume.Release();
        DrawTest::TearDown();
    }

    /// `colour` gives the word of each texel of each face and level.
    template <typename Colour>
    void BindCube(UINT side, UINT levels, Colour colour)
    {
        ASSERT_EQ(device->CreateCubeTexture(side, levels, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED,
                                            cube.Out(), nullptr),
                  D3D_OK);
        for (uint32_t face = 0; face < 6; ++face)
            for (UINT level = 0; level < cube->GetLevelCount(); ++level) {
                D3DLOCKED_RECT locked = {};
                const auto name = static_cast<D3DCUBEMAP_FACES>(face);
                ASSERT_EQ(cube->LockRect(name, level, &locked, nullptr, 0), D3D_OK);
                for (UINT i = 0; i < (side >> level) * (side >> level); ++i)
                    static_cast<uint32_t*>(locked.pBits)[i] =
                        colour(face, level, i % (side >> level), i / (side >> level));
                ASSERT_EQ(cube->UnlockRect(name, level), D3D_OK);
            }
        ASSERT_EQ(device->SetTexture(0, cube.Get()), D3D_OK);
    }

    template <typename Colour>
    void BindVolume(UINT width, UINT height, UINT depth, Colour colour)
    {
        ASSERT_EQ(device->CreateVolumeTexture(width, height, depth, 1, 0, D3DFMT_A8R8G8B8,
                                              D3DPOOL_MANAGED, volume.Out(), nullptr),
                  D3D_OK);
        D3DLOCKED_BOX locked = {};
        ASSERT_EQ(volume->LockBox(0, &locked, nullptr, 0), D3D_OK);
        for (UINT i = 0; i < width * height * depth; ++i) {
            const uint32_t word = colour(i % width, i / width % height, i / (width * height));
            std::memcpy(static_cast<uint8_t*>(locked.pBits) +
                            size_t{i / (width * height)} * static_cast<UINT>(locked.SlicePitch) +
                            size_t{i / width % height} * static_cast<UINT>(locked.RowPitch) +
                            size_t{i % width} * 4,
                        &word, 4);
        }
        ASSERT_EQ(volume->UnlockBox(0), D3D_OK);
        ASSERT_EQ(device->SetTexture(0, volume.Get()), D3D_OK);
    }

    /// What is read at one place.
    uint32_t At(float u, float v, float w)
    {
        EXPECT_EQ(Draw<SolidVertex>(D3DPT_TRIANGLELIST, 1,
                                    {{-1, -1, 0.5f, 1, u, v, w},
                                     {20, -1, 0.5f, 1, u, v, w},
                                     {-1, 20, 0.5f, 1, u, v, w}}),
                  D3D_OK);
        return Pixel(2, 2) & 0xFFFFFF;
    }

    void Filter(DWORD filter, DWORD mipFilter = D3DTEXF_NONE)
    {
        Sampler(0, D3DSAMP_MAGFILTER, filter);
        Sampler(0, D3DSAMP_MINFILTER, filter);
        Sampler(0, D3DSAMP_MIPFILTER, mipFilter);
    }

    void PixelShader(const std::string& text)
    {
        std::vector<headless::shader::Word> words;
        headless::shader::AssemblyFault fault;
        ASSERT_TRUE(headless::shader::Assemble(text, words, fault)) << fault.reason;
        const std::vector<DWORD> code(words.begin(), words.end());
        ASSERT_EQ(device->CreatePixelShader(code.data(), shader.Out()), D3D_OK);
        ASSERT_EQ(device->SetPixelShader(shader.Get()), D3D_OK);
    }

    Com<IDirect3DCubeTexture9> cube;
    Com<IDirect3DVolumeTexture9> volume;
    Com<IDirect3DPixelShader9> shader;
};

/// A colour that names a face and a texel of a face of 2 by 2.
uint32_t FaceTexel(uint32_t face, UINT, UINT x, UINT y)
{
    return 0xFF000000 | (face + 1) << 16 | x << 8 | y;
}

} // namespace

TEST_F(DrawSolid, TheLargestComponentChoosesTheFace)
{
    BindCube(1, 1, [](uint32_t face, UINT, UINT, UINT) { return 0xFF000000 | (face + 1); });
    static const struct {
        float u, v, w;
        uint32_t face;
    } cases[] = {
        {2, 1, -1, 1}, {-2, 1, 1, 2}, {0.5f, 3, -2, 3}, {1, -9, 8, 4}, {0, 0.1f, 0.2f, 5},
        {4, 3, -5, 6}, {1, 1, 1, 1},  {0, 1, 1, 3}, // equal ones: x before y before z
    };
    for (const auto& c : cases)
        EXPECT_EQ(At(c.u, c.v, c.w), c.face) << c.u << ' ' << c.v << ' ' << c.w;
}

/// Each face of 2 by 2 texels is looked at from inside: up is +y, but for the two faces of y, whose rows
/// go along z.
TEST_F(DrawSolid, FacesLieAsPublished)
{
    BindCube(2, 1, FaceTexel);
    static const struct {
        const char* what;
        float u, v, w;
        uint32_t face, x, y;
    } cases[] = {
        {"+x, towards +z", 2, 1, 1, 1, 0, 0},   {"+x, towards -z", 2, -1, -1, 1, 1, 1},
        {"-x, towards +z", -2, 1, 1, 2, 1, 0},  {"-x, towards -z", -2, -1, -1, 2, 0, 1},
        {"+y, towards +x", 1, 2, -1, 3, 1, 0},  {"+y, towards +z", -1, 2, 1, 3, 0, 1},
        {"-y, towards +x", 1, -2, -1, 4, 1, 1}, {"-y, towards +z", -1, -2, 1, 4, 0, 0},
        {"+z, towards +x", 1, 1, 2, 5, 1, 0},   {"+z, down", -1, -1, 2, 5, 0, 1},
        {"-z, towards +x", 1, 1, -2, 6, 0, 0},  {"-z, down", -1, -1, -2, 6, 1, 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(At(c.u, c.v, c.w), c.face << 16 | c.x << 8 | c.y) << c.what;
}

/// The first row of +z is 0 and 200. At (0, 1/2, 1) the middle between their centres is read; at
/// (1, 1/2, 1) the edge, where no other face takes part and no mode wraps.
TEST_F(DrawSolid, FiltersEndAtTheEdgesOfAFace)
{
    BindCube(2, 1, [](uint32_t face, UINT, UINT x, UINT) {
        return face == 4 && x == 1 ? 0xFF0000C8u : 0xFF000000u;
    });
    Filter(D3DTEXF_LINEAR);
    EXPECT_EQ(At(0, 0.5f, 1), 100u);
    EXPECT_EQ(At(0.5f, 0.5f, 1), 200u);
    EXPECT_EQ(At(0.999f, 0.5f, 1), 200u);
}

/// A face is 16 texels wide and 2 long at distance 1: with x / z growing by 1 over the 8 pixels of the
/// target, a pixel covers one texel; by 4, four texels, which is level 2.
TEST_F(DrawSolid, TheLevelOfACubeComesFromTheFace)
{
    BindCube(16, 0, [](uint32_t, UINT level, UINT, UINT) { return 0xFF000000 | (level + 1); });
    Filter(D3DTEXF_POINT, D3DTEXF_POINT);
    const auto across = [&](float extent) {
        EXPECT_EQ(Draw<SolidVertex>(D3DPT_TRIANGLESTRIP, 2,
                                    {{-0.5f, -0.5f, 0.5f, 1, -extent / 2, 0, 5},
                                     {7.5f, -0.5f, 0.5f, 1, extent / 2, 0, 5},
                                     {-0.5f, 7.5f, 0.5f, 1, -extent / 2, 0.1f, 5},
                                     {7.5f, 7.5f, 0.5f, 1, extent / 2, 0.1f, 5}}),
                  D3D_OK);
        return Pixel(3, 3) & 0xFF;
    };
    EXPECT_EQ(across(5 * 0.5f), 1u);  // half a texel
    EXPECT_EQ(across(5 * 1.0f), 1u);  // one
    EXPECT_EQ(across(5 * 1.99f), 2u); // two
    EXPECT_EQ(across(5 * 1.9f * 2), 3u);
}

TEST_F(DrawSolid, ThirdCoordinatesChooseTheSlice)
{
    BindVolume(2, 2, 4, [](UINT x, UINT y, UINT z) { return 0xFF000000 | z << 16 | y << 8 | x; });
    EXPECT_EQ(At(0.1f, 0.9f, 0.1f), 0x000100u);
    EXPECT_EQ(At(0.9f, 0.1f, 0.3f), 0x010001u);
    EXPECT_EQ(At(0.1f, 0.1f, 0.6f), 0x020000u);
    EXPECT_EQ(At(0.9f, 0.9f, 0.9f), 0x030101u);
    EXPECT_EQ(At(0.1f, 0.1f, 1.3f), 0x010000u) << "wraps";
    Sampler(0, D3DSAMP_ADDRESSW, D3DTADDRESS_CLAMP);
    EXPECT_EQ(At(0.1f, 0.1f, 1.3f), 0x030000u);
    Sampler(0, D3DSAMP_ADDRESSW, D3DTADDRESS_MIRROR);
    EXPECT_EQ(At(0.1f, 0.1f, 1.3f), 0x020000u);
    Sampler(0, D3DSAMP_ADDRESSW, D3DTADDRESS_BORDER);
    Sampler(0, D3DSAMP_BORDERCOLOR, 0xFF123456);
    EXPECT_EQ(At(0.1f, 0.1f, 1.3f), 0x123456u);
    EXPECT_EQ(At(0.1f, 0.1f, 0.6f), 0x020000u);
}

/// Eight texels: 0 to 210 in steps of 30. Their middle is the mean, 105; between the slices it is the mean
/// of two texels.
TEST_F(DrawSolid, LinearFiltersMixSlices)
{
    BindVolume(2, 2, 2,
               [](UINT x, UINT y, UINT z) { return 0xFF000000 | (x + y * 2 + z * 4) * 30; });
    Filter(D3DTEXF_LINEAR);
    for (const D3DSAMPLERSTATETYPE type : {D3DSAMP_ADDRESSU, D3DSAMP_ADDRESSV, D3DSAMP_ADDRESSW})
        Sampler(0, type, D3DTADDRESS_CLAMP);
    EXPECT_EQ(At(0.5f, 0.5f, 0.5f), 105u);
    EXPECT_EQ(At(0.25f, 0.25f, 0.5f), 60u);
    EXPECT_EQ(At(0.25f, 0.25f, 0.375f), 30u);
    EXPECT_EQ(At(0.75f, 0.75f, 2.0f), 210u);
}

// 0xBC is half of full light; a quarter of it, 0x40 as stored, comes out.
TEST_F(DrawSolid, SrgbTexelsOfVolumesAreLinearisedFirst)
{
    BindVolume(1, 1, 2, [](UINT, UINT, UINT z) { return z == 0 ? 0xFF000000u : 0xFF0000BCu; });
    Filter(D3DTEXF_LINEAR);
    Sampler(0, D3DSAMP_SRGBTEXTURE, TRUE);
    EXPECT_EQ(At(0, 0, 0.5f), 0x40u);
}

/// Without a third coordinate w is 0.
TEST_F(DrawSolid, TwoCoordinatesReadTheFirstSlice)
{
    BindVolume(1, 1, 4, [](UINT, UINT, UINT z) { return 0xFF000000 | (z + 1); });
    Sampler(0, D3DSAMP_ADDRESSW, D3DTADDRESS_CLAMP); // 1 would be the last slice
    EXPECT_EQ(Filled() & 0xFF, 1u);
}

/// A vertex in front of the eye with its normal towards it reflects straight back: face -z.
TEST_F(DrawSolid, ReflectionsReadCubes)
{
    BindCube(1, 1, [](uint32_t face, UINT, UINT, UINT) { return 0xFF000000 | (face + 1); });
    Stage(0, D3DTSS_TEXCOORDINDEX, D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR);
    Stage(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT3);
    const auto reflected = [&](float nx, float ny, float nz) {
        EXPECT_EQ(
            Draw<ReflectingVertex>(
                D3DPT_TRIANGLELIST, 1,
                {{-1, 1, 0.5f, nx, ny, nz}, {3, 1, 0.5f, nx, ny, nz}, {-1, -3, 0.5f, nx, ny, nz}}),
            D3D_OK);
        return Pixel(4, 4) & 0xFF; // x and y of the position are 1/8 and -1/8 here, z is 1/2
    };
    EXPECT_EQ(reflected(0, 0, -1), 6u);
    // A mirror at 45 degrees turns the look to the side.
    EXPECT_EQ(reflected(0.70710678f, 0, -0.70710678f), 1u);
    EXPECT_EQ(reflected(0, 0.70710678f, -0.70710678f), 3u);
}

/// A texture matrix turns directions, and projected coordinates of a volume are divided by the fourth.
TEST_F(DrawSolid, MatricesAndProjectionsApply)
{
    const auto drawn = [&](float u, float v, float w) {
        EXPECT_EQ(Draw<SolidModelVertex>(
                      D3DPT_TRIANGLELIST, 1,
                      {{-1, 1, 0.5f, u, v, w}, {3, 1, 0.5f, u, v, w}, {-1, -3, 0.5f, u, v, w}}),
                  D3D_OK);
        return Pixel(4, 4) & 0xFF;
    };
    BindCube(1, 1, [](uint32_t face, UINT, UINT, UINT) { return 0xFF000000 | (face + 1); });
    D3DMATRIX turned = {}; // x becomes y, y becomes z, z becomes x
    turned.m[0][1] = turned.m[1][2] = turned.m[2][0] = turned.m[3][3] = 1.0f;
    ASSERT_EQ(device->SetTransform(D3DTS_TEXTURE0, &turned), D3D_OK);
    Stage(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT3);
    EXPECT_EQ(drawn(1, 0, 0), 3u);
    EXPECT_EQ(drawn(0, 1, 0), 5u);
    EXPECT_EQ(drawn(0, 0, -1), 2u);

    BindVolume(1, 1, 4, [](UINT, UINT, UINT z) { return 0xFF000000 | (z + 1); });
    D3DMATRIX halved = {}; // w is kept, and the divisor is 2
    halved.m[2][2] = 1.0f;
    halved.m[3][3] = 2.0f;
    ASSERT_EQ(device->SetTransform(D3DTS_TEXTURE0, &halved), D3D_OK);
    Stage(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT4 | D3DTTFF_PROJECTED);
    EXPECT_EQ(drawn(0, 0, 0.6f), 2u); // 0.3
    EXPECT_EQ(drawn(0, 0, 1.2f), 3u);
}

TEST_F(DrawSolid, ShadersReadCubesAndVolumes)
{
    BindCube(2, 1, FaceTexel);
    PixelShader("ps_2_0\ndcl t0.xyz\ndcl_cube s0\ntexld r0, t0, s0\nmov oC0, r0");
    EXPECT_EQ(At(-2, 1, 1), 0x020100u);
    EXPECT_EQ(At(1, 1, -2), 0x060000u);
    BindVolume(2, 2, 4, [](UINT x, UINT y, UINT z) { return 0xFF000000 | z << 16 | y << 8 | x; });
    PixelShader("ps_2_0\ndcl t0.xyz\ndcl_volume s0\ntexld r0, t0, s0\nmov oC0, r0");
    EXPECT_EQ(At(0.9f, 0.1f, 0.6f), 0x020001u);
}

/// The rows of the matrix turn (x, y, z) of the map to (z, x, y).
TEST_F(DrawSolid, MatrixInstructionsReadCubes)
{
    BindCube(1, 1, [](uint32_t face, UINT, UINT, UINT) { return 0xFF000000 | (face + 1); });
    ASSERT_EQ(device->SetTexture(3, cube.Get()), D3D_OK);
    PixelShader("ps_1_1\ntexcoord t0\ntexm3x3pad t1, t0\ntexm3x3pad t2, t0\n"
                "texm3x3tex t3, t0\nmov r0, t3");
    const auto drawn = [&](float x, float y, float z) {
        MatrixRowsVertex a = {-1, -1, 0.5f, 1, {x, y, z}, {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}};
        MatrixRowsVertex b = a, c = a;
        b.x = c.y = 20;
        EXPECT_EQ(Draw<MatrixRowsVertex>(D3DPT_TRIANGLELIST, 1, {a, b, c}), D3D_OK);
        return Pixel(2, 2) & 0xFF;
    };
    EXPECT_EQ(drawn(1, 0, 0), 3u);
    EXPECT_EQ(drawn(0, 1, 0), 5u);
    EXPECT_EQ(drawn(0, 0, 1), 1u);
    ASSERT_EQ(device->SetTexture(3, nullptr), D3D_OK);
}
