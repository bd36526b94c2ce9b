#include "gfx/KRE_ShaderEffect.h"
#include "tests/gfx/EngineTest.h"
#include "tests/support/FakeObject.h"
#include "tests/support/ScriptedEffect.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

/// A back buffer of 1023 x 767.
class ScreenBuffers : public EngineTest {
protected:
    ScreenBuffers()
    {
        window.Resize(1023, 767);
        Start();
    }

    static D3DSURFACE_DESC DescriptionOf(IDirect3DTexture9* texture)
    {
        D3DSURFACE_DESC description{};
        texture->GetLevelDesc(0, &description);
        EXPECT_EQ(texture->GetLevelCount(), 1u);
        return description;
    }
    /// Requests the copy and returns how often the screen was copied meanwhile.
    size_t Copies(int requests = 1)
    {
        Calls();
        for (int i = 0; i < requests; ++i)
            EXPECT_NE(gfx.GetScreenCopyTexture(), nullptr);
        return CallsOf("StretchRect").size();
    }
};

/// Records its two calls among the device's.
class NotedRenderToSurface final : public FakeObject<ID3DXRenderToSurface> {
public:
    explicit NotedRenderToSurface(std::shared_ptr<CallRecorder> callRecorder)
        : recorder(std::move(callRecorder))
    {}

    IDirect3DSurface9* surface = nullptr;
    D3DVIEWPORT9 viewport{};

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDesc(D3DXRTS_DESC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BeginScene(IDirect3DSurface9* target,
                                         const D3DVIEWPORT9* part) override
    {
        surface = target;
        viewport = *part;
        return recorder->Note("PostBeginScene", {}).failure.value_or(D3D_OK);
    }
    HRESULT STDMETHODCALLTYPE EndScene(DWORD filter) override
    {
        return recorder->Note("PostEndScene", {std::to_string(filter)}).failure.value_or(D3D_OK);
    }
    HRESULT STDMETHODCALLTYPE OnLostDevice() override { return D3D_OK; }
    HRESULT STDMETHODCALLTYPE OnResetDevice() override { return D3D_OK; }

private:
    std::shared_ptr<CallRecorder> recorder;
};

class PostScene : public ScreenBuffers {
protected:
    PostScene()
    {
        gfx.InitPostRenderEffects();
        noted = new NotedRenderToSurface(recorder);
        gfx.renderToSurface = ComPointer<ID3DXRenderToSurface>::Adopt(noted);
        gfx.drawToPostTexture = 1;
        Calls();
    }

    NotedRenderToSurface* noted; // not owned
};

} // namespace

// ---- Buffers

TEST_F(ScreenBuffers, FullOnesHaveTheBackBuffersSize)
{
    for (int32_t i = 0; i < 2; ++i) {
        const D3DSURFACE_DESC description =
            DescriptionOf(gfx.GetScreenBufferTexture(KRE_Gfx::kFullBuffer, i));
        EXPECT_EQ(description.Width, 1023u);
        EXPECT_EQ(description.Height, 767u);
        EXPECT_EQ(description.Format, D3DFMT_A8R8G8B8);
        EXPECT_EQ(description.Usage, static_cast<DWORD>(D3DUSAGE_RENDERTARGET));
        EXPECT_EQ(description.Pool, D3DPOOL_DEFAULT);
    }
    EXPECT_NE(gfx.screenBuffers[0].Get(), gfx.screenBuffers[1].Get());
}

TEST_F(ScreenBuffers, QuartersAreRoundedDown)
{
    // 1023 / 4 = 255.75 and 767 / 4 = 191.75.
    for (int32_t i = 0; i < 3; ++i) {
        const D3DSURFACE_DESC description =
            DescriptionOf(gfx.GetScreenBufferTexture(KRE_Gfx::kQuarterBuffer, i));
        EXPECT_EQ(description.Width, 255u);
        EXPECT_EQ(description.Height, 191u);
    }
}

TEST_F(ScreenBuffers, AskingTwiceMakesOneTexture)
{
    for (int32_t kind : {KRE_Gfx::kQuarterBuffer, KRE_Gfx::kFullBuffer}) {
        Calls();
        IDirect3DTexture9* const first = gfx.GetScreenBufferTexture(kind, 1);
        EXPECT_EQ(gfx.GetScreenBufferTexture(kind, 1), first);
        EXPECT_THAT(CallsOf("CreateTexture"), SizeIs(1));
    }
}

TEST_F(ScreenBuffers, FailureIsAnError)
{
    FailNext("CreateTexture");
    EXPECT_EQ(RaisedBy([&] { gfx.GetScreenBufferTexture(KRE_Gfx::kFullBuffer, 0); }),
              "GetScreenBufferTexture failed - can not create texture buffer: D3DERR_INVALIDCALL");
    EXPECT_NE(gfx.GetScreenBufferTexture(KRE_Gfx::kFullBuffer, 0), nullptr);
}

