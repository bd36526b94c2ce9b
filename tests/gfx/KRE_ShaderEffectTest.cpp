#include "tests/gfx/EffectLoad.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// ---- Loading

TEST(ShaderEffectData, StartsWithNothingReadAndNothingChosen)
{
    const ShaderEffectData data;
    EXPECT_FALSE(data.effect);
    EXPECT_EQ(data.resourceCount, 0);
    EXPECT_EQ(data.parameterCount, 0);
    EXPECT_EQ(data.techniqueCount, 0);
    EXPECT_EQ(data.technique, -1);
    EXPECT_EQ(data.lightsFrame, -1) << "no frame has this number";
    EXPECT_FALSE(data.invalid);
}

TEST_F(EffectLoad, MissingFileIsAnErrorOrAWarningByTheFlag)
{
    EXPECT_EQ(LoadError("no.fx"), "Shader effect file 'no.fx' not found");
    EXPECT_EQ(Load(effect, "no.fx", false), 0);
    EXPECT_EQ(LastWarning(), "Shader effect file 'no.fx' not found");
    EXPECT_EQ(effect.data, nullptr);
    EXPECT_FALSE(effect.IsUsable());
}

TEST_F(EffectLoad, CompilerTextIsShown)
{
    script.result = D3DERR_INVALIDCALL;
    script.errors = "one.fx(3,4): no such state";
    EXPECT_EQ(LoadError(), "Could not compile effect from file 'one.fx': 'D3DERR_INVALIDCALL'\n\n"
                           "one.fx(3,4): no such state");
    EXPECT_EQ(gfx.effectManager.GetCount(), 0);
}

TEST_F(EffectLoad, CompilerWithoutTextGivesTheResultAlone)
{
    script.result = D3DERR_INVALIDCALL;
    for (const char* errors : {static_cast<const char*>(nullptr), ""}) {
        script.errors = errors;
        EXPECT_EQ(LoadError(), "Could not compile effect from file 'one.fx': 'D3DERR_INVALIDCALL'");
    }
}

TEST_F(EffectLoad, PoolAndFlagsReachTheCompiler)
{
    file.AddTechnique();
    gfx.LoadEffect(&effect, "one.fx", true, D3DXFX_DONOTSAVESTATE, true);
    EXPECT_EQ(script.pool, gfx.effectPool.Get());
    EXPECT_EQ(script.flags, static_cast<DWORD>(D3DXFX_DONOTSAVESTATE));
    Load(effect);
    EXPECT_EQ(script.pool, nullptr);
    EXPECT_EQ(script.flags, 0u);
}

TEST_F(EffectLoad, SecondUserSharesTheCompiledEffectAndItsTechnique)
{
    file.AddTechnique({{}}, false);
    file.AddTechnique();
    EXPECT_EQ(Load(effect), 1);
    {
        KRE_ShaderEffect second;
        EXPECT_EQ(Load(second), 1);
        EXPECT_EQ(second.data, effect.data);
        EXPECT_EQ(second.technique, 1);
        EXPECT_EQ(script.compiled, 1);
        EXPECT_EQ(gfx.effectManager.GetEntry(0)->useCount, 2);
        EXPECT_EQ(file.references, 2u);
    }
    EXPECT_EQ(gfx.effectManager.GetEntry(0)->useCount, 1);
    EXPECT_EQ(file.references, 2u) << "the first one still has it";
    effect.Free();
    EXPECT_EQ(gfx.effectManager.GetCount(), 0);
    EXPECT_EQ(file.references, 1u);
}

TEST_F(EffectLoad, LoadingAgainReleasesTheFormerFile)
{
    ScriptedEffect other;
    other.AddTechnique();
    file.AddTechnique({{}}, false);
    file.AddTechnique();
    scratch.Write("other.fx", "text");
    script.effects["other.fx"] = &other;
    Load(effect);
    EXPECT_EQ(effect.technique, 1);
    Load(effect, "other.fx");
    EXPECT_EQ(file.references, 1u);
    EXPECT_EQ(effect.technique, 0) << "the former index is not carried over";
    effect.Free();
}

TEST_F(EffectLoad, FreedEffectDrawsNoMore)
{
    file.AddTechnique();
    Load(effect);
    gfx.SelectEffect(&effect);
    gfx.sceneEffect = gfx.skinningEffect = &effect;
    effect.Free();
    EXPECT_EQ(gfx.materialEffect, nullptr);
    EXPECT_EQ(gfx.sceneEffect, nullptr);
    EXPECT_EQ(gfx.skinningEffect, nullptr);
}

