// What pictures the device can hold, and pictures that come from no file.

#include "gfx/KRE_Gfx.h"

#include "base/Paths.h"
#include "gfx/TextureSearchSink.h"

void (*gTextureSearchSink)(const char* name, const char* path) = nullptr;

namespace {

struct CreateMode {
    int32_t mode;
    DWORD usage;
    D3DPOOL pool;
};

constexpr CreateMode kCreateModes[] = {
    {-1, 0, D3DPOOL_MANAGED},  {1, 0, D3DPOOL_DEFAULT},
    {2, 0, D3DPOOL_SYSTEMMEM}, {3, D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT},
    {4, 0, D3DPOOL_MANAGED},
};

constexpr int32_t kPlaceholderSide = 4;
constexpr D3DCOLOR kPlaceholderColor = 0xFF969696;

const CreateMode* FindCreateMode(int32_t mode)
{
    for (const CreateMode& entry : kCreateModes) {
        if (entry.mode == mode)
            return &entry;
    }
    return nullptr;
}

} // namespace

int32_t KRE_Gfx::CheckFormat(D3DFORMAT format, int32_t mode)
{
    const DWORD usage = mode == 3 ? D3DUSAGE_RENDERTARGET : mode == 5 ? D3DUSAGE_DEPTHSTENCIL : 0;
    lastResult =
        d3d->CheckDeviceFormat(adapter, deviceType, displayFormat, usage, D3DRTYPE_TEXTURE, format);
    if (SUCCEEDED(lastResult))
        return 1;
    Warning("Texture format %i mode %i not supported by device", static_cast<int>(format), mode);
    return 0;
}

void KRE_Gfx::SetTextureCompression(int32_t level, int32_t minimumPixels)
{
    if (level > 0 && !CheckFormat(D3DFMT_DXT1, 0))
        Error("Texture compression DXT1 not supported by hardware");
    if (level > 1 && !CheckFormat(D3DFMT_DXT5, 0))
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
    // A picture of 24 bits is told as either of these two, by the library's version.
    const bool isPlain = info.Format == D3DFMT_X8R8G8B8 || info.Format == D3DFMT_R8G8B8;
    if (info.Format == D3DFMT_X1R5G5B5 || (isPlain && displayFormat == D3DFMT_R5G6B5))
        return D3DFMT_R5G6B5;
    return D3DFMT_UNKNOWN;
}

bool KRE_Gfx::FindTextureFile(String* pathOut, const char* name, const char* directory)
{
    bool isByLeaf = false;
    *pathOut = LocateTexture(name, directory, &isByLeaf);
    if (isByLeaf)
        TellOfLeaf(name, pathOut->c_str());
    if (gTextureSearchSink)
        gTextureSearchSink(name, pathOut->c_str());
    const bool found = !pathOut->IsEmpty();
    if (!found)
        pathOut->Assign(name);
    return found;
}

bool KRE_Gfx::FindEffectFile(String* pathOut, const char* name, const char* directory)
{
    *pathOut = ResolveEffectPath(name, directory);
    const bool found = !pathOut->IsEmpty();
    if (!found)
        pathOut->Assign(name);
    return found;
}

bool KRE_Gfx::NeedsPowersOfTwo() const
{
    return (caps.TextureCaps & D3DPTEXTURECAPS_POW2) != 0;
}

ComPointer<IDirect3DTexture9> KRE_Gfx::MakeDeviceTexture(int32_t width, int32_t height,
                                                         int32_t mipLevels, DWORD usage,
                                                         D3DFORMAT format, D3DPOOL pool,
                                                         const char* failureText)
{
    UINT across = static_cast<UINT>(width);
    UINT down = static_cast<UINT>(height);
    if (NeedsPowersOfTwo()) {
        across = NextPowerOfTwo(across);
        down = NextPowerOfTwo(down);
    }
    ComPointer<IDirect3DTexture9> made;
    Check(device->CreateTexture(across, down, static_cast<UINT>(mipLevels), usage, format, pool,
                                made.Out(), nullptr),
          failureText);
    return made;
}

void KRE_Gfx::CreateTexture(KRE_Texture* texture, int32_t width, int32_t height, int32_t mode,
                            int32_t format, int32_t mipLevels)
{
    if (!texture)
        Error("KRE_Texture pointer in CreateTexture is NULL pointer!");
    texture->FreeCurrent();
    texture->SetDevice(device.Get());
    const CreateMode* entry = FindCreateMode(mode);
    if (!entry)
        Error("Wrong texture parameter in CreateTexture!");
    const D3DFORMAT chosen = format == -1 ? backBufferFormat : static_cast<D3DFORMAT>(format);
    texture->textureIsDynamic = 1;
    ComPointer<IDirect3DTexture9> made =
        MakeDeviceTexture(width, height, mipLevels, entry->usage, chosen, entry->pool,
                          " D3DXCreateTexture failed: %s ");
    RegisterTexture(*texture, std::move(made), "");
    if (texture->sequenceCount == 0)
        texture->slotDefaultPool[texture->currentSlot] = entry->pool == D3DPOOL_DEFAULT ? 1 : 0;
    texture->sourceWidth = static_cast<float>(width);
    texture->sourceHeight = static_cast<float>(height);
    texture->Refresh();
}

void KRE_Gfx::RegisterTexture(KRE_Texture& texture, ComPointer<IDirect3DTexture9> made,
                              const char* name)
{
    const int32_t id = textureManager.Add(made.Get(), name);
    texture.PutTexture(&textureManager, id, made.Detach());
}

bool KRE_Gfx::ShareTexture(KRE_Texture& texture, const char* name)
{
    const int32_t id = textureManager.reuse ? textureManager.Acquire(name) : -1;
    if (id == -1)
        return false;
    void* const shared = textureManager.GetPointer(id);
    if (!shared) { // a reset has taken it away
        textureManager.Unacquire(id);
        return false;
    }
    texture.PutTexture(&textureManager, id, static_cast<IDirect3DTexture9*>(shared));
    return true;
}

void KRE_Gfx::MakePlaceholder(KRE_Texture* texture)
{
    CreateTexture(texture, kPlaceholderSide, kPlaceholderSide, -1, -1, 1);
    texture->Fill(kPlaceholderColor);
    texture->Unlock();
}

void KRE_Gfx::FreeTextures()
{
    currentTexture = nullptr;
    catalogue.Free();
    screenTexture.Free();
    for (KRE_VideoSource& source : videoSources)
        source.texture.Free();
}
