#pragma once

#include "platform/headless/d3d9/Surface.h"

#include <memory>

namespace headless {

/// A flat texture: its levels, each half the size of the one before, and the area of level 0 that has
/// changed since the last `UpdateTexture`.
class HeadlessTexture final
    : public TextureOf<IDirect3DTexture9, IID_IDirect3DTexture9, D3DRTYPE_TEXTURE> {
public:
    /// `desc` describes level 0; `levels` is from 1 to `FullLevelCount`. The caller holds no
    /// reference yet. Null if memory runs out.
    static HeadlessTexture* Create(ResourceOwner& owner, const D3DSURFACE_DESC& desc, UINT levels);

    HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE GetSurfaceLevel(UINT level,
                                              IDirect3DSurface9** surfaceLevelOut) override;
    HRESULT STDMETHODCALLTYPE LockRect(UINT level, D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                       DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockRect(UINT level) override;
    HRESULT STDMETHODCALLTYPE AddDirtyRect(const RECT* dirtyRect) override;

    /// `level` must be below `GetLevelCount`.
    HeadlessSurface& Level(UINT level) { return *levels[level]; }

    /// Levels other than 0 have no effect.
    void MarkDirty(const HeadlessSurface& level, const RECT& area) override;
    /// The changed area of level 0, or an empty one; clears it.
    RECT TakeDirtyArea();

private:
    HeadlessTexture(ResourceOwner& textureOwner, const D3DSURFACE_DESC& desc);

    std::vector<std::unique_ptr<HeadlessSurface>> levels;
    RECT dirty = {};
};

} // namespace headless
