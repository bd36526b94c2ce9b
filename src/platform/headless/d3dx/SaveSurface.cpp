#include <d3dx9.h>

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3dx/BmpWriter.h"
#include "platform/headless/d3dx/PixelRect.h"
#include "platform/headless/d3dx/PngWriter.h"
#include "platform/headless/d3dx/SurfaceReader.h"

#include <cstdio>
#include <memory>
#include <new>

namespace headless {

namespace {

bool WriteFile(const char* path, D3DXIMAGE_FILEFORMAT format, const PixelSource& picture,
               const uint32_t* argb)
{
    const auto width = static_cast<int>(picture.width);
    const auto height = static_cast<int>(picture.height);
    const bool withAlpha = picture.format->HasAlpha();
    if (format == D3DXIFF_BMP)
        return WriteBmpFile(path, width, height, argb, withAlpha);

    std::string error;
    if (WritePngFile(path, width, height, argb, withAlpha, error))
        return true;
    std::fprintf(stderr, "D3DXSaveSurfaceToFileA: %s: %s\n", path, error.c_str());
    return false;
}

} // namespace

} // namespace headless

using namespace headless;

HRESULT WINAPI D3DXSaveSurfaceToFileA(LPCSTR path, D3DXIMAGE_FILEFORMAT format,
                                      IDirect3DSurface9* surface, const PALETTEENTRY*,
                                      const RECT* rect)
{
    if (!path || !surface)
        return D3DERR_INVALIDCALL;
    if (format != D3DXIFF_PNG && format != D3DXIFF_BMP)
        return LogUnmodelled("D3DXSaveSurfaceToFileA",
                             std::string(path) + ", " + ArgumentText(format), E_NOTIMPL);

    SurfaceReader reader;
    const HRESULT result = reader.Open(*surface);
    if (FAILED(result))
        return result;
    PixelSource picture = reader.Source();
    if (rect && !CropSource(picture, *rect))
        return D3DERR_INVALIDCALL;

    const size_t count = size_t{picture.width} * picture.height;
    const std::unique_ptr<uint32_t[]> argb(new (std::nothrow) uint32_t[count]);
    if (!argb)
        return E_OUTOFMEMORY;
    if (!UnpackImage(*picture.format, picture.width, picture.height, picture.bits,
                     picture.pitchBytes, argb.get()))
        return D3DERR_INVALIDCALL;
    return WriteFile(path, format, picture, argb.get()) ? D3D_OK : E_FAIL;
}
