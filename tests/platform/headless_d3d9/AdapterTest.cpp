#include "platform/headless/d3d9/Adapter.h"

#include "tests/platform/d3d9/DeviceTestFixture.h"

using namespace headless;

TEST(Adapter, IsTheHeadlessReferenceRasterizer)
{
    EXPECT_STREQ(AdapterIdentifier().Description, "Headless reference rasterizer");
}

TEST(Adapter, HasSixModesInTwoFormats)
{
    static const UINT sizes[6][2] = {{640, 480},  {800, 600},   {1024, 768},
                                     {1280, 720}, {1280, 1024}, {1920, 1080}};
    for (const D3DFORMAT format : {D3DFMT_X8R8G8B8, D3DFMT_R5G6B5}) {
        ASSERT_EQ(DisplayModeCount(format), 6u);
        for (UINT i = 0; i < 6; ++i) {
            const D3DDISPLAYMODE mode = DisplayMode(format, i);
            EXPECT_EQ(mode.Width, sizes[i][0]);
            EXPECT_EQ(mode.Height, sizes[i][1]);
            EXPECT_EQ(mode.RefreshRate, 60u);
            EXPECT_EQ(mode.Format, format);
        }
    }
    EXPECT_EQ(DisplayModeCount(D3DFMT_A8R8G8B8), 0u);
}

TEST(Adapter, SupportsWBuffersIndexedBlendingAndShaders)
{
    const D3DCAPS9 caps = AdapterCaps(D3DDEVTYPE_HAL);
    EXPECT_TRUE(caps.RasterCaps & D3DPRASTERCAPS_WBUFFER);
    EXPECT_EQ(caps.StencilCaps, 0u) << "drawing refuses stencil tests";
    EXPECT_EQ(caps.MaxVertexBlendMatrixIndex, 255u);
    EXPECT_EQ(caps.MaxVertexBlendMatrices, 4u);
    EXPECT_EQ(caps.MaxPointSize, 256.0f);
    EXPECT_EQ(caps.VertexShaderVersion, 0xFFFE0300u);
    EXPECT_EQ(caps.PixelShaderVersion, 0xFFFF0300u);
    EXPECT_EQ(caps.MaxVertexShaderConst, 256u);
    EXPECT_EQ(caps.MaxVShaderInstructionsExecuted, 65535u);
    EXPECT_EQ(caps.MaxPShaderInstructionsExecuted, 65535u);
}

TEST(Adapter, CanMakeEveryDepthFormatOfTheEngine)
{
    for (const D3DFORMAT format : {D3DFMT_D16, D3DFMT_D24S8, D3DFMT_D24X8, D3DFMT_D32})
        EXPECT_TRUE(IsDepthFormat(format)) << format;
    EXPECT_FALSE(IsDepthFormat(D3DFMT_R5G6B5));
}

TEST(Adapter, AcceptsOnlyTheCurrentVersion)
{
    EXPECT_EQ(Direct3DCreate9(31), nullptr);
}

TEST(Adapter, ANewInterfaceIsItsCallersAlone)
{
    IDirect3D9* const d3d = Direct3DCreate9(D3D_SDK_VERSION);
    ASSERT_NE(d3d, nullptr);
    EXPECT_EQ(d3d->Release(), 0u);
}

TEST(Adapter, HasOneKindOfMultiSampling)
{
    Com<IDirect3D9> d3d;
    *d3d.Out() = Direct3DCreate9(D3D_SDK_VERSION);
    DWORD levels = 0;
    EXPECT_EQ(d3d->CheckDeviceMultiSampleType(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, TRUE,
                                              D3DMULTISAMPLE_NONE, &levels),
              D3D_OK);
    EXPECT_EQ(levels, 1u);
    EXPECT_EQ(d3d->CheckDeviceMultiSampleType(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, TRUE,
                                              D3DMULTISAMPLE_4_SAMPLES, &levels),
              D3DERR_NOTAVAILABLE);
}

