#include "platform/headless/d3d9/TextureObject.h"

#include "platform/headless/d3d9/CubeTexture.h"
#include "platform/headless/d3d9/Texture.h"
#include "platform/headless/d3d9/VolumeTexture.h"

#include <algorithm>

namespace headless {

TextureObject::TextureObject(ResourceOwner& textureOwner, const D3DSURFACE_DESC& desc)
    : ResourceLife(textureOwner, ObjectKind::Texture, desc.Pool),
      pool(desc.Pool),
      usage(desc.Usage),
      format(desc.Format)
{}

TextureObject* TextureObject::Of(IDirect3DBaseTexture9* texture)
{
    if (!texture)
        return nullptr;
    switch (texture->GetType()) {
    case D3DRTYPE_CUBETEXTURE:
        return static_cast<HeadlessCubeTexture*>(texture);
    case D3DRTYPE_VOLUMETEXTURE:
        return static_cast<HeadlessVolumeTexture*>(texture);
    default:
        return static_cast<HeadlessTexture*>(texture);
    }
}

DWORD TextureObject::SetLeastLevel(DWORD level)
{
    const DWORD last = picture.leastLevel;
    if (pool == D3DPOOL_MANAGED)
        picture.leastLevel = std::min<DWORD>(level, LevelCount() - 1);
    return last;
}

bool IsLockableTexture(D3DPOOL pool, DWORD usage)
{
    return pool != D3DPOOL_DEFAULT || (usage & D3DUSAGE_DYNAMIC) != 0;
}

UINT FullLevelCount(UINT width, UINT height, UINT depth)
{
    UINT count = 1;
    for (UINT side = std::max({width, height, depth}); side > 1; side /= 2)
        ++count;
    return count;
}

} // namespace headless
