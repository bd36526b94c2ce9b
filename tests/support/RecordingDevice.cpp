#include "tests/support/RecordingDevice.h"

#include "tests/support/CallText.h"
#include "tests/support/D3DNames.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/InterfaceIds.h"

namespace {

constexpr NamedValue kGammaFlags[] = {
    {D3DSGR_NO_CALIBRATION, "D3DSGR_NO_CALIBRATION"},
    {D3DSGR_CALIBRATE, "D3DSGR_CALIBRATE"},
};

// A plain Present, with all arguments null, is written without them.
std::string PresentText(const RECT* srcRect, const RECT* dstRect, HWND window,
                        const RGNDATA* dirtyRegion)
{
    if (!srcRect && !dstRect && !window && !dirtyRegion)
        return "";
    return RectText(srcRect) + " " + RectText(dstRect) + " " + WindowText(window) + " " +
           DataText(dirtyRegion);
}

} // namespace

RecordingDevice::RecordingDevice(ComHandle<IDirect3DDevice9> wrapped,
                                 std::shared_ptr<CallRecorder> recorder, IDirect3D9* ownerOrNull)
    : device(std::move(wrapped)),
      calls(std::move(recorder)),
      owner(ownerOrNull)
{
    if (owner)
        owner->AddRef();
}

ComHandle<RecordingDevice> RecordingDevice::Wrap(IDirect3DDevice9* device,
                                                 std::shared_ptr<CallRecorder> recorder,
                                                 IDirect3D9* owner)
{
    device->AddRef();
    return ComHandle<RecordingDevice>(
        new RecordingDevice(ComHandle<IDirect3DDevice9>(device), std::move(recorder), owner));
}

ComHandle<RecordingDevice> RecordingDevice::Standalone(UINT width, UINT height)
{
    D3DPRESENT_PARAMETERS parameters = {};
    parameters.BackBufferWidth = width;
    parameters.BackBufferHeight = height;
    parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    parameters.BackBufferCount = 1;
    parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
    parameters.Windowed = TRUE;
    parameters.EnableAutoDepthStencil = TRUE;
    parameters.AutoDepthStencilFormat = D3DFMT_D16;
    const ComHandle<FakeDevice> fake = FakeDevice::Create({}, parameters, nullptr);
    return Wrap(fake.get());
}

void RecordingDevice::OverrideCaps(const D3DCAPS9& caps)
{
    overriddenCaps = caps;
}

HRESULT STDMETHODCALLTYPE RecordingDevice::QueryInterface(REFIID iid, void** objectOut)
{
    return GiveInterface(this, iid, {kUnknownId, kDeviceId}, objectOut);
}

ULONG STDMETHODCALLTYPE RecordingDevice::AddRef()
{
    return ++references;
}

