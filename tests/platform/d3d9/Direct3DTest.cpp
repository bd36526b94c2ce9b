#include "tests/platform/d3d9/DeviceTestFixture.h"

namespace {

/// The Direct3D interface alone, without a device.
class Direct3DTest : public testing::Test {
protected:
    void SetUp() override
    {
        *d3d.Out() = Direct3DCreate9(D3D_SDK_VERSION);
        ASSERT_TRUE(d3d);
    }

    HRESULT CheckTexture(DWORD usage, D3DFORMAT format)
    {
        return d3d->CheckDeviceFormat(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, usage, D3DRTYPE_TEXTURE,
                                      format);
    }

    HRESULT Create(D3DPRESENT_PARAMETERS parameters)
    {
        Com<IDirect3DDevice9> device;
        return d3d->CreateDevice(0, D3DDEVTYPE_HAL, window.Get(),
                                 D3DCREATE_SOFTWARE_VERTEXPROCESSING, &parameters, device.Out());
    }

    Com<IDirect3D9> d3d;
    TestWindow window{320, 240};
};

} // namespace

TEST_F(Direct3DTest, CountsReferences)
{
    const ULONG others = OtherReferences(d3d.Get());
    EXPECT_EQ(d3d->AddRef(), others + 2);
    EXPECT_EQ(d3d->Release(), others + 1);
    EXPECT_EQ(d3d.Release(), others);
}

TEST_F(Direct3DTest, HasAnAdapterWithADescription)
{
    ASSERT_GE(d3d->GetAdapterCount(), 1u);
    D3DADAPTER_IDENTIFIER9 identifier = {};
    ASSERT_EQ(d3d->GetAdapterIdentifier(0, 0, &identifier), D3D_OK);
    EXPECT_STRNE(identifier.Description, "");
    EXPECT_EQ(d3d->GetAdapterIdentifier(d3d->GetAdapterCount(), 0, &identifier),
              D3DERR_INVALIDCALL);
}

TEST_F(Direct3DTest, EnumeratesTheModesItCounts)
{
    for (const D3DFORMAT format : {D3DFMT_X8R8G8B8, D3DFMT_R5G6B5}) {
        const UINT count = d3d->GetAdapterModeCount(0, format);
        EXPECT_GE(count, 3u);
        D3DDISPLAYMODE mode = {};
        for (UINT i = 0; i < count; ++i) {
            ASSERT_EQ(d3d->EnumAdapterModes(0, format, i, &mode), D3D_OK);
            EXPECT_EQ(mode.Format, format);
            EXPECT_GT(mode.Width, 0u);
        }
        EXPECT_EQ(d3d->EnumAdapterModes(0, format, count, &mode), D3DERR_INVALIDCALL);
    }
}

TEST_F(Direct3DTest, HasNoModesWithAlpha)
{
    EXPECT_EQ(d3d->GetAdapterModeCount(0, D3DFMT_A8R8G8B8), 0u);
}

TEST_F(Direct3DTest, ReportsTheDesktopMode)
{
    D3DDISPLAYMODE mode = {};
    ASSERT_EQ(d3d->GetAdapterDisplayMode(0, &mode), D3D_OK);
    EXPECT_EQ(mode.Format, D3DFMT_X8R8G8B8);
    EXPECT_EQ(d3d->GetAdapterDisplayMode(d3d->GetAdapterCount(), &mode), D3DERR_INVALIDCALL);
}

TEST_F(Direct3DTest, HasTheCapsThatTheEngineReads)
{
    D3DCAPS9 caps = {};
    ASSERT_EQ(d3d->GetDeviceCaps(0, D3DDEVTYPE_HAL, &caps), D3D_OK);
    EXPECT_EQ(caps.DeviceType, D3DDEVTYPE_HAL);
    EXPECT_TRUE(caps.DevCaps & D3DDEVCAPS_HWTRANSFORMANDLIGHT);
    EXPECT_TRUE(caps.TextureCaps & D3DPTEXTURECAPS_MIPMAP);
    EXPECT_FALSE(caps.TextureCaps & D3DPTEXTURECAPS_POW2);
    EXPECT_TRUE(caps.RasterCaps & D3DPRASTERCAPS_MIPMAPLODBIAS);
    EXPECT_TRUE(caps.PrimitiveMiscCaps & D3DPMISCCAPS_PERSTAGECONSTANT);
    EXPECT_TRUE(caps.Caps2 & D3DCAPS2_FULLSCREENGAMMA);
    EXPECT_EQ(caps.MaxTextureBlendStages, 8u);
    EXPECT_EQ(caps.MaxSimultaneousTextures, 8u);
    EXPECT_GE(caps.MaxActiveLights, 8u);
    EXPECT_EQ(caps.MaxVertexBlendMatrices, 4u);
    EXPECT_GT(caps.MaxPointSize, 64.0f);
    EXPECT_EQ(d3d->GetDeviceCaps(d3d->GetAdapterCount(), D3DDEVTYPE_HAL, &caps),
              D3DERR_INVALIDCALL);
}

