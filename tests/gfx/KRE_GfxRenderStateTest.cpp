#include "tests/gfx/EngineTest.h"
#include "tests/support/FakeDevice.h"

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

class KRE_GfxRenderStateTest : public EngineTest {
protected:
    KRE_GfxRenderStateTest() { Start(); }
};

/// A wrapper call, what reaches the device, and what reaches it when the call is repeated.
struct WrapperCase {
    const char* what;
    void (*call)(KRE_Gfx&);
    std::vector<std::string> first;
    bool isChecked;
};

} // namespace

TEST_F(KRE_GfxRenderStateTest, EachWrapperSendsItsStateAndTheCheckedOnesOnlyOnce)
{
    const WrapperCase cases[] = {
        {"any state",
         [](KRE_Gfx& g) { g.SetRenderState(D3DRS_SHADEMODE, DWORD{D3DSHADE_FLAT}); },
         {"SetRenderState D3DRS_SHADEMODE D3DSHADE_FLAT"},
         false},
        {"any float state",
         [](KRE_Gfx& g) { g.SetRenderState(D3DRS_FOGSTART, 2.5f); },
         {"SetRenderState D3DRS_FOGSTART 2.5"},
         false},
        {"clipping",
         [](KRE_Gfx& g) { g.SetClipping(0); },
         {"SetRenderState D3DRS_CLIPPING 0"},
         false},
        {"alpha test off",
         [](KRE_Gfx& g) { g.SetAlphaTest(0, 8); },
         {"SetRenderState D3DRS_ALPHATESTENABLE 0"},
         true},
        {"patch edge style",
         [](KRE_Gfx& g) { g.SetPatchEdgeStyle(1); },
         {"SetRenderState D3DRS_PATCHEDGESTYLE D3DPATCHEDGE_CONTINUOUS"},
         false},
        {"alpha blending",
         [](KRE_Gfx& g) { g.SetAlphaBlendEnable(1); },
         {"SetRenderState D3DRS_ALPHABLENDENABLE 1"},
         true},
        {"normals",
         [](KRE_Gfx& g) { g.SetNormalizeNormals(0); },
         {"SetRenderState D3DRS_NORMALIZENORMALS 0"},
         true},
        {"texture factor",
         [](KRE_Gfx& g) { g.SetTextureFactor(0x12345678); },
         {"SetRenderState D3DRS_TEXTUREFACTOR 0x12345678"},
         false},
        {"texture factor's alpha",
         [](KRE_Gfx& g) { g.SetTextureFactorAlpha(0x9A); },
         {"SetRenderState D3DRS_TEXTUREFACTOR 0x9A345678"},
         false},
        {"wires",
         [](KRE_Gfx& g) { g.SetFillMode(D3DFILL_WIREFRAME, nullptr); },
         {"SetRenderState D3DRS_FILLMODE D3DFILL_WIREFRAME"},
         false},
        {"culling",
         [](KRE_Gfx& g) { g.SetCullMode(0); },
         {"SetRenderState D3DRS_CULLMODE D3DCULL_NONE"},
         true},
        {"z write",
         [](KRE_Gfx& g) { g.SetZWrite(0); },
         {"SetRenderState D3DRS_ZWRITEENABLE 0"},
         true},
        {"z enable",
         [](KRE_Gfx& g) { g.SetZEnable(1); },
         {"SetRenderState D3DRS_ZENABLE D3DZB_TRUE"},
         false},
        {"fog", [](KRE_Gfx& g) { g.SetFogEnable(1); }, {"SetRenderState D3DRS_FOGENABLE 1"}, false},
        {"specular",
         [](KRE_Gfx& g) { g.SetSpecular(1); },
         {"SetRenderState D3DRS_SPECULARENABLE 1"},
         true},
        {"ambient",
         [](KRE_Gfx& g) { g.SetAmbient(0xFF102030); },
         {"SetRenderState D3DRS_AMBIENT 0xFF102030"},
         false},
        {"lighting",
         [](KRE_Gfx& g) { g.SetLighting(0, nullptr); },
         {"SetRenderState D3DRS_LIGHTING 0"},
         true},
        {"vertex blending",
         [](KRE_Gfx& g) { g.SetVertexBlend(D3DVBF_3WEIGHTS); },
         {"SetRenderState D3DRS_VERTEXBLEND D3DVBF_3WEIGHTS"},
         true},
        {"software processing",
         [](KRE_Gfx& g) { g.SetSoftwareVertexProcessing(1); },
         {"SetSoftwareVertexProcessing 1"},
         true},
        {"vertex format",
         [](KRE_Gfx& g) { g.SetFVF(0x42); },
         {"SetFVF D3DFVF_XYZ|D3DFVF_DIFFUSE"},
         false},
        {"light 3 on", [](KRE_Gfx& g) { g.LightEnable(3, 1); }, {"LightEnable 3 1"}, true},
    };
    for (const WrapperCase& c : cases) {
        c.call(gfx);
        EXPECT_THAT(Calls(), ElementsAreArray(c.first)) << c.what;
        c.call(gfx);
        EXPECT_THAT(Calls(), ElementsAreArray(c.isChecked ? std::vector<std::string>() : c.first))
            << c.what;
        gfx.ResetStateCache();
        c.call(gfx);
        EXPECT_THAT(Calls(), ElementsAreArray(c.first)) << c.what << " after a cache reset";
    }
}

