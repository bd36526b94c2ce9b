// Anisotropic filters, computed by hand.

#include "platform/headless/shader/Assembler.h"
#include "tests/platform/headless_d3d9/DrawFixture.h"

namespace {

/// A texture of 16 x 16 texels: every fourth column is white. Smaller levels name themselves: 16, 32 ..
class DrawAnisotropy : public DrawTest {
protected:
    void SetUp() override
    {
        DrawTest::SetUp();
        Stage(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
        Stage(0, D3DTSS_COLORARG1, D3DTA_TEXTURE);
        Sampler(0, D3DSAMP_MAGFILTER, D3DTEXF_LINEAR);
        Sampler(0, D3DSAMP_MINFILTER, D3DTEXF_LINEAR);
        Sampler(0, D3DSAMP_MIPFILTER, D3DTEXF_LINEAR);
        texture = Texture(16, 16, 0, D3DPOOL_MANAGED);
        for (UINT level = 0; level < 5; ++level)
            Fill(level, [level](UINT x, UINT) {
                return level == 0 ? (x % 4 == 0 ? 0xFFFFFFFFu : 0xFF000000u)
                                  : 0xFF000000 | level * 16;
            });
        ASSERT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);
    }
    void TearDown() override
    {
        device->SetPixelShader(nullptr);
        shader.Release();
        device->SetTexture(0, nullptr);
        texture.Release();
        DrawTest::TearDown();
    }

    template <typename Colour>
    void Fill(UINT level, Colour colour)
    {
        D3DLOCKED_RECT locked = {};
        ASSERT_EQ(texture->LockRect(level, &locked, nullptr, 0), D3D_OK);
        const UINT side = 16u >> level;
        for (UINT i = 0; i < side * side; ++i)
            static_cast<uint32_t*>(locked.pBits)[i] = colour(i % side, i / side);
        ASSERT_EQ(texture->UnlockRect(level), D3D_OK);
    }

    void Anisotropic(DWORD most)
    {
        Sampler(0, D3DSAMP_MINFILTER, D3DTEXF_ANISOTROPIC);
        Sampler(0, D3DSAMP_MAXANISOTROPY, most);
    }

    /// The blue of the pixel at (0, 3) if a pixel covers `across` by `down` texels. Its own centre is at
    /// texel (across / 2, 3.5 down).
    uint32_t Blue(float across, float down)
    {
        const float u = across * 8 / 16, v = down * 8 / 16;
        EXPECT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 2,
                                     {{-0.5f, -0.5f, 0.5f, 1, 0xFFFFFFFF, 0, 0, 0},
                                      {7.5f, -0.5f, 0.5f, 1, 0xFFFFFFFF, 0, u, 0},
                                      {-0.5f, 7.5f, 0.5f, 1, 0xFFFFFFFF, 0, 0, v},
                                      {7.5f, 7.5f, 0.5f, 1, 0xFFFFFFFF, 0, u, v}}),
                  D3D_OK);
        return Pixel(0, 3) & 0xFF;
    }

    Com<IDirect3DTexture9> texture;
    Com<IDirect3DPixelShader9> shader;
};

} // namespace

TEST_F(DrawAnisotropy, CapsNameTheFilterOfMinifiedTextures)
{
    D3DCAPS9 caps = {};
    ASSERT_EQ(device->GetDeviceCaps(&caps), D3D_OK);
    EXPECT_EQ(caps.MaxAnisotropy, 16u);
    EXPECT_NE(caps.TextureFilterCaps & D3DPTFILTERCAPS_MINFANISOTROPIC, 0u);
    EXPECT_EQ(caps.TextureFilterCaps & D3DPTFILTERCAPS_MAGFANISOTROPIC, 0u);
    EXPECT_EQ(caps.CubeTextureFilterCaps & D3DPTFILTERCAPS_MINFANISOTROPIC, 0u);
    EXPECT_EQ(caps.VolumeTextureFilterCaps & D3DPTFILTERCAPS_MINFANISOTROPIC, 0u);
}

