#include "tests/gfx/EffectFrame.h"

using testing::ElementsAre;

namespace {

/// Lights that can be told apart by their colours: light n has the diffuse colour (n, 0, 0, 1), the
/// specular one (0, n, 0, 1) and the ambient one (0.125, 0.25, 0.5, 0.0625) for any n.
class EffectLights : public EffectFrame {
protected:
    EffectLights()
    {
        file.AddParameters({"NumDirectionalLights", "NumOmniLights", "OmniLightPosition",
                            "OmniLightDiffCol", "OmniLightSpecCol", "OmniLightAmbiCol",
                            "OmniLightAttenuation", "DirectionalLightDirection",
                            "DirectionalLightDiffCol", "DirectionalLightSpecCol", "AmbientColor"});
        gfx.SetAmbient(0xFF000000);
    }

    void Add(int32_t slot, D3DLIGHTTYPE type)
    {
        const auto n = static_cast<float>(slot + 1);
        D3DLIGHT9 light{};
        light.Type = type;
        light.Diffuse = {n, 0, 0, 1};
        light.Specular = {0, n, 0, 1};
        light.Ambient = {0.125f, 0.25f, 0.5f, 0.0625f};
        light.Position = {n, 2 * n, 3 * n};
        light.Direction = {0, 0, n};
        light.Attenuation0 = 10 * n;
        light.Attenuation1 = 20 * n;
        light.Attenuation2 = 30 * n;
        gfx.SetLight(slot, light);
        gfx.LightEnable(slot, 1);
    }
    /// 'p', 's' and 'd' are a point light, a spot and a directional one, '-' a slot that is off.
    void Light(const std::string& slots)
    {
        for (int32_t i = 0; i < 8; ++i) {
            const char kind =
                static_cast<size_t>(i) < slots.size() ? slots[static_cast<size_t>(i)] : '-';
            if (kind == '-')
                gfx.LightEnable(i, 0);
            else
                Add(i, kind == 'p'   ? D3DLIGHT_POINT
                       : kind == 's' ? D3DLIGHT_SPOT
                                     : D3DLIGHT_DIRECTIONAL);
        }
        gfx.UpdateEffectLights(effect);
    }
    /// The numbers of the lights in an array of diffuse colours, 0 for an unused entry.
    std::string Taken(const char* semantic)
    {
        std::string numbers;
        for (const D3DXVECTOR4& color : file.vectors[semantic])
            numbers += std::to_string(static_cast<int>(color.x));
        return numbers;
    }
};

} // namespace

TEST_F(EffectFrame, MaterialIsTheCurrentOneAndEmissionTakesTheTint)
{
    D3DMATERIAL9 material{};
    material.Diffuse = {0.1f, 0.2f, 0.3f, 0.4f};
    material.Ambient = {0.5f, 0.6f, 0.7f, 0.8f};
    material.Specular = {0.9f, 1.0f, 1.1f, 1.2f};
    material.Emissive = {0.25f, 0.5f, 0.75f, 0.125f};
    material.Power = 12.0f;
    gfx.SetMaterial(material);
    gfx.tintColor = 0x80FF0033; // 1, 0 and 51/255 = 0.2
    file.AddParameters({"DiffuseMaterial", "AmbientMaterial", "SpecularMaterial", "SpecularPower",
                        "EmissiveMaterial"});
    Load();
    gfx.UpdateEffectLights(effect);
    EXPECT_EQ(Vector("DiffuseMaterial"), D3DXVECTOR4(0.1f, 0.2f, 0.3f, 0.4f));
    EXPECT_EQ(Vector("AmbientMaterial"), D3DXVECTOR4(0.5f, 0.6f, 0.7f, 0.8f));
    EXPECT_EQ(Vector("SpecularMaterial"), D3DXVECTOR4(0.9f, 1.0f, 1.1f, 1.2f));
    EXPECT_EQ(file.floats["SpecularPower"], 12.0f);
    EXPECT_EQ(Vector("EmissiveMaterial"), D3DXVECTOR4(1.25f, 0.5f, 0.75f + 0.2f, 1.0f));
}

TEST_F(EffectFrame, QuirkCacheKeepsTheFirstMaterialOfAFrame)
{
    file.AddParameter("SpecularPower");
    Load();
    gfx.effectCacheOn = 1;
    D3DMATERIAL9 material{};
    for (const float power : {3.0f, 4.0f}) {
        material.Power = power;
        gfx.SetMaterial(material);
        gfx.UpdateEffectLights(effect);
        EXPECT_EQ(file.floats["SpecularPower"], 3.0f);
    }
    ++gfx.frameNumber;
    gfx.UpdateEffectLights(effect);
    EXPECT_EQ(file.floats["SpecularPower"], 4.0f);
}

