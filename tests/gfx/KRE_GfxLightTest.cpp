#include "tests/gfx/EngineTest.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class KRE_GfxLightTest : public EngineTest {
protected:
    KRE_GfxLightTest() { Start(); }
};

D3DLIGHT9 Sun()
{
    D3DLIGHT9 light{};
    light.Type = D3DLIGHT_DIRECTIONAL;
    light.Diffuse = {2.0f, 2.0f, 2.0f, 0.0f};
    light.Direction = {0.0f, -1.0f, 0.0f};
    return light;
}

} // namespace

TEST_F(KRE_GfxLightTest, UnlitColorIsWhiteUnlessOneIsGivenWithLightingOff)
{
    static const struct {
        const char* what;
        int32_t on;
        bool hasColor;
        D3DCOLOR expected;
    } cases[] = {
        {"on", 1, true, 0xFFFFFFFF},
        {"off with a colour", 0, true, 0xFF102030},
        {"off without", 0, false, 0xFFFFFFFF},
    };
    const D3DCOLOR color = 0x00102030;
    for (const auto& c : cases) {
        gfx.SetLighting(c.on, c.hasColor ? &color : nullptr);
        EXPECT_EQ(gfx.unlitColor, c.expected) << c.what;
        EXPECT_EQ(gfx.lighting, c.on) << c.what;
    }
}

TEST_F(KRE_GfxLightTest, ColorChangesWithoutADeviceCall)
{
    const D3DCOLOR color = 0x00102030;
    gfx.SetLighting(0, nullptr);
    Calls();
    gfx.SetLighting(0, &color);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(gfx.unlitColor, 0xFF102030u);
}

TEST_F(KRE_GfxLightTest, FailedLightingIsAnError)
{
    FailNext("SetRenderState");
    EXPECT_EQ(RaisedBy([&] { gfx.SetLighting(0, nullptr); }),
              " SetRenderState (state 137, value: 0 failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxLightTest, LightIsStoredAndSent)
{
    gfx.SetLight(8, Sun());
    EXPECT_THAT(Calls(),
                ElementsAre("SetLight 8 D3DLIGHT_DIRECTIONAL diffuse[2 2 2 0] specular[0 0 0 0] "
                            "ambient[0 0 0 0] position[0 0 0] direction[0 -1 0] range=0 falloff=0 "
                            "attenuation[0 0 0] theta=0 phi=0"));
    EXPECT_EQ(gfx.lights[8].Diffuse.r, 2.0f);
    FailNext("SetLight");
    EXPECT_EQ(RaisedBy([&] { gfx.SetLight(0, Sun()); }), "SetLight failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxLightTest, IndexEightIsAcceptedAndNineIsAnError)
{
    gfx.LightEnable(8, 1);
    EXPECT_THAT(Calls(), ElementsAre("LightEnable 8 1"));
    EXPECT_EQ(RaisedBy([&] { gfx.LightEnable(9, 1); }), "Light index >8");
    EXPECT_EQ(RaisedBy([&] { gfx.LightEnable(-1, 1); }), "Light index >8");
    EXPECT_EQ(RaisedBy([&] { gfx.SetLight(9, Sun()); }), "Light index >8");
    EXPECT_EQ(RaisedBy([&] { gfx.SetLight(-1, Sun()); }), "Light index >8");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(KRE_GfxLightTest, EachLightHasItsOwnCacheEntry)
{
    gfx.LightEnable(0, 1);
    gfx.LightEnable(1, 1);
    gfx.LightEnable(0, 1);
    gfx.LightEnable(1, 0);
    EXPECT_THAT(Calls(), ElementsAre("LightEnable 0 1", "LightEnable 1 1", "LightEnable 1 0"));
    FailNext("LightEnable");
    EXPECT_EQ(RaisedBy([&] { gfx.LightEnable(2, 1); }), " LightEnable failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxLightTest, MaterialIsSent)
{
    gfx.SetMaterial(gfx.defaultMaterial);
    EXPECT_THAT(Calls(), ElementsAre("SetMaterial diffuse[0.9 0.9 0.9 1] ambient[0.9 0.9 0.9 1] "
                                     "specular[0 0 0 1] emissive[0 0 0 1] power=0"));
    FailNext("SetMaterial");
    EXPECT_EQ(RaisedBy([&] { gfx.SetMaterial(gfx.defaultMaterial); }),
              "SetMaterial failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxLightTest, MaterialUnderAnEffectIsOnlyStored)
{
    // The wrapper only checks whether there is an effect; it does not use it.
    char place = 0;
    auto* const effect = reinterpret_cast<KRE_ShaderEffect*>(&place);
    D3DMATERIAL9 material{};
    for (KRE_ShaderEffect** slot : {&gfx.sceneEffect, &gfx.materialEffect}) {
        material.Power += 5.0f;
        *slot = effect;
        gfx.SetMaterial(material);
        EXPECT_THAT(Calls(), IsEmpty());
        EXPECT_EQ(gfx.material.Power, material.Power);
        *slot = nullptr;
    }
    gfx.SetMaterial(material);
    EXPECT_THAT(Calls(), SizeIs(1));
}
