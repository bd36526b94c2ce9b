#pragma once

#include "platform/headless/d3d9/TexelCache.h"
#include "platform/headless/d3d9/TextureObject.h"

#include <memory>

namespace headless {

/// Texels of a volume, at most: so that their places fit into a word.
constexpr uint64_t kMaxVolumeTexels = uint64_t{1} << 28;

/// A texture of slices, with levels that have half the size in all three directions.
class HeadlessVolumeTexture final
    : public TextureOf<IDirect3DVolumeTexture9, IID_IDirect3DVolumeTexture9,
                       D3DRTYPE_VOLUMETEXTURE> {
public:
    /// `desc` describes a slice of level 0; `levels` is from 1 to `FullLevelCount`. The caller holds no
    /// reference yet. Null if memory runs out.
    static HeadlessVolumeTexture* Create(ResourceOwner& owner, const D3DSURFACE_DESC& desc,
                                         UINT depth, UINT levels);

    HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DVOLUME_DESC* descOut) override;
    /// UNMODELLED: levels as objects.
    HRESULT STDMETHODCALLTYPE GetVolumeLevel(UINT level, IDirect3DVolume9** volumeOut) override;
    HRESULT STDMETHODCALLTYPE LockBox(UINT level, D3DLOCKED_BOX* lockedOut, const D3DBOX* box,
                                      DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockBox(UINT level) override;
    HRESULT STDMETHODCALLTYPE AddDirtyBox(const D3DBOX* dirtyBox) override;

    /// UNMODELLED: volumes are not updated from system memory, so nobody asks what has changed.
    void MarkDirty(const HeadlessSurface&, const RECT&) override {}

private:
    struct Level {
        D3DVOLUME_DESC desc;
        SampledPicture picture; ///< the slices, below each other
        bool isLocked = false;
    };

    HeadlessVolumeTexture(ResourceOwner& textureOwner, const D3DSURFACE_DESC& desc, UINT depth);
    bool AddLevel(UINT number);

    const D3DSURFACE_DESC first; ///< a slice of level 0
    std::vector<std::unique_ptr<Level>> levels;
};

/// Rows of pixels that a slice of a volume takes: whole blocks.
UINT SliceRows(const PixelFormat& format, UINT height);

} // namespace headless
