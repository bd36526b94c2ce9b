#include "tests/gfx/EffectFrame.h"
#include "tests/gfx/StubMesh.h"

#include <algorithm>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Meshes and sprites with an effect of two passes, which has the parameter "Opacity".
class KRE_GfxEffectDrawingTest : public EngineTest {
protected:
    KRE_GfxEffectDrawingTest()
    {
        Start();
        scratch.Write("twice.fx", "text");
        scratch.Write("broken.fx", "text");
        script.effects["twice.fx"] = &twice;
        script.effects["broken.fx"] = &broken;
        twice.AddParameter("Opacity");
        twice.AddTechnique({{}, {}});
        broken.AddTechnique({{}}, false);
        gfx.LoadEffect(&effect, "twice.fx", false, 0, true);
        gfx.LoadEffect(&unusable, "broken.fx", false, 0, true);

        mesh.Make(gfx.device.Get());
        info.SetFVFInfo(KRE_VertexPosTex::kFvf);
        info.processing = 1;

        gfx.CreateTexture(&texture, 16, 8, -1, D3DFMT_X8R8G8B8, 1);
        gfx.SetTexture(&texture);
        Calls();
    }

    /// What the effect and the draw calls do while `work` runs.
    template <class Work>
    std::vector<std::string> DrawingCalls(Work work)
    {
        Calls();
        EXPECT_EQ(RaisedBy(work), "no error");
        std::vector<std::string> kept;
        for (const std::string& call : Calls()) {
            for (const char* word : {"Begin", "End", "Draw", "SetFloat"}) {
                if (call.starts_with(word)) {
                    kept.push_back(call);
                    break;
                }
            }
        }
        return kept;
    }
    std::vector<std::string> MeshCalls()
    {
        return DrawingCalls([&] { gfx.DrawMesh(mesh, info, 4, 6); });
    }
    std::vector<std::string> SpriteCalls()
    {
        return DrawingCalls([&] { gfx.DrawLastTexture(); });
    }
    static std::vector<std::string> InTwoPasses(const std::string& draw)
    {
        return {"SetFloat Opacity", "Begin 0", "BeginPass 0", draw, "EndPass",
                "BeginPass 1",      draw,      "EndPass",     "End"};
    }
    static std::vector<std::string> WithoutDrawing()
    {
        return {"SetFloat Opacity", "Begin 0", "BeginPass 0", "EndPass",
                "BeginPass 1",      "EndPass", "End"};
    }

    // Six faces from the fourth on, of a mesh of six vertices: the index of the first is 12.
    static constexpr const char* kMeshDraw = "DrawIndexedPrimitive D3DPT_TRIANGLELIST 0 0 6 12 6";
    static constexpr const char* kSpriteDraw = "DrawPrimitive D3DPT_TRIANGLESTRIP 0 2";

    EffectScript script;
    ScriptedEffect twice{recorder};
    ScriptedEffect broken{recorder};
    KRE_ShaderEffect effect;
    KRE_ShaderEffect unusable;
    StubMesh mesh;
    VertexInfo info;
    KRE_Texture texture;
};

} // namespace

// ---- Meshes

TEST_F(KRE_GfxEffectDrawingTest, MeshIsDrawnInEachPassOfAMaterialsEffect)
{
    gfx.SelectEffect(&effect);
    EXPECT_EQ(MeshCalls(), InTwoPasses(kMeshDraw));
}

TEST_F(KRE_GfxEffectDrawingTest, MeshIsDrawnInEachPassOfTheScenesEffect)
{
    gfx.sceneEffect = &effect;
    EXPECT_EQ(MeshCalls(), InTwoPasses(kMeshDraw));
}

TEST_F(KRE_GfxEffectDrawingTest, SkinningEffectDrawsMeshesThatItBlends)
{
    gfx.skinningEffect = &effect;
    EXPECT_THAT(MeshCalls(), ElementsAre(kMeshDraw));
    info.processing = 2;
    EXPECT_EQ(MeshCalls(), InTwoPasses(kMeshDraw));
}

