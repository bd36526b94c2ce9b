#include "tests/render/SceneDrawing.h"

#include "gfx/KRE_ShaderEffect.h"
#include "tests/support/ScriptedEffect.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

/// A scene whose materials name "glow.fx".
class KRE_GfxSceneEffectsTest : public SceneDrawing {
protected:
    KRE_GfxSceneEffectsTest()
    {
        scratch.Write("scenes/glow.fx", "text");
        script.effects["glow.fx"] = &file;
        file.AddTechnique();
    }
    ~KRE_GfxSceneEffectsTest() override
    {
        scene.Reset();
        EXPECT_EQ(file.references, 1u);
    }

    KRE_Mesh& AddGlowing(const char* name, int32_t materials = 1, DWORD fvf = kPlainFormat)
    {
        KRE_Mesh& mesh = AddMesh(name, materials, 10.0f, fvf);
        for (int32_t i = 0; i < materials; ++i)
            mesh.materials[i].effectParams.name = "glow.fx";
        return mesh;
    }
    void Load(const char* directory = "scenes")
    {
        gGfx->LoadSceneEffects(scene, directory, "scenes/one.qsa");
        Calls();
    }
    /// Only the draw calls and the effect's calls.
    std::vector<std::string> DrawingCalls()
    {
        std::vector<std::string> kept;
        for (const std::string& call : Calls()) {
            for (const char* word : {"Begin ", "BeginPass", "EndPass", "End", "Mesh::DrawSubset"}) {
                if (call.starts_with(word)) {
                    kept.push_back(call);
                    break;
                }
            }
        }
        return kept;
    }

    EffectScript script;
    ScriptedEffect file{recorder};
};

} // namespace

TEST_F(KRE_GfxSceneEffectsTest, AllMaterialsOfAFileShareOneCompiledEffect)
{
    KRE_Mesh& one = AddGlowing("one", 2);
    KRE_Mesh& two = AddGlowing("two");
    KRE_Mesh& plain = AddMesh("plain");
    Load();
    EXPECT_EQ(script.compiled, 1);
    EXPECT_EQ(script.pool, nullptr);
    EXPECT_EQ(script.flags, 0u);
    ASSERT_TRUE(one.materials[0].effect && one.materials[1].effect && two.materials[0].effect);
    EXPECT_EQ(one.materials[1].effect->data, one.materials[0].effect->data);
    EXPECT_EQ(two.materials[0].effect->data, one.materials[0].effect->data);
    EXPECT_FALSE(plain.materials[0].effect);
    EXPECT_EQ(gGfx->effectManager.GetEntry(0)->useCount, 3);
    scene.Reset();
    EXPECT_EQ(gGfx->effectManager.GetCount(), 0);
}

TEST_F(KRE_GfxSceneEffectsTest, FileThatIsNotFoundIsAWarningThatNamesTheScene)
{
    KRE_Mesh& mesh = AddGlowing("one");
    mesh.materials[0].effectParams.name = "lost.fx";
    Load();
    EXPECT_EQ(LastWarning(),
              "DirectX shader effect 'lost.fx' not found (for scene 'scenes/one.qsa')");
    EXPECT_FALSE(mesh.materials[0].effect);
}

TEST_F(KRE_GfxSceneEffectsTest, EffectThatReadsTheScreenSwitchesTheClearingOff)
{
    AddGlowing("one");
    scene.settings.clearBackground = 1;
    Load();
    EXPECT_EQ(scene.settings.clearBackground, 1);
    scene.Reset();
    AddGlowing("one");
    scene.settings.clearBackground = 1;
    file.AddParameter("SCREENCOPY");
    Load();
    EXPECT_EQ(scene.settings.clearBackground, 0);
}

TEST_F(KRE_GfxSceneEffectsTest, MaterialIsDrawnInThePassesOfItsEffect)
{
    ScriptedEffect twice(recorder);
    twice.AddTechnique({{}, {}});
    script.effects["glow.fx"] = &twice;
    KRE_Mesh& mesh = AddGlowing("mesh", 2);
    mesh.materials[1].effectParams.name = "";
    Load();
    Draw(mesh);
    EXPECT_THAT(DrawingCalls(), ElementsAre("Begin 0", "BeginPass 0", "Mesh::DrawSubset mesh 0",
                                            "EndPass", "BeginPass 1", "Mesh::DrawSubset mesh 0",
                                            "EndPass", "End", "Mesh::DrawSubset mesh 1"));
    scene.Reset();
}

// A mesh without materials selects no effect of its own.
TEST_F(KRE_GfxSceneEffectsTest, EffectOfTheLastMaterialDoesNotCarryOverToTheNextMesh)
{
    KRE_Mesh& glowing = AddGlowing("glowing");
    KRE_Mesh& bare = AddMesh("bare", 0);
    Load();
    Draw(glowing);
    EXPECT_EQ(gGfx->materialEffect, nullptr);
    Calls();
    Draw(bare);
    EXPECT_THAT(DrawingCalls(), ElementsAre("Mesh::DrawSubset bare 0"));
    scene.Reset();
}

