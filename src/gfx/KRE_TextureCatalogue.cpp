#include "gfx/KRE_TextureCatalogue.h"

#include "gfx/KRE_Gfx.h"

static constexpr int32_t kFullMipChain = 0;

KRE_TextureCatalogue::KRE_TextureCatalogue(KRE_Gfx& gfxIn) : gfx(gfxIn)
{
    SetClassName("KRE_TextureCatalogue");
}

bool KRE_TextureCatalogue::AddTexture(const char* name, const char* file, D3DCOLOR colorKey,
                                      bool stretch)
{
    SearchTree<TextureData>::DataEntry* entry = textures.Insert(name);
    if (!entry) {
        Warning("Duplicate entry '%s' in file '%s'", name, file);
        return false;
    }
    entry->data.file.Assign(file);
    entry->data.colorKey = colorKey;
    entry->data.stretch = stretch;
    String path;
    if (!gfx.FindTextureFile(&path, file, ""))
        Warning("Texture file not found: '%s'", file);
    return true;
}

KRE_Texture* KRE_TextureCatalogue::GetTexture(const char* name)
{
    SearchTree<TextureData>::DataEntry* entry = textures.Find(name);
    if (!entry)
        return nullptr;
    return LoadOnce(entry->data);
}

KRE_Texture* KRE_TextureCatalogue::LoadOnce(TextureData& data)
{
    if (!data.texture)
        data.texture = Load(data);
    return data.texture.get();
}

bool KRE_TextureCatalogue::GetBaseTexture(const char* name, IDirect3DBaseTexture9** textureOut)
{
    SearchTree<TextureData>::DataEntry* entry = textures.Find(name);
    if (!entry)
        return false;
    TextureData& data = entry->data;
    String path;
    if (!data.solid && !data.texture && gfx.FindTextureFile(&path, data.file.c_str(), ""))
        data.solid = gfx.LoadSolidTexture(path.c_str());
    *textureOut = data.solid ? data.solid.Get() : LoadOnce(data)->current;
    return true;
}

std::unique_ptr<KRE_Texture> KRE_TextureCatalogue::Load(const TextureData& data)
{
    auto texture = std::make_unique<KRE_Texture>();
    String path;
    if (gfx.FindTextureFile(&path, data.file.c_str(), "")) {
        const int32_t mode = data.stretch ? int32_t{kLoadTextureUnset} : KRE_Gfx::kNoStretch;
        gfx.LoadTexture(texture.get(), path.c_str(), data.colorKey, mode, -1, kFullMipChain);
    } else {
        gfx.MakePlaceholder(texture.get());
    }
    return texture;
}

void KRE_TextureCatalogue::Free()
{
    textures.Clear();
}
