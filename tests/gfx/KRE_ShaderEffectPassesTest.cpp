#include "tests/gfx/EffectLoad.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// A scene drawn with the only technique of an effect.
class EffectPasses : public EffectLoad {
protected:
    void Draw()
    {
        Load(effect);
        Calls();
        const UINT passes = effect.Begin();
        for (UINT pass = 0; pass < passes; ++pass) {
            effect.BeginPass(pass);
            gfx.device->DrawPrimitive(D3DPT_TRIANGLELIST, 0, 1);
            effect.EndPass();
        }
        effect.End();
    }
};

} // namespace

static bool operator==(const EffectPassTarget& a, const EffectPassTarget& b)
{
    return a.kind == b.kind && a.index == b.index;
}

// ---- Annotations

TEST_F(EffectLoad, TargetsAreNumberedFromOne)
{
    using enum EffectTargetKind;
    const struct {
        const char* word;
        const char* text;
        EffectPassTarget target;
    } rows[] = {
        {"no annotation", nullptr, {}},
        {"empty", "", {}},
        {"first", "ScreenBuffer1", {kScreenBuffer, 0}},
        {"last", "ScreenBuffer2", {kScreenBuffer, 1}},
        {"zero is none", "ScreenBuffer0", {}},
        {"no number is none", "ScreenBuffer", {}},
        {"not a number is none", "ScreenBufferTwo", {}},
        {"nan is none", "ScreenBuffernan", {}},
        {"below zero is none", "ScreenBuffer-1", {}},
        {"rounded up", "ScreenBuffer1.6", {kScreenBuffer, 1}},
        {"rounded down", "ScreenBuffer2.4", {kScreenBuffer, 1}},
        {"half rounded up", "ScreenBuffer0.5", {kScreenBuffer, 0}},
        {"less than half is none", "ScreenBuffer0.4", {}},
        {"first quarter", "ScreenQuarterBuffer1", {kScreenQuarterBuffer, 0}},
        {"last quarter", "ScreenQuarterBuffer3", {kScreenQuarterBuffer, 2}},
        {"quarter zero", "ScreenQuarterBuffer0", {}},
        {"initial", "Initial", {kInitial, 0}},
        {"initial with more", "InitialTarget", {kInitial, 0}},
        {"case counts", "screenbuffer1", {}},
        {"other words", "BackBuffer", {}},
    };
    for (const auto& row : rows)
        EXPECT_TRUE(TargetOf(row.text) == row.target) << row.word;
}

TEST_F(EffectLoad, ScreenBufferThreeIsAnErrorAndQuarterBufferThreeIsNot)
{
    file.AddTechnique({{"ScreenBuffer3"}});
    EXPECT_EQ(LoadError(), "Not more than 2 ScreenBuffer supported");
    EXPECT_FALSE(effect.IsUsable());
    EXPECT_TRUE(TargetOf("ScreenQuarterBuffer3") ==
                (EffectPassTarget{EffectTargetKind::kScreenQuarterBuffer, 2}));
}

TEST_F(EffectLoad, QuarterBufferFourIsAnError)
{
    for (const char* text :
         {"ScreenQuarterBuffer4", "ScreenQuarterBuffer3.5", "ScreenQuarterBuffer1e30",
          "ScreenQuarterBuffer1e300", "ScreenQuarterBufferinf"})
        EXPECT_EQ(RaisedBy([&] { TargetOf(text); }), "Not more than 3 ScreenBuffer supported")
            << text;
}

TEST_F(EffectLoad, BrokenEffectIsNotSharedAsAGoodOne)
{
    file.AddTechnique({{"ScreenBuffer3"}});
    LoadError();
    KRE_ShaderEffect second;
    Load(second);
    EXPECT_FALSE(second.IsUsable());
}

TEST_F(EffectLoad, SixteenNamedTexturesAreKeptAndASeventeenthIsAnError)
{
    ScriptedEffect full;
    full.AddTechnique();
    file.AddTechnique();
    for (int i = 0; i < 17; ++i) {
        const std::string semantic = "picture " + std::to_string(i);
        file.AddParameter(semantic, "a.bmp");
        full.AddParameter("plain " + std::to_string(i));
        if (i < 16)
            full.AddParameter(semantic, "a.bmp");
    }
    scratch.Write("full.fx", "text");
    script.effects["full.fx"] = &full;
    KRE_ShaderEffect user;
    Load(user, "full.fx");
    EXPECT_EQ(user.data->resourceCount, 16);
    EXPECT_EQ(user.data->parameterCount, 33);
    EXPECT_STREQ(user.data->resourceParams[15], "picture 15");
    EXPECT_STREQ(user.data->resourceNames[15], "a.bmp");
    EXPECT_EQ(LoadError(), "Not more than 16 textures with a ResourceName supported: 'one.fx'");
    EXPECT_EQ(effect.data->resourceCount, 16);
    user.Free();
}

