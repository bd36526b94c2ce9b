#include "tests/support/Picture.h"

#include "tests/support/ComHandle.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <d3dx9.h>

namespace {

int ChannelStep(DWORD a, DWORD b, int shift)
{
    return std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF));
}

int LargestStep(DWORD a, DWORD b)
{
    return std::max(
        {ChannelStep(a, b, 0), ChannelStep(a, b, 8), ChannelStep(a, b, 16), ChannelStep(a, b, 24)});
}

DWORD DifferencePixel(DWORD a, DWORD b)
{
    DWORD pixel = 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8)
        pixel |= static_cast<DWORD>(std::min(255, ChannelStep(a, b, shift) * 8)) << shift;
    return pixel;
}

} // namespace

PictureDifference ComparePictures(const Picture& a, const Picture& b, int allowedStep)
{
    if (a.width != b.width || a.height != b.height)
        return {std::max(a.pixels.size(), b.pixels.size()), 255};
    PictureDifference difference;
    for (size_t i = 0; i < a.pixels.size(); ++i) {
        const int step = LargestStep(a.pixels[i], b.pixels[i]);
        difference.pixels += step > allowedStep;
        difference.largestStep = std::max(difference.largestStep, step);
    }
    return difference;
}

Picture DifferencePicture(const Picture& a, const Picture& b)
{
    Picture picture = a;
    for (size_t i = 0; i < picture.pixels.size(); ++i)
        picture.pixels[i] = DifferencePixel(a.pixels[i], b.pixels[i]);
    return picture;
}

bool WriteRawPicture(const std::string& path, const Picture& picture)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        return false;
    const size_t count = picture.pixels.size();
    const bool isWritten = std::fwrite(picture.pixels.data(), sizeof(DWORD), count, file) == count;
    return std::fclose(file) == 0 && isWritten;
}

bool WritePngPicture(IDirect3DDevice9* device, const std::string& path, const Picture& picture)
{
    IDirect3DSurface9* made = nullptr;
    device->CreateOffscreenPlainSurface(picture.width, picture.height, D3DFMT_A8R8G8B8,
                                        D3DPOOL_SYSTEMMEM, &made, nullptr);
    const ComHandle<IDirect3DSurface9> surface(made);
    D3DLOCKED_RECT locked = {};
    if (!surface || FAILED(surface->LockRect(&locked, nullptr, 0)))
        return false;
    for (UINT y = 0; y < picture.height; ++y)
        std::memcpy(static_cast<BYTE*>(locked.pBits) + ptrdiff_t{locked.Pitch} * y,
                    &picture.pixels[size_t{y} * picture.width], picture.width * sizeof(DWORD));
    surface->UnlockRect();
    return SUCCEEDED(
        D3DXSaveSurfaceToFileA(path.c_str(), D3DXIFF_PNG, surface.get(), nullptr, nullptr));
}

Picture ReadPngPicture(IDirect3DDevice9* device, const std::string& path)
{
    IDirect3DTexture9* made = nullptr;
    D3DXIMAGE_INFO info = {};
    D3DXCreateTextureFromFileExA(device, path.c_str(), D3DX_DEFAULT_NONPOW2, D3DX_DEFAULT_NONPOW2,
                                 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM, D3DX_FILTER_NONE,
                                 D3DX_FILTER_NONE, 0, &info, nullptr, &made);
    const ComHandle<IDirect3DTexture9> texture(made);
    D3DLOCKED_RECT locked = {};
    if (!texture || FAILED(texture->LockRect(0, &locked, nullptr, D3DLOCK_READONLY)))
        return {};
    Picture picture = {info.Width, info.Height, {}};
    picture.pixels.resize(size_t{info.Width} * info.Height);
    for (UINT y = 0; y < picture.height; ++y)
        std::memcpy(&picture.pixels[size_t{y} * picture.width],
                    static_cast<const BYTE*>(locked.pBits) + ptrdiff_t{locked.Pitch} * y,
                    picture.width * sizeof(DWORD));
    texture->UnlockRect(0);
    return picture;
}
