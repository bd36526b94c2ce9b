#pragma once

#include <cstdint>

/// The settings of `KRE_Gfx::SetTextureFilter`, which makes one of them per call.
enum KRE_FilterSetting : int32_t {
    kFilterUnchanged = -1,
    kMagnifyLinear = 1,
    kMagnifyPoint = 2,
    kMinifyLinear = 3,
    kMinifyPoint = 4,
    kMinifyAnisotropic = 5,
    kMagnifyAnisotropic = 6,
    kAddressWrap = 7, ///< in both directions, as the next two
    kAddressClamp = 8,
    kAddressMirror = 9,
};

/// What a stage shows: the sources of `KRE_Gfx::SetRenderSource`.
enum KRE_RenderSource : int32_t {
    kSourceUnset = -1,  ///< same as `kSourceTexture`
    kSourceTexture = 1, ///< lit by the vertex colour
    kSourceVertexColor = 2,
    kSourceConstant = 3, ///< one colour, through the texture factor
};

/// Where `KRE_Gfx::LoadTexture` puts a picture. Flags may be added to modes from 0 on.
enum KRE_LoadMode : int32_t {
    kLoadTextureUnset = -1, ///< same as `kLoadTextureManaged`
    kLoadTextureManaged = 0,
    kLoadTextureDefaultPool = 1,
    kLoadTextureManagedToo = 2, ///< also the same as `kLoadTextureManaged`
    kLoadTextureRenderTarget = 3,
};

/// Where `KRE_Gfx::CreateTexture` puts an empty picture.
enum KRE_CreateMode : int32_t {
    kCreateTextureUnset = -1, ///< same as `kCreateTextureManaged`
    kCreateTextureDefaultPool = 1,
    kCreateTextureSystemMemory = 2,
    kCreateTextureRenderTarget = 3,
    kCreateTextureManaged = 4,
};

/// What `KRE_Gfx::CheckFormat` asks the device about; any other number means a plain texture.
enum KRE_FormatUse : int32_t {
    kFormatOfTexture = 0,
    kFormatOfRenderTarget = 3,
    kFormatOfDepthSurface = 5,
};