// ---- Passes

TEST_F(EffectPasses, PassWithoutATargetDrawsWhereItIs)
{
    file.AddTechnique({{}, {}});
    Draw();
    EXPECT_THAT(Calls(),
                ElementsAre("Begin 0", "BeginPass 0", "DrawPrimitive D3DPT_TRIANGLELIST 0 1",
                            "EndPass", "BeginPass 1", "DrawPrimitive D3DPT_TRIANGLELIST 0 1",
                            "EndPass", "End"));
}

TEST_F(EffectPasses, TargetIsReplacedOnlyForThePass)
{
    file.AddTechnique({{"ScreenBuffer2"}, {"Initial"}, {"ScreenQuarterBuffer1"}});
    ComPointer<IDirect3DSurface9> before;
    gfx.device->GetRenderTarget(0, before.Out());
    const std::string own = recorder->NameOfObject("surface", before.Get());
    Draw();
    const std::vector<std::string> sets = CallsOf("SetRenderTarget");
    ASSERT_EQ(sets.size(), 4u) << testing::PrintToString(sets);
    EXPECT_NE(sets[0], "SetRenderTarget 0 " + own);
    EXPECT_EQ(sets[1], "SetRenderTarget 0 " + own);
    EXPECT_NE(sets[2], "SetRenderTarget 0 " + own);
    EXPECT_EQ(sets[3], "SetRenderTarget 0 " + own);
    EXPECT_TRUE(gfx.screenBuffers[1]);
    EXPECT_TRUE(gfx.screenQuarterBuffers[0]);
    EXPECT_FALSE(gfx.screenBuffers[0]);
    EXPECT_FALSE(gfx.savedRenderTarget);
    ComPointer<IDirect3DSurface9> after;
    gfx.device->GetRenderTarget(0, after.Out());
    EXPECT_EQ(after.Get(), before.Get());
}

// The screen as an effect sees it has changed then, so it is copied again, even if it is copied
// once a frame.
TEST_F(EffectPasses, PassIntoABufferStartsASubFrame)
{
    file.AddTechnique({{"ScreenBuffer2"}, {"Initial"}, {}, {"ScreenQuarterBuffer1"}});
    gfx.effectCacheOn = 1;
    const int32_t before = gfx.subFrameNumber;
    Draw();
    EXPECT_EQ(gfx.subFrameNumber, before + 2) << "the first and the last pass";

    gfx.SelectEffect(&effect);
    const auto copies = [&] {
        gfx.GetScreenCopyTexture();
        const size_t count = CallsOf("StretchRect").size();
        Calls();
        return count;
    };
    Calls();
    EXPECT_EQ(copies(), 1u);
    EXPECT_EQ(copies(), 0u);
    effect.Begin();
    effect.BeginPass(0);
    EXPECT_EQ(copies(), 1u);
    effect.EndPass();
    effect.BeginPass(2);
    EXPECT_EQ(copies(), 0u) << "a pass that draws where it is";
    effect.EndPass();
    effect.End();
}

TEST_F(EffectPasses, InitialRestoresTheSavedTarget)
{
    file.AddTechnique({{"ScreenBuffer1"}, {"Initial"}});
    Load(effect);
    ComPointer<IDirect3DSurface9> before;
    gfx.device->GetRenderTarget(0, before.Out());
    effect.Begin();
    effect.BeginPass(0);
    ComPointer<IDirect3DSurface9> inside;
    gfx.device->GetRenderTarget(0, inside.Out());
    EXPECT_NE(inside.Get(), before.Get());
    EXPECT_EQ(gfx.savedRenderTarget.Get(), before.Get());
    effect.BeginPass(1); // without ending the previous pass
    gfx.device->GetRenderTarget(0, inside.Out());
    EXPECT_EQ(inside.Get(), before.Get());
    effect.EndPass();
    effect.End();
}

TEST_F(EffectPasses, BeginDropsASavedTarget)
{
    file.AddTechnique();
    Load(effect);
    gfx.device->GetRenderTarget(0, gfx.savedRenderTarget.Out());
    effect.Begin();
    EXPECT_FALSE(gfx.savedRenderTarget);
}

TEST_F(EffectPasses, RefusedCallIsAnError)
{
    file.AddTechnique();
    for (const char* call : {"Begin", "BeginPass", "EndPass", "End"}) {
        FailNext(call);
        EXPECT_THAT(RaisedBy([&] { Draw(); }), HasSubstr("D3DERR_INVALIDCALL")) << call;
    }
}