TEST_F(Direct3DTest, ChecksTextureFormats)
{
    for (const D3DFORMAT format :
         {D3DFMT_X8R8G8B8, D3DFMT_A8R8G8B8, D3DFMT_R5G6B5, D3DFMT_A1R5G5B5, D3DFMT_A4R4G4B4,
          D3DFMT_L8, D3DFMT_A8L8, D3DFMT_V8U8, D3DFMT_DXT1, D3DFMT_DXT3, D3DFMT_DXT5})
        EXPECT_EQ(CheckTexture(0, format), D3D_OK) << format;
    EXPECT_EQ(CheckTexture(0, D3DFMT_R8G8B8), D3DERR_NOTAVAILABLE);
    EXPECT_EQ(CheckTexture(0, D3DFMT_UNKNOWN), D3DERR_NOTAVAILABLE);
}

TEST_F(Direct3DTest, ChecksUsages)
{
    EXPECT_EQ(CheckTexture(D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8), D3D_OK);
    EXPECT_EQ(CheckTexture(D3DUSAGE_RENDERTARGET, D3DFMT_DXT1), D3DERR_NOTAVAILABLE);
    EXPECT_EQ(CheckTexture(D3DUSAGE_DEPTHSTENCIL, D3DFMT_D24S8), D3D_OK);
    EXPECT_EQ(CheckTexture(D3DUSAGE_DEPTHSTENCIL, D3DFMT_A8R8G8B8), D3DERR_NOTAVAILABLE);
}

TEST_F(Direct3DTest, MatchesDepthFormatsWithTargets)
{
    const auto match = [this](D3DFORMAT depth) {
        return d3d->CheckDepthStencilMatch(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, D3DFMT_X8R8G8B8,
                                           depth);
    };
    for (const D3DFORMAT depth : {D3DFMT_D16, D3DFMT_D24S8, D3DFMT_D24X8})
        EXPECT_EQ(match(depth), D3D_OK) << depth;
    EXPECT_EQ(match(D3DFMT_A8R8G8B8), D3DERR_NOTAVAILABLE);
}

TEST_F(Direct3DTest, ChecksDeviceTypes)
{
    EXPECT_EQ(d3d->CheckDeviceType(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, D3DFMT_X8R8G8B8, TRUE),
              D3D_OK);
    EXPECT_EQ(d3d->CheckDeviceType(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, D3DFMT_DXT1, TRUE),
              D3DERR_NOTAVAILABLE);
    EXPECT_EQ(d3d->CheckDeviceMultiSampleType(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, TRUE,
                                              D3DMULTISAMPLE_NONE, nullptr),
              D3D_OK);
}

TEST_F(Direct3DTest, RefusesInvalidDevices)
{
    const D3DPRESENT_PARAMETERS good = WindowedParameters(window.Get());
    EXPECT_EQ(Create(good), D3D_OK);

    D3DPRESENT_PARAMETERS changed = good;
    changed.PresentationInterval = 77;
    EXPECT_EQ(Create(changed), D3DERR_INVALIDCALL) << "interval";
    changed = good;
    changed.SwapEffect = static_cast<D3DSWAPEFFECT>(0);
    EXPECT_EQ(Create(changed), D3DERR_INVALIDCALL) << "swap effect";
    changed = good;
    changed.AutoDepthStencilFormat = D3DFMT_X8R8G8B8;
    EXPECT_TRUE(FAILED(Create(changed))) << "a depth buffer of colours";
    changed = good;
    changed.Windowed = FALSE;
    changed.BackBufferWidth = 641;
    EXPECT_TRUE(FAILED(Create(changed))) << "a full-screen mode that does not exist";
}

TEST_F(Direct3DTest, MakesEveryDepthBufferOfTheEngine)
{
    D3DPRESENT_PARAMETERS parameters = WindowedParameters(window.Get());
    for (const D3DFORMAT depth : {D3DFMT_D16, D3DFMT_D24S8, D3DFMT_D24X8}) {
        parameters.AutoDepthStencilFormat = depth;
        EXPECT_EQ(Create(parameters), D3D_OK) << depth;
    }
    parameters.EnableAutoDepthStencil = FALSE;
    EXPECT_EQ(Create(parameters), D3D_OK) << "none";
}

TEST_F(Direct3DTest, GivesAZeroSizeTheClientArea)
{
    RECT client = {};
    ASSERT_TRUE(GetClientRect(window.Get(), &client));
    D3DPRESENT_PARAMETERS parameters = WindowedParameters(window.Get());
    parameters.BackBufferWidth = parameters.BackBufferHeight = 0;
    Com<IDirect3DDevice9> device;
    ASSERT_EQ(d3d->CreateDevice(0, D3DDEVTYPE_HAL, window.Get(),
                                D3DCREATE_SOFTWARE_VERTEXPROCESSING, &parameters, device.Out()),
              D3D_OK);
    EXPECT_EQ(parameters.BackBufferWidth, static_cast<UINT>(client.right));
    EXPECT_EQ(parameters.BackBufferHeight, static_cast<UINT>(client.bottom));
    D3DVIEWPORT9 viewport = {};
    ASSERT_EQ(device->GetViewport(&viewport), D3D_OK);
    EXPECT_EQ(viewport.Width, static_cast<UINT>(client.right));
    EXPECT_EQ(viewport.Height, static_cast<UINT>(client.bottom));
}
