#include "tests/gfx/EngineTest.h"

#include "gfx/ShaderEffectData.h"
#include "tests/support/FakeEffect.h"

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class KRE_GfxResetTest : public EngineTest {
protected:
    KRE_GfxResetTest() { Start(); }
};

/// Counts the messages that a window received.
int gMessagesSeen = 0;
/// The characters that it received from keys.
std::string gCharactersSeen;

LRESULT CALLBACK CountMessages(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_USER)
        ++gMessagesSeen;
    if (message == WM_CHAR)
        gCharactersSeen += static_cast<char>(wParam);
    return DefWindowProcA(window, message, wParam, lParam);
}

/// A window with the procedure above. The headless host does not support subclassing, so the window
/// has its own class. Its queue is empty at first.
class CountingWindow {
public:
    CountingWindow()
    {
        WNDCLASSEXA windowClass = {};
        windowClass.cbSize = sizeof windowClass;
        windowClass.lpfnWndProc = CountMessages;
        windowClass.hInstance = instance;
        windowClass.lpszClassName = kClass;
        RegisterClassExA(&windowClass);
        window = CreateWindowExA(0, kClass, "", WS_POPUP, 0, 0, 8, 8, nullptr, nullptr, instance,
                                 nullptr);
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            continue;
        gMessagesSeen = 0;
        gCharactersSeen.clear();
    }
    ~CountingWindow()
    {
        DestroyWindow(window);
        UnregisterClassA(kClass, instance);
    }
    CountingWindow(const CountingWindow&) = delete;
    CountingWindow& operator=(const CountingWindow&) = delete;

    HWND Handle() const { return window; }

private:
    static constexpr const char* kClass = "QSA2QSB_MESSAGE_TEST";
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    HWND window = nullptr;
};

/// A device texture registered with the engine, as a loader would.
int32_t AddTexture(KRE_Gfx& gfx, D3DPOOL pool, const char* name)
{
    IDirect3DTexture9* texture = nullptr;
    gfx.device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, pool, &texture, nullptr);
    return gfx.textureManager.Add(texture, name);
}

int32_t AddSurface(KRE_Gfx& gfx, D3DPOOL pool, const char* name)
{
    IDirect3DSurface9* surface = nullptr;
    gfx.device->CreateOffscreenPlainSurface(4, 4, D3DFMT_X8R8G8B8, pool, &surface, nullptr);
    return gfx.surfaceManager.Add(surface, name);
}

} // namespace

