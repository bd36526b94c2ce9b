// Pictures without a file, and how any picture gets into a texture.

#include "gfx/KRE_TextureLoading.h"

#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"

namespace {

struct CreateMode {
    KRE_CreateMode mode;
    DWORD usage;
    D3DPOOL pool;
};

constexpr CreateMode kCreateModes[] = {
    {kCreateTextureUnset, 0, D3DPOOL_MANAGED},
    {kCreateTextureDefaultPool, 0, D3DPOOL_DEFAULT},
    {kCreateTextureSystemMemory, 0, D3DPOOL_SYSTEMMEM},
    {kCreateTextureRenderTarget, D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT},
    {kCreateTextureManaged, 0, D3DPOOL_MANAGED},
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

bool KRE_TextureLoading::NeedsPowersOfTwo() const
{
    return (gfx.caps.TextureCaps & D3DPTEXTURECAPS_POW2) != 0;
}

ComPointer<IDirect3DTexture9> KRE_TextureLoading::MakeDeviceTexture(int32_t width, int32_t height,
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
    gfx.Check(gfx.device->CreateTexture(across, down, static_cast<UINT>(mipLevels), usage, format,
                                        pool, made.Out(), nullptr),
              failureText);
    return made;
}

void KRE_TextureLoading::CreateTexture(KRE_Texture* texture, int32_t width, int32_t height,
                                       int32_t mode, int32_t format, int32_t mipLevels)
{
    if (!texture)
        gfx.Error("KRE_Texture pointer in CreateTexture is NULL pointer!");
    texture->FreeCurrent();
    texture->SetDevice(gfx.device.Get());
    const CreateMode* entry = FindCreateMode(mode);
    if (!entry)
        gfx.Error("Wrong texture parameter in CreateTexture!");
    const D3DFORMAT chosen = format == -1 ? gfx.backBufferFormat : static_cast<D3DFORMAT>(format);
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

void KRE_TextureLoading::RegisterTexture(KRE_Texture& texture, ComPointer<IDirect3DTexture9> made,
                                         const char* name)
{
    const int32_t id = gfx.textureManager.Add(made.Get(), name);
    texture.PutTexture(&gfx.textureManager, id, made.Detach());
}

bool KRE_TextureLoading::ShareTexture(KRE_Texture& texture, const char* name)
{
    const int32_t id = gfx.textureManager.reuse ? gfx.textureManager.Acquire(name) : -1;
    if (id == -1)
        return false;
    void* const shared = gfx.textureManager.GetPointer(id);
    if (!shared) { // a reset has released it
        gfx.textureManager.Unacquire(id);
        return false;
    }
    texture.PutTexture(&gfx.textureManager, id, static_cast<IDirect3DTexture9*>(shared));
    return true;
}

void KRE_TextureLoading::MakePlaceholder(KRE_Texture* texture)
{
    CreateTexture(texture, kPlaceholderSide, kPlaceholderSide, kCreateTextureUnset, -1, 1);
    texture->Fill(kPlaceholderColor);
    texture->Unlock();
}
