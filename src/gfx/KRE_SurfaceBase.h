#pragma once

#include <cstdint>

#include <d3d9.h>

#include "gfx/KRE_PixelFormat.h"
#include "gfx/KRE_ResourceBase.h"

/// What surfaces and textures share: a picture whose pixels can be locked, read and written.
/// Coordinates are whole pixels of the picture, from its top left.
class KRE_SurfaceBase : public KRE_ResourceBase {
public:
    /// Gives access to the pixels of `rect`, null for the whole picture, until `Unlock`; `flags` are
    /// D3DLOCK flags. A failure is an `Error`, which includes a picture that is locked already.
    virtual void Lock(const RECT* rect, DWORD flags) = 0;
    virtual void Unlock() = 0;
    /// The part of the picture that is used, in pixels.
    virtual void GetRect(RECT* rectOut) const = 0;
    /// Width and height in pixels of the level that `Lock` locks.
    virtual void GetSize(SIZE* sizeOut) const = 0;
    virtual void GetFullSize(SIZE* sizeOut) const = 0;
    /// Whether there is a picture.
    virtual bool IsValid() const = 0;

    /// Reads a pixel of the locked area. Outside it, without a lock and for block formats, returns
    /// false and writes nothing.
    bool GetPixel(int32_t x, int32_t y, D3DCOLOR* colorOut) const;
    /// Writes a pixel of the locked area. Fails in the same cases as `GetPixel`.
    bool PutPixel(int32_t x, int32_t y, D3DCOLOR color);
    /// Reads a pixel of a DXT1 or DXT5 picture, with the shortcuts of `ReadBlockPixel`; for a plain
    /// format it is `GetPixel`. DXT2 to DXT4 are an `Error`.
    bool GetCompressedPix(int32_t x, int32_t y, D3DCOLOR* colorOut);
    /// Locks the whole picture and gives every pixel the colour. The caller unlocks. A picture in a
    /// block format is an `Error`.
    void Fill(D3DCOLOR color);
    /// Whether the picture has real alpha; determined from samples, once for each picture.
    /// QUIRK: a picture whose alpha is only 0 and 255 is a cut-out; the result is false.
    bool HasAlpha();

    D3DFORMAT format = D3DFMT_UNKNOWN;
    int32_t bytesPerPixel = 0; ///< block formats leave it unchanged
    int16_t alphaState = -1;   ///< -1 unknown, 0 no alpha, 1 alpha
    int32_t locked = 0;
    RECT lockRect{}; ///< of the last lock
    int32_t lockedPitch = 0;
    D3DLOCKED_RECT lockedBits{};       ///< of the last lock; the bytes belong to the device
    EncodePixel encodePixel = nullptr; ///< chosen by the format
    DecodePixel decodePixel = nullptr;

protected:
    KRE_SurfaceBase() = default;

    /// Sets the pixel format; one that the engine does not read is an `Error`.
    void InitFormat(D3DFORMAT newFormat);
    /// Stores the result of a device lock. A null `rect` means the whole of `size`.
    void BeginLock(const D3DLOCKED_RECT& bits, const RECT* rect, const SIZE& size);
    void EndLock();

private:
    bool IsReadable(int32_t x, int32_t y) const;
    uint8_t* PixelBytes(int32_t x, int32_t y) const;
    bool MayHaveAlpha() const;
    bool ScanAlpha(const SIZE& size);
};
