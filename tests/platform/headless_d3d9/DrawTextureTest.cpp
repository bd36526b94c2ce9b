// Sampling, computed by hand.

#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <bit>
#include <cstring>
#include <limits>

using namespace headless;

namespace {

class DrawTextureTest : public DrawTest {
protected:
    void SetUp() override
    {
        DrawTest::SetUp();
        Stage(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
        Stage(0, D3DTSS_COLORARG1, D3DTA_TEXTURE);
    }

    void Linear()
    {
        Sampler(0, D3DSAMP_MAGFILTER, D3DTEXF_LINEAR);
        Sampler(0, D3DSAMP_MINFILTER, D3DTEXF_LINEAR);
    }

    /// The colour sampled at one point of the texture.
    uint32_t At(float u, float v = 0.5f)
    {
        const D3DCOLOR white = 0xFFFFFFFF;
        EXPECT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1,
                                     {{-1, -1, 0.5f, 1, white, 0, u, v},
                                      {20, -1, 0.5f, 1, white, 0, u, v},
                                      {-1, 20, 0.5f, 1, white, 0, u, v}}),
                  D3D_OK);
        return Pixel(2, 2);
    }
};

/// A texture with one colour per level: 1, 2, 3 ... in blue.
class DrawLevelTest : public DrawTextureTest {
protected:
    void SetUp() override
    {
        DrawTextureTest::SetUp();
        texture = Texture(16, 16, 0, D3DPOOL_MANAGED);
        ASSERT_EQ(texture->GetLevelCount(), 5u);
        for (UINT level = 0; level < 5; ++level) {
            D3DLOCKED_RECT locked = {};
            ASSERT_EQ(texture->LockRect(level, &locked, nullptr, 0), D3D_OK);
            const UINT side = 16u >> level;
            for (UINT i = 0; i < side * side; ++i)
                static_cast<uint32_t*>(locked.pBits)[i] = 0xFF000000 | (level + 1) * 16;
            ASSERT_EQ(texture->UnlockRect(level), D3D_OK);
        }
        ASSERT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);
    }

    void TearDown() override
    {
        device->SetTexture(0, nullptr);
        texture.Release();
        DrawTextureTest::TearDown();
    }

    /// The blue of a pixel that covers `texels` texels of level 0.
    uint32_t AtScale(float texels)
    {
        const float extent = 8.0f * texels / 16.0f;
        const D3DCOLOR white = 0xFFFFFFFF;
        EXPECT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 2,
                                     {{-0.5f, -0.5f, 0.5f, 1, white, 0, 0, 0},
                                      {7.5f, -0.5f, 0.5f, 1, white, 0, extent, 0},
                                      {-0.5f, 7.5f, 0.5f, 1, white, 0, 0, extent},
                                      {7.5f, 7.5f, 0.5f, 1, white, 0, extent, extent}}),
                  D3D_OK);
        return Pixel(3, 3) & 0xFF;
    }

    Com<IDirect3DTexture9> texture;
};

} // namespace

/// Eight texels over eight pixels: each pixel shows its texel.
TEST_F(DrawTextureTest, PixelsMeetTexels)
{
    std::vector<uint32_t> texels;
    for (uint32_t i = 0; i < 64; ++i)
        texels.push_back(0xFF000000 | i * 3);
    BindTexels(0, 8, 8, texels);
    FillAll();
    EXPECT_EQ(Pixels(), texels);
    Linear(); // each pixel centre is a texel centre: nothing to mix
    FillAll();
    EXPECT_EQ(Pixels(), texels);
}

/// Two texels, 0 and 200, have their centres at 0.25 and 0.75.
TEST_F(DrawTextureTest, LinearFilterMixesByDistance)
{
    BindTexels(0, 2, 1, {0xFF000000, 0xFF0000C8});
    Linear();
    Sampler(0, D3DSAMP_ADDRESSU, D3DTADDRESS_CLAMP);
    EXPECT_EQ(At(0.25f) & 0xFF, 0u);
    EXPECT_EQ(At(0.375f) & 0xFF, 50u);
    EXPECT_EQ(At(0.5f) & 0xFF, 100u);
    EXPECT_EQ(At(0.75f) & 0xFF, 200u);
    EXPECT_EQ(At(1.5f) & 0xFF, 200u);
}

/// Four texels in a square: 0, 80 / 160, 240. The middle is their mean, 120.
TEST_F(DrawTextureTest, LinearFilterMixesInBothDirections)
{
    BindTexels(0, 2, 2, {0xFF000000, 0xFF000050, 0xFF0000A0, 0xFF0000F0});
    Linear();
    EXPECT_EQ(At(0.5f, 0.5f) & 0xFF, 120u);
    EXPECT_EQ(At(0.5f, 0.25f) & 0xFF, 40u);
    EXPECT_EQ(At(0.25f, 0.5f) & 0xFF, 80u);
}