TEST_F(KRE_GfxSceneEffectsTest, EffectThatDoesNotRunHereLeavesItToFixedFunctionDrawing)
{
    ScriptedEffect broken(recorder);
    broken.AddTechnique({{}}, false);
    script.effects["glow.fx"] = &broken;
    KRE_Mesh& mesh = AddGlowing("mesh");
    Load();
    EXPECT_THAT(LastWarning(), StartsWith("Shader could not be validated for this GPU: '"));
    Draw(mesh);
    EXPECT_THAT(DrawingCalls(), ElementsAre("Mesh::DrawSubset mesh 0"));
    scene.Reset();
}

TEST_F(KRE_GfxSceneEffectsTest, RefusedDrawInAPassIsAnError)
{
    KRE_Mesh& mesh = AddGlowing("mesh");
    Load();
    recorder->FailNext("Mesh::DrawSubset", D3DERR_INVALIDCALL);
    EXPECT_THAT(RaisedBy([&] { Draw(mesh); }),
                testing::HasSubstr("DrawSubset failed: D3DERR_INVALIDCALL"));
}

TEST_F(KRE_GfxSceneEffectsTest, MaterialsValuesReachTheEffect)
{
    file.AddParameters({"fParam3", "vParam8", "fParam1"});
    KRE_Mesh& mesh = AddGlowing("mesh");
    KRE_EffectParams& params = mesh.materials[0].effectParams;
    params.params[2].hasFloat = 1;
    params.params[2].floatValue = 2.5f;
    params.params[7].hasVector = 1;
    params.params[7].vectorValue[0] = 1.0f;
    params.params[7].vectorValue[1] = 2.0f;
    params.params[7].vectorValue[2] = 3.0f;
    Load();
    Draw(mesh);
    EXPECT_EQ(file.floats, (std::map<std::string, float>{{"fParam3", 2.5f}}));
    EXPECT_EQ(file.vectors["vParam8"].at(0), D3DXVECTOR4(1, 2, 3, 0));
}

// ---- Which effect draws a subset

TEST_F(KRE_GfxSceneEffectsTest, ScenesEffectDrawsSubsetsWithoutOneOfTheirOwn)
{
    ScriptedEffect own(recorder);
    own.AddTechnique({{}, {}});
    script.effects["own.fx"] = &own;
    scratch.Write("scenes/own.fx", "text");
    KRE_Mesh& mesh = AddMesh("mesh", 2);
    mesh.materials[1].effectParams.name = "own.fx";
    Load();
    KRE_ShaderEffect ofScene;
    gGfx->LoadEffect(&ofScene, "scenes/glow.fx", false, 0, true);
    gGfx->sceneEffect = &ofScene;
    Calls();
    Draw(mesh);
    EXPECT_THAT(DrawingCalls(),
                ElementsAre("Begin 0", "BeginPass 0", "Mesh::DrawSubset mesh 0", "EndPass", "End",
                            "Begin 0", "BeginPass 0", "Mesh::DrawSubset mesh 1", "EndPass",
                            "BeginPass 1", "Mesh::DrawSubset mesh 1", "EndPass", "End"));
    gGfx->sceneEffect = nullptr;
    scene.Reset();
}

TEST_F(KRE_GfxSceneEffectsTest, SkinningEffectDrawsMeshesThatItBlends)
{
    KRE_Mesh& mesh = AddMesh("mesh");
    KRE_ShaderEffect ofSkin;
    gGfx->LoadEffect(&ofSkin, "scenes/glow.fx", false, 0, true);
    gGfx->skinningEffect = &ofSkin;
    Calls();
    gGfx->DrawSubset(mesh, 0);
    EXPECT_THAT(DrawingCalls(), ElementsAre("Mesh::DrawSubset mesh 0"));
    mesh.processing = 2;
    gGfx->DrawSubset(mesh, 0);
    EXPECT_THAT(DrawingCalls(),
                ElementsAre("Begin 0", "BeginPass 0", "Mesh::DrawSubset mesh 0", "EndPass", "End"));
}

TEST_F(KRE_GfxSceneEffectsTest, EffectOfASubsetIsUpdatedWhileDrawingIsSwitchedOff)
{
    file.AddParameters({"WORLD", "NUMBLENDWEIGHTS", "NumOmniLights"});
    KRE_Mesh& mesh = AddGlowing("mesh");
    Load();
    gGfx->drawDisabled = 1;
    Draw(mesh);
    EXPECT_THAT(DrawingCalls(), ElementsAre("Begin 0", "BeginPass 0", "EndPass", "End"));
    EXPECT_EQ(file.matrices.count("WORLD"), 1u);
    EXPECT_EQ(file.ints.count("NUMBLENDWEIGHTS"), 1u);
    EXPECT_EQ(file.ints.count("NumOmniLights"), 1u);
}