TEST_F(KRE_GfxRenderStateTest, FailureNamesStateAndValue)
{
    FailNext("SetRenderState");
    EXPECT_EQ(RaisedBy([&] { gfx.SetRenderState(D3DRS_ZENABLE, DWORD{1}); }),
              " SetRenderState (state 7, value: 1 failed: D3DERR_INVALIDCALL");
    EXPECT_EQ(gfx.lastResult, D3DERR_INVALIDCALL);
    gfx.SetRenderState(D3DRS_ZENABLE, DWORD{1});
    EXPECT_EQ(gfx.lastResult, D3D_OK);
}

TEST_F(KRE_GfxRenderStateTest, FailedCheckedWrapperTriesAgain)
{
    FailNext("SetRenderState");
    EXPECT_EQ(RaisedBy([&] { gfx.SetSpecular(1); }),
              " SetRenderState (state 29, value: 1 failed: D3DERR_INVALIDCALL");
    Calls();
    gfx.SetSpecular(1);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_SPECULARENABLE 1"));
}

TEST_F(KRE_GfxRenderStateTest, AlphaTestWith255IsForEqualityAndWith128ForGreater)
{
    gfx.SetAlphaTest(255, 8);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_ALPHATESTENABLE 1",
                                     "SetRenderState D3DRS_ALPHAFUNC D3DCMP_EQUAL",
                                     "SetRenderState D3DRS_ALPHAREF 8"));
    gfx.SetAlphaTest(128, 8);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_ALPHATESTENABLE 1",
                                     "SetRenderState D3DRS_ALPHAFUNC D3DCMP_GREATER",
                                     "SetRenderState D3DRS_ALPHAREF 8"));
    gfx.SetAlphaTest(128, 8);
    EXPECT_THAT(Calls(), IsEmpty());
    gfx.SetAlphaTest(128, 9);
    EXPECT_THAT(Calls(), testing::SizeIs(3)) << "either value alone is a change";
}

TEST_F(KRE_GfxRenderStateTest, CullModesAndTheirLimits)
{
    gfx.SetCullMode(1);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_CULLMODE D3DCULL_CW"));
    gfx.SetCullMode(-1);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_CULLMODE D3DCULL_CCW"));
    EXPECT_EQ(RaisedBy([&] { gfx.SetCullMode(2); }), "Invalid culling mode");
    EXPECT_EQ(RaisedBy([&] { gfx.SetCullMode(-2); }), "Invalid culling mode");
    EXPECT_EQ(gfx.cullMode, -1);
}

TEST_F(KRE_GfxRenderStateTest, CullModeReachesTheDeviceAgainAfterACacheReset)
{
    gfx.SetCullMode(-1);
    Calls();
    gfx.ResetStateCache();
    EXPECT_EQ(gfx.cache.cullMode, 999);
    gfx.SetCullMode(-1);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_CULLMODE D3DCULL_CCW"));
}