/// Texels 1 to 4, each a quarter wide.
TEST_F(DrawTextureTest, AddressModesFoldCoordinates)
{
    static const struct {
        const char* what;
        DWORD mode;
        float u;
        uint32_t expected;
    } cases[] = {
        {"wrap", D3DTADDRESS_WRAP, 1.3f, 2},
        {"wrap below 0", D3DTADDRESS_WRAP, -0.1f, 4},
        {"wrap far out", D3DTADDRESS_WRAP, 1000.6f, 3},
        {"mirror inside", D3DTADDRESS_MIRROR, 0.3f, 2},
        {"mirror", D3DTADDRESS_MIRROR, 1.1f, 4},
        {"mirror below 0", D3DTADDRESS_MIRROR, -0.3f, 2},
        {"mirror once around", D3DTADDRESS_MIRROR, 2.1f, 1},
        {"clamp above", D3DTADDRESS_CLAMP, 7.0f, 4},
        {"clamp below", D3DTADDRESS_CLAMP, -7.0f, 1},
        {"border above", D3DTADDRESS_BORDER, 1.01f, 0x77},
        {"border below", D3DTADDRESS_BORDER, -0.01f, 0x77},
        {"border inside", D3DTADDRESS_BORDER, 0.99f, 4},
        {"mirror once", D3DTADDRESS_MIRRORONCE, -0.3f, 2},
        {"mirror once, then clamp", D3DTADDRESS_MIRRORONCE, -1.7f, 4},
    };
    BindTexels(0, 4, 1, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    Sampler(0, D3DSAMP_BORDERCOLOR, 0xFF000077);
    for (const auto& c : cases) {
        Sampler(0, D3DSAMP_ADDRESSU, c.mode);
        EXPECT_EQ(At(c.u) & 0xFF, c.expected) << c.what;
    }
}

/// At the very edge, half of the mix is the border colour: (40 + 200) / 2 = 120.
TEST_F(DrawTextureTest, LinearFilterMixesWithTheBorder)
{
    BindTexels(0, 1, 1, {0xFF000028});
    Linear();
    Sampler(0, D3DSAMP_ADDRESSU, D3DTADDRESS_BORDER);
    Sampler(0, D3DSAMP_BORDERCOLOR, 0xFF0000C8);
    EXPECT_EQ(At(1.0f) & 0xFF, 120u);
    EXPECT_EQ(At(0.5f) & 0xFF, 40u);
    EXPECT_EQ(At(1.5f) & 0xFF, 200u);
}

/// Wrapping mixes the last texel with the first: between them 200 and 0 give 100.
TEST_F(DrawTextureTest, LinearFilterWrapsAround)
{
    BindTexels(0, 2, 1, {0xFF000000, 0xFF0000C8});
    Linear();
    EXPECT_EQ(At(1.0f) & 0xFF, 100u);
    EXPECT_EQ(At(0.0f) & 0xFF, 100u);
}

TEST_F(DrawTextureTest, SamplersThatAreNotModelledRefuseTheDrawByName)
{
    static const struct {
        D3DSAMPLERSTATETYPE type;
        const char* name;
        DWORD value;
    } cases[] = {
        {D3DSAMP_ADDRESSU, "D3DSAMP_ADDRESS", 0},
        {D3DSAMP_ADDRESSV, "D3DSAMP_ADDRESS", 6},
        {D3DSAMP_MIPFILTER, "D3DSAMP_FILTER", 4},
    };
    const std::vector<ScreenVertex> corners = {{0, 0}, {4, 0}, {0, 4}};
    BindTexels(0, 1, 1, {0xFFFFFFFF});
    for (const auto& c : cases) {
        DWORD before = 0;
        ASSERT_EQ(device->GetSamplerState(0, c.type, &before), D3D_OK);
        const int calls = UnmodelledCallCount(c.name);
        Sampler(0, c.type, c.value);
        EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, corners), D3DERR_INVALIDCALL) << c.name;
        EXPECT_EQ(UnmodelledCallCount(c.name), calls + 1) << c.name;
        Sampler(0, c.type, before);
        EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, corners), D3D_OK) << c.name;
    }
}

TEST_F(DrawTextureTest, CoordinatesMayBeAnything)
{
    BindTexels(0, 4, 1, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    const float odd[] = {1e30f,
                         -1e30f,
                         3e38f,
                         std::numeric_limits<float>::infinity(),
                         std::numeric_limits<float>::quiet_NaN(),
                         16777217.0f};
    for (DWORD mode = D3DTADDRESS_WRAP; mode <= D3DTADDRESS_MIRRORONCE; ++mode)
        for (const DWORD filter : {D3DTEXF_POINT, D3DTEXF_LINEAR})
            for (const float u : odd) {
                Sampler(0, D3DSAMP_ADDRESSU, mode);
                Sampler(0, D3DSAMP_ADDRESSV, mode);
                Sampler(0, D3DSAMP_MINFILTER, filter);
                Sampler(0, D3DSAMP_MAGFILTER, filter);
                EXPECT_LE(At(u, u) & 0xFFFFFF, 4u) << u;
            }
}

/// At 45 degrees the right edge is four times as far away as the left one. Halfway across the
/// target 1/w is the mean of 1 and 1/4, so u = (0.5 * 1/4) / (0.5 * 1 + 0.5 * 1/4) = 0.2: still the
/// first of four texels. Without perspective it would be 0.5.
TEST_F(DrawTextureTest, CoordinatesAreRightInPerspective)
{
    BindTexels(0, 4, 1, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    const D3DCOLOR white = 0xFFFFFFFF;
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 2,
                                 {{0, -1, 0.5f, 1, white, 0, 0, 0},
                                  {8, -1, 0.5f, 0.25f, white, 0, 1, 0},
                                  {0, 9, 0.5f, 1, white, 0, 0, 1},
                                  {8, 9, 0.5f, 0.25f, white, 0, 1, 1}}),
              D3D_OK);
    EXPECT_EQ(Pixel(4, 4) & 0xFF, 1u);
    // At 6 of 8: (0.75 / 4) / (0.25 + 0.75 / 4) = 0.4286, the second texel.
    EXPECT_EQ(Pixel(6, 4) & 0xFF, 2u);
}