TEST_F(KRE_GfxSceneEffectsTest, EffectHandlesTheReflectionItself)
{
    KRE_Mesh& mesh = AddGlowing("mesh");
    mesh.materials[0].reflectionSet = 0;
    Load();
    gGfx->SelectEffect(mesh.materials[0].effect.get());
    Calls();
    EXPECT_EQ(gGfx->DrawSubset(mesh, 0), 1);
    const std::vector<std::string> calls = Calls();
    EXPECT_THAT(calls, testing::Contains("Mesh::DrawSubset mesh 0"));
    EXPECT_THAT(calls, testing::Not(testing::Contains(StartsWith("Mesh::GetAttributeTable"))));
    EXPECT_THAT(calls, testing::Not(testing::Contains(StartsWith("Mesh::LockVertexBuffer"))));
    gGfx->SelectEffect(nullptr);
}

// ---- What belongs to a mesh

TEST_F(KRE_GfxSceneEffectsTest, MeshPassesItsWeightsAndMatrices)
{
    file.AddParameters({"NUMBLENDWEIGHTS", "WORLDMATRIXARRAY"});
    KRE_Mesh& mesh = AddGlowing("mesh", 1, kBlendedFormat);
    SetBones(mesh, {nullptr, nullptr, nullptr});
    Load();
    for (int32_t i = 0; i < 4; ++i)
        gGfx->SetWorldMatrix(Shift(static_cast<float>(i), 0, 0), i);
    KRE_ShaderEffect& effect = *mesh.materials[0].effect;
    gGfx->UpdateEffectObject(effect, mesh, 0);
    EXPECT_EQ(file.ints["NUMBLENDWEIGHTS"], mesh.blendCount);
    EXPECT_THAT(file.matrices["WORLDMATRIXARRAY"],
                ElementsAre(Shift(0, 0, 0), Shift(1, 0, 0), Shift(2, 0, 0)));
    gGfx->skinningEffectLimit = 2;
    gGfx->UpdateEffectObject(effect, mesh, 0);
    EXPECT_THAT(file.matrices["WORLDMATRIXARRAY"], ElementsAre(Shift(0, 0, 0), Shift(1, 0, 0)));
}

TEST_F(KRE_GfxSceneEffectsTest, MeshOfThirtyBonesSendsTwentySixMatrices)
{
    file.AddParameter("WORLDMATRIXARRAY");
    KRE_Mesh& mesh = AddGlowing("mesh", 1, kBlendedFormat);
    SetBones(mesh, {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr});
    ASSERT_EQ(mesh.bones.Count(), 30);
    Load();
    gGfx->UpdateEffectObject(*mesh.materials[0].effect, mesh, 0);
    EXPECT_THAT(file.matrices["WORLDMATRIXARRAY"], testing::SizeIs(26));
}

TEST_F(KRE_GfxSceneEffectsTest, MeshWithoutBonesSendsNoMatrices)
{
    file.AddParameters({"NUMBLENDWEIGHTS", "WORLDMATRIXARRAY"});
    KRE_Mesh& mesh = AddGlowing("mesh");
    Load();
    gGfx->UpdateEffectObject(*mesh.materials[0].effect, mesh, 0);
    EXPECT_EQ(file.ints["NUMBLENDWEIGHTS"], 0);
    EXPECT_THAT(file.matrices["WORLDMATRIXARRAY"], IsEmpty());
}

TEST_F(KRE_GfxSceneEffectsTest, ReflectionDependsOnTheMaterial)
{
    file.AddParameters({"REFLECTIONMAPTYPE", "REFLECTIONMAP", "TransformReflectionMap"});
    KRE_Mesh& mesh = AddGlowing("mesh", 2);
    mesh.materials[1].reflectionSet = 0;
    Load();
    ComPointer<IDirect3DTexture9> texture;
    gGfx->device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.Out(),
                                nullptr);
    gGfx->boundTexture[0] = texture.Get();
    KRE_ShaderEffect& effect = *mesh.materials[0].effect;
    gGfx->UpdateEffectObject(effect, mesh, 0);
    EXPECT_EQ(file.ints["REFLECTIONMAPTYPE"], 0);
    EXPECT_EQ(file.textures["REFLECTIONMAP"], texture.Get());
    EXPECT_EQ(file.matrices["TransformReflectionMap"].at(0), Shift(0, 0, 0));
    gGfx->UpdateEffectObject(effect, mesh, 1);
    EXPECT_EQ(file.ints["REFLECTIONMAPTYPE"], 1);
    gGfx->environmentTM = Shift(4, 5, 6);
    gGfx->UpdateEffectObject(effect, mesh, 1);
    EXPECT_EQ(file.matrices["TransformReflectionMap"].at(0), Shift(4, 5, 6));
    gGfx->UpdateEffectObject(effect, mesh, 2); // not a material of the mesh
    EXPECT_EQ(file.ints["REFLECTIONMAPTYPE"], 0);
    gGfx->boundTexture[0] = nullptr;
}
