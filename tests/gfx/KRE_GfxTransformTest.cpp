#include "tests/gfx/EngineTest.h"

#include <climits>
#include <cmath>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class KRE_GfxTransformTest : public EngineTest {
protected:
    KRE_GfxTransformTest() { Start(); }
};

/// 1 on the diagonal, and the numbers 2, 3, 5 as translation.
D3DXMATRIX Moved()
{
    D3DXMATRIX matrix;
    D3DXMatrixIdentity(&matrix);
    matrix._41 = 2.0f;
    matrix._42 = 3.0f;
    matrix._43 = 5.0f;
    return matrix;
}

constexpr char kMoved[] = "[1 0 0 0 0 1 0 0 0 0 1 0 2 3 5 1]";

} // namespace

TEST_F(KRE_GfxTransformTest, ViewAndWorldAreKeptAndSent)
{
    gfx.SetViewMatrix(Moved());
    gfx.SetWorldMatrix(Moved());
    gfx.SetWorldMatrix(Moved(), 255);
    EXPECT_THAT(Calls(), ElementsAre(std::string("SetTransform D3DTS_VIEW ") + kMoved,
                                     std::string("SetTransform D3DTS_WORLDMATRIX(0) ") + kMoved,
                                     std::string("SetTransform D3DTS_WORLDMATRIX(255) ") + kMoved));
    EXPECT_EQ(gfx.view._42, 3.0f);
    EXPECT_EQ(gfx.world[0]._42, 3.0f);
    EXPECT_EQ(gfx.world[255]._42, 3.0f);
    EXPECT_EQ(gfx.matricesChanged, 1);
}

