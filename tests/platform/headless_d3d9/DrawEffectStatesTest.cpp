// States that effects set and scenes do not, computed by hand.

#include "platform/headless/d3d9/CallLog.h"
#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <cmath>

using namespace headless;

namespace {

class DrawEffectStates : public DrawTest {
protected:
    void SetUp() override
    {
        DrawTest::SetUp();
        Stage(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
        Stage(0, D3DTSS_COLORARG1, D3DTA_TEXTURE);
    }

    /// Fills the target with u running from `left` to `right`; with v from 0 to 1.
    void FillAcross(float left, float right)
    {
        EXPECT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 2,
                                     {{-0.5f, -0.5f, 0.5f, 1, 0xFFFFFFFF, 0, left, 0},
                                      {7.5f, -0.5f, 0.5f, 1, 0xFFFFFFFF, 0, right, 0},
                                      {-0.5f, 7.5f, 0.5f, 1, 0xFFFFFFFF, 0, left, 1},
                                      {7.5f, 7.5f, 0.5f, 1, 0xFFFFFFFF, 0, right, 1}}),
                  D3D_OK);
    }
};

} // namespace

// The published curve: 0x80 is 0.2159 of full light, 0xBC is 0.5029.
TEST_F(DrawEffectStates, SrgbTexelsAreLinearised)
{
    Sampler(0, D3DSAMP_SRGBTEXTURE, TRUE);
    BindTexels(0, 1, 1, {0x80FF80BC});
    EXPECT_EQ(Filled() & 0xFFFFFF, 0xFF3780u);
    Sampler(0, D3DSAMP_SRGBTEXTURE, FALSE);
    EXPECT_EQ(Filled() & 0xFFFFFF, 0xFF80BCu);
}

// Half of 0xBC is a quarter of full light; mixed first, it would be 0x1D.
TEST_F(DrawEffectStates, SrgbTexelsAreLinearisedBeforeTheyAreMixed)
{
    Sampler(0, D3DSAMP_SRGBTEXTURE, TRUE);
    Sampler(0, D3DSAMP_MAGFILTER, D3DTEXF_LINEAR);
    Sampler(0, D3DSAMP_MINFILTER, D3DTEXF_LINEAR);
    BindTexels(0, 2, 1, {0xFF000000, 0xFF0000BC});
    FillAcross(0.5f, 0.5f);
    EXPECT_EQ(Pixel(3, 3) & 0xFF, 0x40u);
}

TEST_F(DrawEffectStates, SrgbWritesFollowTheCurve)
{
    BindTexels(0, 1, 1, {0x37FF3780});
    State(D3DRS_SRGBWRITEENABLE, DWORD{TRUE});
    Stage(0, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1);
    Stage(0, D3DTSS_ALPHAARG1, D3DTA_TEXTURE);
    EXPECT_EQ(Filled(), 0x37FF80BCu); // alpha is no light
}

// Black with alpha 0x80 leaves 0.498 of the light: 0xBB. Mixed as stored it would be 0x7F.
TEST_F(DrawEffectStates, SrgbTargetsBlendLight)
{
    FillAll(0xFFFFFFFF);
    BindTexels(0, 1, 1, {0xFFFFFFFF});
    FillAll();
    State(D3DRS_SRGBWRITEENABLE, DWORD{TRUE});
    State(D3DRS_ALPHABLENDENABLE, DWORD{TRUE});
    State(D3DRS_SRCBLEND, DWORD{D3DBLEND_SRCALPHA});
    State(D3DRS_DESTBLEND, DWORD{D3DBLEND_INVSRCALPHA});
    Stage(0, D3DTSS_COLORARG1, D3DTA_DIFFUSE);
    Stage(0, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1);
    Stage(0, D3DTSS_ALPHAARG1, D3DTA_DIFFUSE);
    EXPECT_EQ(Filled(0x80000000) & 0xFFFFFF, 0xBBBBBBu);
}

// From 0.9 to 0.1 the short way leads over the edge of the texture.
TEST_F(DrawEffectStates, WrappingTakesTheShortWay)
{
    BindTexels(0, 4, 1, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    FillAcross(0.9f, 0.1f);
    EXPECT_EQ(Pixel(3, 3) & 0xFF, 3u); // u is 0.55
    State(D3DRS_WRAP0, DWORD{D3DWRAPCOORD_0});
    FillAcross(0.9f, 0.1f);
    EXPECT_EQ(Pixel(3, 3) & 0xFF, 4u); // 0.9875
    EXPECT_EQ(Pixel(5, 3) & 0xFF, 1u); // 1.0375
    State(D3DRS_WRAP0, DWORD{D3DWRAPCOORD_1});
    FillAcross(0.9f, 0.1f);
    EXPECT_EQ(Pixel(3, 3) & 0xFF, 3u); // the other direction only
}

TEST_F(DrawEffectStates, StencilStatesDoNothingWithoutStencilBits)
{
    Com<IDirect3DSurface9> depth;
    ASSERT_EQ(device->CreateDepthStencilSurface(kSide, kSide, D3DFMT_D16, D3DMULTISAMPLE_NONE, 0,
                                                FALSE, depth.Out(), nullptr),
              D3D_OK);
    ASSERT_EQ(device->SetDepthStencilSurface(depth.Get()), D3D_OK);
    BindTexels(0, 1, 1, {0xFF00FF00});
    State(D3DRS_STENCILENABLE, DWORD{TRUE});
    State(D3DRS_STENCILFUNC, DWORD{D3DCMP_NEVER});
    State(D3DRS_STENCILPASS, DWORD{D3DSTENCILOP_REPLACE});
    EXPECT_EQ(Filled() & 0xFFFFFF, 0x00FF00u);
    DWORD passes = 0;
    EXPECT_EQ(device->ValidateDevice(&passes), D3D_OK);
    ASSERT_EQ(device->SetDepthStencilSurface(nullptr), D3D_OK);
}
