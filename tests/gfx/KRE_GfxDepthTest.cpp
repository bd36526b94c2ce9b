#include "tests/gfx/EngineTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class KRE_GfxDepthTest : public EngineTest {
protected:
    KRE_GfxDepthTest() { Start(); }
};

} // namespace

TEST_F(KRE_GfxDepthTest, WBufferingFallsBackToZWhereThereIsNone)
{
    gfx.SetZEnable(2);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_ZENABLE D3DZB_TRUE"));
    EXPECT_EQ(gfx.zEnable, 1);
    gfx.caps.RasterCaps |= D3DPRASTERCAPS_WBUFFER;
    gfx.SetZEnable(2);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_ZENABLE D3DZB_USEW"));
    EXPECT_EQ(gfx.zEnable, 2);
}

TEST_F(KRE_GfxDepthTest, OnlyTheOutermostPairSwitches)
{
    gfx.DisableZ();
    gfx.DisableZ();
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_ZENABLE D3DZB_FALSE"));
    gfx.EnableZ();
    EXPECT_THAT(Calls(), IsEmpty());
    gfx.EnableZ();
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_ZENABLE D3DZB_TRUE"));
}

TEST_F(KRE_GfxDepthTest, SwitchedOffZStaysOffAfterAPair)
{
    gfx.SetZEnable(0);
    Calls();
    gfx.DisableZ();
    gfx.EnableZ();
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_ZENABLE D3DZB_FALSE"));
}

TEST_F(KRE_GfxDepthTest, SetZEnableForgetsOpenPairs)
{
    gfx.DisableZ();
    gfx.DisableZ();
    gfx.SetZEnable(1);
    Calls();
    gfx.DisableZ();
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_ZENABLE D3DZB_FALSE"));
    EXPECT_EQ(gfx.zDisableCount, 1);
}

TEST_F(KRE_GfxDepthTest, ClearAlsoClearsADepthBuffer)
{
    gfx.Clear(0xFF112233);
    EXPECT_THAT(Calls(),
                ElementsAre("Clear 0 rects D3DCLEAR_TARGET|D3DCLEAR_ZBUFFER 0xFF112233 1 0"));
    const D3DRECT rect = {1, 2, 30, 40};
    gfx.Clear(0, &rect);
    EXPECT_THAT(
        Calls(),
        ElementsAre("Clear 1 rects [1 2 30 40] D3DCLEAR_TARGET|D3DCLEAR_ZBUFFER 0x00000000 1 0"));
    gfx.depthSurface.Free();
    gfx.Clear(0);
    EXPECT_THAT(Calls(), ElementsAre("Clear 0 rects D3DCLEAR_TARGET 0x00000000 1 0"));
}

TEST_F(KRE_GfxDepthTest, ClearZClearsOnlyTheDepthBuffer)
{
    gfx.ClearZ(0);
    const D3DRECT rect = {1, 2, 30, 40};
    gfx.ClearZ(0, &rect);
    EXPECT_THAT(Calls(), ElementsAre("Clear 0 rects D3DCLEAR_ZBUFFER 0x00000000 1 0",
                                     "Clear 1 rects [1 2 30 40] D3DCLEAR_ZBUFFER 0x00000000 1 0"));
    gfx.depthSurface.Free();
    EXPECT_EQ(RaisedBy([&] { gfx.ClearZ(0); }), "Render target has no zbuffer!");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(KRE_GfxDepthTest, FailedClearIsAnError)
{
    FailNext("Clear");
    EXPECT_EQ(RaisedBy([&] { gfx.Clear(0); }), "Clear failed!");
    FailNext("Clear");
    EXPECT_EQ(RaisedBy([&] { gfx.ClearZ(0); }), "Clear failed!");
}

TEST_F(KRE_GfxDepthTest, SceneBracketIsFollowed)
{
    gfx.BeginScene();
    EXPECT_EQ(gfx.inScene, 1);
    gfx.EndScene();
    EXPECT_EQ(gfx.inScene, 0);
    EXPECT_THAT(Calls(), ElementsAre("BeginScene", "EndScene"));
    FailNext("BeginScene");
    EXPECT_EQ(RaisedBy([&] { gfx.BeginScene(); }), "BeginScene failed: D3DERR_INVALIDCALL");
    FailNext("EndScene");
    EXPECT_EQ(RaisedBy([&] { gfx.EndScene(); }), "EndScene failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxDepthTest, RenderTargetIsSetByIndex)
{
    gfx.SetRenderTarget(gfx.renderTarget.Get(), 0);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderTarget 0 surface#1"));
    FailNext("SetRenderTarget");
    EXPECT_EQ(RaisedBy([&] { gfx.SetRenderTarget(nullptr, 1); }),
              "Can not set render target: D3DERR_INVALIDCALL");
}