// ---- Techniques

TEST_F(EffectLoad, FirstTechniqueThatValidatesIsSet)
{
    file.AddTechnique({{}}, false);
    file.AddTechnique();
    file.AddTechnique();
    Load(effect);
    EXPECT_THAT(Calls(),
                ElementsAre("ValidateTechnique 0", "ValidateTechnique 1", "SetTechnique 1"));
    EXPECT_EQ(effect.technique, 1);
    EXPECT_TRUE(effect.IsUsable());
    EXPECT_EQ(LastWarning(), "");
}

TEST_F(EffectLoad, NoTechniqueValidatingLeavesTheLastOneSetAndTheEffectUnusable)
{
    file.AddTechnique({{}}, false);
    file.AddTechnique({{}}, false);
    EXPECT_EQ(Load(effect), 1);
    EXPECT_EQ(LastWarning(), "Shader could not be validated for this GPU: 'one.fx'");
    EXPECT_EQ(effect.technique, 1);
    EXPECT_EQ(file.chosen, 1);
    EXPECT_FALSE(effect.IsUsable());
    gfx.SelectEffect(&effect);
    EXPECT_EQ(gfx.materialEffect, nullptr);
    KRE_ShaderEffect second;
    EXPECT_EQ(Load(second), 1);
    EXPECT_EQ(LastWarning(), "") << "one warning for a file";
    EXPECT_FALSE(second.IsUsable());
}

TEST_F(EffectLoad, EffectWithoutTechniquesIsUnusable)
{
    EXPECT_EQ(Load(effect), 1);
    EXPECT_EQ(LastWarning(), "Shader could not be validated for this GPU: 'one.fx'");
    EXPECT_EQ(effect.technique, -1);
    EXPECT_FALSE(effect.IsUsable());
    EXPECT_FALSE(effect.TechniqueHasVertexShader());
}

TEST_F(EffectLoad, NoOtherTechniqueIsTriedIfOneWasRequested)
{
    file.AddTechnique();
    file.AddTechnique({{}}, false);
    effect.technique = 1;
    Load(effect);
    EXPECT_THAT(CallsOf("ValidateTechnique"), ElementsAre("ValidateTechnique 1"));
    EXPECT_EQ(effect.technique, 1);
    EXPECT_FALSE(effect.IsUsable());
}

TEST_F(EffectLoad, ARequestForAMissingTechniqueIsIgnored)
{
    file.AddTechnique({{}}, false);
    file.AddTechnique();
    for (const int32_t asked : {2, 3, -2}) {
        effect.Free();
        effect.technique = asked;
        Calls();
        Load(effect);
        EXPECT_THAT(CallsOf("ValidateTechnique"),
                    ElementsAre("ValidateTechnique 0", "ValidateTechnique 1"))
            << asked;
        EXPECT_EQ(effect.technique, 1) << asked;
        EXPECT_TRUE(effect.IsUsable()) << asked;
    }
}

TEST_F(EffectLoad, VertexShaderInAnyPassCounts)
{
    file.AddTechnique({{}, {}});
    file.AddTechnique({{}, {nullptr, true}, {}});
    Load(effect);
    EXPECT_FALSE(effect.TechniqueHasVertexShader()) << "the chosen one is the first";
    EXPECT_FALSE(effect.TechniqueHasVertexShader(0));
    EXPECT_TRUE(effect.TechniqueHasVertexShader(1));
    EXPECT_FALSE(effect.TechniqueHasVertexShader(2));
    EXPECT_FALSE(effect.TechniqueHasVertexShader(-2));
}

// ---- Parameters

TEST_F(EffectLoad, RefusedParameterIsAnError)
{
    file.AddTechnique();
    file.AddParameters({"Opacity", "FOGSTARTEND"});
    Load(effect);
    FailNext("SetFloat");
    EXPECT_EQ(RaisedBy([&] {
                  effect.SetFloatParameter(effect.data->Handle(EffectSemantic::kOpacity), 1.0f);
              }),
              "Can not SetParameter :D3DERR_INVALIDCALL");
    FailNext("SetVector");
    EXPECT_EQ(RaisedBy([&] {
                  effect.SetVectorParameter(effect.data->Handle(EffectSemantic::kFogStartEnd), 1, 2,
                                            3, 4);
              }),
              "Can not SetParameter :D3DERR_INVALIDCALL");
}