TEST_F(KRE_GfxResetTest, GoesThroughItsStepsInOrder)
{
    gfx.ResetDevice(nullptr);
    const std::vector<std::string> calls = Calls();
    const std::vector<std::string> expected = {
        "TestCooperativeLevel",
        "Reset BackBufferWidth=0 BackBufferHeight=0 BackBufferFormat=D3DFMT_X8R8G8B8 "
        "BackBufferCount=1 MultiSampleType=D3DMULTISAMPLE_NONE MultiSampleQuality=0 "
        "SwapEffect=D3DSWAPEFFECT_FLIP hDeviceWindow=window Windowed=1 EnableAutoDepthStencil=1 "
        "AutoDepthStencilFormat=D3DFMT_D16 Flags=0 FullScreen_RefreshRateInHz=0 "
        "PresentationInterval=D3DPRESENT_INTERVAL_DEFAULT",
        "GetRenderTarget 0 -> surface#3",
        "GetDepthStencilSurface -> surface#4",
        "GetBackBuffer 0 0 D3DBACKBUFFER_TYPE_MONO -> surface#3",
        "SetViewport 0 0 64 48 0 1",
        "SetTransform D3DTS_PROJECTION [1.81066 0 0 0 0 2.41421 0 0 0 0 1.0001 1 0 0 -1.0001 0]",
        "SetTransform D3DTS_VIEW identity",
        "SetRenderState D3DRS_LIGHTING 1",
        "SetRenderState D3DRS_SPECULARENABLE 0",
        "SetRenderState D3DRS_ALPHABLENDENABLE 0",
        "SetRenderState D3DRS_CULLMODE D3DCULL_CCW",
        "SetRenderState D3DRS_FOGCOLOR 0x00000000",
        "SetRenderState D3DRS_FOGTABLEMODE D3DFOG_NONE",
        "SetRenderState D3DRS_FOGDENSITY 1",
        "SetRenderState D3DRS_FOGENABLE 0",
        "SetRenderState D3DRS_CLIPPING 1",
        "SetRenderState D3DRS_ALPHATESTENABLE 0",
        "SetRenderState D3DRS_PATCHEDGESTYLE D3DPATCHEDGE_DISCRETE",
        "SetSamplerState 0 D3DSAMP_MIPFILTER D3DTEXF_NONE",
        "SetSamplerState 0 D3DSAMP_MIPMAPLODBIAS 0",
        "SetRenderState D3DRS_FILLMODE D3DFILL_SOLID",
        "SetRenderState D3DRS_ZWRITEENABLE 1",
        "SetSamplerState 0 D3DSAMP_ADDRESSU D3DTADDRESS_WRAP",
        "SetSamplerState 0 D3DSAMP_ADDRESSV D3DTADDRESS_WRAP",
        "SetGammaRamp 0 D3DSGR_NO_CALIBRATION red[0 257 32896 65535] green[0 257 32896 65535] "
        "blue[0 257 32896 65535]",
        "SetRenderState D3DRS_NORMALIZENORMALS 1",
        "SetSoftwareVertexProcessing 0",
        "SetSamplerState 0 D3DSAMP_MAGFILTER D3DTEXF_LINEAR",
        "SetSamplerState 0 D3DSAMP_MINFILTER D3DTEXF_LINEAR",
        "SetSamplerState 1 D3DSAMP_MAGFILTER D3DTEXF_LINEAR",
        "SetSamplerState 1 D3DSAMP_MINFILTER D3DTEXF_LINEAR",
    };
    ASSERT_EQ(calls.size(), expected.size()) << testing::PrintToString(calls);
    for (size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(calls[i], expected[i]) << i;
}

TEST_F(KRE_GfxResetTest, ChangedStatesAreRestored)
{
    const D3DCOLOR unlit = 0xFF445566;
    gfx.SetViewport(1, 2, 33, 34, 0.0f, 0.5f);
    gfx.SetProjection(2.0f, 4.0f, 1.0f, 1.0f);
    gfx.SetLighting(0, &unlit);
    gfx.SetSpecular(1);
    gfx.SetBlendMode(7, 100, 0);
    gfx.SetCullMode(1);
    gfx.SetFog({0xFF112233, D3DFOG_LINEAR, 1, 5.0f, 6.0f, 0.0f});
    gfx.SetFogEnable(1);
    gfx.SetClipping(0);
    gfx.SetAlphaTest(128, 9);
    gfx.SetPatchEdgeStyle(1);
    gfx.SetMipmapMode(2, 0.5f, 0);
    gfx.SetFillMode(D3DFILL_WIREFRAME, nullptr);
    gfx.SetZWrite(0);
    gfx.SetTextureAddressU(D3DTADDRESS_MIRROR, 0);
    gfx.SetTextureAddressV(D3DTADDRESS_CLAMP, 0);
    Calls();
    gfx.ResetDevice(nullptr);
    // The field of view and the aspect fall back: cot(0.3927) * 32 / 32; near 2 and far 4 stay, which
    // makes m33 4 / 2 and m43 -2 * 4 / 2.
    EXPECT_THAT(Calls(),
                testing::IsSupersetOf(
                    {"SetViewport 1 2 32 32 0 0.5",
                     "SetTransform D3DTS_PROJECTION [2.41421 0 0 0 0 2.41421 0 0 0 0 2 1 0 0 -4 0]",
                     "SetRenderState D3DRS_LIGHTING 0",
                     "SetRenderState D3DRS_SPECULARENABLE 1",
                     "SetRenderState D3DRS_ALPHABLENDENABLE 1",
                     "SetRenderState D3DRS_TEXTUREFACTOR 0x64FFFFFF",
                     "SetRenderState D3DRS_SRCBLEND D3DBLEND_SRCALPHA",
                     "SetRenderState D3DRS_DESTBLEND D3DBLEND_INVSRCALPHA",
                     "SetRenderState D3DRS_CULLMODE D3DCULL_CW",
                     "SetRenderState D3DRS_FOGCOLOR 0xFF112233",
                     "SetRenderState D3DRS_FOGVERTEXMODE D3DFOG_LINEAR",
                     "SetRenderState D3DRS_RANGEFOGENABLE 1",
                     "SetRenderState D3DRS_FOGSTART 5",
                     "SetRenderState D3DRS_FOGEND 6",
                     "SetRenderState D3DRS_FOGENABLE 1",
                     "SetRenderState D3DRS_CLIPPING 0",
                     "SetRenderState D3DRS_ALPHATESTENABLE 1",
                     "SetRenderState D3DRS_ALPHAFUNC D3DCMP_GREATER",
                     "SetRenderState D3DRS_ALPHAREF 9",
                     "SetRenderState D3DRS_PATCHEDGESTYLE D3DPATCHEDGE_CONTINUOUS",
                     "SetSamplerState 0 D3DSAMP_MIPFILTER D3DTEXF_LINEAR",
                     "SetSamplerState 0 D3DSAMP_MIPMAPLODBIAS 0.5",
                     "SetRenderState D3DRS_FILLMODE D3DFILL_WIREFRAME",
                     "SetRenderState D3DRS_ZWRITEENABLE 0",
                     "SetSamplerState 0 D3DSAMP_ADDRESSU D3DTADDRESS_MIRROR",
                     "SetSamplerState 0 D3DSAMP_ADDRESSV D3DTADDRESS_CLAMP"}));
    EXPECT_EQ(gfx.unlitColor, unlit);
}

TEST_F(KRE_GfxResetTest, QuirkZEnableIsNotRestored)
{
    gfx.SetZEnable(0);
    Calls();
    gfx.ResetDevice(nullptr);
    EXPECT_THAT(Calls(), testing::Each(testing::Not(testing::HasSubstr("D3DRS_ZENABLE"))));
    EXPECT_EQ(gfx.zEnable, 0);
}

TEST_F(KRE_GfxResetTest, GivenModeIsUsed)
{
    const D3DDISPLAYMODE start = {640, 480, 60, D3DFMT_X8R8G8B8};
    const D3DDISPLAYMODE other = {1024, 768, 60, D3DFMT_R5G6B5};
    Start(&start);
    gfx.ResetDevice(&other);
    EXPECT_THAT(CallsOf("Reset").at(0),
                testing::HasSubstr("BackBufferWidth=1024 BackBufferHeight=768 "
                                   "BackBufferFormat=D3DFMT_R5G6B5"));
    Calls();
    gfx.ResetDevice(nullptr);
    EXPECT_THAT(CallsOf("Reset").at(0), testing::HasSubstr("BackBufferWidth=1024"))
        << "null keeps the mode";
}

TEST_F(KRE_GfxResetTest, FailureIsAnError)
{
    FailNext("Reset");
    EXPECT_EQ(RaisedBy([&] { gfx.ResetDevice(nullptr); }),
              "Device Reset failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxResetTest, WaitsForALostDeviceWhileHandlingMessages)
{
    const CountingWindow counting;
    for (int i = 0; i < 3; ++i)
        PostMessageA(counting.Handle(), WM_USER, 0, 0);
    for (int i = 0; i < 5; ++i)
        FailNext("TestCooperativeLevel", D3DERR_DEVICELOST);
    FailNext("TestCooperativeLevel", D3DERR_DEVICENOTRESET);
    gfx.ResetDevice(nullptr);
    EXPECT_THAT(CallsOf("TestCooperativeLevel"), SizeIs(6));
    EXPECT_THAT(CallsOf("Reset"), SizeIs(1));
    EXPECT_EQ(gMessagesSeen, 3);
}

TEST_F(KRE_GfxResetTest, KeysAreTranslatedWhileTheDeviceIsLost)
{
    const CountingWindow counting;
    // Pressed once; its scan code is 1, and its character 27 in every layout.
    PostMessageA(counting.Handle(), WM_KEYDOWN, VK_ESCAPE, 0x00010001);
    for (int i = 0; i < 8; ++i)
        FailNext("TestCooperativeLevel", D3DERR_DEVICELOST);
    gfx.ResetDevice(nullptr);
    EXPECT_EQ(gCharactersSeen, "\x1B");
}

TEST_F(KRE_GfxResetTest, DefaultPoolObjectsAreReleasedAndTheirEntriesStay)
{
    const int32_t lostTexture = AddTexture(gfx, D3DPOOL_DEFAULT, "lost.bmp");
    const int32_t keptTexture = AddTexture(gfx, D3DPOOL_MANAGED, "kept.bmp");
    const int32_t lostSurface = AddSurface(gfx, D3DPOOL_DEFAULT, "lost surface");
    const int32_t keptSurface = AddSurface(gfx, D3DPOOL_SYSTEMMEM, "kept surface");
    auto* texture = static_cast<IDirect3DTexture9*>(gfx.textureManager.GetPointer(lostTexture));
    auto* surface = static_cast<IDirect3DSurface9*>(gfx.surfaceManager.GetPointer(lostSurface));
    texture->AddRef();
    surface->AddRef();

    gfx.ResetDevice(nullptr);
    EXPECT_EQ(texture->Release(), 0u) << "the test's own was the last reference";
    EXPECT_EQ(surface->Release(), 0u);
    EXPECT_EQ(gfx.textureManager.GetCount(), 2);
    EXPECT_STREQ(gfx.textureManager.GetEntry(0)->name, "lost.bmp");
    EXPECT_EQ(gfx.textureManager.GetEntry(0)->useCount, 1);
    EXPECT_EQ(gfx.textureManager.GetPointer(lostTexture), nullptr);
    EXPECT_EQ(gfx.surfaceManager.GetPointer(lostSurface), nullptr);

    gfx.ResetDevice(nullptr); // nothing is released twice
    auto* kept = static_cast<IDirect3DTexture9*>(gfx.textureManager.GetPointer(keptTexture));
    auto* keptToo = static_cast<IDirect3DSurface9*>(gfx.surfaceManager.GetPointer(keptSurface));
    EXPECT_EQ(kept->Release(), 0u);
    EXPECT_EQ(keptToo->Release(), 0u);
}

TEST_F(KRE_GfxResetTest, EachEffectIsNotifiedBeforeAndAfter)
{
    FakeEffect effects[2];
    {
        ShaderEffectData data[2];
        for (int i = 0; i < 2; ++i) {
            data[i].effect = ComPointer<ID3DXEffect>::Share(&effects[i]);
            gfx.effectManager.Add(&data[i], "some.fx");
        }
        FailNext("Reset");
        EXPECT_EQ(RaisedBy([&] { gfx.ResetDevice(nullptr); }),
                  "Device Reset failed: D3DERR_INVALIDCALL");
        for (const FakeEffect& effect : effects) {
            EXPECT_EQ(effect.lostCalls, 1);
            EXPECT_EQ(effect.resetCalls, 0) << "the device is not there yet";
        }
        gfx.ResetDevice(nullptr);
    }
    for (const FakeEffect& effect : effects) {
        EXPECT_EQ(effect.lostCalls, 2);
        EXPECT_EQ(effect.resetCalls, 1);
        EXPECT_EQ(effect.references, 1u);
    }
}

TEST_F(KRE_GfxResetTest, EntriesWithoutAnEffectAreSkipped)
{
    ShaderEffectData empty;
    gfx.effectManager.Add(&empty, "not compiled.fx");
    gfx.effectManager.Add(nullptr, "gone.fx");
    gfx.ResetDevice(nullptr);
    EXPECT_EQ(gfx.effectManager.GetCount(), 2);
}

TEST_F(KRE_GfxResetTest, VertexListsSurvive)
{
    IDirect3DVertexBuffer9* const before = gfx.tlList.buffer.Get();
    gfx.ResetDevice(nullptr);
    EXPECT_EQ(gfx.tlList.buffer.Get(), before);
    EXPECT_THAT(CallsOf("CreateVertexBuffer"), IsEmpty());
    EXPECT_EQ(gfx.tlList.LockVertices(31, 1, 0)->rhw, 1.0f);
    gfx.tlList.Unlock();
}

TEST_F(KRE_GfxResetTest, FirstBindAfterItReachesTheDevice)
{
    gfx.boundTexture[0] = nullptr;
    gfx.BeginScene();
    gfx.ResetDevice(nullptr);
    EXPECT_EQ(gfx.boundTexture[0], KRE_Gfx::UnknownTexture());
    EXPECT_EQ(gfx.inScene, 0);
}
