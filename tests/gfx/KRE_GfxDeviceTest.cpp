#include "tests/gfx/EngineTest.h"
#include "tests/support/FakeDevice.h"

#include <bit>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using KRE_GfxDevice = EngineTest;

const char* gMissingLibrary = nullptr;

/// The error from creating an engine on a system without `missing`, which also offers no interface.
std::string ErrorWithout(const char* missing)
{
    gMissingLibrary = missing;
    const KRE_GfxRuntime runtime = {
        [](const char* name) { return std::string(name) != gMissingLibrary; },
        [](UINT) -> IDirect3D9* { return nullptr; },
    };
    return RaisedBy([&] { const KRE_Gfx engine(runtime); });
}

IDirect3D9* gGivenDirect3D = nullptr; // owned by the engine that gets it

HRESULT WINAPI RefuseEffectPool(ID3DXEffectPool**)
{
    return E_OUTOFMEMORY;
}

/// Modes of a display with several rates.
FakeAdapter AdapterWithRates()
{
    FakeAdapter adapter;
    adapter.modes = {{640, 480, 60, D3DFMT_X8R8G8B8},
                     {640, 480, 85, D3DFMT_X8R8G8B8},
                     {640, 480, 75, D3DFMT_X8R8G8B8},
                     {800, 600, 60, D3DFMT_X8R8G8B8},
                     {640, 480, 100, D3DFMT_R5G6B5}};
    return adapter;
}

D3DMATRIX Identity()
{
    D3DMATRIX matrix{};
    for (int i = 0; i < 4; ++i)
        matrix.m[i][i] = 1.0f;
    return matrix;
}

} // namespace

TEST(KRE_GfxProbes, EachMissingPieceHasItsMessage)
{
    const ScratchDirectory scratch;
    EXPECT_EQ(ErrorWithout("d3d9.dll"), "At least DirectX 9.0 required!");
    EXPECT_EQ(ErrorWithout("d3dx9_30.dll"),
              "Your DirectX 9.0 runtime is too old (d3dx9_30.dll not found).\n"
              "Please download and install latest DirectX");
    EXPECT_EQ(ErrorWithout("none"), "Direct3DCreate9 failed!");
}

TEST(KRE_GfxProbes, SystemTellsWhatIsInstalled)
{
    EXPECT_TRUE(KRE_GfxRuntime::System().hasLibrary("d3d9.dll"));
    EXPECT_TRUE(KRE_GfxRuntime::System().hasLibrary("d3dx9_30.dll"));
    EXPECT_FALSE(KRE_GfxRuntime::System().hasLibrary("d3dx9_99.dll"));
}

TEST(KRE_GfxProbes, InterfaceIsAskedForByItsVersion)
{
    static UINT asked;
    asked = 0;
    const ScratchDirectory scratch;
    const KRE_GfxRuntime runtime = {[](const char*) { return true; },
                                    [](UINT version) -> IDirect3D9* {
                                        asked = version;
                                        return nullptr;
                                    }};
    RaisedBy([&] { const KRE_Gfx engine(runtime); });
    EXPECT_EQ(asked, 32u);
}

TEST_F(KRE_GfxDevice, NewEngineHasDrawnAndChangedNothing)
{
    EXPECT_EQ(gfx.viewportChanged, 0);
    EXPECT_EQ(gfx.matricesChanged, 0);
    EXPECT_EQ(gfx.frameNumber, 0);
    EXPECT_EQ(gfx.subFrameNumber, 0);
    EXPECT_EQ(gfx.drawnMeshes, 0);
    EXPECT_EQ(gfx.isDrawingScene, 0);
    EXPECT_EQ(gfx.drawDisabled, 0);
}