TEST_F(KRE_GfxRenderStateTest, CacheResetMakesEveryValueUnknown)
{
    gfx.BeginScene();
    gfx.textureMatrix[3]._11 = 7.0f;
    for (auto& texture : gfx.boundTexture)
        texture = nullptr;
    gfx.ResetStateCache();
    EXPECT_EQ(gfx.inScene, 0);
    EXPECT_EQ(gfx.textureMatrix[3]._11, 1.0f);
    for (const auto* texture : gfx.boundTexture)
        EXPECT_EQ(texture, KRE_Gfx::UnknownTexture());
    for (int32_t shadow : gfx.cache.renderState)
        EXPECT_EQ(shadow, -1);
    for (const auto& stage : gfx.cache.stageState)
        EXPECT_THAT(stage, testing::Each(-1));
    for (const auto& sampler : gfx.cache.samplerState)
        EXPECT_THAT(sampler, testing::Each(-1));
    EXPECT_THAT(gfx.cache.lightEnable, testing::Each(-1));
    EXPECT_EQ(gfx.cache.softwareVertexProcessing, -1);
    gfx.EndScene();
}

TEST_F(KRE_GfxRenderStateTest, FillModePointAppliesTheKeptRecord)
{
    KRE_PointRecord record;
    record.size = 9.0f;
    gfx.SetFillMode(D3DFILL_SOLID, &record);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_FILLMODE D3DFILL_SOLID"));
    gfx.SetFillMode(D3DFILL_POINT, nullptr);
    EXPECT_THAT(CallsOf("SetRenderState"),
                testing::IsSupersetOf({"SetRenderState D3DRS_FILLMODE D3DFILL_POINT",
                                       "SetRenderState D3DRS_POINTSIZE 9"}));
    EXPECT_EQ(gfx.fillMode, D3DFILL_POINT);
}

TEST_F(KRE_GfxRenderStateTest, GammaRampNeedsTheHardware)
{
    EXPECT_EQ(gfx.SetGammaRamp(nullptr, 1), 1);
    EXPECT_THAT(Calls(), ElementsAre("SetGammaRamp 0 D3DSGR_NO_CALIBRATION red[0 257 32896 65535] "
                                     "green[0 257 32896 65535] blue[0 257 32896 65535]"))
        << "without the calibration that the device lacks";

    gfx.caps.Caps2 = D3DCAPS2_FULLSCREENGAMMA | D3DCAPS2_CANCALIBRATEGAMMA;
    D3DGAMMARAMP ramp = KRE_Gfx::LinearGammaRamp();
    ramp.red[255] = 1;
    EXPECT_EQ(gfx.SetGammaRamp(&ramp, 1), 1);
    EXPECT_THAT(
        CallsOf("SetGammaRamp"),
        ElementsAre(testing::StartsWith("SetGammaRamp 0 D3DSGR_CALIBRATE red[0 257 32896 1]")));
    EXPECT_EQ(gfx.gammaRamp.red[255], 1);
    Calls();

    gfx.caps.Caps2 = D3DCAPS2_CANCALIBRATEGAMMA;
    EXPECT_EQ(gfx.SetGammaRamp(nullptr, 1), 0);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(gfx.gammaRamp.red[255], 1);
}

TEST_F(KRE_GfxRenderStateTest, IndexedBlendingIsRefusedWithoutSoftwareAndMatrices)
{
    EXPECT_EQ(gfx.caps.MaxVertexBlendMatrixIndex, 0u);
    EXPECT_EQ(gfx.SetIndexedVertexBlend(1), 0);
    EXPECT_THAT(Calls(), IsEmpty());

    gfx.caps.MaxVertexBlendMatrixIndex = 1;
    EXPECT_EQ(gfx.SetIndexedVertexBlend(1), 1);
    gfx.caps.MaxVertexBlendMatrixIndex = 0;
    gfx.SetSoftwareVertexProcessing(1);
    EXPECT_EQ(gfx.SetIndexedVertexBlend(0), 1);
    EXPECT_THAT(CallsOf("SetRenderState"),
                ElementsAre("SetRenderState D3DRS_INDEXEDVERTEXBLENDENABLE 1",
                            "SetRenderState D3DRS_INDEXEDVERTEXBLENDENABLE 0"));
}

TEST_F(KRE_GfxRenderStateTest, SoftwareDeviceIsNeverToldToSwitch)
{
    Start(nullptr, 0);
    gfx.SetSoftwareVertexProcessing(1);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(gfx.SetIndexedVertexBlend(1), 1) << "software can blend by index";
}
