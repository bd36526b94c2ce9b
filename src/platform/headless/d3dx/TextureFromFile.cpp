#include <d3dx9.h>

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/FilterTexture.h"
#include "platform/headless/d3dx/LevelLock.h"
#include "platform/headless/d3dx/NearestFormat.h"
#include "platform/headless/d3dx/PictureCache.h"

#include <algorithm>
#include <bit>

namespace headless {

namespace {

// The requested texture, first as given and then adjusted to what the device supports.
struct TextureRequest {
    UINT width;
    UINT height;
    UINT levels;
    DWORD usage;
    D3DFORMAT format;
    D3DPOOL pool;
    DWORD filter;
    DWORD mipFilter;
    D3DCOLOR colorKey;
};

UINT ResolveSide(UINT given, UINT fromFile)
{
    if (given == D3DX_DEFAULT)
        return std::bit_ceil(fromFile);
    const bool isFromFile = given == 0 || given == D3DX_DEFAULT_NONPOW2 || given == D3DX_FROM_FILE;
    return isFromFile ? fromFile : given;
}

// Fills in what the call left open, then adjusts the request to the device. `D3DX_FROM_FILE`
// demands the exact value: if the device cannot provide it, the call fails.
HRESULT Resolve(IDirect3DDevice9& device, const D3DXIMAGE_INFO& info, TextureRequest& requestInOut)
{
    TextureRequest& request = requestInOut;
    const bool isExactWidth = request.width == D3DX_FROM_FILE;
    const bool isExactHeight = request.height == D3DX_FROM_FILE;
    if (request.format == D3DFMT_UNKNOWN)
        request.format = request.colorKey != 0 ? WithAlpha(info.Format) : info.Format;
    request.width = ResolveSide(request.width, info.Width);
    request.height = ResolveSide(request.height, info.Height);
    if (request.levels == D3DX_FROM_FILE)
        request.levels = info.MipLevels;
    if (request.width > kMaxImageSide || request.height > kMaxImageSide)
        return D3DERR_INVALIDCALL;

    const HRESULT result =
        D3DXCheckTextureRequirements(&device, &request.width, &request.height, &request.levels,
                                     request.usage, &request.format, request.pool);
    if (FAILED(result))
        return result;
    const bool isKept = (!isExactWidth || request.width == info.Width) &&
                        (!isExactHeight || request.height == info.Height);
    return isKept ? D3D_OK : D3DERR_NOTAVAILABLE;
}

// Levels come from the file as long as it has them in the right size; the rest are filtered from
// the next larger level.
HRESULT FillLevels(IDirect3DTexture9& texture, const DecodedImage& image,
                   const TextureRequest& request)
{
    const PixelFormat* layout = FindPixelFormat(image.format);
    const DWORD count = texture.GetLevelCount();
    UINT level = 0;
    for (; level < count && level < std::min(image.info.MipLevels, kMaxImageLevels); ++level) {
        const LevelLock lock(texture, level, 0);
        if (FAILED(lock.Result()))
            return lock.Result();
        const PixelTarget target = lock.Target();
        const ImageLevel& stored = image.levels[level];
        if (level > 0 && (stored.width != target.width || stored.height != target.height))
            break;
        const PixelSource source = {layout, stored.width, stored.height, stored.bits,
                                    stored.pitchBytes};
        const HRESULT result = CopyPixels(target, source, request.filter, request.colorKey);
        if (FAILED(result))
            return result;
    }
    return FillLowerLevels(texture, level, request.mipFilter);
}

// Textures in device memory cannot be locked: such a texture is filled via one in system memory.
HRESULT CreateFilled(IDirect3DDevice9& device, const DecodedImage& image,
                     const TextureRequest& request, ComPointer<IDirect3DTexture9>& textureOut)
{
    HRESULT result =
        device.CreateTexture(request.width, request.height, request.levels, request.usage,
                             request.format, request.pool, textureOut.Out(), nullptr);
    const bool isLockable =
        request.pool != D3DPOOL_DEFAULT || (request.usage & D3DUSAGE_DYNAMIC) != 0;
    if (FAILED(result) || isLockable)
        return FAILED(result) ? result : FillLevels(*textureOut.Get(), image, request);

    ComPointer<IDirect3DTexture9> staging;
    result = device.CreateTexture(request.width, request.height, textureOut->GetLevelCount(), 0,
                                  request.format, D3DPOOL_SYSTEMMEM, staging.Out(), nullptr);
    if (SUCCEEDED(result))
        result = FillLevels(*staging.Get(), image, request);
    if (SUCCEEDED(result))
        result = device.UpdateTexture(staging.Get(), textureOut.Get());
    return result;
}

HRESULT CreateFromImage(IDirect3DDevice9* device, PictureFile& file, TextureRequest& request,
                        D3DXIMAGE_INFO* infoOut, IDirect3DTexture9** textureOut)
{
    HRESULT result =
        CheckFilter(request.filter, D3DX_FILTER_TRIANGLE | D3DX_FILTER_DITHER, request.filter);
    if (SUCCEEDED(result))
        result = CheckFilter(request.mipFilter, D3DX_FILTER_BOX, request.mipFilter);
    if (SUCCEEDED(result))
        result = file.Decode();
    const DecodedImage& image = file.Image();
    if (SUCCEEDED(result))
        result = Resolve(*device, image.info, request);
    ComPointer<IDirect3DTexture9> texture;
    if (SUCCEEDED(result))
        result = CreateFilled(*device, image, request, texture);
    if (FAILED(result))
        return result;

    if (infoOut)
        *infoOut = image.info;
    *textureOut = texture.Detach();
    return D3D_OK;
}

} // namespace

} // namespace headless