TEST_F(KRE_GfxDevice, ConstructorDefaults)
{
    EXPECT_EQ(gfx.fillMode, D3DFILL_SOLID);
    EXPECT_EQ(gfx.cullMode, -1);
    EXPECT_EQ(gfx.cache.cullMode, 999);
    EXPECT_EQ(gfx.cache.renderState[D3DRS_LIGHTING], -1);
    EXPECT_EQ(gfx.ambientColor, 0xFFFFFFFFu);
    EXPECT_EQ(gfx.blendValue, 255);
    EXPECT_EQ(gfx.aspectFactor, 1.0f);
    EXPECT_EQ(gfx.materialStages, 2);
    EXPECT_EQ(gfx.quadBatchVertices, 32);
    EXPECT_EQ(gfx.pixelsForCompression, 65536);
    EXPECT_EQ(gfx.textureCompression, 0);
    EXPECT_EQ(gfx.hardwareSkinningLimit, 18);
    EXPECT_EQ(gfx.skinningEffectLimit, 26);
    EXPECT_EQ(gfx.deviceReady, 0);
    EXPECT_EQ(gfx.adapter, 0u);

    const D3DMATERIAL9& material = gfx.defaultMaterial;
    for (const D3DCOLORVALUE* color : {&material.Diffuse, &material.Ambient}) {
        EXPECT_EQ(color->r, 0.9f);
        EXPECT_EQ(color->g, 0.9f);
        EXPECT_EQ(color->b, 0.9f);
        EXPECT_EQ(color->a, 1.0f);
    }
    for (const D3DCOLORVALUE* color : {&material.Specular, &material.Emissive}) {
        EXPECT_EQ(color->r, 0.0f);
        EXPECT_EQ(color->g, 0.0f);
        EXPECT_EQ(color->b, 0.0f);
        EXPECT_EQ(color->a, 1.0f);
    }
    EXPECT_EQ(material.Power, 0.0f);

    const D3DMATRIX identity = Identity();
    for (const D3DMATRIX* matrix :
         {static_cast<D3DMATRIX*>(&gfx.view), static_cast<D3DMATRIX*>(&gfx.projection),
          static_cast<D3DMATRIX*>(&gfx.world[0]), static_cast<D3DMATRIX*>(&gfx.world[255])})
        EXPECT_EQ(memcmp(matrix, &identity, sizeof identity), 0);

    const KRE_PointRecord& points = gfx.pointRecord;
    EXPECT_EQ(points.scaleA, 1.0f);
    EXPECT_EQ(points.scaleB, 0.0f);
    EXPECT_EQ(points.scaleC, 0.0f);
    EXPECT_EQ(points.sizeMax, 64.0f);
    EXPECT_EQ(points.sizeMin, 1.0f);
    EXPECT_EQ(points.size, 4.0f);
    EXPECT_EQ(points.spriteEnable, 0);
    EXPECT_EQ(points.scaleEnable, 0);
}

TEST_F(KRE_GfxDevice, AdapterBeyondTheLastIsAnError)
{
    d3d->OverrideAdapters({FakeAdapter(), FakeAdapter()});
    EXPECT_EQ(gfx.GetAdapterCount(), 2);
    gfx.SelectAdapter(1);
    EXPECT_EQ(gfx.adapter, 1u);
    EXPECT_EQ(RaisedBy([&] { gfx.SelectAdapter(2); }), "Wrong adapter selected: 2");
    EXPECT_EQ(RaisedBy([&] { gfx.SelectAdapter(-1); }), "Wrong adapter selected: -1");
    EXPECT_EQ(gfx.adapter, 1u);
}

TEST_F(KRE_GfxDevice, RefreshRateOfZeroPicksTheHighestOfThatSize)
{
    d3d->OverrideAdapters({AdapterWithRates()});
    D3DDISPLAYMODE mode = {640, 480, 0, D3DFMT_A8R8G8B8};
    EXPECT_TRUE(gfx.FindDisplayMode(mode));
    EXPECT_EQ(mode.RefreshRate, 85u);
    EXPECT_EQ(mode.Format, D3DFMT_A8R8G8B8);
    EXPECT_EQ(Calls().front(), "GetAdapterModeCount 0 D3DFMT_X8R8G8B8");
}

