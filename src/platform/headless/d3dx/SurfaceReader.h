#pragma once

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/PixelCopy.h"

namespace headless {

/// Provides the pixels of a surface for its own lifetime. A surface that cannot be locked, such as
/// a render target in device memory, is first copied to system memory.
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