TEST_F(ScreenBuffers, QuirkAnyOtherKindLeavesItToTheLastResult)
{
    gfx.lastResult = D3D_OK;
    for (int32_t kind : {0, 3})
        EXPECT_EQ(gfx.GetScreenBufferTexture(kind, 0), nullptr);
    EXPECT_EQ(gfx.GetScreenBufferTexture(KRE_Gfx::kFullBuffer, 2), nullptr);
    EXPECT_EQ(gfx.GetScreenBufferTexture(KRE_Gfx::kQuarterBuffer, 3), nullptr);
    EXPECT_EQ(gfx.GetScreenBufferTexture(KRE_Gfx::kQuarterBuffer, -1), nullptr);
    gfx.lastResult = D3DERR_INVALIDCALL;
    EXPECT_EQ(RaisedBy([&] { gfx.GetScreenBufferTexture(3, 0); }),
              "GetScreenBufferTexture failed - can not create texture buffer: D3DERR_INVALIDCALL");
}

// ---- The copy

TEST_F(ScreenBuffers, CopyHasTheTargetsSizeAndFormat)
{
    Calls();
    const D3DSURFACE_DESC description = DescriptionOf(gfx.GetScreenCopyTexture());
    EXPECT_EQ(description.Width, 1023u);
    EXPECT_EQ(description.Height, 767u);
    EXPECT_EQ(description.Format, D3DFMT_X8R8G8B8);
    EXPECT_EQ(description.Usage, static_cast<DWORD>(D3DUSAGE_RENDERTARGET));
    EXPECT_EQ(description.Pool, D3DPOOL_DEFAULT);
    const std::vector<std::string> copies = CallsOf("StretchRect");
    ASSERT_THAT(copies, SizeIs(1));
    EXPECT_THAT(copies[0], StartsWith("StretchRect " +
                                      recorder->NameOfObject("surface", gfx.renderTarget.Get())));
    EXPECT_THAT(copies[0], HasSubstr("D3DTEXF_NONE"));
}

TEST_F(ScreenBuffers, WithoutTheCacheEveryRequestCopies)
{
    EXPECT_EQ(Copies(3), 3u);
    EXPECT_THAT(CallsOf("CreateTexture"), SizeIs(1));
}

TEST_F(ScreenBuffers, WithTheCacheTheCopyIsMadeOnceAFrameAndSubFrame)
{
    ScriptedEffect file;
    file.AddTechnique();
    EffectScript script;
    script.effects["one.fx"] = &file;
    scratch.Write("one.fx", "text");
    KRE_ShaderEffect effect;
    gfx.LoadEffect(&effect, "one.fx", false, 0, true);
    gfx.effectCacheOn = 1;
    EXPECT_EQ(Copies(5), 1u);
    EXPECT_EQ(Copies(5), 0u);
    ++gfx.frameNumber;
    EXPECT_EQ(Copies(5), 1u);
    ++gfx.subFrameNumber;
    EXPECT_EQ(Copies(5), 0u) << "sub-frames count while a material has an effect";
    gfx.SelectEffect(&effect);
    EXPECT_EQ(Copies(5), 1u);
    EXPECT_EQ(Copies(5), 0u);
    ++gfx.subFrameNumber;
    EXPECT_EQ(Copies(5), 1u);
}

