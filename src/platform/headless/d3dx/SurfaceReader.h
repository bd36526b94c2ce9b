#pragma once

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/PixelCopy.h"

namespace headless {

/// Gives the pixels of a surface as long as this lives. What cannot be locked, such as a render
/// target in the device's memory, is first copied to system memory.
class SurfaceReader {
public:
    SurfaceReader() = default;
    ~SurfaceReader();
    SurfaceReader(const SurfaceReader&) = delete;
    SurfaceReader& operator=(const SurfaceReader&) = delete;

    HRESULT Open(IDirect3DSurface9& surface);

    /// The whole surface, after `Open` succeeded.
    PixelSource Source() const;

private:
    HRESULT OpenCopy(IDirect3DSurface9& surface);

    ComPointer<IDirect3DSurface9> locked;
    D3DSURFACE_DESC desc = {};
    D3DLOCKED_RECT rect = {};
};

} // namespace headless
