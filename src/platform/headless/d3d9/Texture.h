#pragma once

#include "platform/headless/d3d9/DrawState.h"
#include "platform/headless/d3d9/Surface.h"

namespace headless {

/// A texture: its levels, each half the size of the one before, and the area of level 0 that has
/// changed since the last `UpdateTexture`.
class HeadlessTexture final
    : public Resource<IDirect3DTexture9, IID_IDirect3DBaseTexture9, IID_IDirect3DTexture9>,
      public ResourceLife {
public:
    /// `desc` describes level 0; `levels` is from 1 to `FullLevelCount`. The caller holds no
    /// reference yet. Null if memory runs out.
    static HeadlessTexture* Create(ResourceOwner& owner, const D3DSURFACE_DESC& desc, UINT levels);

    ULONG STDMETHODCALLTYPE AddRef() override { return AddReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return RemoveReference(); }
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_TEXTURE; }
    DWORD STDMETHODCALLTYPE SetLOD(DWORD newLod) override;
    DWORD STDMETHODCALLTYPE GetLOD() override { return picture.leastLevel; }
    DWORD STDMETHODCALLTYPE GetLevelCount() override { return static_cast<DWORD>(levels.size()); }
    HRESULT STDMETHODCALLTYPE SetAutoGenFilterType(D3DTEXTUREFILTERTYPE filterType) override;
    D3DTEXTUREFILTERTYPE STDMETHODCALLTYPE GetAutoGenFilterType() override;
    void STDMETHODCALLTYPE GenerateMipSubLevels() override;
    HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE GetSurfaceLevel(UINT level,
                                              IDirect3DSurface9** surfaceLevelOut) override;
    HRESULT STDMETHODCALLTYPE LockRect(UINT level, D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                       DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockRect(UINT level) override;
    HRESULT STDMETHODCALLTYPE AddDirtyRect(const RECT* dirtyRect) override;

    /// `level` must be below `GetLevelCount`.
    HeadlessSurface& Level(UINT level) { return *levels[level]; }
    D3DPOOL Pool() const { return pool; }
    TexturePicture& Picture() { return picture; }

    /// Extends the changed area by `area` of `level`; levels other than 0 have no effect.
    void MarkDirty(const HeadlessSurface& level, const RECT& area);
    /// The changed area of level 0, or an empty one; clears it.
    RECT TakeDirtyArea();

private:
    HeadlessTexture(ResourceOwner& textureOwner, const D3DSURFACE_DESC& desc);
    ResourceOwner& GetOwner() const override { return Owner(); }
    D3DPOOL ResourcePool() const override { return pool; }

    std::vector<std::unique_ptr<HeadlessSurface>> levels;
    const D3DPOOL pool;
    TexturePicture picture; ///< of the levels
    RECT dirty = {};
};

/// Number of levels down to 1 by 1: 1 for a side of 1, 9 for 256.
UINT FullLevelCount(UINT width, UINT height);

} // namespace headless