/// 4 by 1 texels: linear reads level 2, which is 32. Four samples of level 0 are at the texels' centres
/// 0.5, 1.5, 2.5 and 3.5 (the footprint is 0 to 4): one is white, and the mean is a quarter.
TEST_F(DrawAnisotropy, LongFootprintsAreWalkedAtTheLevelOfTheShortSide)
{
    EXPECT_EQ(Blue(4, 1), 32u);
    Anisotropic(16);
    EXPECT_NEAR(static_cast<double>(Blue(4, 1)), 63.75, 1.0);
    EXPECT_EQ(Blue(4, 4), 32u); // a square one reads level 2 again
}

/// The same along y, where all samples of a column are equal: the first one is white.
TEST_F(DrawAnisotropy, TheLongerSideMayLieInAnyDirection)
{
    Anisotropic(16);
    EXPECT_EQ(Blue(1, 4), 255u);
    Fill(0, [](UINT, UINT y) { return y % 4 == 0 ? 0xFFFFFFFFu : 0xFF000000u; });
    EXPECT_NEAR(static_cast<double>(Blue(1, 4)), 63.75, 1.0);
    EXPECT_EQ(Blue(4, 1), 0u); // the centre in y is 3.5: row 3
}

/// 8 by 1 texels with at most 2 samples: they are 4 texels apart, each at level log2(8 / 2) = 2.
TEST_F(DrawAnisotropy, TheMostSamplesRaiseTheLevel)
{
    Anisotropic(2);
    EXPECT_EQ(Blue(8, 1), 32u);
    Anisotropic(4); // level 1
    EXPECT_EQ(Blue(8, 1), 16u);
    Anisotropic(1); // linear: level 3
    EXPECT_EQ(Blue(8, 1), 48u);
    Anisotropic(0);
    EXPECT_EQ(Blue(8, 1), 48u);
}

/// Between 2 and 3 times as long, three samples: 3 by 1 texels at 0.5, 1.5 and 2.5 are white, black, black.
TEST_F(DrawAnisotropy, TheRatioIsRoundedUpToSamples)
{
    Anisotropic(16);
    EXPECT_NEAR(static_cast<double>(Blue(3, 1)), 85.0, 1.0);
}

/// Square footprints, and magnified ones, give what the linear filter gives.
TEST_F(DrawAnisotropy, SquareFootprintsAreLinear)
{
    for (const float texels : {0.3f, 0.75f, 1.0f, 1.5f, 2.0f, 3.0f, 6.5f}) {
        Sampler(0, D3DSAMP_MINFILTER, D3DTEXF_LINEAR);
        Blue(texels, texels);
        const std::vector<uint32_t> linear = Pixels();
        Anisotropic(16);
        Blue(texels, texels);
        EXPECT_EQ(Pixels(), linear) << texels;
    }
}

/// The pixel at (0, 3) is in the same place for a shader, whose slopes come from its quad.
TEST_F(DrawAnisotropy, ShadersWalkTheSameFootprint)
{
    std::vector<headless::shader::Word> words;
    headless::shader::AssemblyFault fault;
    ASSERT_TRUE(headless::shader::Assemble(
        "ps_2_0\ndcl t0.xy\ndcl_2d s0\ntexld r0, t0, s0\nmov oC0, r0", words, fault));
    const std::vector<DWORD> code(words.begin(), words.end());
    ASSERT_EQ(device->CreatePixelShader(code.data(), shader.Out()), D3D_OK);
    ASSERT_EQ(device->SetPixelShader(shader.Get()), D3D_OK);
    EXPECT_EQ(Blue(4, 1), 32u);
    Anisotropic(16);
    EXPECT_NEAR(static_cast<double>(Blue(4, 1)), 63.75, 1.0);
    EXPECT_EQ(Blue(8, 8), 48u);
}

TEST_F(DrawAnisotropy, WithoutOtherLevelsTheLargestIsWalked)
{
    Sampler(0, D3DSAMP_MIPFILTER, D3DTEXF_NONE);
    Anisotropic(16);
    EXPECT_NEAR(static_cast<double>(Blue(4, 1)), 63.75, 1.0);
    // Samples at the texels' borders 1, 3, 5 and 7: half of white, black, half of white, black.
    EXPECT_NEAR(static_cast<double>(Blue(8, 2)), 63.75, 1.0);
}
