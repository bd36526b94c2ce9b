// Which picture formats the device can hold, and the calls that forward to texture loading.

#include "gfx/KRE_Gfx.h"

#include "base/Paths.h"
#include "gfx/KRE_TextureLoading.h"

int32_t KRE_Gfx::CheckFormat(D3DFORMAT format, int32_t mode)
{
    const DWORD usage = mode == kFormatOfRenderTarget   ? D3DUSAGE_RENDERTARGET
                        : mode == kFormatOfDepthSurface ? D3DUSAGE_DEPTHSTENCIL
                                                        : 0;
    lastResult =
        d3d->CheckDeviceFormat(adapter, deviceType, displayFormat, usage, D3DRTYPE_TEXTURE, format);
    if (SUCCEEDED(lastResult))
        return 1;
    Warning("Texture format %i mode %i not supported by device", static_cast<int>(format), mode);
    return 0;
}

void KRE_Gfx::SetTextureCompression(int32_t level, int32_t minimumPixels)
{
    if (level > 0 && !CheckFormat(D3DFMT_DXT1, kFormatOfTexture))
        Error("Texture compression DXT1 not supported by hardware");
    if (level > 1 && !CheckFormat(D3DFMT_DXT5, kFormatOfTexture))
        Error("Texture compression DXT5 not supported by hardware");
    textureCompression = level;
    pixelsForCompression = minimumPixels;
}

D3DFORMAT KRE_Gfx::ChooseTextureFormat(const D3DXIMAGE_INFO& info) const
{
    const uint64_t pixels = uint64_t{NextPowerOfTwo(info.Width)} * NextPowerOfTwo(info.Height);
    if (textureCompression > 0 &&
        (pixelsForCompression < 0 || static_cast<uint64_t>(pixelsForCompression) <= pixels)) {
        if (IsBlockFormat(info.Format))
            return info.Format;
        const bool hasAlpha = info.Format == D3DFMT_A8R8G8B8 || info.Format == D3DFMT_A1R5G5B5 ||
                              info.Format == D3DFMT_A4R4G4B4;
        return hasAlpha ? D3DFMT_DXT5 : D3DFMT_DXT1;
    }
    // A 24-bit picture is reported as either of these, depending on the library's version.
    const bool isPlain = info.Format == D3DFMT_X8R8G8B8 || info.Format == D3DFMT_R8G8B8;
    if (info.Format == D3DFMT_X1R5G5B5 || (isPlain && displayFormat == D3DFMT_R5G6B5))
        return D3DFMT_R5G6B5;
    return D3DFMT_UNKNOWN;
}

void KRE_Gfx::FreeTextures()
{
    currentTexture = nullptr;
    catalogue.Free();
    screenTexture.Free();
    for (KRE_VideoSource& source : videoSources)
        source.texture.Free();
}

// ---- Loading

void KRE_Gfx::LoadTexture(KRE_Texture* texture, const char* file, D3DCOLOR colorKey, int32_t mode,
                          int32_t format, int32_t mipLevels)
{
    textureLoading->LoadTexture(texture, file, colorKey, mode, format, mipLevels);
}

ComPointer<IDirect3DBaseTexture9> KRE_Gfx::LoadSolidTexture(const char* file)
{
    return textureLoading->LoadSolidTexture(file);
}

void KRE_Gfx::CreateTexture(KRE_Texture* texture, int32_t width, int32_t height, int32_t mode,
                            int32_t format, int32_t mipLevels)
{
    textureLoading->CreateTexture(texture, width, height, mode, format, mipLevels);
}

void KRE_Gfx::MakePlaceholder(KRE_Texture* texture)
{
    textureLoading->MakePlaceholder(texture);
}

void KRE_Gfx::MakeResourceName(String* nameOut, const char* file)
{
    KRE_TextureLoading::MakeResourceName(nameOut, file);
}

void KRE_Gfx::UpdateVideoSource(int32_t source)
{
    textureLoading->UpdateVideoSource(source);
}
