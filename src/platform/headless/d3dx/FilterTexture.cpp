#include "platform/headless/d3dx/FilterTexture.h"

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/LevelLock.h"

namespace headless {

HRESULT FillLowerLevels(IDirect3DTexture9& texture, UINT firstLevel, DWORD filter)
{
    const DWORD count = texture.GetLevelCount();
    for (UINT level = firstLevel; level < count; ++level) {
        const LevelLock above(texture, level - 1, D3DLOCK_READONLY);
        if (FAILED(above.Result()))
            return above.Result();
        const LevelLock here(texture, level, 0);
        if (FAILED(here.Result()))
            return here.Result();
        const HRESULT result = CopyPixels(here.Target(), above.Source(), filter, 0);
        if (FAILED(result))
            return result;
    }
    return D3D_OK;
}

} // namespace headless

using namespace headless;

HRESULT WINAPI D3DXFilterTexture(IDirect3DBaseTexture9* texture, const PALETTEENTRY*,
                                 UINT sourceLevel, DWORD filter)
{
    if (!texture || texture->GetType() != D3DRTYPE_TEXTURE)
        return D3DERR_INVALIDCALL;
    const UINT first = sourceLevel == D3DX_DEFAULT ? 0 : sourceLevel;
    DWORD checked = 0;
    const HRESULT result = CheckFilter(filter, D3DX_FILTER_BOX, checked);
    if (FAILED(result) || first >= texture->GetLevelCount())
        return D3DERR_INVALIDCALL;

    ComPointer<IDirect3DTexture9> flat;
    void* object = nullptr;
    if (FAILED(texture->QueryInterface(IID_IDirect3DTexture9, &object)))
        return D3DERR_INVALIDCALL;
    *flat.Out() = static_cast<IDirect3DTexture9*>(object);
    return FillLowerLevels(*flat.Get(), first + 1, checked);
}
