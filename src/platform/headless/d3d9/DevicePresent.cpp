// Creating, resetting and presenting the implicit surfaces of a device.

#include "platform/headless/d3d9/Adapter.h"
#include "platform/headless/d3d9/Device.h"
#include "platform/headless/d3d9/FrameFile.h"
#include "platform/headless/d3d9/PresentParameters.h"

#include <algorithm>
#include <cstring>

namespace headless {

namespace {

D3DSURFACE_DESC TargetDesc(const D3DPRESENT_PARAMETERS& parameters, D3DFORMAT format, DWORD usage)
{
    return {format,
            D3DRTYPE_SURFACE,
            usage,
            D3DPOOL_DEFAULT,
            D3DMULTISAMPLE_NONE,
            0,
            parameters.BackBufferWidth,
            parameters.BackBufferHeight};
}

} // namespace

/// Creates all new surfaces first, so that a failure leaves the device unchanged.
HRESULT HeadlessDevice::MakeImplicitSurfaces(const D3DPRESENT_PARAMETERS& parameters)
{
    const D3DFORMAT depthFormat = parameters.AutoDepthStencilFormat;
    const bool hasDepth = parameters.EnableAutoDepthStencil != 0;
    const bool lockable = (parameters.Flags & D3DPRESENTFLAG_LOCKABLE_BACKBUFFER) != 0;
    const D3DSURFACE_DESC targetDesc =
        TargetDesc(parameters, parameters.BackBufferFormat, D3DUSAGE_RENDERTARGET);

    Binding<HeadlessSurface> newTarget;
    Binding<HeadlessSurface> newDepth;
    PixelBuffer newFront;
    newTarget.Set(HeadlessSurface::Create(*this, targetDesc, lockable));
    if (hasDepth)
        newDepth.Set(HeadlessSurface::Create(
            *this, TargetDesc(parameters, depthFormat, D3DUSAGE_DEPTHSTENCIL),
            depthFormat == D3DFMT_D16_LOCKABLE));
    if (!newTarget.Get() || (hasDepth && !newDepth.Get()) ||
        !newFront.Allocate(*FindPixelFormat(targetDesc.Format), targetDesc.Width,
                           targetDesc.Height))
        return E_OUTOFMEMORY;

    presentParameters = parameters;
    SetDefaults(state, hasDepth);
    backBuffer.Set(newTarget.Get());
    autoDepth.Set(newDepth.Get());
    frontBuffer = std::move(newFront);
    BindRenderTarget(*backBuffer.Get());
    state.depthSurface.Set(autoDepth.Get());
    state.softwareVertexProcessing =
        (creationParameters.BehaviorFlags & D3DCREATE_SOFTWARE_VERTEXPROCESSING) != 0;
    return D3D_OK;
}

/// A new target also resets the viewport and the scissor rectangle to its whole area.
void HeadlessDevice::BindRenderTarget(HeadlessSurface& surface)
{
    state.renderTarget.Set(&surface);
    const D3DSURFACE_DESC& desc = surface.Desc();
    state.viewport = {0, 0, desc.Width, desc.Height, 0.0f, 1.0f};
    state.scissor = surface.Pixels().Bounds();
}

/// After a failed reset the device stays unusable until a reset succeeds.
HRESULT HeadlessDevice::Reset(D3DPRESENT_PARAMETERS* parameters)
{
    if (cooperation == Cooperation::Lost)
        return D3DERR_DEVICELOST;
    if (!parameters)
        return D3DERR_INVALIDCALL;
    D3DPRESENT_PARAMETERS complete = *parameters;
    cooperation = Cooperation::NotReset;
    const HRESULT result = CompletePresentParameters(complete, creationParameters.hFocusWindow);
    if (FAILED(result))
        return result;
    if (heldInDefaultPool > 0) // the caller must release its own resources first
        return D3DERR_INVALIDCALL;
    if (const HRESULT made = MakeImplicitSurfaces(complete); FAILED(made))
        return made;
    *parameters = complete;
    cooperation = Cooperation::Ok;
    return D3D_OK;
}

HWND HeadlessDevice::PresentWindow() const
{
    return presentParameters.hDeviceWindow ? presentParameters.hDeviceWindow
                                           : creationParameters.hFocusWindow;
}

/// The back buffer keeps its picture whatever the swap effect, so that the next frame starts the
/// same everywhere.
HRESULT HeadlessDevice::Present(const RECT* srcRect, const RECT* dstRect, HWND dstWindowOverride,
                                const RGNDATA* dirtyRegion)
{
    if (cooperation != Cooperation::Ok)
        return D3DERR_DEVICELOST;
    if (state.inScene)
        return D3DERR_INVALIDCALL;
    if (srcRect || dstRect || dirtyRegion)
        return Unmodelled("Present", srcRect, dstRect, dstWindowOverride, dirtyRegion);
    if (rasterizer)
        rasterizer->StartFrame();
    const PixelBuffer& picture = backBuffer.Get()->Pixels();
    frontBuffer.isBlank = picture.isBlank;
    if (frontBuffer.isBlank)
        return D3D_OK;
    std::memcpy(frontBuffer.bytes.get(), picture.bytes.get(), picture.pitchBytes * picture.height);
    // A window is shown through the desktop's ramp; only full screen has its own.
    WriteFrameFile(frontBuffer, dstWindowOverride ? dstWindowOverride : PresentWindow(),
                   presentParameters.Windowed ? nullptr : &state.gammaRamp);
    return D3D_OK;
}

HRESULT HeadlessDevice::GetBackBuffer(UINT swapChain, UINT bufferIndex, D3DBACKBUFFER_TYPE type,
                                      IDirect3DSurface9** backBufferOut)
{
    if (!backBufferOut)
        return D3DERR_INVALIDCALL;
    *backBufferOut = nullptr;
    if (swapChain != 0 || bufferIndex != 0 || type != D3DBACKBUFFER_TYPE_MONO)
        return D3DERR_INVALIDCALL;
    backBuffer.Get()->AddRef();
    *backBufferOut = backBuffer.Get();
    return D3D_OK;
}

/// The screen shows the last presented picture at its top left; the rest is black.
HRESULT HeadlessDevice::GetFrontBufferData(UINT swapChain, IDirect3DSurface9* destSurface)
{
    if (swapChain != 0 || !destSurface)
        return D3DERR_INVALIDCALL;
    if (cooperation != Cooperation::Ok)
        return D3DERR_DEVICELOST;
    auto& target = static_cast<HeadlessSurface&>(*destSurface);
    const D3DSURFACE_DESC& desc = target.Desc();
    D3DDISPLAYMODE screen = {};
    GetDisplayMode(0, &screen);
    if (desc.Pool != D3DPOOL_SYSTEMMEM || desc.Format != D3DFMT_A8R8G8B8 || target.IsLocked() ||
        desc.Width != screen.Width || desc.Height != screen.Height)
        return D3DERR_INVALIDCALL;
    if (frontBuffer.isBlank)
        return Unmodelled("Reading a picture without an audience");
    FillArea(target.Pixels(), target.Pixels().Bounds(), 0xFF000000, 0xFFFFFFFF);
    const RECT shared = {0, 0, static_cast<LONG>(std::min(desc.Width, frontBuffer.width)),
                         static_cast<LONG>(std::min(desc.Height, frontBuffer.height))};
    StretchArea(frontBuffer, shared, target.Pixels(), shared, false);
    return D3D_OK;
}

/// Affects the displayed picture, not the one in memory.
void HeadlessDevice::SetGammaRamp(UINT swapChain, DWORD, const D3DGAMMARAMP* ramp)
{
    if (swapChain == 0 && ramp)
        state.gammaRamp = *ramp;
}

void HeadlessDevice::GetGammaRamp(UINT swapChain, D3DGAMMARAMP* rampOut)
{
    if (swapChain == 0 && rampOut)
        *rampOut = state.gammaRamp;
}

} // namespace headless