TEST_F(KRE_GfxDevice, WantedRefreshRateMustMatchExactly)
{
    d3d->OverrideAdapters({AdapterWithRates()});
    D3DDISPLAYMODE mode = {640, 480, 75, D3DFMT_X8R8G8B8};
    EXPECT_TRUE(gfx.FindDisplayMode(mode));
    mode.RefreshRate = 70;
    EXPECT_FALSE(gfx.FindDisplayMode(mode));
    EXPECT_EQ(mode.RefreshRate, 70u);
}

TEST_F(KRE_GfxDevice, SizeAndFormatMustMatch)
{
    d3d->OverrideAdapters({AdapterWithRates()});
    D3DDISPLAYMODE mode = {640, 481, 0, D3DFMT_X8R8G8B8};
    EXPECT_FALSE(gfx.FindDisplayMode(mode));
    mode = {800, 600, 0, D3DFMT_R5G6B5};
    EXPECT_FALSE(gfx.FindDisplayMode(mode));
    mode = {640, 480, 0, D3DFMT_R5G6B5};
    EXPECT_TRUE(gfx.FindDisplayMode(mode));
    EXPECT_EQ(mode.RefreshRate, 100u);
}

TEST_F(KRE_GfxDevice, FailedEnumerationIsAnError)
{
    FailNext("EnumAdapterModes", D3DERR_NOTAVAILABLE);
    D3DDISPLAYMODE mode = {640, 480, 0, D3DFMT_X8R8G8B8};
    EXPECT_EQ(RaisedBy([&] { gfx.FindDisplayMode(mode); }),
              "GetAdapterDisplayMode failed: D3DERR_NOTAVAILABLE");
}