TEST(Adapter, FormatsAnswerForSrgbAndForVertexTextures)
{
    Com<IDirect3D9> d3d;
    *d3d.Out() = Direct3DCreate9(D3D_SDK_VERSION);
    static const struct {
        DWORD usage;
        D3DRESOURCETYPE type;
        D3DFORMAT format;
        bool isPossible;
    } cases[] = {
        {D3DUSAGE_QUERY_SRGBREAD, D3DRTYPE_TEXTURE, D3DFMT_DXT1, true},
        {D3DUSAGE_QUERY_SRGBREAD, D3DRTYPE_CUBETEXTURE, D3DFMT_A8R8G8B8, true},
        {D3DUSAGE_QUERY_SRGBREAD, D3DRTYPE_TEXTURE, D3DFMT_V8U8, false}, // no colour
        {D3DUSAGE_RENDERTARGET | D3DUSAGE_QUERY_SRGBWRITE, D3DRTYPE_TEXTURE, D3DFMT_R5G6B5, true},
        {D3DUSAGE_QUERY_SRGBWRITE, D3DRTYPE_TEXTURE, D3DFMT_L8, false}, // no target
        {D3DUSAGE_QUERY_SRGBWRITE, D3DRTYPE_CUBETEXTURE, D3DFMT_A8R8G8B8, false},
        {D3DUSAGE_RENDERTARGET, D3DRTYPE_CUBETEXTURE, D3DFMT_A8R8G8B8, false},
        {D3DUSAGE_QUERY_VERTEXTEXTURE, D3DRTYPE_TEXTURE, D3DFMT_A8R8G8B8, true},
        {D3DUSAGE_QUERY_FILTER, D3DRTYPE_VOLUMETEXTURE, D3DFMT_DXT5, true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(
            d3d->CheckDeviceFormat(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, c.usage, c.type, c.format),
            c.isPossible ? D3D_OK : D3DERR_NOTAVAILABLE)
            << c.usage << ' ' << c.type << ' ' << c.format;
}

TEST(Adapter, HalAndReferenceDevicesCanBeMade)
{
    Com<IDirect3D9> d3d;
    *d3d.Out() = Direct3DCreate9(D3D_SDK_VERSION);
    const TestWindow window(100, 80);
    for (const D3DDEVTYPE type : {D3DDEVTYPE_HAL, D3DDEVTYPE_REF}) {
        D3DPRESENT_PARAMETERS parameters = WindowedParameters(window.Get());
        parameters.AutoDepthStencilFormat = D3DFMT_D32;
        Com<IDirect3DDevice9> device;
        EXPECT_EQ(d3d->CreateDevice(0, type, window.Get(), D3DCREATE_HARDWARE_VERTEXPROCESSING,
                                    &parameters, device.Out()),
                  D3D_OK);
        D3DCAPS9 caps = {};
        ASSERT_EQ(device->GetDeviceCaps(&caps), D3D_OK);
        EXPECT_EQ(caps.DeviceType, type);
    }
    D3DCAPS9 caps = {};
    EXPECT_EQ(d3d->GetDeviceCaps(0, D3DDEVTYPE_SW, &caps), D3DERR_INVALIDCALL);
}

TEST(Adapter, ADeviceHasExactlyOneKindOfVertexProcessing)
{
    Com<IDirect3D9> d3d;
    *d3d.Out() = Direct3DCreate9(D3D_SDK_VERSION);
    const TestWindow window(100, 80);
    static const struct {
        DWORD flags;
        HRESULT result;
    } cases[] = {
        {0, D3DERR_INVALIDCALL},
        {D3DCREATE_SOFTWARE_VERTEXPROCESSING | D3DCREATE_HARDWARE_VERTEXPROCESSING,
         D3DERR_INVALIDCALL},
        {D3DCREATE_SOFTWARE_VERTEXPROCESSING | D3DCREATE_PUREDEVICE, D3DERR_INVALIDCALL},
        {D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_PUREDEVICE, D3D_OK},
        {D3DCREATE_MIXED_VERTEXPROCESSING, D3D_OK},
    };
    for (const auto& c : cases) {
        D3DPRESENT_PARAMETERS parameters = WindowedParameters(window.Get());
        Com<IDirect3DDevice9> device;
        EXPECT_EQ(
            d3d->CreateDevice(0, D3DDEVTYPE_HAL, window.Get(), c.flags, &parameters, device.Out()),
            c.result)
            << c.flags;
        EXPECT_EQ(static_cast<bool>(device), c.result == D3D_OK);
    }
}