TEST_F(ScreenBuffers, CopyThatCannotBeMadeIsAnError)
{
    FailNext("CreateTexture", D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(RaisedBy([&] { gfx.GetScreenCopyTexture(); }),
              "Could not create screen copy texture: D3DERR_OUTOFVIDEOMEMORY");
    FailNext("StretchRect");
    EXPECT_EQ(RaisedBy([&] { gfx.GetScreenCopyTexture(); }),
              "StretchRect failed: D3DERR_INVALIDCALL");
}

// ---- Reset

TEST_F(ScreenBuffers, ResetReleasesAllAndTheyAreRecreatedInTheNewSize)
{
    gfx.effectCacheOn = 1;
    gfx.GetScreenCopyTexture();
    for (int32_t i = 0; i < 2; ++i)
        gfx.GetScreenBufferTexture(KRE_Gfx::kFullBuffer, i);
    for (int32_t i = 0; i < 3; ++i)
        gfx.GetScreenBufferTexture(KRE_Gfx::kQuarterBuffer, i);
    window.Resize(40, 24);
    gfx.ResetDevice(nullptr);
    EXPECT_FALSE(gfx.screenCopy);
    for (const ComPointer<IDirect3DTexture9>& buffer : gfx.screenBuffers)
        EXPECT_FALSE(buffer);
    for (const ComPointer<IDirect3DTexture9>& buffer : gfx.screenQuarterBuffers)
        EXPECT_FALSE(buffer);
    EXPECT_FALSE(gfx.postEffectsReady) << "they were not there before";
    EXPECT_EQ(DescriptionOf(gfx.GetScreenBufferTexture(KRE_Gfx::kQuarterBuffer, 2)).Width, 10u);
    IDirect3DTexture9* const copy = gfx.GetScreenCopyTexture(); // still in the same frame
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(DescriptionOf(copy).Width, 40u);
}

TEST_F(ScreenBuffers, ResetRecreatesPostEffectsThatWereReady)
{
    gfx.InitPostRenderEffects();
    window.Resize(40, 24);
    gfx.ResetDevice(nullptr);
    EXPECT_TRUE(gfx.postEffectsReady);
    ASSERT_TRUE(gfx.postTexture);
    EXPECT_EQ(DescriptionOf(gfx.postTexture.Get()).Width, 40u);
    EXPECT_TRUE(gfx.postSurface);
    EXPECT_TRUE(gfx.renderToSurface);
}

// ---- The scene in a texture

TEST_F(ScreenBuffers, PostEffectsAreMadeOnce)
{
    EXPECT_EQ(gfx.InitPostRenderEffects(), 1);
    EXPECT_TRUE(gfx.postEffectsReady);
    const D3DSURFACE_DESC description = DescriptionOf(gfx.postTexture.Get());
    EXPECT_EQ(description.Width, 1023u);
    EXPECT_EQ(description.Height, 767u);
    EXPECT_EQ(description.Format, D3DFMT_A8R8G8B8);
    D3DXRTS_DESC surface{};
    gfx.renderToSurface->GetDesc(&surface);
    EXPECT_EQ(surface.Width, 1023u);
    EXPECT_EQ(surface.Height, 767u);
    EXPECT_EQ(surface.Format, D3DFMT_A8R8G8B8);
    EXPECT_FALSE(surface.DepthStencil);
    Calls();
    EXPECT_EQ(gfx.InitPostRenderEffects(), 1);
    EXPECT_THAT(Calls(), IsEmpty());
    gfx.FreePostRenderEffects();
    EXPECT_FALSE(gfx.postEffectsReady);
    EXPECT_FALSE(gfx.postTexture);
    EXPECT_FALSE(gfx.postSurface);
    EXPECT_FALSE(gfx.renderToSurface);
}

TEST_F(ScreenBuffers, SecondTryIsWithoutRenderTargetUsage)
{
    FailNext("CreateTexture");
    EXPECT_EQ(gfx.InitPostRenderEffects(), 1);
    EXPECT_EQ(DescriptionOf(gfx.postTexture.Get()).Usage, 0u);
    gfx.FreePostRenderEffects();
    FailNext("CreateTexture");
    FailNext("CreateTexture", D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(RaisedBy([&] { gfx.InitPostRenderEffects(); }),
              "InitPostRenderEffects failed - can not create texture buffer: "
              "D3DERR_OUTOFVIDEOMEMORY");
    EXPECT_FALSE(gfx.postEffectsReady);
}

TEST_F(ScreenBuffers, SurfaceThatCannotBeMadeIsAnError)
{
    FailNextRenderToSurface(E_OUTOFMEMORY);
    EXPECT_EQ(RaisedBy([&] { gfx.InitPostRenderEffects(); }),
              "InitPostRenderEffects failed - error creating D3DXRenderToSurface: E_OUTOFMEMORY");
    EXPECT_FALSE(gfx.postEffectsReady);
    EXPECT_FALSE(gfx.renderToSurface);
    EXPECT_EQ(gfx.InitPostRenderEffects(), 1) << "the next try begins anew";
    EXPECT_TRUE(gfx.renderToSurface);
}

TEST_F(PostScene, GoesThroughTheSurface)
{
    gfx.BeginScene();
    EXPECT_EQ(gfx.inScene, 1);
    EXPECT_EQ(noted->surface, gfx.postSurface.Get());
    EXPECT_EQ(noted->viewport.Width, 1023u);
    EXPECT_EQ(noted->viewport.Height, 767u);
    gfx.EndScene();
    EXPECT_EQ(gfx.inScene, 0);
    EXPECT_THAT(Calls(), ElementsAre("PostBeginScene",
                                     "SetDepthStencilSurface " +
                                         recorder->NameOfObject("surface", gfx.depthSurface.Get()),
                                     "PostEndScene 1"));
}

TEST_F(PostScene, FailuresAreErrors)
{
    FailNext("PostBeginScene");
    EXPECT_EQ(RaisedBy([&] { gfx.BeginScene(); }),
              "BeginScene (post effect) failed: D3DERR_INVALIDCALL");
    FailNext("SetDepthStencilSurface");
    EXPECT_EQ(RaisedBy([&] { gfx.BeginScene(); }),
              "SetDepthStencilSurface failed: D3DERR_INVALIDCALL");
    EXPECT_EQ(gfx.inScene, 0);
    gfx.BeginScene();
    FailNext("PostEndScene");
    EXPECT_EQ(RaisedBy([&] { gfx.EndScene(); }),
              "EndScene (post effect) failed: D3DERR_INVALIDCALL");
    EXPECT_EQ(gfx.inScene, 1);
}

TEST_F(PostScene, WithoutTheSurfaceItIsAnError)
{
    gfx.FreePostRenderEffects();
    EXPECT_EQ(RaisedBy([&] { gfx.BeginScene(); }),
              "BeginScene (post effect) failed: D3DERR_INVALIDCALL");
    EXPECT_EQ(RaisedBy([&] { gfx.EndScene(); }),
              "EndScene (post effect) failed: D3DERR_INVALIDCALL");
}
