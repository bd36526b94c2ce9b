#pragma once

#include "platform/headless/d3d9/Surface.h"

#include <memory>

namespace headless {

/// Six square faces, each with its levels.
class HeadlessCubeTexture final
    : public TextureOf<IDirect3DCubeTexture9, IID_IDirect3DCubeTexture9, D3DRTYPE_CUBETEXTURE> {
public:
    /// `desc` describes level 0 of a face; `levels` is from 1 to `FullLevelCount`. The caller holds no
    /// reference yet. Null if memory runs out.
    static HeadlessCubeTexture* Create(ResourceOwner& owner, const D3DSURFACE_DESC& desc,
                                       UINT levels);

    HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE GetCubeMapSurface(D3DCUBEMAP_FACES face, UINT level,
                                                IDirect3DSurface9** surfaceOut) override;
    HRESULT STDMETHODCALLTYPE LockRect(D3DCUBEMAP_FACES face, UINT level, D3DLOCKED_RECT* lockedOut,
                                       const RECT* rect, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockRect(D3DCUBEMAP_FACES face, UINT level) override;
    HRESULT STDMETHODCALLTYPE AddDirtyRect(D3DCUBEMAP_FACES face, const RECT* dirtyRect) override;

    /// UNMODELLED: cubes are not updated from system memory, so nobody asks what has changed.
    void MarkDirty(const HeadlessSurface&, const RECT&) override {}

private:
    HeadlessCubeTexture(ResourceOwner& textureOwner, const D3DSURFACE_DESC& desc);
    /// Null for a face or a level that does not exist.
    HeadlessSurface* Find(D3DCUBEMAP_FACES face, UINT level) const;

    std::vector<std::unique_ptr<HeadlessSurface>> surfaces; ///< face by face
};

} // namespace headless
