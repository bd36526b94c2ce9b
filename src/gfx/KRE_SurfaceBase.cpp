#include "gfx/KRE_SurfaceBase.h"

#include <algorithm>

#include "gfx/KRE_BlockPixel.h"
#include "platform/LittleEndian.h"

namespace {

/// The samples along one side of a picture: `count` of them, `step` pixels apart.
struct SampleLine {
    explicit SampleLine(int32_t side)
        : count(std::min(std::clamp(side / 16, 4, 64), side)),
          step(side / count)
    {
        const int32_t rest = side % count;
        start = (rest == 0 ? step : rest) / 2;
    }

    int32_t At(int32_t i) const { return start + i * step; }

    int32_t count;
    int32_t step;
    int32_t start;
};

} // namespace

void KRE_SurfaceBase::InitFormat(D3DFORMAT newFormat)
{
    const KRE_PixelFormat* entry = LookUpPixelFormat(newFormat);
    if (!entry)
        Error("Unsupported pixel format! (%i)", static_cast<int>(newFormat));
    format = newFormat;
    encodePixel = entry->encode;
    decodePixel = entry->decode;
    if (entry->bytesPerPixel > 0)
        bytesPerPixel = entry->bytesPerPixel;
}

void KRE_SurfaceBase::BeginLock(const D3DLOCKED_RECT& bits, const RECT* rect, const SIZE& size)
{
    lockRect = rect ? *rect : RECT{0, 0, size.cx, size.cy};
    // A device may accept a rectangle that extends beyond the picture, but has no bytes for that
    // part.
    lockRect.right = std::min(lockRect.right, size.cx);
    lockRect.bottom = std::min(lockRect.bottom, size.cy);
    lockedBits = bits;
    lockedPitch = bits.Pitch;
    locked = 1;
}

void KRE_SurfaceBase::EndLock()
{
    locked = 0;
    lockedBits = {};
}

bool KRE_SurfaceBase::IsReadable(int32_t x, int32_t y) const
{
    return locked && x >= lockRect.left && x < lockRect.right && y >= lockRect.top &&
           y < lockRect.bottom;
}

/// Address of a pixel of the locked area; the bytes start at the area's top left.
uint8_t* KRE_SurfaceBase::PixelBytes(int32_t x, int32_t y) const
{
    uint8_t* row = static_cast<uint8_t*>(lockedBits.pBits) +
                   static_cast<ptrdiff_t>(y - lockRect.top) * lockedPitch;
    return row + static_cast<ptrdiff_t>(x - lockRect.left) * bytesPerPixel;
}

bool KRE_SurfaceBase::GetPixel(int32_t x, int32_t y, D3DCOLOR* colorOut) const
{
    if (!IsReadable(x, y) || IsBlockFormat(format))
        return false;
    *colorOut = decodePixel(LoadPixelBytes(PixelBytes(x, y), static_cast<size_t>(bytesPerPixel)));
    return true;
}

bool KRE_SurfaceBase::PutPixel(int32_t x, int32_t y, D3DCOLOR color)
{
    if (!IsReadable(x, y) || IsBlockFormat(format))
        return false;
    StorePixelBytes(PixelBytes(x, y), encodePixel(color), static_cast<size_t>(bytesPerPixel));
    return true;
}

bool KRE_SurfaceBase::GetCompressedPix(int32_t x, int32_t y, D3DCOLOR* colorOut)
{
    if (!IsBlockFormat(format))
        return GetPixel(x, y, colorOut);
    if (!IsReadable(x, y))
        return false;
    const int32_t blockSize = BlockSize(format);
    if (blockSize == 0)
        Error("Unsupported texture compression format for GetCompressedPix()");
    const int32_t column = x - lockRect.left;
    const int32_t row = y - lockRect.top;
    const uint8_t* block = static_cast<const uint8_t*>(lockedBits.pBits) +
                           static_cast<ptrdiff_t>(row / 4) * lockedPitch +
                           static_cast<ptrdiff_t>(column / 4) * blockSize;
    *colorOut = ReadBlockPixel(format, block, column % 4, row % 4);
    return true;
}

void KRE_SurfaceBase::Fill(D3DCOLOR color)
{
    if (IsBlockFormat(format))
        Error("Can not fill a picture of compressed format (%i)", static_cast<int>(format));
    Lock(nullptr, 0);
    const DWORD pixel = encodePixel(color);
    const size_t size = static_cast<size_t>(bytesPerPixel);
    for (int32_t y = lockRect.top; y < lockRect.bottom; ++y) {
        uint8_t* at = PixelBytes(lockRect.left, y);
        for (int32_t x = lockRect.left; x < lockRect.right; ++x, at += size)
            StorePixelBytes(at, pixel, size);
    }
}

bool KRE_SurfaceBase::MayHaveAlpha() const
{
    return format == D3DFMT_A8R8G8B8 || format == D3DFMT_A4R4G4B4 || format == D3DFMT_DXT5;
}

bool KRE_SurfaceBase::HasAlpha()
{
    SIZE size = {};
    GetSize(&size);
    if (alphaState == -1 && IsValid() && size.cx > 0 && size.cy > 0) {
        alphaState = 0;
        if (MayHaveAlpha()) {
            Lock(nullptr, D3DLOCK_READONLY);
            alphaState = ScanAlpha(size) ? 1 : 0;
            Unlock();
        }
    }
    return alphaState > 0;
}

/// Samples a grid of pixels. Returns whether any alpha is neither 0 nor 255.
bool KRE_SurfaceBase::ScanAlpha(const SIZE& size)
{
    const SampleLine across(size.cx);
    const SampleLine down(size.cy);
    for (int32_t row = 0; row < down.count; ++row) {
        for (int32_t column = 0; column < across.count; ++column) {
            D3DCOLOR color = 0;
            GetCompressedPix(across.At(column), down.At(row), &color);
            const D3DCOLOR alpha = color >> 24;
            if (alpha != 0 && alpha != 255)
                return true;
        }
    }
    return false;
}
