#pragma once

#include <cstdint>

#include "base/String.h"

/// Options of a scene load, as bits.
enum QSA_LoadFlag : uint32_t {
    kLoadSingleMipLevel = 1, ///< textures get one mip level
    kLoadBumpMaps = 2,       ///< bump maps are loaded, and vertices get room for them
    kLoadNoTextures = 4,
    kLoadVertexColors = 8,  ///< vertices get diffuse and specular colours
    kLoadSystemMemory = 16, ///< mesh buffers stay in system memory
};

/// What the caller of a load asks for.
struct QSA_LoadOptions {
    uint32_t flags = 0; ///< `QSA_LoadFlag`s
    String directory;   ///< of the scene file; searched first for its textures

    bool Has(QSA_LoadFlag flag) const { return (flags & flag) != 0; }
    /// Mip levels of textures, as `KRE_Gfx::LoadTexture` takes them: 0 for all.
    int32_t MipLevels() const { return Has(kLoadSingleMipLevel) ? 1 : 0; }
};
