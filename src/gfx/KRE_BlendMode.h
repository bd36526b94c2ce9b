#pragma once

#include <cstdint>

/// How pixels meet what is there already: the modes of `KRE_Gfx::SetBlendMode`. "Faded" means that
/// the mode's value, an alpha from 0 to 255, scales the picture.
enum KRE_BlendMode : int32_t {
    kBlendUnset = -1, ///< counts as `kBlendNone`
    kBlendNone = 1,
    kBlendScreen = 2,   ///< brightens: what is there shows through dark colours
    kBlendAdd = 3,      ///< adds, by the alpha of texture and vertex
    kBlendExclude = 4,  ///< each shows through where the other is dark
    kBlendSubtract = 5, ///< darkens by the inverse of the colour
    kBlendMultiply = 6,
    kBlendFaded = 7,              ///< by the alpha of the texture, faded
    kBlendAlpha = 9,              ///< by the alpha of texture and vertex
    kBlendFadedTwice = 10,        ///< fades what is faded already; from then on it is `kBlendFaded`
    kBlendSubtractByTexture = 11, ///< as `kBlendSubtract`; the vertex alpha argument is kept
    kBlendAddFaded = 12,
    kBlendConstant = 13,      ///< by the value alone
    kBlendKeepTarget = 14,    ///< leaves the colours that are there
    kBlendReplaceWith = 15,   ///< the texture's colour with the value as its alpha
    kBlendSum = 16,           ///< adds the texture's colour, alpha apart
    kBlendSubtractFaded = 17, ///< as `kBlendSubtract`, with the alpha faded
};