TEST_F(KRE_GfxEffectDrawingTest, UnusableEffectLeavesAMeshToFixedFunctionDrawing)
{
    gfx.sceneEffect = &unusable;
    EXPECT_THAT(MeshCalls(), ElementsAre(kMeshDraw));
}

TEST_F(KRE_GfxEffectDrawingTest, MeshWithoutFacesDoesNotReachTheEffect)
{
    gfx.SelectEffect(&effect);
    EXPECT_THAT(DrawingCalls([&] { gfx.DrawMesh(mesh, info, 4, 0); }), IsEmpty());
}

TEST_F(KRE_GfxEffectDrawingTest, EffectOfAMeshIsUpdatedWhileDrawingIsSwitchedOff)
{
    gfx.SelectEffect(&effect);
    gfx.drawDisabled = 1;
    EXPECT_EQ(MeshCalls(), WithoutDrawing());
}

TEST_F(KRE_GfxEffectDrawingTest, RefusedMeshInAPassIsAnErrorAndDropsItsBuffers)
{
    gfx.SelectEffect(&effect);
    FailNext("DrawIndexedPrimitive");
    EXPECT_EQ(RaisedBy([&] { gfx.DrawMesh(mesh, info, 4, 6); }),
              "DrawIndexedPrimitive failed: D3DERR_INVALIDCALL");
    EXPECT_THAT(CallsOf("EndPass"), IsEmpty());
}

// ---- Sprites

TEST_F(KRE_GfxEffectDrawingTest, SpriteIsDrawnInEachPassOfTheScenesEffect)
{
    gfx.sceneEffect = &effect;
    EXPECT_EQ(SpriteCalls(), InTwoPasses(kSpriteDraw));
}

TEST_F(KRE_GfxEffectDrawingTest, SpriteTakesNoOtherEffect)
{
    gfx.SelectEffect(&effect);
    gfx.skinningEffect = &effect;
    EXPECT_THAT(SpriteCalls(), ElementsAre(kSpriteDraw));
    gfx.sceneEffect = &unusable;
    EXPECT_THAT(SpriteCalls(), ElementsAre(kSpriteDraw));
}

TEST_F(KRE_GfxEffectDrawingTest, SpritesEffectIsUpdatedWhileDrawingIsSwitchedOff)
{
    gfx.sceneEffect = &effect;
    gfx.drawDisabled = 1;
    EXPECT_EQ(SpriteCalls(), WithoutDrawing());
}

TEST_F(KRE_GfxEffectDrawingTest, RefusedSpriteInAPassIsAnError)
{
    gfx.sceneEffect = &effect;
    FailNext("DrawPrimitive");
    EXPECT_EQ(RaisedBy([&] { gfx.DrawLastTexture(); }),
              " DrawPrimitive in DrawLastTexture failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxEffectDrawingTest, StatesOfASpriteAreSetBeforeItsEffect)
{
    gfx.SetCullMode(1);
    gfx.sceneEffect = &effect;
    Calls();
    gfx.DrawLastTexture();
    const std::vector<std::string> calls = Calls();
    const auto place = [&](const std::string& words) {
        return std::find_if(calls.begin(), calls.end(),
                            [&](const std::string& call) { return call.starts_with(words); }) -
               calls.begin();
    };
    EXPECT_LT(place("SetStreamSource"), place("Begin 0"));
    EXPECT_LT(place("SetRenderState D3DRS_CULLMODE D3DCULL_NONE"), place("Begin 0"));
    EXPECT_LT(place("SetFVF"), place("Begin 0"));
    EXPECT_LT(place("End"), static_cast<ptrdiff_t>(calls.size()));
    EXPECT_EQ(calls.back(), "SetRenderState D3DRS_CULLMODE D3DCULL_CW") << "culling comes back";
}
