// Cubes and volumes from files.

#include <d3dx9.h>

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/LevelLock.h"
#include "platform/headless/d3dx/NearestFormat.h"
#include "platform/headless/d3dx/PictureCache.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <new>

namespace headless {

namespace {

constexpr UINT kFaces = 6;

/// What a call asks for, besides sizes.
struct SolidRequest {
    UINT levels;
    DWORD usage;
    D3DFORMAT format;
    D3DPOOL pool;
    DWORD filter;
    DWORD mipFilter;
    D3DCOLOR colorKey;
};

bool IsFromFile(UINT size)
{
    return size == 0 || size == D3DX_DEFAULT || size == D3DX_DEFAULT_NONPOW2 ||
           size == D3DX_FROM_FILE;
}

/// Reads the file, which must be of the type, and completes the request by it.
HRESULT Open(IDirect3DDevice9& device, const char* path, D3DRESOURCETYPE type, PictureFile& file,
             SolidRequest& requestInOut)
{
    SolidRequest& request = requestInOut;
    HRESULT result =
        CheckFilter(request.filter, D3DX_FILTER_TRIANGLE | D3DX_FILTER_DITHER, request.filter);
    if (SUCCEEDED(result))
        result = CheckFilter(request.mipFilter, D3DX_FILTER_BOX, request.mipFilter);
    if (SUCCEEDED(result))
        result = file.Open(path);
    if (SUCCEEDED(result))
        result = file.Decode();
    if (FAILED(result))
        return result;
    const D3DXIMAGE_INFO& info = file.Image().info;
    if (info.ResourceType != type)
        return D3DXERR_INVALIDDATA;
    if (request.format == D3DFMT_UNKNOWN)
        request.format = request.colorKey != 0 ? WithAlpha(info.Format) : info.Format;
    request.format = NearestTextureFormat(device, request.usage, request.format);
    if (request.levels == D3DX_FROM_FILE)
        request.levels = info.MipLevels;
    return request.format == D3DFMT_UNKNOWN ? D3DERR_NOTAVAILABLE : D3D_OK;
}

/// Whole blocks of a format.
UINT RoundUp(UINT size, D3DFORMAT format)
{
    const UINT unit = FindPixelFormat(format)->UnitSide();
    return (size + unit - 1) / unit * unit;
}

/// 0 and `D3DX_DEFAULT` are the full chain, which `most` is.
UINT FitLevels(UINT levels, UINT most)
{
    return levels == 0 ? most : std::min(levels, most);
}

// ---- Cubes

PixelSource StoredFace(const DecodedImage& image, UINT face, UINT level)
{
    const ImageLevel& stored = image.levels[level];
    return {FindPixelFormat(image.format), stored.width, stored.height,
            stored.bits + image.faceBytes * face, stored.pitchBytes};
}

/// From the file as long as it has the level, else from the level above.
HRESULT FillFaceLevel(IDirect3DCubeTexture9& cube, const DecodedImage& image, UINT face, UINT level,
                      const SolidRequest& request)
{
    const auto name = static_cast<D3DCUBEMAP_FACES>(face);
    const LevelLock lock(cube, name, level, 0);
    if (FAILED(lock.Result()))
        return lock.Result();
    const UINT storedLevels = std::min(image.info.MipLevels, kMaxImageLevels);
    if (level < storedLevels)
        return CopyPixels(lock.Target(), StoredFace(image, face, level), request.filter,
                          request.colorKey);
    const LevelLock above(cube, name, level - 1, D3DLOCK_READONLY);
    return FAILED(above.Result()) ? above.Result()
                                  : CopyPixels(lock.Target(), above.Source(), request.mipFilter, 0);
}

HRESULT FillCube(IDirect3DCubeTexture9& cube, const DecodedImage& image,
                 const SolidRequest& request)
{
    const DWORD levels = cube.GetLevelCount();
    HRESULT result = D3D_OK;
    for (UINT face = 0; SUCCEEDED(result) && face < kFaces; ++face)
        for (UINT level = 0; SUCCEEDED(result) && level < levels; ++level)
            result = FillFaceLevel(cube, image, face, level, request);
    return result;
}

// ---- Volumes

/// Locks one level of a volume for its own lifetime.
class VolumeLock {
public:
    VolumeLock(IDirect3DVolumeTexture9& lockedVolume, UINT lockedLevel, DWORD flags)
        : volume(lockedVolume),
          level(lockedLevel),
          result(volume.GetLevelDesc(level, &desc))
    {
        if (SUCCEEDED(result))
            result = volume.LockBox(level, &locked, nullptr, flags);
    }
    ~VolumeLock()
    {
        if (SUCCEEDED(result))
            volume.UnlockBox(level);
    }
    VolumeLock(const VolumeLock&) = delete;
    VolumeLock& operator=(const VolumeLock&) = delete;