TEST_F(DrawTextureTest, FormatsWithoutAlphaAreOpaque)
{
    const Com<IDirect3DTexture9> texture = Texture(1, 1, 1, D3DPOOL_MANAGED, 0, D3DFMT_X8R8G8B8);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3D_OK);
    static_cast<uint32_t*>(locked.pBits)[0] = 0x00123456;
    ASSERT_EQ(texture->UnlockRect(0), D3D_OK);
    ASSERT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);
    EXPECT_EQ(At(0.5f), 0xFF123456u);
    ASSERT_EQ(device->SetTexture(0, nullptr), D3D_OK);
}

/// The copy unpacked for sampling is renewed after the texture has changed.
TEST_F(DrawTextureTest, AChangedTextureIsSeen)
{
    const Com<IDirect3DTexture9> texture = Texture(1, 1, 1, D3DPOOL_MANAGED, 0, D3DFMT_R5G6B5);
    ASSERT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);
    static const struct {
        uint16_t word;
        uint32_t expected;
    } cases[] = {{0xF800, 0xFF0000}, {0x07E0, 0x00FF00}, {0x001F, 0x0000FF}};
    for (const auto& c : cases) {
        D3DLOCKED_RECT locked = {};
        ASSERT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3D_OK);
        std::memcpy(locked.pBits, &c.word, 2);
        ASSERT_EQ(texture->UnlockRect(0), D3D_OK);
        EXPECT_EQ(At(0.5f) & 0xFFFFFF, c.expected);
    }
    ASSERT_EQ(device->SetTexture(0, nullptr), D3D_OK);
}

/// One texel per pixel is level 0, two are level 1, four level 2 and so on.
TEST_F(DrawLevelTest, TheSizeOfAPixelChoosesTheLevel)
{
    Sampler(0, D3DSAMP_MIPFILTER, D3DTEXF_POINT);
    EXPECT_EQ(AtScale(0.25f), 16u) << "magnified";
    EXPECT_EQ(AtScale(1.0f), 16u);
    EXPECT_EQ(AtScale(2.0f), 32u);
    EXPECT_EQ(AtScale(4.0f), 48u);
    EXPECT_EQ(AtScale(1000.0f), 80u) << "the last level";
}

TEST_F(DrawLevelTest, WithoutMipFilterLevel0IsRead)
{
    EXPECT_EQ(AtScale(4.0f), 16u);
}

/// Three texels: log2(3) = 1.585, so 0.415 of level 1 and 0.585 of level 2: 32 + 16 * 0.585 = 41.36.
TEST_F(DrawLevelTest, LevelsAreMixed)
{
    Sampler(0, D3DSAMP_MIPFILTER, D3DTEXF_LINEAR);
    EXPECT_EQ(AtScale(2.0f), 32u);
    EXPECT_EQ(AtScale(3.0f), 41u);
}

TEST_F(DrawLevelTest, BiasMovesTheLevel)
{
    Sampler(0, D3DSAMP_MIPFILTER, D3DTEXF_POINT);
    Sampler(0, D3DSAMP_MIPMAPLODBIAS, std::bit_cast<DWORD>(1.0f));
    EXPECT_EQ(AtScale(2.0f), 48u);
    Sampler(0, D3DSAMP_MIPMAPLODBIAS, std::bit_cast<DWORD>(-1.0f));
    EXPECT_EQ(AtScale(2.0f), 16u);
}

TEST_F(DrawLevelTest, TheMostDetailedLevelsCanBeLeftOut)
{
    Sampler(0, D3DSAMP_MIPFILTER, D3DTEXF_POINT);
    Sampler(0, D3DSAMP_MAXMIPLEVEL, 2);
    EXPECT_EQ(AtScale(1.0f), 48u);
    EXPECT_EQ(AtScale(8.0f), 64u);
    Sampler(0, D3DSAMP_MAXMIPLEVEL, 0);
    texture->SetLOD(1);
    EXPECT_EQ(AtScale(1.0f), 32u);
}
