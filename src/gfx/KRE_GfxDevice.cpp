#include "gfx/KRE_Gfx.h"

#include "base/Clock.h"

#include <cstring>
#include <utility>

namespace {

D3DFORMAT WithoutAlpha(D3DFORMAT format)
{
    return format == D3DFMT_A8R8G8B8 ? D3DFMT_X8R8G8B8 : format;
}

D3DFORMAT WithAlpha(D3DFORMAT format)
{
    return format == D3DFMT_X8R8G8B8 ? D3DFMT_A8R8G8B8 : format;
}

void TakeDisplayMode(KRE_Gfx& gfx, const D3DDISPLAYMODE* mode)
{
    if (gfx.windowed) {
        gfx.Check(gfx.d3d->GetAdapterDisplayMode(gfx.adapter, &gfx.displayMode),
                  "GetAdapterDisplayMode failed: %s");
        return;
    }
    if (!mode)
        gfx.Error("No displaymode specified!");
    gfx.displayMode = *mode;
}

int32_t FindPerfHudAdapter(KRE_Gfx& gfx)
{
    for (int32_t i = 0; i < gfx.GetAdapterCount(); ++i) {
        D3DADAPTER_IDENTIFIER9 identifier{};
        gfx.lastResult = gfx.d3d->GetAdapterIdentifier(static_cast<UINT>(i), 0, &identifier);
        if (std::strncmp(identifier.Description, "NVIDIA NVPerfHUD",
                         sizeof identifier.Description) == 0)
            return i;
    }
    return -1;
}

void SelectDeviceType(KRE_Gfx& gfx, int32_t deviceChoice)
{
    gfx.deviceType = deviceChoice == 1 ? D3DDEVTYPE_REF : D3DDEVTYPE_HAL;
    if (deviceChoice != 2)
        return;
    const int32_t toolAdapter = FindPerfHudAdapter(gfx);
    if (toolAdapter < 0)
        return;
    gfx.adapter = static_cast<UINT>(toolAdapter);
    gfx.deviceType = D3DDEVTYPE_REF;
}

DWORD ChooseBehaviourFlags(KRE_Gfx& gfx, int32_t vertexProcessing)
{
    gfx.caps = {};
    gfx.lastResult = gfx.d3d->GetDeviceCaps(gfx.adapter, gfx.deviceType, &gfx.caps);
    gfx.hardwareVertexProcessing =
        vertexProcessing > 0 && (gfx.caps.DevCaps & D3DDEVCAPS_HWTRANSFORMANDLIGHT) != 0;
    if (!gfx.hardwareVertexProcessing)
        return D3DCREATE_SOFTWARE_VERTEXPROCESSING;
    return vertexProcessing == 1 ? D3DCREATE_MIXED_VERTEXPROCESSING
                                 : D3DCREATE_HARDWARE_VERTEXPROCESSING;
}

} // namespace

int32_t KRE_Gfx::GetAdapterCount()
{
    return static_cast<int32_t>(d3d->GetAdapterCount());
}

void KRE_Gfx::SelectAdapter(int32_t index)
{
    if (index < 0 || index >= GetAdapterCount())
        Error("Wrong adapter selected: %i", index);
    adapter = static_cast<UINT>(index);
}

bool KRE_Gfx::FindDisplayMode(D3DDISPLAYMODE& mode)
{
    const D3DFORMAT format = WithoutAlpha(mode.Format);
    const UINT count = d3d->GetAdapterModeCount(adapter, format);
    bool isFound = false;
    UINT bestRate = 0;
    for (UINT i = 0; i < count; ++i) {
        D3DDISPLAYMODE candidate{};
        Check(d3d->EnumAdapterModes(adapter, format, i, &candidate),
              "GetAdapterDisplayMode failed: %s");
        if (candidate.Width != mode.Width || candidate.Height != mode.Height ||
            candidate.Format != format)
            continue;
        if (mode.RefreshRate != 0 && candidate.RefreshRate == mode.RefreshRate)
            return true;
        isFound = true;
        bestRate = candidate.RefreshRate > bestRate ? candidate.RefreshRate : bestRate;
    }
    if (!isFound || mode.RefreshRate != 0)
        return false;
    mode.RefreshRate = bestRate;
    return true;
}

int32_t KRE_Gfx::InitDevice(HWND windowHandle, int32_t isWindowed, const D3DDISPLAYMODE* mode,
                            int32_t depthBits, int32_t vsyncMode, int32_t vertexProcessing,
                            int32_t deviceChoice)
{
    FreeDeviceObjects();
    window = windowHandle;
    windowed = isWindowed;
    zBits = depthBits;
    vsync = vsyncMode;
    TakeDisplayMode(*this, mode);
    BuildPresentParameters();
    backBufferFormat = WithAlpha(displayMode.Format);
    displayFormat = WithoutAlpha(displayMode.Format);
    SelectDeviceType(*this, deviceChoice);
    const DWORD flags = ChooseBehaviourFlags(*this, vertexProcessing);
    Check(d3d->CreateDevice(adapter, deviceType, window, flags, &presentParams, device.Out()),
          "CreateDevice failed: %s\n");
    lastResult = device->GetDeviceCaps(&caps);
    SetDeviceDefaults();
    Check(runtime.createEffectPool(effectPool.Out()), "Can not create default effect pool: %s");
    deviceReady = 1;
    startTime = GetTimeSeconds();
    lastFrameTime = startTime;
    BuildVertexLists();
    printf.BuildList(this);
    FixedFunctionDefaults();
    SetCullMode(-1);
    SetFog(fog);
    SetFogEnable(0);
    return 1;
}

void KRE_Gfx::AcquireTargetSurfaces()
{
    Check(device->GetRenderTarget(0, renderTarget.Out()), "Can not retrieve render target: %s");
    if (presentParams.EnableAutoDepthStencil)
        Check(device->GetDepthStencilSurface(depthSurface.Out()), "Can not retrieve zbuffer: %s");
    ComPointer<IDirect3DSurface9> surface;
    Check(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, surface.Out()),
          "GetBackBuffer failed: %s");
    backBuffer.manager = &surfaceManager;
    backBuffer.SetSurface(std::move(surface));
    GetClientRect(window, &clientRect);
}

void KRE_Gfx::ReleaseTargetSurfaces()
{
    FreeScreenBuffers();
    renderTarget.Free();
    depthSurface.Free();
}

void KRE_Gfx::FreeDevice()
{
    sceneLoader.reset(); // may hold pictures of a load that an error aborted
    FreeDeviceObjects();
    d3d.Free();
}

/// Keeps the interface, from which another device can be created.
void KRE_Gfx::FreeDeviceObjects()
{
    effectPool.Free();
    FreeTextures();
    printf.Free();
    tlList.Free();
    lList.Free();
    lQuadList.Free();
    posTexList.Free();
    pointList.Free();
    lineList.Free();
    backBuffer.Free();
    FreePostRenderEffects();
    ReleaseTargetSurfaces();
    device.Free();
    deviceReady = 0;
}
