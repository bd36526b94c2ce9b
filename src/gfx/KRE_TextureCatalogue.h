#pragma once

#include <memory>

#include <d3d9.h>

#include "base/KRE_Base.h"
#include "base/SearchTree.h"
#include "base/String.h"
#include "gfx/KRE_Texture.h"
#include "platform/ComPointer.h"

class KRE_Gfx;

/// Textures by name that load when first used. The embedding program fills it with `AddTexture`;
/// there is no file format for catalogues. Names are printable ASCII; others are an `Error` of the
/// tree.
class KRE_TextureCatalogue : public KRE_Base {
public:
    /// `gfxIn` must outlive the catalogue; it is not used before the first operation.
    explicit KRE_TextureCatalogue(KRE_Gfx& gfxIn);

    /// Adds an entry. A name that already exists causes a warning and returns false; the first
    /// entry stays. A file that cannot be found only causes a warning. `stretch` allows resampling.
    bool AddTexture(const char* name, const char* file, D3DCOLOR colorKey, bool stretch);
    /// The texture of a name, owned here until `Free`, or null for a name without an entry. A file
    /// that cannot be found gives a small grey picture; one that cannot be read is an `Error`.
    KRE_Texture* GetTexture(const char* name);
    /// The same for effects: a file that holds a cube or a volume gives all of it, where the device has
    /// such textures. False for a name without an entry; then `textureOut` is not written.
    bool GetBaseTexture(const char* name, IDirect3DBaseTexture9** textureOut);
    /// Forgets all entries and frees their textures.
    void Free();

private:
    struct TextureData {
        std::unique_ptr<KRE_Texture> texture; ///< owned; null until first used
        ComPointer<IDirect3DBaseTexture9>
            solid; ///< a cube or a volume; null until an effect used it
        String file;
        D3DCOLOR colorKey = 0;
        bool stretch = true;
    };

    std::unique_ptr<KRE_Texture> Load(const TextureData& data);
    KRE_Texture* LoadOnce(TextureData& data);

    KRE_Gfx& gfx;
    SearchTree<TextureData> textures;
};