TEST_F(EffectLoad, NullHandleIsIgnored)
{
    file.AddTechnique();
    Load(effect);
    Calls();
    effect.SetFloatParameter(nullptr, 1.0f);
    effect.SetIntParameter(nullptr, 1);
    effect.SetVectorParameter(nullptr, 1, 2, 3, 4);
    effect.SetMatrixParameter(nullptr, gfx.view);
    effect.SetTextureParameter(nullptr, nullptr);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(EffectLoad, SelectedEffectGetsTheMaterialsValuesThatAreSet)
{
    file.AddTechnique();
    for (int i = 1; i <= 8; ++i) {
        file.AddParameter("fParam" + std::to_string(i));
        file.AddParameter("vParam" + std::to_string(i));
    }
    Load(effect);
    KRE_EffectParams params;
    params.params[0] = {1, 0, 0.5f, {}};
    params.params[7] = {2, 0, 8.5f, {}};
    params.params[1] = {0, 0, 2.5f, {4.0f, 5.0f, 6.0f}};
    params.params[2] = {0, 255, 0.0f, {1.0f, 2.0f, 3.0f}};
    effect.SetParams(params);
    gfx.SelectEffect(&effect);
    EXPECT_EQ(gfx.materialEffect, &effect);
    EXPECT_EQ(file.floats, (std::map<std::string, float>{{"fParam1", 0.5f}, {"fParam8", 8.5f}}));
    ASSERT_EQ(file.vectors.size(), 1u);
    EXPECT_EQ(file.vectors["vParam3"].at(0), D3DXVECTOR4(1, 2, 3, 0));
    gfx.SelectEffect(nullptr);
    EXPECT_EQ(gfx.materialEffect, nullptr);
}

// ---- Which one draws

TEST_F(EffectLoad, MaterialsEffectComesBeforeTheScenesAndTheSkinningOne)
{
    file.AddTechnique();
    ScriptedEffect broken;
    broken.AddTechnique({{}}, false);
    scratch.Write("broken.fx", "text");
    script.effects["broken.fx"] = &broken;
    KRE_ShaderEffect ofScene;
    KRE_ShaderEffect ofSkin;
    KRE_ShaderEffect unusable;
    Load(effect);
    Load(ofScene);
    Load(ofSkin);
    Load(unusable, "broken.fx");
    VertexInfo plain;
    plain.processing = 1;
    VertexInfo blended;
    blended.processing = 2;
    EXPECT_EQ(gfx.GetActiveEffect(blended), nullptr);
    gfx.skinningEffect = &ofSkin;
    EXPECT_EQ(gfx.GetActiveEffect(plain), nullptr);
    EXPECT_EQ(gfx.GetActiveEffect(blended), &ofSkin);
    gfx.sceneEffect = &unusable;
    EXPECT_EQ(gfx.GetActiveEffect(blended), &ofSkin);
    gfx.sceneEffect = &ofScene;
    EXPECT_EQ(gfx.GetActiveEffect(blended), &ofScene);
    gfx.materialEffect = &unusable;
    EXPECT_EQ(gfx.GetActiveEffect(plain), &ofScene);
    gfx.SelectEffect(&effect);
    EXPECT_EQ(gfx.GetActiveEffect(plain), &effect);
}

// ---- Reset

TEST_F(EffectLoad, HoldsNoScreenTextureDuringAReset)
{
    file.AddTechnique();
    file.AddParameters({"SCREENCOPY", "SCREENBUFFER2", "SCREENQUARTERBUFFER3"});
    Load(effect);
    gfx.UpdateEffectFrame(effect);
    for (const auto& [semantic, texture] : file.textures)
        EXPECT_NE(texture, nullptr) << semantic;
    gfx.ResetDevice(nullptr);
    EXPECT_EQ(file.textures.size(), 3u);
    for (const auto& [semantic, texture] : file.textures)
        EXPECT_EQ(texture, nullptr) << semantic;
    gfx.UpdateEffectFrame(effect);
    EXPECT_EQ(file.textures["SCREENCOPY"], gfx.screenCopy.Get());
    EXPECT_NE(gfx.screenCopy.Get(), nullptr);
}

TEST_F(EffectLoad, SurvivesAReset)
{
    file.AddTechnique();
    Load(effect);
    gfx.ResetDevice(nullptr);
    EXPECT_EQ(file.lostCalls, 1);
    EXPECT_EQ(file.resetCalls, 1);
    EXPECT_TRUE(effect.IsUsable());
}
