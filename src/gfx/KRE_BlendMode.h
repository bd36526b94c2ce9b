#pragma once

#include <cstdint>

/// How pixels blend with the render target: the modes of `KRE_Gfx::SetBlendMode`. "Faded" means
/// that the mode's value, an alpha from 0 to 255, scales the source alpha.
enum KRE_BlendMode : int32_t {
    kBlendUnset = -1, ///< same as `kBlendNone`
    kBlendNone = 1,
    kBlendScreen = 2,   ///< brightens; the target shows through dark colours
    kBlendAdd = 3,      ///< adds, weighted by texture alpha times vertex alpha
    kBlendExclude = 4,  ///< each shows through where the other is dark
    kBlendSubtract = 5, ///< darkens by the inverse of the colour
    kBlendMultiply = 6,
    kBlendFaded = 7,              ///< weighted by texture alpha, faded
    kBlendAlpha = 9,              ///< by the alpha of texture and vertex
    kBlendFadedTwice = 10,        ///< scales the current value; the mode becomes `kBlendFaded`
    kBlendSubtractByTexture = 11, ///< as `kBlendSubtract`; leaves alpha argument 2 alone
    kBlendAddFaded = 12,
    kBlendConstant = 13,      ///< weighted by the value alone
    kBlendKeepTarget = 14,    ///< leaves the target's colours unchanged
    kBlendReplaceWith = 15,   ///< the texture's colour with the value as its alpha
    kBlendSum = 16,           ///< adds the texture's colour, whatever its alpha
    kBlendSubtractFaded = 17, ///< as `kBlendSubtract`, with the alpha faded
};