    HRESULT Result() const { return result; }
    const D3DVOLUME_DESC& Desc() const { return desc; }
    PixelTarget Slice(UINT slice) const
    {
        return {FindPixelFormat(desc.Format), desc.Width, desc.Height,
                static_cast<uint8_t*>(locked.pBits) +
                    static_cast<size_t>(locked.SlicePitch) * slice,
                static_cast<size_t>(locked.RowPitch)};
    }
    PixelSource SliceToRead(UINT slice) const
    {
        const PixelTarget target = Slice(slice);
        return {target.format, target.width, target.height, target.bits, target.pitchBytes};
    }

private:
    IDirect3DVolumeTexture9& volume; // not owned
    UINT level;
    D3DVOLUME_DESC desc = {};
    D3DLOCKED_BOX locked = {};
    HRESULT result;
};

/// The stored slices of a level.
HRESULT CopySlices(const VolumeLock& to, const DecodedImage& image, UINT level,
                   const SolidRequest& request)
{
    const ImageLevel& stored = image.levels[level];
    const PixelFormat& format = *FindPixelFormat(image.format);
    const size_t sliceBytes = ImageBytes(format, stored.width, stored.height);
    HRESULT result = D3D_OK;
    for (UINT slice = 0; SUCCEEDED(result) && slice < to.Desc().Depth; ++slice)
        result = CopyPixels(to.Slice(slice),
                            {&format, stored.width, stored.height, stored.bits + sliceBytes * slice,
                             stored.pitchBytes},
                            request.filter, request.colorKey);
    return result;
}

/// The mean of two colours, each byte rounded up.
uint32_t MeanOf(uint32_t a, uint32_t b)
{
    return (a | b) - (((a ^ b) >> 1) & 0x7F7F7F7F);
}

/// A slice from the one or two above it.
HRESULT FilterSlice(const VolumeLock& above, const VolumeLock& to, UINT slice, DWORD filter,
                    uint32_t* near, uint32_t* far)
{
    const D3DVOLUME_DESC& desc = to.Desc();
    const PixelFormat& colours = *FindPixelFormat(D3DFMT_A8R8G8B8);
    const size_t count = size_t{desc.Width} * desc.Height, pitch = size_t{desc.Width} * 4;
    const UINT last = above.Desc().Depth - 1;
    HRESULT result = CopyPixels({&colours, desc.Width, desc.Height, near, pitch},
                                above.SliceToRead(std::min(slice * 2, last)), filter, 0);
    if (SUCCEEDED(result))
        result = CopyPixels({&colours, desc.Width, desc.Height, far, pitch},
                            above.SliceToRead(std::min(slice * 2 + 1, last)), filter, 0);
    std::transform(near, near + count, far, near, MeanOf);
    if (FAILED(result))
        return result;
    return CopyPixels(to.Slice(slice), {&colours, desc.Width, desc.Height, near, pitch},
                      D3DX_FILTER_NONE, 0);
}

HRESULT FilterSlices(IDirect3DVolumeTexture9& volume, const VolumeLock& to, UINT level,
                     DWORD filter)
{
    const VolumeLock above(volume, level - 1, D3DLOCK_READONLY);
    if (FAILED(above.Result()))
        return above.Result();
    const size_t count = size_t{to.Desc().Width} * to.Desc().Height;
    const std::unique_ptr<uint32_t[]> colours(new (std::nothrow) uint32_t[count * 2]);
    if (!colours)
        return E_OUTOFMEMORY;
    HRESULT result = D3D_OK;
    for (UINT slice = 0; SUCCEEDED(result) && slice < to.Desc().Depth; ++slice)
        result = FilterSlice(above, to, slice, filter, colours.get(), colours.get() + count);
    return result;
}

HRESULT FillVolume(IDirect3DVolumeTexture9& volume, const DecodedImage& image,
                   const SolidRequest& request)
{
    const DWORD levels = volume.GetLevelCount();
    const UINT storedLevels = std::min(image.info.MipLevels, kMaxImageLevels);
    HRESULT result = D3D_OK;
    for (UINT level = 0; SUCCEEDED(result) && level < levels; ++level) {
        const VolumeLock lock(volume, level, 0);
        result = lock.Result();
        if (SUCCEEDED(result))
            result = level < storedLevels ? CopySlices(lock, image, level, request)
                                          : FilterSlices(volume, lock, level, request.mipFilter);
    }
    return result;
}

UINT LevelsOf(UINT longestSide)
{
    return static_cast<UINT>(std::bit_width(longestSide));
}

} // namespace

} // namespace headless

