#include "platform/headless/d3d9/Device.h"

#include "platform/headless/d3d9/Adapter.h"
#include "platform/headless/d3d9/TestControl.h"

#include <new>

namespace headless {

HeadlessDevice::HeadlessDevice(HeadlessDirect3D& owner,
                               const D3DDEVICE_CREATION_PARAMETERS& creation)
    : d3d(owner),
      creationParameters(creation)
{
    d3d.DeviceReferenced();
    gObjectCensus.Add(ObjectKind::Device);
}

HeadlessDevice::~HeadlessDevice()
{
    gObjectCensus.Remove(ObjectKind::Device);
}

HeadlessDevice* HeadlessDevice::Create(HeadlessDirect3D& owner,
                                       const D3DDEVICE_CREATION_PARAMETERS& creation,
                                       const D3DPRESENT_PARAMETERS& parameters)
{
    auto* device = new (std::nothrow) HeadlessDevice(owner, creation);
    if (!device)
        return nullptr;
    if (SUCCEEDED(device->MakeImplicitSurfaces(parameters)))
        return device;
    device->Release();
    return nullptr;
}

ULONG HeadlessDevice::AddRef()
{
    return ++references + static_cast<ULONG>(heldChildren.Total());
}

ULONG HeadlessDevice::Release()
{
    if (references == 0)
        return 0;
    --references;
    const ULONG left = references + static_cast<ULONG>(heldChildren.Total());
    if (references == 0 && left > 0)
        ReportLeak("IDirect3DDevice9", heldChildren);
    if (left == 0) {
        HeadlessDirect3D& owner = d3d;
        delete this;
        owner.DeviceUnreferenced();
    }
    return left;
}

void HeadlessDevice::ChildReferenced(ObjectKind kind, D3DPOOL pool)
{
    heldChildren.Add(kind);
    heldInDefaultPool += pool == D3DPOOL_DEFAULT ? 1 : 0;
    gObjectCensus.Add(kind);
}

void HeadlessDevice::ChildUnreferenced(ObjectKind kind, D3DPOOL pool)
{
    heldChildren.Remove(kind);
    heldInDefaultPool -= pool == D3DPOOL_DEFAULT ? 1 : 0;
    gObjectCensus.Remove(kind);
    if (references > 0 || heldChildren.Total() > 0)
        return;
    HeadlessDirect3D& owner = d3d;
    delete this;
    owner.DeviceUnreferenced();
}

HRESULT HeadlessDevice::TestCooperativeLevel()
{
    if (cooperation == Cooperation::Lost)
        return D3DERR_DEVICELOST;
    return cooperation == Cooperation::NotReset ? D3DERR_DEVICENOTRESET : D3D_OK;
}

/// A round figure: resources use the host's memory, and callers treat the value as a hint.
UINT HeadlessDevice::GetAvailableTextureMem()
{
    return 512u << 20;
}

/// Managed resources have one copy here, so there is nothing to evict.
HRESULT HeadlessDevice::EvictManagedResources()
{
    return D3D_OK;
}

HRESULT HeadlessDevice::GetDirect3D(IDirect3D9** d3dOut)
{
    if (!d3dOut)
        return D3DERR_INVALIDCALL;
    d3d.AddRef();
    *d3dOut = &d3d;
    return D3D_OK;
}

HRESULT HeadlessDevice::GetDeviceCaps(D3DCAPS9* capsOut)
{
    if (!capsOut)
        return D3DERR_INVALIDCALL;
    *capsOut = AdapterCaps(creationParameters.DeviceType);
    return D3D_OK;
}

HRESULT HeadlessDevice::GetDisplayMode(UINT swapChain, D3DDISPLAYMODE* modeOut)
{
    if (swapChain != 0 || !modeOut)
        return D3DERR_INVALIDCALL;
    *modeOut = DesktopMode();
    if (!presentParameters.Windowed) {
        modeOut->Width = presentParameters.BackBufferWidth;
        modeOut->Height = presentParameters.BackBufferHeight;
        modeOut->Format = presentParameters.BackBufferFormat == D3DFMT_A8R8G8B8
                              ? D3DFMT_X8R8G8B8
                              : presentParameters.BackBufferFormat;
    }
    return D3D_OK;
}

HRESULT HeadlessDevice::GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS* parametersOut)
{
    if (!parametersOut)
        return D3DERR_INVALIDCALL;
    *parametersOut = creationParameters;
    return D3D_OK;
}

UINT HeadlessDevice::GetNumberOfSwapChains()
{
    return 1;
}

HRESULT HeadlessDevice::BeginScene()
{
    if (state.inScene)
        return D3DERR_INVALIDCALL;
    state.inScene = true;
    return D3D_OK;
}

HRESULT HeadlessDevice::EndScene()
{
    if (!state.inScene)
        return D3DERR_INVALIDCALL;
    state.inScene = false;
    return D3D_OK;
}

void SimulateDeviceLost(IDirect3DDevice9* device)
{
    static_cast<HeadlessDevice*>(device)->SetCooperation(Cooperation::Lost);
}

void SimulateDeviceRestorable(IDirect3DDevice9* device)
{
    static_cast<HeadlessDevice*>(device)->SetCooperation(Cooperation::NotReset);
}

} // namespace headless
