#pragma once

#include "platform/headless/d3d9/TexelCache.h"
#include "platform/headless/d3d9/TextureObject.h"

namespace headless {

/// A picture of the device: a render target, a depth buffer, an off-screen surface or a texture
/// level. A level has no lifetime of its own: its references are the texture's.
class HeadlessSurface final : public Resource<IDirect3DSurface9, IID_IDirect3DSurface9> {
public:
    /// A stand-alone surface. The caller holds no reference yet. `lockable` says whether `LockRect`
    /// is allowed. Null if memory runs out.
    static HeadlessSurface* Create(ResourceOwner& owner, const D3DSURFACE_DESC& desc,
                                   bool lockable);
    /// A level, owned by `texture`. Null if memory runs out.
    static std::unique_ptr<HeadlessSurface> CreateLevel(TextureObject& texture,
                                                        const D3DSURFACE_DESC& desc, bool lockable);
    ~HeadlessSurface();

    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_SURFACE; }
    /// For a level its texture, else the device.
    HRESULT STDMETHODCALLTYPE GetContainer(REFIID iid, void** containerOut) override;
    HRESULT STDMETHODCALLTYPE GetDesc(D3DSURFACE_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE LockRect(D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                       DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockRect() override;
    HRESULT STDMETHODCALLTYPE GetDC(HDC* dcOut) override;
    HRESULT STDMETHODCALLTYPE ReleaseDC(HDC dc) override;

    void AddBinding();
    void RemoveBinding();

    const D3DSURFACE_DESC& Desc() const { return desc; }
    PixelBuffer& Pixels() { return picture.pixels; }
    SampledPicture& Picture() { return picture; }
    bool IsLocked() const { return locked; }
    bool IsTextureLevel() const { return texture != nullptr; }

private:
    HeadlessSurface(const D3DSURFACE_DESC& surfaceDesc, bool isLockable);
    ResourceOwner& GetOwner() const override;
    D3DPOOL ResourcePool() const override { return desc.Pool; }
    ResourceLife& Life() const;

    /// The lifetime of a stand-alone surface; deletes the surface along with itself.
    class OwnLife;
    OwnLife* ownLife = nullptr;       ///< owns this surface; null for a level
    TextureObject* texture = nullptr; ///< not owned, outlives this; null if stand-alone
    D3DSURFACE_DESC desc;
    SampledPicture picture;
    const bool lockable;
    bool locked = false;
    bool writesWhileLocked = false;
};

} // namespace headless