using namespace headless;

HRESULT WINAPI D3DXGetImageInfoFromFileInMemory(LPCVOID data, UINT sizeBytes,
                                                D3DXIMAGE_INFO* infoOut)
{
    if (!data || sizeBytes == 0)
        return D3DERR_INVALIDCALL;
    D3DXIMAGE_INFO info;
    const HRESULT result = ReadImageInfo({static_cast<const uint8_t*>(data), sizeBytes}, info);
    if (SUCCEEDED(result) && infoOut)
        *infoOut = info;
    return result;
}

HRESULT WINAPI D3DXGetImageInfoFromFileA(LPCSTR path, D3DXIMAGE_INFO* infoOut)
{
    if (!path)
        return D3DERR_INVALIDCALL;
    PictureFile file;
    D3DXIMAGE_INFO info;
    HRESULT result = file.Open(path);
    if (SUCCEEDED(result))
        result = file.ReadInfo(info);
    if (SUCCEEDED(result) && infoOut)
        *infoOut = info;
    return result;
}

HRESULT WINAPI D3DXCreateTextureFromFileInMemoryEx(IDirect3DDevice9* device, LPCVOID data,
                                                   UINT sizeBytes, UINT width, UINT height,
                                                   UINT levels, DWORD usage, D3DFORMAT format,
                                                   D3DPOOL pool, DWORD filter, DWORD mipFilter,
                                                   D3DCOLOR colorKey, D3DXIMAGE_INFO* infoOut,
                                                   PALETTEENTRY*, IDirect3DTexture9** textureOut)
{
    if (!device || !data || sizeBytes == 0 || !textureOut)
        return D3DERR_INVALIDCALL;
    TextureRequest request = {width, height, levels,    usage,   format,
                              pool,  filter, mipFilter, colorKey};
    PictureFile file;
    file.Use({static_cast<const uint8_t*>(data), sizeBytes});
    return CreateFromImage(device, file, request, infoOut, textureOut);
}

HRESULT WINAPI D3DXCreateTextureFromFileExA(IDirect3DDevice9* device, LPCSTR path, UINT width,
                                            UINT height, UINT levels, DWORD usage, D3DFORMAT format,
                                            D3DPOOL pool, DWORD filter, DWORD mipFilter,
                                            D3DCOLOR colorKey, D3DXIMAGE_INFO* infoOut,
                                            PALETTEENTRY*, IDirect3DTexture9** textureOut)
{
    if (!device || !path || !textureOut)
        return D3DERR_INVALIDCALL;
    TextureRequest request = {width, height, levels,    usage,   format,
                              pool,  filter, mipFilter, colorKey};
    PictureFile file;
    const HRESULT result = file.Open(path);
    if (FAILED(result))
        return result;
    return CreateFromImage(device, file, request, infoOut, textureOut);
}

HRESULT WINAPI D3DXCreateTextureFromFileA(IDirect3DDevice9* device, LPCSTR path,
                                          IDirect3DTexture9** textureOut)
{
    return D3DXCreateTextureFromFileExA(device, path, D3DX_DEFAULT, D3DX_DEFAULT, D3DX_DEFAULT, 0,
                                        D3DFMT_UNKNOWN, D3DPOOL_MANAGED, D3DX_DEFAULT, D3DX_DEFAULT,
                                        0, nullptr, nullptr, textureOut);
}
