#pragma once

#include "platform/headless/d3d9/DrawState.h"
#include "platform/headless/d3d9/Resource.h"

namespace headless {

class HeadlessSurface;

/// A texture of any kind, as the device and the levels see it.
class TextureObject : public ResourceLife {
public:
    /// The object of an interface of this host; null for null.
    static TextureObject* Of(IDirect3DBaseTexture9* texture);

    D3DPOOL Pool() const { return pool; }
    DWORD Usage() const { return usage; }
    D3DFORMAT Format() const { return format; }
    TexturePicture& Picture() { return picture; }
    UINT LevelCount() const { return static_cast<UINT>(picture.LevelCount()); }
    /// For all levels or none. Only managed textures keep it. Returns the last one.
    DWORD SetLeastLevel(DWORD level);

    virtual IDirect3DBaseTexture9& Interface() = 0;
    /// Extends what has changed since the last `UpdateTexture` by an area of a level.
    virtual void MarkDirty(const HeadlessSurface& level, const RECT& area) = 0;

protected:
    TextureObject(ResourceOwner& textureOwner, const D3DSURFACE_DESC& desc);

    TexturePicture picture; ///< of the levels

private:
    const D3DPOOL pool;
    const DWORD usage;
    const D3DFORMAT format;
};

/// What textures of all kinds do alike.
template <typename Interface9, const IID& Id, D3DRESOURCETYPE Type>
class TextureOf : public Resource<Interface9, IID_IDirect3DBaseTexture9, Id>, public TextureObject {
public:
    ULONG STDMETHODCALLTYPE AddRef() final { return AddReference(); }
    ULONG STDMETHODCALLTYPE Release() final { return RemoveReference(); }
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() final { return Type; }
    DWORD STDMETHODCALLTYPE SetLOD(DWORD newLod) final { return SetLeastLevel(newLod); }
    DWORD STDMETHODCALLTYPE GetLOD() final { return picture.leastLevel; }
    DWORD STDMETHODCALLTYPE GetLevelCount() final { return LevelCount(); }
    HRESULT STDMETHODCALLTYPE SetAutoGenFilterType(D3DTEXTUREFILTERTYPE filterType) final
    {
        return Unmodelled("SetAutoGenFilterType", filterType);
    }
    D3DTEXTUREFILTERTYPE STDMETHODCALLTYPE GetAutoGenFilterType() final { return D3DTEXF_NONE; }
    void STDMETHODCALLTYPE GenerateMipSubLevels() final { Unmodelled("GenerateMipSubLevels"); }

    IDirect3DBaseTexture9& Interface() final { return *this; }

protected:
    using TextureObject::TextureObject;

private:
    ResourceOwner& GetOwner() const final { return Owner(); }
    D3DPOOL ResourcePool() const final { return Pool(); }
};

/// Callers cannot access the default pool, except for dynamic textures.
bool IsLockableTexture(D3DPOOL pool, DWORD usage);

/// Number of levels down to 1 by 1 by 1: 1 for sides of 1, 9 for 256.
UINT FullLevelCount(UINT width, UINT height, UINT depth = 1);

} // namespace headless
