#pragma once

#include "gfx/KRE_SurfaceBase.h"
#include "platform/ComPointer.h"

/// A device surface: the back buffer, a level of a texture.
class KRE_Surface : public KRE_SurfaceBase {
public:
    KRE_Surface();
    ~KRE_Surface() override;

    void Lock(const RECT* area, DWORD flags) override;
    void Unlock() override;
    void GetRect(RECT* rectOut) const override { *rectOut = rect; }
    void GetSize(SIZE* sizeOut) const override;
    void GetFullSize(SIZE* sizeOut) const override { GetSize(sizeOut); }
    bool IsValid() const override { return static_cast<bool>(surface); }

    /// Frees what this object holds, takes the surface and reads its description. Null is allowed.
    /// A description that cannot be read, or a format that the engine does not read, is an `Error`.
    void SetSurface(ComPointer<IDirect3DSurface9> newSurface);
    /// Releases the surface unless other users of its id remain.
    void Free();

    ComPointer<IDirect3DSurface9> surface; ///< owned
    int32_t width = 0;
    int32_t height = 0;
    IDirect3DDevice9* device = nullptr; ///< not owned, lives in KRE_Gfx
    D3DSURFACE_DESC desc{};
    RECT rect{}; ///< the whole picture

private:
    void InitFormat();
};