ULONG STDMETHODCALLTYPE RecordingDevice::Release()
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetDirect3D(IDirect3D9** d3dOut)
{
    return Give("GetDirect3D", {}, "direct3d", d3dOut, [&] {
        if (!owner)
            return device->GetDirect3D(d3dOut);
        *d3dOut = owner.get();
        owner->AddRef();
        return D3D_OK;
    });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetDeviceCaps(D3DCAPS9* capsOut)
{
    return Forward("GetDeviceCaps", {}, [&] {
        if (!overriddenCaps)
            return device->GetDeviceCaps(capsOut);
        *capsOut = *overriddenCaps;
        return D3D_OK;
    });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::TestCooperativeLevel()
{
    return Forward("TestCooperativeLevel", {}, [&] { return device->TestCooperativeLevel(); });
}

UINT STDMETHODCALLTYPE RecordingDevice::GetAvailableTextureMem()
{
    calls->Note("GetAvailableTextureMem", {});
    return device->GetAvailableTextureMem();
}

HRESULT STDMETHODCALLTYPE RecordingDevice::EvictManagedResources()
{
    return Forward("EvictManagedResources", {}, [&] { return device->EvictManagedResources(); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetDisplayMode(UINT swapChain, D3DDISPLAYMODE* modeOut)
{
    return Forward("GetDisplayMode", {std::to_string(swapChain)},
                   [&] { return device->GetDisplayMode(swapChain, modeOut); });
}

HRESULT STDMETHODCALLTYPE
RecordingDevice::GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS* parametersOut)
{
    return Forward("GetCreationParameters", {},
                   [&] { return device->GetCreationParameters(parametersOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetCursorProperties(UINT xHotSpot, UINT yHotSpot,
                                                               IDirect3DSurface9* cursorBitmap)
{
    return Forward("SetCursorProperties",
                   {std::to_string(xHotSpot), std::to_string(yHotSpot),
                    calls->NameOfObject("surface", cursorBitmap)},
                   [&] { return device->SetCursorProperties(xHotSpot, yHotSpot, cursorBitmap); });
}

void STDMETHODCALLTYPE RecordingDevice::SetCursorPosition(int x, int y, DWORD flags)
{
    calls->Note("SetCursorPosition", {std::to_string(x), std::to_string(y), std::to_string(flags)});
    device->SetCursorPosition(x, y, flags);
}

BOOL STDMETHODCALLTYPE RecordingDevice::ShowCursor(BOOL show)
{
    calls->Note("ShowCursor", {BoolText(show)});
    return device->ShowCursor(show);
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateAdditionalSwapChain(
    D3DPRESENT_PARAMETERS* parameters, IDirect3DSwapChain9** swapChainOut)
{
    return Create("CreateAdditionalSwapChain", {PresentParametersText(parameters)}, "swapchain",
                  swapChainOut,
                  [&] { return device->CreateAdditionalSwapChain(parameters, swapChainOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetSwapChain(UINT swapChain,
                                                        IDirect3DSwapChain9** swapChainOut)
{
    return Give("GetSwapChain", {std::to_string(swapChain)}, "swapchain", swapChainOut,
                [&] { return device->GetSwapChain(swapChain, swapChainOut); });
}

UINT STDMETHODCALLTYPE RecordingDevice::GetNumberOfSwapChains()
{
    calls->Note("GetNumberOfSwapChains", {});
    return device->GetNumberOfSwapChains();
}

HRESULT STDMETHODCALLTYPE RecordingDevice::Reset(D3DPRESENT_PARAMETERS* parameters)
{
    return Forward("Reset", {PresentParametersText(parameters)},
                   [&] { return device->Reset(parameters); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::Present(const RECT* srcRect, const RECT* dstRect,
                                                   HWND dstWindowOverride,
                                                   const RGNDATA* dirtyRegion)
{
    return Forward("Present", {PresentText(srcRect, dstRect, dstWindowOverride, dirtyRegion)}, [&] {
        return device->Present(srcRect, dstRect, dstWindowOverride, dirtyRegion);
    });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetRasterStatus(UINT swapChain,
                                                           D3DRASTER_STATUS* rasterStatusOut)
{
    return Forward("GetRasterStatus", {std::to_string(swapChain)},
                   [&] { return device->GetRasterStatus(swapChain, rasterStatusOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetDialogBoxMode(BOOL enable)
{
    return Forward("SetDialogBoxMode", {BoolText(enable)},
                   [&] { return device->SetDialogBoxMode(enable); });
}

void STDMETHODCALLTYPE RecordingDevice::SetGammaRamp(UINT swapChain, DWORD flags,
                                                     const D3DGAMMARAMP* ramp)
{
    calls->Note("SetGammaRamp",
                {std::to_string(swapChain), NameOf(kGammaFlags, flags), GammaRampText(ramp)});
    device->SetGammaRamp(swapChain, flags, ramp);
}

void STDMETHODCALLTYPE RecordingDevice::GetGammaRamp(UINT swapChain, D3DGAMMARAMP* rampOut)
{
    calls->Note("GetGammaRamp", {std::to_string(swapChain)});
    device->GetGammaRamp(swapChain, rampOut);
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateQuery(D3DQUERYTYPE type,
                                                       IDirect3DQuery9** queryOut)
{
    return Create("CreateQuery", {QueryTypeName(type)}, "query", queryOut,
                  [&] { return device->CreateQuery(type, queryOut); });
}
