#include "tests/gfx/EngineTest.h"
#include "tests/gfx/StubResources.h"

#include <numbers>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class KRE_GfxSpritesTest : public EngineTest {
protected:
    KRE_GfxSpritesTest()
    {
        Start();
        gfx.CreateTexture(&texture, 16, 8, -1, D3DFMT_X8R8G8B8, 1);
        gfx.SetTexture(&texture);
        gfx.SetCullMode(1);
        Calls();
    }

    /// The quad as the last sprite left it: bottom left, top left, bottom right, top right.
    std::vector<KRE_TLVertex> Quad()
    {
        void* bytes = nullptr;
        texture.quad->Lock(0, 0, &bytes, 0);
        const auto* vertices = static_cast<KRE_TLVertex*>(bytes);
        const std::vector<KRE_TLVertex> quad(vertices, vertices + 4);
        texture.quad->Unlock();
        return quad;
    }

    struct Corner {
        float x, y;
    };
    void ExpectCorners(const Corner (&expected)[4], const char* what)
    {
        const std::vector<KRE_TLVertex> quad = Quad();
        for (size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(quad[i].x, expected[i].x, 1e-4f) << what << ", vertex " << i;
            EXPECT_NEAR(quad[i].y, expected[i].y, 1e-4f) << what << ", vertex " << i;
        }
    }

    std::string DrawError()
    {
        return RaisedBy([&] { gfx.DrawLastTexture(); });
    }

    KRE_Texture texture; // 16 by 8 pixels
};

constexpr float kQuarterTurn = std::numbers::pi_v<float> / 2;

} // namespace

// ---- Corners

// The first corner is 0.25 above and left of the requested place; the sides are 0.02 shorter than
// the picture: 15.98 by 7.98.
TEST_F(KRE_GfxSpritesTest, HasItsCornerAtThePlace)
{
    gfx.DrawSprite(100.0f, 50.0f, 0.0f, 1.0f, 1.0f);
    ExpectCorners({{99.75f, 57.73f}, {99.75f, 49.75f}, {115.73f, 57.73f}, {115.73f, 49.75f}},
                  "plain");
}

// Sides of 2 * 16 - 0.02 and 3 * 8 - 0.02.
TEST_F(KRE_GfxSpritesTest, ScalesItsSides)
{
    gfx.DrawSprite(0.0f, 0.0f, 0.0f, 2.0f, 3.0f);
    ExpectCorners({{-0.25f, 23.73f}, {-0.25f, -0.25f}, {31.73f, 23.73f}, {31.73f, -0.25f}},
                  "scaled");
}

// The hot spot (8, 4) is scaled too: the corner is (16, 12) before the place.
TEST_F(KRE_GfxSpritesTest, HasItsHotSpotAtThePlace)
{
    gfx.DrawSprite(100.0f, 50.0f, 0.0f, 2.0f, 3.0f, 8.0f, 4.0f);
    ExpectCorners({{83.75f, 61.73f}, {83.75f, 37.75f}, {115.73f, 61.73f}, {115.73f, 37.75f}},
                  "with a hot spot");
}

// A quarter turn clockwise takes right to down and down to left: (x, y) becomes (-y, x). The corner
// offset (-8, -4) becomes (4, -8), across becomes (0, 15.98), down becomes (-7.98, 0).
TEST_F(KRE_GfxSpritesTest, TurnsClockwiseAboutItsHotSpot)
{
    gfx.DrawSprite(100.0f, 50.0f, kQuarterTurn, 1.0f, 1.0f, 8.0f, 4.0f);
    ExpectCorners({{95.77f, 41.75f}, {103.75f, 41.75f}, {95.77f, 57.73f}, {103.75f, 57.73f}},
                  "turned");
}

TEST_F(KRE_GfxSpritesTest, FillsARectangle)
{
    gfx.DrawSpriteRect(10.0f, 20.0f, 40.0f, 60.0f, {1, 2, 3, 4}, 0.5f);
    ExpectCorners({{9.75f, 59.73f}, {9.75f, 19.75f}, {39.73f, 59.73f}, {39.73f, 19.75f}},
                  "rectangle");
    const std::vector<KRE_TLVertex> quad = Quad();
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(quad[i].diffuse, i + 1);
        EXPECT_EQ(quad[i].specular, 0xFF000000u);
        EXPECT_EQ(quad[i].z, 0.5f);
        EXPECT_EQ(quad[i].rhw, 1.0f);
    }
}

TEST_F(KRE_GfxSpritesTest, HasOneColorAndDepthOnAllCorners)
{
    gfx.DrawSprite(0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 0.0f, 0.0f, 0x80FF0000, 0.25f);
    for (const KRE_TLVertex& vertex : Quad()) {
        EXPECT_EQ(vertex.diffuse, 0x80FF0000u);
        EXPECT_EQ(vertex.z, 0.25f);
    }
}