TEST_F(KRE_GfxDevice, WindowedDeviceIsMadeAndSetUpInOrder)
{
    EXPECT_EQ(gfx.InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, 0), 1);
    const std::vector<std::string> calls = Calls();
    // cot(0.7854 / 2) = 2.4142073 is the projection's m22, and m11 is m22 * 48 / 64 = 1.8106555;
    // with near 1 and far 10000, m33 is 10000 / 9999 and m43 is -10000 / 9999.
    const std::vector<std::string> expected = {
        "GetAdapterDisplayMode 0",
        "GetDeviceCaps 0 D3DDEVTYPE_HAL",
        "CreateDevice 0 D3DDEVTYPE_HAL window D3DCREATE_HARDWARE_VERTEXPROCESSING "
        "BackBufferWidth=0 BackBufferHeight=0 BackBufferFormat=D3DFMT_X8R8G8B8 BackBufferCount=1 "
        "MultiSampleType=D3DMULTISAMPLE_NONE MultiSampleQuality=0 SwapEffect=D3DSWAPEFFECT_FLIP "
        "hDeviceWindow=window Windowed=1 EnableAutoDepthStencil=1 "
        "AutoDepthStencilFormat=D3DFMT_D16 Flags=0 FullScreen_RefreshRateInHz=0 "
        "PresentationInterval=D3DPRESENT_INTERVAL_DEFAULT -> device#1",
        "GetDeviceCaps",
        "SetRenderState D3DRS_FILLMODE D3DFILL_SOLID",
        "SetRenderState D3DRS_ZENABLE D3DZB_TRUE",
        "SetViewport 0 0 64 48 0 1",
        "SetTransform D3DTS_PROJECTION [1.81066 0 0 0 0 2.41421 0 0 0 0 1.0001 1 0 0 -1.0001 0]",
        "GetRenderTarget 0 -> surface#1",
        "GetDepthStencilSurface -> surface#2",
        "GetBackBuffer 0 0 D3DBACKBUFFER_TYPE_MONO -> surface#1",
        "SetRenderState D3DRS_LIGHTING 1",
        "SetRenderState D3DRS_SPECULARENABLE 0",
        "SetRenderState D3DRS_ALPHABLENDENABLE 0",
        "SetSamplerState 0 D3DSAMP_MIPFILTER D3DTEXF_NONE",
        "SetSamplerState 0 D3DSAMP_MIPMAPLODBIAS 0",
        "SetRenderState D3DRS_DITHERENABLE 1",
        "SetSamplerState 0 D3DSAMP_ADDRESSU D3DTADDRESS_WRAP",
        "SetSamplerState 0 D3DSAMP_ADDRESSV D3DTADDRESS_WRAP",
        "SetTextureStageState 0 D3DTSS_COLOROP D3DTOP_MODULATE",
        "SetTextureStageState 0 D3DTSS_COLORARG1 D3DTA_TEXTURE",
        "SetTextureStageState 0 D3DTSS_COLORARG2 D3DTA_DIFFUSE",
        // The lists: 1 * 16, 2 * 16, 4 * 20, 32 * 32, 32 * 28 and 4 * 28 bytes; text's 1536 * 32.
        "CreateVertexBuffer 16 0 D3DFVF_XYZ|D3DFVF_DIFFUSE D3DPOOL_SYSTEMMEM -> vertexbuffer#1",
        "CreateVertexBuffer 32 0 D3DFVF_XYZ|D3DFVF_DIFFUSE D3DPOOL_SYSTEMMEM -> vertexbuffer#2",
        "CreateVertexBuffer 80 0 D3DFVF_XYZ|D3DFVF_TEX1 D3DPOOL_SYSTEMMEM -> vertexbuffer#3",
        "CreateVertexBuffer 1024 0 D3DFVF_XYZRHW|D3DFVF_DIFFUSE|D3DFVF_SPECULAR|D3DFVF_TEX1 "
        "D3DPOOL_SYSTEMMEM -> vertexbuffer#4",
        "CreateVertexBuffer 896 0 D3DFVF_XYZ|D3DFVF_DIFFUSE|D3DFVF_SPECULAR|D3DFVF_TEX1 "
        "D3DPOOL_SYSTEMMEM -> vertexbuffer#5",
        "CreateVertexBuffer 112 0 D3DFVF_XYZ|D3DFVF_DIFFUSE|D3DFVF_SPECULAR|D3DFVF_TEX1 "
        "D3DPOOL_MANAGED -> vertexbuffer#6",
        "CreateVertexBuffer 49152 0 D3DFVF_XYZRHW|D3DFVF_DIFFUSE|D3DFVF_SPECULAR|D3DFVF_TEX1 "
        "D3DPOOL_SYSTEMMEM -> vertexbuffer#7",
        "SetRenderState D3DRS_NORMALIZENORMALS 1",
        "SetSoftwareVertexProcessing 0",
        "SetSamplerState 0 D3DSAMP_MAGFILTER D3DTEXF_LINEAR",
        "SetSamplerState 0 D3DSAMP_MINFILTER D3DTEXF_LINEAR",
        "SetSamplerState 1 D3DSAMP_MAGFILTER D3DTEXF_LINEAR",
        "SetSamplerState 1 D3DSAMP_MINFILTER D3DTEXF_LINEAR",
        "SetRenderState D3DRS_CULLMODE D3DCULL_CCW",
        "SetRenderState D3DRS_FOGCOLOR 0x00000000",
        "SetRenderState D3DRS_FOGTABLEMODE D3DFOG_NONE",
        "SetRenderState D3DRS_FOGDENSITY 1",
        "SetRenderState D3DRS_FOGENABLE 0",
    };
    ASSERT_EQ(calls.size(), expected.size()) << recorder->Joined();
    for (size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(calls[i], expected[i]) << i;

    EXPECT_EQ(gfx.deviceReady, 1);
    EXPECT_EQ(gfx.displayMode.Width, 1024u);
    EXPECT_EQ(gfx.displayFormat, D3DFMT_X8R8G8B8);
    EXPECT_EQ(gfx.backBufferFormat, D3DFMT_A8R8G8B8);
    EXPECT_EQ(gfx.stageSource[0], 1);
    EXPECT_GT(gfx.startTime, 0.0);
    EXPECT_EQ(gfx.startTime, gfx.lastFrameTime);
    EXPECT_TRUE(gfx.effectPool);
    EXPECT_EQ(gfx.backBuffer.width, 64);
    EXPECT_EQ(gfx.backBuffer.height, 48);
    EXPECT_EQ(gfx.backBuffer.manager, &gfx.surfaceManager);
}

