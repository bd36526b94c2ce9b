#include "gfx/KRE_EffectFeeding.h"

#include "gfx/KRE_ShaderEffect.h"
#include "scene/KRE_Mesh.h"
#include "tests/scene/SceneTesting.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/ScriptedEffect.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// An effect that takes the weights and matrices of a mesh.
class KRE_GfxSceneEffectsTest : public SceneEngineTest {
protected:
    KRE_GfxSceneEffectsTest()
    {
        StartRecording();
        directory.Write("skin.fx", "text");
        script.effects["skin.fx"] = &file;
        file.AddTechnique();
        file.AddParameters({"NUMBLENDWEIGHTS", "WORLDMATRIXARRAY"});
        gGfx->LoadEffect(&effect, "skin.fx", false, 0, true);
    }

    static D3DXMATRIX Shift(float x) { return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, 0, 0, 1}; }

    /// What the effect is told of a mesh of so many bones whose i-th matrix is `Shift(i)`.
    std::vector<D3DXMATRIX> MatricesFor(int32_t bones)
    {
        KRE_Mesh mesh;
        for (int32_t i = 0; i < bones; ++i) {
            const KRE_BoneInfo bone("bone");
            mesh.bones.Add(&bone);
            gGfx->SetWorldMatrix(Shift(static_cast<float>(i)), i);
        }
        file.matrices.clear();
        gGfx->UpdateEffectObject(effect, mesh, 0);
        return file.matrices["WORLDMATRIXARRAY"];
    }

    EffectScript script;
    ScriptedEffect file;
    KRE_ShaderEffect effect;
};

} // namespace

TEST_F(KRE_GfxSceneEffectsTest, IsToldAMatrixForEachBone)
{
    EXPECT_THAT(MatricesFor(2), ElementsAre(Shift(0), Shift(1)));
    EXPECT_THAT(MatricesFor(1), ElementsAre(Shift(0))) << "a single bone counts as well";
    EXPECT_THAT(MatricesFor(0), IsEmpty());
}

TEST_F(KRE_GfxSceneEffectsTest, IsToldItsNumberOfWeights)
{
    KRE_Mesh mesh;
    for (const DWORD format : {DWORD{D3DFVF_XYZ}, DWORD{D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4}}) {
        mesh.SetVertexFormat(format);
        file.ints.clear();
        gGfx->UpdateEffectObject(effect, mesh, 0);
        EXPECT_EQ(file.ints, (std::map<std::string, int>{{"NUMBLENDWEIGHTS", mesh.blendCount}}));
    }
    EXPECT_EQ(mesh.blendCount, 3) << "two that are stored and the last one";
}