using namespace headless;

// UNMODELLED: textures in device memory that cannot be locked, which need a second one to be filled from.

HRESULT WINAPI D3DXCreateCubeTextureFromFileExA(IDirect3DDevice9* device, LPCSTR path, UINT size,
                                                UINT levels, DWORD usage, D3DFORMAT format,
                                                D3DPOOL pool, DWORD filter, DWORD mipFilter,
                                                D3DCOLOR colorKey, D3DXIMAGE_INFO* infoOut,
                                                PALETTEENTRY*, IDirect3DCubeTexture9** cubeOut)
{
    if (!device || !path || !cubeOut)
        return D3DERR_INVALIDCALL;
    SolidRequest request = {levels, usage, format, pool, filter, mipFilter, colorKey};
    PictureFile file;
    HRESULT result = Open(*device, path, D3DRTYPE_CUBETEXTURE, file, request);
    if (FAILED(result))
        return result;
    const DecodedImage& image = file.Image();
    if (image.faceCount != kFaces || image.info.Width != image.info.Height)
        return D3DXERR_INVALIDDATA;
    const UINT side = RoundUp(IsFromFile(size) ? image.info.Width : size, request.format);
    ComPointer<IDirect3DCubeTexture9> cube;
    result =
        device->CreateCubeTexture(side, FitLevels(request.levels, LevelsOf(side)), request.usage,
                                  request.format, request.pool, cube.Out(), nullptr);
    if (SUCCEEDED(result))
        result = FillCube(*cube.Get(), image, request);
    if (FAILED(result))
        return result;
    if (infoOut)
        *infoOut = image.info;
    *cubeOut = cube.Detach();
    return D3D_OK;
}

HRESULT WINAPI D3DXCreateVolumeTextureFromFileExA(IDirect3DDevice9* device, LPCSTR path, UINT width,
                                                  UINT height, UINT depth, UINT levels, DWORD usage,
                                                  D3DFORMAT format, D3DPOOL pool, DWORD filter,
                                                  DWORD mipFilter, D3DCOLOR colorKey,
                                                  D3DXIMAGE_INFO* infoOut, PALETTEENTRY*,
                                                  IDirect3DVolumeTexture9** volumeOut)
{
    if (!device || !path || !volumeOut || !IsFromFile(width) || !IsFromFile(height) ||
        !IsFromFile(depth))
        return D3DERR_INVALIDCALL;
    SolidRequest request = {levels, usage, format, pool, filter, mipFilter, colorKey};
    PictureFile file;
    HRESULT result = Open(*device, path, D3DRTYPE_VOLUMETEXTURE, file, request);
    if (FAILED(result))
        return result;
    const D3DXIMAGE_INFO& info = file.Image().info;
    const UINT across = RoundUp(info.Width, request.format);
    const UINT down = RoundUp(info.Height, request.format);
    const UINT most = LevelsOf(std::max({across, down, info.Depth}));
    ComPointer<IDirect3DVolumeTexture9> volume;
    result = device->CreateVolumeTexture(across, down, info.Depth, FitLevels(request.levels, most),
                                         request.usage, request.format, request.pool, volume.Out(),
                                         nullptr);
    if (SUCCEEDED(result))
        result = FillVolume(*volume.Get(), file.Image(), request);
    if (FAILED(result))
        return result;
    if (infoOut)
        *infoOut = info;
    *volumeOut = volume.Detach();
    return D3D_OK;
}
