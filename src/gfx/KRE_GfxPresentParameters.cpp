#include "gfx/KRE_Gfx.h"

#include <algorithm>
#include <iterator>

namespace {

D3DFORMAT DepthFormat(KRE_Gfx& gfx)
{
    // QUIRK: 24 bits come with a stencil in full screen and without one in a window.
    static constexpr struct {
        int32_t bits;
        D3DFORMAT fullScreen, window;
    } kFormats[] = {
        {16, D3DFMT_D16, D3DFMT_D16},
        {24, D3DFMT_D24S8, D3DFMT_D24X8},
        {32, D3DFMT_D32, D3DFMT_D32},
    };
    const auto* row = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [&](const auto& format) { return format.bits == gfx.zBits; });
    if (row == std::end(kFormats))
        gfx.Error("Invalid Z-buffer: %i", gfx.zBits);
    return gfx.windowed ? row->window : row->fullScreen;
}

UINT PresentationInterval(KRE_Gfx& gfx)
{
    static constexpr UINT kIntervals[] = {D3DPRESENT_INTERVAL_IMMEDIATE, D3DPRESENT_INTERVAL_ONE,
                                          D3DPRESENT_INTERVAL_TWO, D3DPRESENT_INTERVAL_THREE,
                                          D3DPRESENT_INTERVAL_FOUR};
    if (gfx.vsync < 0 || gfx.vsync >= static_cast<int32_t>(std::size(kIntervals)))
        gfx.Error("Wrong vsync parameter: %i", gfx.vsync);
    return kIntervals[gfx.vsync];
}

} // namespace

void KRE_Gfx::BuildPresentParameters()
{
    presentParams = {};
    presentParams.SwapEffect = D3DSWAPEFFECT_FLIP;
    presentParams.BackBufferCount = 1;
    presentParams.BackBufferFormat = displayMode.Format;
    presentParams.Windowed = windowed;
    presentParams.EnableAutoDepthStencil = zBits != 0;
    presentParams.AutoDepthStencilFormat = zBits != 0 ? DepthFormat(*this) : D3DFMT_UNKNOWN;
    if (windowed) {
        // A size of 0 means the client area.
        presentParams.hDeviceWindow = window;
        presentParams.PresentationInterval = D3DPRESENT_INTERVAL_DEFAULT;
    } else {
        presentParams.BackBufferWidth = displayMode.Width;
        presentParams.BackBufferHeight = displayMode.Height;
        presentParams.FullScreen_RefreshRateInHz = displayMode.RefreshRate;
        presentParams.PresentationInterval = PresentationInterval(*this);
    }
    GetClientRect(window, &clientRect);
}