TEST_F(EffectLights, ZeroToNineLightsOfMixedKindsArePacked)
{
    Load();
    const struct {
        const char* slots;
        int omni;
        const char* omniTaken;
        int directional;
        const char* directionalTaken;
    } rows[] = {
        {"", 0, "000000", 0, "00"},         {"p", 1, "100000", 0, "00"},
        {"s", 1, "100000", 0, "00"},        {"d", 0, "000000", 1, "10"},
        {"dp", 1, "200000", 1, "10"},       {"psd", 2, "120000", 1, "30"},
        {"p-d-s", 2, "150000", 1, "30"},    {"dpdp", 2, "240000", 2, "13"},
        {"ddd", 0, "000000", 2, "12"},      {"pppppp", 6, "123456", 0, "00"},
        {"ppppppp", 6, "123456", 0, "00"},  {"dpppppps", 6, "234567", 1, "10"},
        {"pppppppp", 6, "123456", 0, "00"}, {"dddppppp", 5, "456780", 2, "12"},
    };
    for (const auto& row : rows) {
        Light(row.slots);
        EXPECT_EQ(file.ints["NumOmniLights"], row.omni) << row.slots;
        EXPECT_EQ(file.ints["NumDirectionalLights"], row.directional) << row.slots;
        EXPECT_EQ(Taken("OmniLightDiffCol"), row.omniTaken) << row.slots;
        EXPECT_EQ(Taken("DirectionalLightDiffCol"), row.directionalTaken) << row.slots;
    }
}

TEST_F(EffectLights, SeventhPointLightIsIgnored)
{
    Load();
    Light("ppppppp");
    EXPECT_EQ(file.ints["NumOmniLights"], 6);
    EXPECT_EQ(Taken("OmniLightDiffCol"), "123456");
}

TEST_F(EffectLights, NinthLightIsIgnored)
{
    Load();
    Add(8, D3DLIGHT_POINT);
    Light("");
    EXPECT_EQ(file.ints["NumOmniLights"], 0);
}

TEST_F(EffectLights, ValuesOfALightAndZerosAfterIt)
{
    Load();
    Light("-p-d");
    const D3DXVECTOR4 zero(0, 0, 0, 0);
    const auto omni = [&](const D3DXVECTOR4& first) {
        return ElementsAre(first, zero, zero, zero, zero, zero);
    };
    EXPECT_THAT(file.vectors["OmniLightPosition"], omni({2, 4, 6, 1}));
    EXPECT_THAT(file.vectors["OmniLightDiffCol"], omni({2, 0, 0, 1}));
    EXPECT_THAT(file.vectors["OmniLightSpecCol"], omni({0, 2, 0, 1}));
    EXPECT_THAT(file.vectors["OmniLightAmbiCol"], omni({0.125f, 0.25f, 0.5f, 0.0625f}));
    EXPECT_THAT(file.vectors["OmniLightAttenuation"], omni({20, 40, 60, 0}));
    EXPECT_THAT(file.vectors["DirectionalLightDirection"],
                ElementsAre(D3DXVECTOR4(0, 0, 4, 1), zero));
    EXPECT_THAT(file.vectors["DirectionalLightDiffCol"],
                ElementsAre(D3DXVECTOR4(4, 0, 0, 1), zero));
    EXPECT_THAT(file.vectors["DirectionalLightSpecCol"],
                ElementsAre(D3DXVECTOR4(0, 4, 0, 1), zero));
}

TEST_F(EffectLights, AmbientOfDirectionalLightsIsAddedAndThatOfOmniLightsIsNot)
{
    gfx.SetAmbient(0x00FF3300); // 1, 0.2, 0 and always alpha 1
    Load();
    Light("ps");
    EXPECT_EQ(Vector("AmbientColor"), D3DXVECTOR4(1.0f, 0.2f, 0.0f, 1.0f));
    Light("pd");
    EXPECT_EQ(Vector("AmbientColor"), D3DXVECTOR4(1.125f, 0.2f + 0.25f, 0.5f, 1.0625f));
    Light("ddd"); // the third one is ignored
    EXPECT_EQ(Vector("AmbientColor"), D3DXVECTOR4(1.25f, 0.2f + 0.25f + 0.25f, 1.0f, 1.125f));
}

TEST_F(EffectLights, LightingOffShowsTheUnlitColorAndTakesNoLight)
{
    gfx.SetAmbient(0xFFFFFFFF);
    const D3DCOLOR unlit = 0xFF3300FF;
    gfx.SetLighting(0, &unlit);
    Load();
    Light("pd");
    EXPECT_EQ(Vector("AmbientColor"), D3DXVECTOR4(0.2f, 0.0f, 1.0f, 1.0f));
    EXPECT_EQ(file.ints["NumOmniLights"], 0);
    EXPECT_EQ(file.ints["NumDirectionalLights"], 0);
    EXPECT_EQ(Taken("OmniLightDiffCol"), "000000");
}

TEST_F(EffectLights, CacheAllowsOneUpdatePerFrame)
{
    Load();
    const auto updates = [&] {
        Calls();
        gfx.UpdateEffectLights(effect);
        gfx.UpdateEffectLights(effect);
        return CallsOf("SetVector").size();
    };
    EXPECT_EQ(updates(), 2u) << "without the cache, one vector each";
    gfx.effectCacheOn = 1;
    ++gfx.frameNumber;
    EXPECT_EQ(updates(), 1u);
    EXPECT_EQ(updates(), 0u);
    ++gfx.frameNumber;
    EXPECT_EQ(updates(), 1u);
}