TEST_F(KRE_GfxTransformTest, WorldMatricesOutsideThePaletteAreIgnored)
{
    for (int32_t index : {-1, 256, INT_MAX, INT_MIN})
        gfx.SetWorldMatrix(Moved(), index);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(KRE_GfxTransformTest, FailureIsAnError)
{
    FailNext("SetTransform");
    EXPECT_EQ(RaisedBy([&] { gfx.SetTransform(D3DTS_VIEW, Moved()); }),
              "SetTransform failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxTransformTest, ProjectionIsScaledToW)
{
    D3DXMATRIX matrix = Moved();
    matrix._34 = 2.0f;
    matrix._11 = 8.0f;
    gfx.SetProjectionMatrix(matrix);
    EXPECT_THAT(Calls(), ElementsAre("SetTransform D3DTS_PROJECTION "
                                     "[4 0 0 0 0 0.5 0 0 0 0 0.5 1 1 1.5 2.5 0.5]"));
    for (float m34 : {0.0f, 1.0f}) {
        matrix._34 = m34;
        gfx.SetProjectionMatrix(matrix);
        EXPECT_EQ(gfx.projection._11, 8.0f) << m34;
        EXPECT_EQ(gfx.projection._44, 1.0f) << m34;
    }
}

TEST_F(KRE_GfxTransformTest, ProjectionTakesTheViewportsAspect)
{
    // The cotangent of half of a quarter turn is 1, so m22 is 1 and m11 the inverse of the aspect.
    constexpr float kQuarterTurn = 1.57079633f;
    gfx.SetViewport(0, 0, 640, 480, 0.0f, 1.0f);
    gfx.SetProjection(1.0f, 3.0f, kQuarterTurn, -1.0f);
    EXPECT_NEAR(gfx.projection._22, 1.0f, 1e-6f);
    EXPECT_NEAR(gfx.projection._11, 480.0f / 640.0f, 1e-6f);
    EXPECT_EQ(gfx.nearZ, 1.0f);
    EXPECT_EQ(gfx.farZ, 3.0f);

    gfx.aspectFactor = 2.0f;
    gfx.SetProjection(1.0f, 3.0f, kQuarterTurn, -1.0f);
    EXPECT_NEAR(gfx.projection._11, 480.0f / (640.0f * 2.0f), 1e-6f);
    gfx.SetProjection(1.0f, 3.0f, kQuarterTurn, 4.0f);
    EXPECT_NEAR(gfx.projection._11, 0.25f, 1e-6f);
}

TEST_F(KRE_GfxTransformTest, MirrorFlipsXAndTheFacesAndBack)
{
    gfx.SetProjection(1.0f, 10.0f, 1.0f, 2.0f);
    const float m11 = gfx.projection._11;
    const float m22 = gfx.projection._22;
    gfx.SetCullMode(-1);
    gfx.MirrorScene();
    EXPECT_EQ(gfx.projection._11, -m11);
    EXPECT_EQ(gfx.projection._22, m22);
    EXPECT_FALSE(std::signbit(gfx.projection._21)) << "a sum of products with 0 is +0";
    EXPECT_EQ(gfx.cullMode, 1);
    gfx.MirrorScene();
    EXPECT_EQ(gfx.projection._11, m11);
    EXPECT_EQ(gfx.cullMode, -1);
}

TEST_F(KRE_GfxTransformTest, ViewPositionIsTheInverseViewsFourthRow)
{
    // A view that only translates by (2, 3, 5) means an eye at (-2, -3, -5).
    gfx.SetViewMatrix(Moved());
    D3DXVECTOR3 position;
    gfx.GetViewPosition(position);
    EXPECT_EQ(position.x, -2.0f);
    EXPECT_EQ(position.y, -3.0f);
    EXPECT_EQ(position.z, -5.0f);
}

TEST_F(KRE_GfxTransformTest, ViewPositionOfAViewWithoutInverseIsTheOrigin)
{
    gfx.SetViewMatrix(D3DMATRIX{});
    D3DXVECTOR3 position;
    gfx.GetViewPosition(position);
    EXPECT_EQ(position.x, 0.0f);
    EXPECT_EQ(position.y, 0.0f);
    EXPECT_EQ(position.z, 0.0f);
}

TEST_F(KRE_GfxTransformTest, WorldViewProjectionIsInOrderOfApplication)
{
    // x: doubled by the world, shifted by 3 by the view, halved by the projection: 1 -> 2.5.
    D3DXMATRIX matrix;
    D3DXMatrixIdentity(&matrix);
    matrix._11 = 2.0f;
    gfx.SetWorldMatrix(matrix);
    D3DXMatrixIdentity(&matrix);
    matrix._41 = 3.0f;
    gfx.SetViewMatrix(matrix);
    D3DXMatrixIdentity(&matrix);
    matrix._11 = 0.5f;
    gfx.SetProjectionMatrix(matrix);
    gfx.UpdateWorldViewProj();
    EXPECT_EQ(gfx.worldViewProj._11 + gfx.worldViewProj._41, 2.5f);
    EXPECT_EQ(gfx.worldViewProj._41, 1.5f);
}

TEST_F(KRE_GfxTransformTest, TextureMatrixIsSetWithItsFlagsAndNullClearsThem)
{
    const D3DXMATRIX matrix = Moved();
    gfx.SetTextureTransform(&matrix, 3);
    EXPECT_THAT(Calls(),
                ElementsAre("SetTextureStageState 3 D3DTSS_TEXTURETRANSFORMFLAGS D3DTTFF_COUNT3",
                            std::string("SetTransform D3DTS_TEXTURE3 ") + kMoved));
    EXPECT_EQ(gfx.textureMatrix[3]._41, 2.0f);
    gfx.SetTextureTransform(nullptr, 3);
    EXPECT_THAT(Calls(),
                ElementsAre("SetTextureStageState 3 D3DTSS_TEXTURETRANSFORMFLAGS D3DTTFF_DISABLE"));
    EXPECT_EQ(gfx.textureMatrix[3]._41, 0.0f);
    for (int32_t stage : {-1, 8})
        EXPECT_EQ(RaisedBy([&] { gfx.SetTextureTransform(nullptr, stage); }),
                  "Invalid texture stage in SetTextureTransform()");
}

TEST_F(KRE_GfxTransformTest, ViewportIsMadeFromItsCorners)
{
    gfx.viewportChanged = 0;
    gfx.SetViewport(10, 20, 40, 48, 0.25f, 0.75f);
    EXPECT_THAT(Calls(), ElementsAre("SetViewport 10 20 30 28 0.25 0.75"));
    EXPECT_EQ(gfx.viewportChanged, 1);
}

TEST_F(KRE_GfxTransformTest, RefusedViewportIsAWarningInAWindow)
{
    FailNext("SetViewport");
    gfx.SetViewport(0, 0, 9000, 9000, 0.0f, 1.0f);
    EXPECT_EQ(LastWarning(), "SetViewPort failed: D3DERR_INVALIDCALL");
    EXPECT_EQ(gfx.viewport.Width, 9000u);
}

TEST_F(KRE_GfxTransformTest, RefusedViewportIsAnErrorInFullScreen)
{
    const D3DDISPLAYMODE mode = {640, 480, 60, D3DFMT_X8R8G8B8};
    Start(&mode);
    FailNext("SetViewport");
    EXPECT_EQ(RaisedBy([&] { gfx.SetViewport(0, 0, 1, 1, 0.0f, 1.0f); }),
              "SetViewPort failed: D3DERR_INVALIDCALL");
}
