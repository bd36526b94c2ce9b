#pragma once

#include <d3d9.h>

namespace headless {

// What the single adapter is and can do. `HeadlessDirect3D` and the device answer from here.

constexpr UINT kMaxTextureSide = 8192;
constexpr UINT kMaxVolumeExtent = 2048;
constexpr UINT kMaxAnisotropy = 16;
constexpr UINT kRefreshRate = 60;
constexpr float kMaxPointSize = 256.0f;

/// The desktop's mode: 1024 x 768, X8R8G8B8, 60 Hz.
D3DDISPLAYMODE DesktopMode();

/// Number of full-screen modes of `format`: 6 for X8R8G8B8 and for R5G6B5, else 0.
UINT DisplayModeCount(D3DFORMAT format);

/// Mode `index` of `format`, smallest first; `index` must be below the count.
D3DDISPLAYMODE DisplayMode(D3DFORMAT format, UINT index);

/// A refresh rate of 0 matches any.
bool HasDisplayMode(UINT width, UINT height, D3DFORMAT format, UINT refreshRate);

D3DADAPTER_IDENTIFIER9 AdapterIdentifier();

/// The caps are the same for every available device type.
D3DCAPS9 AdapterCaps(D3DDEVTYPE deviceType);

/// HAL and REF are identical here; there is no software device and no null device.
bool HasDeviceType(D3DDEVTYPE deviceType);

bool IsDisplayFormat(D3DFORMAT format);
/// In windowed mode the back buffer format may differ from the display's, because presenting
/// converts.
bool IsBackBufferFormat(D3DFORMAT displayFormat, D3DFORMAT backBufferFormat, bool windowed);
bool IsTextureFormat(D3DFORMAT format);
bool IsRenderTargetFormat(D3DFORMAT format);
bool IsDepthFormat(D3DFORMAT format);

} // namespace headless
