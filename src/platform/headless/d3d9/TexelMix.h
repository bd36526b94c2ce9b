#pragma once

#include "platform/headless/d3d9/TexelTaps.h"

namespace headless {

// Reading the texels of some pixels and mixing them.

/// One texel for each pixel; -1 reads the border colour.
template <typename F>
typename F::Ints GatherOrBorder(const Texels& level, typename F::Ints x, typename F::Ints y,
                                uint32_t border)
{
    const auto isInside = IsGreater(x | y, F::SplatInt(-1));
    const auto words = F::Gather(level.words, level.pitch, x & isInside, y & isInside);
    return Select(isInside, words, F::SplatInt(static_cast<int>(border)));
}

/// Mixes 8-bit channels in 16-bit lanes; 255 * 256 just fits. Shares are 0..256.
template <typename Ints>
Ints MixChannels(Ints a, Ints b, Ints shareOfA, Ints shareOfB, Ints half)
{
    const Ints sum = AddHalves(MultiplyHalves(a, shareOfA), MultiplyHalves(b, shareOfB));
    return ShiftHalvesRight(AddHalves(sum, half), 8);
}

/// Mixes two texels of each pixel by the pixel's own weight: even bytes first, then odd ones.
template <typename F>
typename F::Ints MixTexels(typename F::Ints a, typename F::Ints b, typename F::Ints share)
{
    const auto ofB = share | ShiftLeft(share, 16);
    const auto ofA = SubtractHalves(F::SplatHalf(256), ofB);
    const auto low = F::SplatHalf(0xFF), half = F::SplatHalf(128);
    const auto even = MixChannels(a & low, b & low, ofA, ofB, half);
    const auto odd = MixChannels(ShiftHalvesRight(a, 8), ShiftHalvesRight(b, 8), ofA, ofB, half);
    return even | ShiftHalvesLeft(odd, 8);
}

/// Mixes the four texels around each pixel.
template <typename F>
typename F::Ints MixFour(const Sampler& sampler, const Texels& level, const Taps<F>& x,
                         const Taps<F>& y)
{
    typename F::Ints texels[2][2]; // row, column
    const typename F::Ints rows[2] = {y.first, y.second};
    for (int i = 0; i < 2; ++i) {
        if ((x.outside | y.outside) == 0) {
            F::GatherPairs(level.words, level.pitch, x.first, rows[i], texels[i][0], texels[i][1]);
            continue;
        }
        texels[i][0] = GatherOrBorder<F>(level, x.first, rows[i], sampler.border);
        texels[i][1] = GatherOrBorder<F>(level, x.second, rows[i], sampler.border);
    }
    return MixTexels<F>(MixTexels<F>(texels[0][0], texels[0][1], x.share),
                        MixTexels<F>(texels[1][0], texels[1][1], x.share), y.share);
}

template <typename F>
Rgba<F> ToColours(const Sampler& sampler, typename F::Ints words)
{
    words = words | F::SplatInt(static_cast<int>(sampler.opaque));
    Rgba<F> colours = UnpackArgb<F>(words);
    for (int c = 0; sampler.isSigned && c < 2; ++c)
        colours.c[c] = (colours.c[c] * F::Splat(255.0f) - F::Splat(128.0f)) / F::Splat(127.0f);
    return colours;
}

/// sRGB texels as linear light.
template <typename F>
Rgba<F> Linearised(const Sampler& sampler, typename F::Ints words)
{
    Rgba<F> colours = ToColours<F>(sampler, words);
    for (int c = 0; c < 3; ++c) {
        alignas(32) float values[F::kCount];
        F::Store(values, colours.c[c]);
        LinearOfSrgb(values, F::kCount);
        colours.c[c] = F::Load(values);
    }
    return colours;
}

template <typename F>
Rgba<F> Mixed(const Rgba<F>& a, const Rgba<F>& b, typename F::Floats share)
{
    Rgba<F> mixed;
    for (int c = 0; c < 4; ++c)
        mixed.c[c] = a.c[c] + (b.c[c] - a.c[c]) * share;
    return mixed;
}

} // namespace headless
