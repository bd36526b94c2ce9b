#include "platform/headless/d3d9/PresentParameters.h"

#include "platform/headless/d3d9/Adapter.h"

namespace headless {

namespace {

bool IsKnownInterval(UINT interval, bool windowed)
{
    switch (interval) {
    case D3DPRESENT_INTERVAL_DEFAULT:
    case D3DPRESENT_INTERVAL_ONE:
    case D3DPRESENT_INTERVAL_IMMEDIATE:
        return true;
    case D3DPRESENT_INTERVAL_TWO:
    case D3DPRESENT_INTERVAL_THREE:
    case D3DPRESENT_INTERVAL_FOUR:
        return !windowed; // a window may present at every retrace or immediately
    default:
        return false;
    }
}

bool IsKnownSwapEffect(D3DSWAPEFFECT effect)
{
    return effect == D3DSWAPEFFECT_DISCARD || effect == D3DSWAPEFFECT_FLIP ||
           effect == D3DSWAPEFFECT_COPY;
}

/// The checks common to windowed and full-screen mode. Only one back buffer is supported.
bool IsPossible(const D3DPRESENT_PARAMETERS& parameters)
{
    return parameters.BackBufferCount <= 1 && IsKnownSwapEffect(parameters.SwapEffect) &&
           parameters.MultiSampleType == D3DMULTISAMPLE_NONE &&
           IsKnownInterval(parameters.PresentationInterval, parameters.Windowed != 0) &&
           (!parameters.EnableAutoDepthStencil || IsDepthFormat(parameters.AutoDepthStencilFormat));
}

HRESULT CompleteWindowed(D3DPRESENT_PARAMETERS& parameters, HWND window)
{
    if (!IsBackBufferFormat(DesktopMode().Format, parameters.BackBufferFormat, true) ||
        parameters.FullScreen_RefreshRateInHz != 0)
        return D3DERR_INVALIDCALL;
    RECT client = {};
    if (!window || !GetClientRect(window, &client))
        return D3DERR_INVALIDCALL;
    if (parameters.BackBufferWidth == 0)
        parameters.BackBufferWidth = static_cast<UINT>(client.right - client.left);
    if (parameters.BackBufferHeight == 0)
        parameters.BackBufferHeight = static_cast<UINT>(client.bottom - client.top);
    if (parameters.BackBufferFormat == D3DFMT_UNKNOWN)
        parameters.BackBufferFormat = DesktopMode().Format;
    return D3D_OK;
}

HRESULT CheckFullScreen(const D3DPRESENT_PARAMETERS& parameters)
{
    const D3DFORMAT display = parameters.BackBufferFormat == D3DFMT_A8R8G8B8
                                  ? D3DFMT_X8R8G8B8
                                  : parameters.BackBufferFormat;
    if (!IsBackBufferFormat(display, parameters.BackBufferFormat, false))
        return D3DERR_INVALIDCALL;
    const bool exists = HasDisplayMode(parameters.BackBufferWidth, parameters.BackBufferHeight,
                                       display, parameters.FullScreen_RefreshRateInHz);
    return exists ? D3D_OK : D3DERR_NOTAVAILABLE;
}

} // namespace

HRESULT CompletePresentParameters(D3DPRESENT_PARAMETERS& parameters, HWND focusWindow)
{
    if (!IsPossible(parameters))
        return D3DERR_INVALIDCALL;
    const HWND window = parameters.hDeviceWindow ? parameters.hDeviceWindow : focusWindow;
    const HRESULT result =
        parameters.Windowed ? CompleteWindowed(parameters, window) : CheckFullScreen(parameters);
    if (FAILED(result))
        return result;
    parameters.BackBufferCount = 1;
    const UINT width = parameters.BackBufferWidth;
    const UINT height = parameters.BackBufferHeight;
    const bool hasArea = width > 0 && height > 0;
    return hasArea && width <= kMaxTextureSide && height <= kMaxTextureSide ? D3D_OK
                                                                            : D3DERR_INVALIDCALL;
}

} // namespace headless