TEST_F(KRE_GfxDevice, DefaultFieldOfViewIsThisFloat)
{
    EXPECT_EQ(std::bit_cast<uint32_t>(0.7854f), 0x3F490FF9u);
}

TEST_F(KRE_GfxDevice, FullScreenTakesTheGivenMode)
{
    const D3DDISPLAYMODE mode = {640, 480, 60, D3DFMT_R5G6B5};
    EXPECT_EQ(gfx.InitDevice(window.Handle(), 0, &mode, 24, 3, 0, 0), 1);
    EXPECT_THAT(CallsOf("GetAdapterDisplayMode"), IsEmpty());
    EXPECT_THAT(
        CallsOf("CreateDevice"),
        ElementsAre("CreateDevice 0 D3DDEVTYPE_HAL window D3DCREATE_SOFTWARE_VERTEXPROCESSING "
                    "BackBufferWidth=640 BackBufferHeight=480 BackBufferFormat=D3DFMT_R5G6B5 "
                    "BackBufferCount=1 MultiSampleType=D3DMULTISAMPLE_NONE MultiSampleQuality=0 "
                    "SwapEffect=D3DSWAPEFFECT_FLIP hDeviceWindow=null Windowed=0 "
                    "EnableAutoDepthStencil=1 AutoDepthStencilFormat=D3DFMT_D24S8 Flags=0 "
                    "FullScreen_RefreshRateInHz=60 "
                    "PresentationInterval=D3DPRESENT_INTERVAL_THREE -> device#1"));
    EXPECT_THAT(CallsOf("SetViewport"), ElementsAre("SetViewport 0 0 640 480 0 1"));
    EXPECT_EQ(gfx.displayFormat, D3DFMT_R5G6B5);
    EXPECT_EQ(gfx.backBufferFormat, D3DFMT_R5G6B5);
}

TEST_F(KRE_GfxDevice, FullScreenWithoutAModeIsAnError)
{
    EXPECT_EQ(RaisedBy([&] { gfx.InitDevice(window.Handle(), 0, nullptr, 16, 0, 0, 0); }),
              "No displaymode specified!");
}

TEST_F(KRE_GfxDevice, DisplayFormatWithAlphaIsCheckedAsOneWithout)
{
    const D3DDISPLAYMODE mode = {640, 480, 60, D3DFMT_A8R8G8B8};
    gfx.InitDevice(window.Handle(), 0, &mode, 16, 0, 0, 0);
    EXPECT_EQ(gfx.displayFormat, D3DFMT_X8R8G8B8);
    EXPECT_EQ(gfx.backBufferFormat, D3DFMT_A8R8G8B8);
    EXPECT_EQ(gfx.presentParams.BackBufferFormat, D3DFMT_A8R8G8B8);
}

TEST_F(KRE_GfxDevice, EveryFailedStepOfStartUpIsAnErrorWithItsName)
{
    static const struct {
        const char* call;
        const char* expected;
    } cases[] = {
        {"GetAdapterDisplayMode", "GetAdapterDisplayMode failed: D3DERR_INVALIDCALL"},
        {"CreateDevice", "CreateDevice failed: D3DERR_INVALIDCALL\n"},
        {"GetRenderTarget", "Can not retrieve render target: D3DERR_INVALIDCALL"},
        {"GetDepthStencilSurface", "Can not retrieve zbuffer: D3DERR_INVALIDCALL"},
        {"GetBackBuffer", "GetBackBuffer failed: D3DERR_INVALIDCALL"},
        {"CreateVertexBuffer", "CreateVertexBuffer in CreateVertexList failed: D3DERR_INVALIDCALL"},
    };
    for (const auto& c : cases) {
        FailNext(c.call);
        EXPECT_EQ(RaisedBy([&] { gfx.InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, 0); }),
                  c.expected);
        EXPECT_EQ(recorder->FailuresLeft(), 0u) << c.call;
    }
}

