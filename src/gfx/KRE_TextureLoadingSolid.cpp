// Cubes and volumes, which only effects use.

#include "gfx/KRE_TextureLoading.h"

#include "gfx/KRE_Gfx.h"

ComPointer<IDirect3DBaseTexture9> KRE_TextureLoading::LoadSolidTexture(const char* file)
{
    D3DXIMAGE_INFO info = {};
    if (gfx.noTextures || FAILED(D3DXGetImageInfoFromFile(file, &info)))
        return {};
    const DWORD caps = gfx.caps.TextureCaps;
    const auto format = gfx.ChooseTextureFormat(info);
    if (info.ResourceType == D3DRTYPE_CUBETEXTURE && (caps & D3DPTEXTURECAPS_CUBEMAP)) {
        const UINT levels = caps & D3DPTEXTURECAPS_MIPCUBEMAP ? 0 : 1; // 0 is the full chain
        ComPointer<IDirect3DCubeTexture9> cube;
        gfx.lastResult = D3DXCreateCubeTextureFromFileExA(
            gfx.device.Get(), file, 0, levels, 0, format, D3DPOOL_MANAGED, D3DX_FILTER_LINEAR,
            D3DX_FILTER_BOX, 0, nullptr, nullptr, cube.Out());
        CheckCreated(file);
        return ComPointer<IDirect3DBaseTexture9>::Adopt(cube.Detach());
    }
    if (info.ResourceType == D3DRTYPE_VOLUMETEXTURE && (caps & D3DPTEXTURECAPS_VOLUMEMAP)) {
        const UINT levels = caps & D3DPTEXTURECAPS_MIPVOLUMEMAP ? 0 : 1;
        ComPointer<IDirect3DVolumeTexture9> volume;
        gfx.lastResult = D3DXCreateVolumeTextureFromFileExA(
            gfx.device.Get(), file, 0, 0, 0, levels, 0, format, D3DPOOL_MANAGED, D3DX_FILTER_LINEAR,
            D3DX_FILTER_BOX, 0, nullptr, nullptr, volume.Out());
        CheckCreated(file);
        return ComPointer<IDirect3DBaseTexture9>::Adopt(volume.Detach());
    }
    return {};
}