// Origin + B, origin, origin + A + B, origin + A, with A = (1, 0) and B = (0, 1).
TEST_F(KRE_GfxSpritesTest, KeepsTheTextureCoordinates)
{
    gfx.DrawSprite(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
    const std::vector<KRE_TLVertex> quad = Quad();
    const float expected[4][2] = {{0, 1}, {0, 0}, {1, 1}, {1, 0}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(quad[i].tu, expected[i][0]) << i;
        EXPECT_EQ(quad[i].tv, expected[i][1]) << i;
    }
}

// ---- The draw

TEST_F(KRE_GfxSpritesTest, DrawsTheQuadWithoutCullingAndDepth)
{
    gfx.SetZEnable(D3DZB_TRUE);
    Calls();
    gfx.DrawLastTexture();
    const std::string quad = recorder->NameOfObject("vertexbuffer", texture.quad.Get());
    EXPECT_THAT(Calls(),
                ElementsAre("SetStreamSource 0 " + quad + " 0 32",
                            "SetRenderState D3DRS_CULLMODE D3DCULL_NONE",
                            "SetRenderState D3DRS_ZENABLE D3DZB_FALSE",
                            "SetSamplerState 0 D3DSAMP_ADDRESSU D3DTADDRESS_CLAMP",
                            "SetSamplerState 0 D3DSAMP_ADDRESSV D3DTADDRESS_CLAMP",
                            "SetFVF D3DFVF_XYZRHW|D3DFVF_DIFFUSE|D3DFVF_SPECULAR|D3DFVF_TEX1",
                            "DrawPrimitive D3DPT_TRIANGLESTRIP 0 2",
                            "SetRenderState D3DRS_ZENABLE D3DZB_TRUE",
                            "SetRenderState D3DRS_CULLMODE D3DCULL_CW"));
    EXPECT_EQ(gfx.cullMode, 1);
    EXPECT_EQ(gfx.zDisableCount, 0);
}

TEST_F(KRE_GfxSpritesTest, SoftwareProcessingIsSwitchedOff)
{
    gfx.SetSoftwareVertexProcessing(1);
    Calls();
    gfx.DrawLastTexture();
    EXPECT_THAT(Calls(), Contains("SetSoftwareVertexProcessing 0"));
}

TEST_F(KRE_GfxSpritesTest, QuirkClampFlagWraps)
{
    texture.clampFlag = 1;
    gfx.ResetStateCache();
    gfx.DrawLastTexture();
    EXPECT_THAT(CallsOf("SetSamplerState"),
                ElementsAre("SetSamplerState 0 D3DSAMP_ADDRESSU D3DTADDRESS_WRAP",
                            "SetSamplerState 0 D3DSAMP_ADDRESSV D3DTADDRESS_WRAP"));
}

TEST_F(KRE_GfxSpritesTest, NextAddressingReachesTheDeviceWhateverItIs)
{
    gfx.DrawLastTexture();
    Calls();
    gfx.SetTextureAddress(D3DTADDRESS_CLAMP, 0);
    EXPECT_EQ(Calls().size(), 2u);
}

TEST_F(KRE_GfxSpritesTest, DepthCanBeKept)
{
    gfx.SetZEnable(D3DZB_TRUE);
    gfx.spriteUsesZ = 1;
    Calls();
    gfx.DrawLastTexture();
    EXPECT_THAT(Calls(), Not(Contains("SetRenderState D3DRS_ZENABLE D3DZB_FALSE")));
}

TEST_F(KRE_GfxSpritesTest, QuirkKeptDepthIsSwitchedOnAfterwards)
{
    gfx.SetZEnable(D3DZB_TRUE);
    gfx.DisableZ();
    gfx.spriteUsesZ = 1;
    Calls();
    gfx.DrawLastTexture();
    EXPECT_THAT(Calls(), Contains("SetRenderState D3DRS_ZENABLE D3DZB_TRUE"));
    EXPECT_EQ(gfx.zDisableCount, 0);
}

TEST_F(KRE_GfxSpritesTest, DisabledDrawingStillSetsStates)
{
    gfx.drawDisabled = 1;
    gfx.DrawSprite(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
    const std::vector<std::string> calls = Calls();
    EXPECT_THAT(calls, Contains(HasSubstr("SetStreamSource")));
    EXPECT_THAT(calls, Contains(HasSubstr("SetFVF")));
    EXPECT_THAT(calls, Not(Contains(HasSubstr("DrawPrimitive"))));
}

// ---- Failures

TEST_F(KRE_GfxSpritesTest, NoTextureIsAnError)
{
    gfx.SetTexture(nullptr);
    Calls();
    EXPECT_EQ(RaisedBy([&] { gfx.DrawSprite(0.0f, 0.0f, 0.0f, 1.0f, 1.0f); }), "No texture set");
    EXPECT_EQ(RaisedBy([&] { gfx.DrawSpriteRect(0.0f, 0.0f, 1.0f, 1.0f, {}); }), "No texture set");
    EXPECT_EQ(DrawError(), "No texture set");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(KRE_GfxSpritesTest, QuadThatCanNotBeLockedIsAnError)
{
    texture.quad = ComPointer<IDirect3DVertexBuffer9>::Adopt(new BrokenVertexBuffer);
    EXPECT_EQ(RaisedBy([&] { gfx.DrawSprite(0.0f, 0.0f, 0.0f, 1.0f, 1.0f); }),
              " VB Lock failed: D3DERR_OUTOFVIDEOMEMORY");
    texture.SetDevice(nullptr);
    EXPECT_EQ(RaisedBy([&] { gfx.DrawSprite(0.0f, 0.0f, 0.0f, 1.0f, 1.0f); }),
              " VB Lock failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxSpritesTest, FailuresAreErrors)
{
    FailNext("SetStreamSource");
    EXPECT_EQ(DrawError(), " SetStreamSource in DrawLastTexture failed: D3DERR_INVALIDCALL");
    FailNext("DrawPrimitive");
    EXPECT_EQ(DrawError(), " DrawPrimitive in DrawLastTexture failed: D3DERR_INVALIDCALL");
}