TEST_F(KRE_GfxDevice, MissingEffectPoolIsAnError)
{
    gGivenDirect3D = RecordingDirect3D::Standalone().release();
    const KRE_GfxRuntime runtime = {[](const char*) { return true; },
                                    [](UINT) -> IDirect3D9* { return gGivenDirect3D; },
                                    RefuseEffectPool};
    KRE_Gfx other(runtime);
    EXPECT_EQ(RaisedBy([&] { other.InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, 0); }),
              "Can not create default effect pool: E_OUTOFMEMORY");
    EXPECT_EQ(other.deviceReady, 0);
}

TEST_F(KRE_GfxDevice, VertexProcessingFollowsOptionAndHardware)
{
    static const struct {
        const char* what;
        bool hasHardware;
        int32_t vertexProcessing;
        const char* flags;
        int32_t expected;
    } cases[] = {
        {"not wanted", true, 0, "D3DCREATE_SOFTWARE_VERTEXPROCESSING", 0},
        {"mixed", true, 1, "D3DCREATE_MIXED_VERTEXPROCESSING", 1},
        {"hardware", true, 2, "D3DCREATE_HARDWARE_VERTEXPROCESSING", 1},
        {"above the last", true, 3, "D3DCREATE_HARDWARE_VERTEXPROCESSING", 1},
        {"below the first", true, -1, "D3DCREATE_SOFTWARE_VERTEXPROCESSING", 0},
        {"not there", false, 2, "D3DCREATE_SOFTWARE_VERTEXPROCESSING", 0},
    };
    for (const auto& c : cases) {
        D3DCAPS9 caps = FakeCaps();
        caps.DevCaps = c.hasHardware ? D3DDEVCAPS_HWTRANSFORMANDLIGHT : 0;
        d3d->OverrideCaps(caps);
        recorder->ClearLines();
        gfx.InitDevice(window.Handle(), 1, nullptr, 16, 0, c.vertexProcessing, 0);
        EXPECT_THAT(CallsOf("CreateDevice").at(0), HasSubstr(std::string(" ") + c.flags + " "))
            << c.what;
        EXPECT_EQ(gfx.hardwareVertexProcessing, c.expected) << c.what;
        EXPECT_EQ(CallsOf("SetSoftwareVertexProcessing").size(), c.expected ? 1u : 0u) << c.what;
    }
}

TEST_F(KRE_GfxDevice, DeviceChoicePicksTypeAndAdapter)
{
    FakeAdapter tool;
    tool.description = "NVIDIA NVPerfHUD";
    FakeAdapter nearly;
    nearly.description = "NVIDIA NVPerfHUD 2";
    static const struct {
        const char* what;
        bool hasTool;
        int32_t deviceChoice;
        const char* expected;
    } cases[] = {
        {"normal", true, 0, "CreateDevice 0 D3DDEVTYPE_HAL "},
        {"reference", true, 1, "CreateDevice 0 D3DDEVTYPE_REF "},
        {"no performance adapter", false, 2, "CreateDevice 0 D3DDEVTYPE_HAL "},
        {"performance adapter", true, 2, "CreateDevice 2 D3DDEVTYPE_REF "},
        {"any other", true, 3, "CreateDevice 0 D3DDEVTYPE_HAL "},
    };
    for (const auto& c : cases) {
        d3d->OverrideAdapters({FakeAdapter(), nearly, c.hasTool ? tool : nearly});
        recorder->ClearLines();
        gfx.adapter = 0;
        gfx.InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, c.deviceChoice);
        EXPECT_THAT(CallsOf("CreateDevice").at(0), testing::StartsWith(c.expected)) << c.what;
    }
}

TEST_F(KRE_GfxDevice, WithoutDepthBufferZIsOffAndNoSurfaceIsHeld)
{
    gfx.InitDevice(window.Handle(), 1, nullptr, 0, 0, 2, 0);
    EXPECT_THAT(CallsOf("GetDepthStencilSurface"), IsEmpty());
    EXPECT_THAT(CallsOf("SetRenderState"),
                testing::Contains("SetRenderState D3DRS_ZENABLE D3DZB_FALSE"));
    EXPECT_FALSE(gfx.depthSurface);
}

