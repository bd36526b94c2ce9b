#include "tests/support/FakeDevice.h"

#include "tests/support/InterfaceIds.h"

D3DCAPS9 FakeCaps()
{
    D3DCAPS9 caps = {};
    caps.DeviceType = D3DDEVTYPE_HAL;
    caps.Caps2 = D3DCAPS2_FULLSCREENGAMMA | D3DCAPS2_DYNAMICTEXTURES;
    caps.PresentationIntervals = D3DPRESENT_INTERVAL_ONE | D3DPRESENT_INTERVAL_IMMEDIATE;
    caps.DevCaps = D3DDEVCAPS_HWTRANSFORMANDLIGHT | D3DDEVCAPS_HWRASTERIZATION;
    caps.PrimitiveMiscCaps = D3DPMISCCAPS_PERSTAGECONSTANT | D3DPMISCCAPS_BLENDOP;
    caps.RasterCaps = D3DPRASTERCAPS_ZTEST | D3DPRASTERCAPS_MIPMAPLODBIAS;
    caps.TextureCaps = D3DPTEXTURECAPS_ALPHA | D3DPTEXTURECAPS_MIPMAP;
    caps.MaxTextureWidth = 4096;
    caps.MaxTextureHeight = 4096;
    caps.MaxTextureRepeat = 8192;
    caps.MaxAnisotropy = 16;
    caps.TextureOpCaps = 0x03FFFFFF; // every operation
    caps.MaxTextureBlendStages = 8;
    caps.MaxSimultaneousTextures = 8;
    caps.MaxActiveLights = 8;
    caps.MaxVertexBlendMatrices = 4;
    caps.MaxPointSize = 64.0f;
    caps.MaxPrimitiveCount = 0xFFFFF;
    caps.MaxVertexIndex = 0xFFFFF;
    caps.MaxStreams = 8;
    caps.MaxStreamStride = 255;
    caps.NumSimultaneousRTs = 1;
    return caps;
}

ComHandle<FakeDevice> FakeDevice::Create(const D3DDEVICE_CREATION_PARAMETERS& creation,
                                         const D3DPRESENT_PARAMETERS& parameters, IDirect3D9* owner)
{
    ComHandle<FakeDevice> device(new FakeDevice(creation, owner));
    if (!device->Take(parameters))
        device.reset();
    return device;
}

FakeDevice::FakeDevice(const D3DDEVICE_CREATION_PARAMETERS& creationParameters,
                       IDirect3D9* ownerOrNull)
    : creation(creationParameters),
      owner(Shared(ownerOrNull))
{}

FakeDevice::~FakeDevice()
{
    DropImplicitSurfaces();
}

// A surface that is still referenced outlives its device.
void FakeDevice::DropImplicitSurfaces()
{
    renderTargets.clear();
    depthStencil = nullptr;
    for (ComHandle<FakeSurface>* surface : {&backBufferSurface, &autoDepthSurface}) {
        if (*surface)
            (*surface)->ForgetDevice();
        surface->reset();
    }
}

bool FakeDevice::Take(const D3DPRESENT_PARAMETERS& wanted)
{
    D3DPRESENT_PARAMETERS next = wanted;
    if (next.Windowed && next.BackBufferWidth == 0 && next.BackBufferHeight == 0) {
        RECT client = {};
        GetClientRect(next.hDeviceWindow ? next.hDeviceWindow : creation.hFocusWindow, &client);
        next.BackBufferWidth = static_cast<UINT>(client.right);
        next.BackBufferHeight = static_cast<UINT>(client.bottom);
    }
    const UINT width = next.BackBufferWidth;
    const UINT height = next.BackBufferHeight;
    ComHandle<FakeSurface> back = FakeSurface::CreateImplicit(
        this, {next.BackBufferFormat, D3DRTYPE_SURFACE, D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT,
               D3DMULTISAMPLE_NONE, 0, width, height});
    ComHandle<FakeSurface> depth;
    if (next.EnableAutoDepthStencil)
        depth = FakeSurface::CreateImplicit(this, {next.AutoDepthStencilFormat, D3DRTYPE_SURFACE,
                                                   D3DUSAGE_DEPTHSTENCIL, D3DPOOL_DEFAULT,
                                                   D3DMULTISAMPLE_NONE, 0, width, height});
    if (!back || (next.EnableAutoDepthStencil && !depth))
        return false;
    DropImplicitSurfaces();
    parameters = next;
    backBufferSurface = std::move(back);
    autoDepthSurface = std::move(depth);
    ClearStates();
    renderTargets[0] = backBufferSurface.get();
    depthStencil = autoDepthSurface.get();
    return true;
}

HRESULT STDMETHODCALLTYPE FakeDevice::QueryInterface(REFIID iid, void** objectOut)
{
    return GiveInterface(this, iid, {kUnknownId, kDeviceId}, objectOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetDirect3D(IDirect3D9** d3dOut)
{
    if (!owner)
        return D3DERR_INVALIDCALL;
    *d3dOut = Shared(owner.get()).release();
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetDeviceCaps(D3DCAPS9* capsOut)
{
    *capsOut = caps;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetDisplayMode(UINT, D3DDISPLAYMODE* modeOut)
{
    *modeOut = {1024, 768, 60, D3DFMT_X8R8G8B8};
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE
FakeDevice::GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS* parametersOut)
{
    *parametersOut = creation;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::Reset(D3DPRESENT_PARAMETERS* wanted)
{
    return Take(*wanted) ? D3D_OK : D3DERR_INVALIDCALL;
}

void STDMETHODCALLTYPE FakeDevice::SetGammaRamp(UINT, DWORD, const D3DGAMMARAMP* ramp)
{
    if (ramp)
        gammaRamp = *ramp;
}

void STDMETHODCALLTYPE FakeDevice::GetGammaRamp(UINT, D3DGAMMARAMP* rampOut)
{
    *rampOut = gammaRamp;
}

UINT STDMETHODCALLTYPE FakeDevice::GetNumberOfSwapChains()
{
    return 1;
}

UINT STDMETHODCALLTYPE FakeDevice::GetAvailableTextureMem()
{
    return 256u << 20;
}