TEST_F(KRE_GfxDevice, BuiltInListsHoldTheirVertices)
{
    Start();
    EXPECT_EQ(gfx.pointList.primitiveType, D3DPT_POINTLIST);
    EXPECT_EQ(gfx.pointList.primitiveCount, 1);
    EXPECT_EQ(gfx.posTexList.primitiveType, D3DPT_TRIANGLEFAN);
    EXPECT_EQ(gfx.posTexList.primitiveCount, 2);

    static constexpr KRE_VertexPosTex kScreen[4] = {
        {-1, 1, 0, 0, 0}, {-1, -1, 0, 0, 1}, {1, -1, 0, 1, 1}, {1, 1, 0, 1, 0}};
    EXPECT_EQ(memcmp(gfx.posTexList.Lock(0, 4, 0), kScreen, sizeof kScreen), 0);
    gfx.posTexList.Unlock();

    static constexpr KRE_LVertex kQuad[4] = {
        {-1, -1, 0, 0xFFFFFFFF, 0xFF000000, 0, 0},
        {-1, 1, 0, 0xFFFFFFFF, 0xFF000000, 0, 1},
        {1, 1, 0, 0xFFFFFFFF, 0xFF000000, 1, 1},
        {1, -1, 0, 0xFFFFFFFF, 0xFF000000, 1, 0},
    };
    EXPECT_EQ(memcmp(gfx.lQuadList.Lock(0, 4, 0), kQuad, sizeof kQuad), 0);
    gfx.lQuadList.Unlock();

    ASSERT_EQ(gfx.tlList.vertexCount, 32);
    for (const KRE_TLVertex *vertex = gfx.tlList.LockVertices(0, 32, 0), *end = vertex + 32;
         vertex != end; ++vertex) {
        EXPECT_EQ(vertex->z, 1.0f);
        EXPECT_EQ(vertex->rhw, 1.0f);
        EXPECT_EQ(vertex->specular, 0xFF000000u);
        EXPECT_EQ(vertex->tu, 0.0f);
        EXPECT_EQ(vertex->tv, 0.0f);
    }
    gfx.tlList.Unlock();
    ASSERT_EQ(gfx.lList.vertexCount, 32);
    for (const KRE_LVertex *vertex = gfx.lList.LockVertices(0, 32, 0), *end = vertex + 32;
         vertex != end; ++vertex) {
        EXPECT_EQ(vertex->specular, 0xFF000000u);
        EXPECT_EQ(vertex->tu, 0.0f);
        EXPECT_EQ(vertex->tv, 0.0f);
    }
    gfx.lList.Unlock();
}

TEST_F(KRE_GfxDevice, FreeDeviceReleasesEverything)
{
    Start();
    auto direct3D = gfx.d3d;
    auto device = gfx.device;
    gfx.FreeDevice();
    EXPECT_FALSE(gfx.device);
    EXPECT_FALSE(gfx.d3d);
    EXPECT_FALSE(gfx.effectPool);
    EXPECT_FALSE(gfx.renderTarget);
    EXPECT_FALSE(gfx.depthSurface);
    EXPECT_FALSE(gfx.backBuffer.IsValid());
    EXPECT_FALSE(gfx.tlList.buffer);
    EXPECT_EQ(gfx.deviceReady, 0);
    EXPECT_EQ(device.Detach()->Release(), 0u) << "the test's own was the last reference";
    EXPECT_EQ(direct3D.Detach()->Release(), 0u);
    gfx.FreeDevice();
}

TEST_F(KRE_GfxDevice, FreeDeviceReleasesTheBuiltInLists)
{
    Start();
    const struct {
        const char* what;
        const KRE_VertexListBase& list;
    } lists[] = {
        {"points", gfx.pointList}, {"lines", gfx.lineList},  {"screen", gfx.posTexList},
        {"quads", gfx.tlList},     {"lit quads", gfx.lList}, {"lit quad", gfx.lQuadList},
    };
    for (const auto& c : lists)
        EXPECT_TRUE(c.list.buffer) << c.what;
    gfx.FreeDevice();
    for (const auto& c : lists)
        EXPECT_FALSE(c.list.buffer) << c.what;
}
