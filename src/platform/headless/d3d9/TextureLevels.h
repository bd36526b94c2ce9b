#pragma once

#include "platform/headless/d3d9/SrgbCurve.h"
#include "platform/headless/d3d9/TexelMix.h"

#include <algorithm>
#include <bit>

namespace headless {

// Sampling a texture whose pixels may read different levels with different filters.

/// How two coordinates change from a pixel to its right and lower neighbours.
template <typename F>
struct SlopesOf {
    typename F::Floats ux, vx, uy, vy;
};

/// Binary logarithm of positive numbers: the exponent, and a polynomial for the rest with an error
/// of at most 0.0013, far below a visible difference of levels.
template <typename Floats>
Floats CoarseLog2(Floats value)
{
    using F = Form<Floats>;
    const auto bits = AsInts(value);
    const Floats exponent = ToFloats(ShiftRight(bits, 23) - F::SplatInt(127));
    const Floats m = AsFloats((bits & F::SplatInt(0x7FFFFF)) | F::SplatInt(0x3F800000));
    // Exact at 1, 4/3, 5/3 and 2.
    Floats p = F::Splat(0.15397072f);
    p = p * m + F::Splat(-1.0348752f);
    p = p * m + F::Splat(3.0268306f);
    p = p * m + F::Splat(-2.1459261f);
    return exponent + p;
}

/// A squared length of a footprint, within what has a logarithm; NaN too.
template <typename F>
typename F::Floats UsableSquare(typename F::Floats square)
{
    return ClampLanes(square, F::Splat(1e-20f), F::Splat(1e20f));
}

/// The level for a footprint whose longer side, squared, is `square` texels.
template <typename F>
typename F::Floats LevelOfSquare(const Sampler& sampler, typename F::Floats square)
{
    return CoarseLog2(UsableSquare<F>(square)) * F::Splat(0.5f) + F::Splat(sampler.levelBias);
}

/// The level for the footprint of a pixel: the binary logarithm of its longer side in texels, plus
/// the bias. 0 and below means that the texture is magnified.
template <typename F>
typename F::Floats LevelOf(const Sampler& sampler, const SlopesOf<F>& slopes)
{
    const auto width = F::Splat(static_cast<float>(sampler.levels[0].width));
    const auto height = F::Splat(static_cast<float>(sampler.levels[0].height));
    const auto squared = [&](auto u, auto v) {
        const auto s = u * width, t = v * height;
        return s * s + t * t;
    };
    return LevelOfSquare<F>(sampler,
                            Max(squared(slopes.ux, slopes.vx), squared(slopes.uy, slopes.vy)));
}

template <typename F>
typename F::Ints SampleLevel(const Sampler& sampler, int index, bool isLinear, typename F::Floats u,
                             typename F::Floats v)
{
    const Texels& level = sampler.levels[index];
    if (isLinear)
        return MixFour<F>(sampler, level, LinearTaps(sampler.addressU, u, level.width),
                          LinearTaps(sampler.addressV, v, level.height));
    return GatherOrBorder<F>(level, NearestTap(sampler.addressU, u, level.width),
                             NearestTap(sampler.addressV, v, level.height), sampler.border);
}

/// Mixes the four texels around each pixel as linear light.
template <typename F>
Rgba<F> MixFourSrgb(const Sampler& sampler, const Texels& level, const Taps<F>& x, const Taps<F>& y)
{
    const auto texels = [&](auto column, auto row) {
        return Linearised<F>(sampler, GatherOrBorder<F>(level, column, row, sampler.border));
    };
    const auto across = ToFloats(x.share) * F::Splat(1.0f / 256.0f);
    const auto down = ToFloats(y.share) * F::Splat(1.0f / 256.0f);
    return Mixed(Mixed(texels(x.first, y.first), texels(x.second, y.first), across),
                 Mixed(texels(x.first, y.second), texels(x.second, y.second), across), down);
}

/// Like `SampleLevel`, but texels are linearised before they are mixed.
template <typename F>
Rgba<F> SampleSrgbLevel(const Sampler& sampler, int index, bool isLinear, typename F::Floats u,
                        typename F::Floats v)
{
    if (!isLinear)
        return Linearised<F>(sampler, SampleLevel<F>(sampler, index, false, u, v));
    const Texels& level = sampler.levels[index];
    return MixFourSrgb<F>(sampler, level, LinearTaps(sampler.addressU, u, level.width),
                          LinearTaps(sampler.addressV, v, level.height));
}

/// Reads one level of a flat texture, or of a face.
template <typename F>
struct FlatReader {
    const Sampler& sampler;
    typename F::Floats u, v;

    typename F::Ints Words(int index, bool isLinear) const
    {
        return SampleLevel<F>(sampler, index, isLinear, u, v);
    }
    Rgba<F> Srgb(int index, bool isLinear) const
    {
        return SampleSrgbLevel<F>(sampler, index, isLinear, u, v);
    }
};

/// What each pixel reads: level * 2, plus 1 for the linear filter.
template <typename F>
struct alignas(32) Choice {
    int32_t key[F::kCount];
};

/// Samples each combination of level and filter among the pixels once.
template <typename F, typename Reader>
Rgba<F> SampleChosen(const Sampler& sampler, const Reader& reader, const Choice<F>& choice,
                     int lanes)
{
    const auto keys = F::LoadInts(choice.key);
    auto words = F::SplatInt(0);
    Rgba<F> linear = SplatRgba<F>({0.0f, 0.0f, 0.0f, 0.0f});
    while (lanes != 0) {
        const int key = choice.key[std::countr_zero(static_cast<unsigned>(lanes))];
        const auto same = IsEqual(keys, F::SplatInt(key));
        if (sampler.isSrgb) {
            const Rgba<F> colours = reader.Srgb(key / 2, key % 2 != 0);
            for (int c = 0; c < 4; ++c)
                linear.c[c] = Select(AsFloats(same), colours.c[c], linear.c[c]);
        } else {
            words = Select(same, reader.Words(key / 2, key % 2 != 0), words);
        }
        lanes &= ~LaneBits(same);
    }
    return sampler.isSrgb ? linear : ToColours<F>(sampler, words);
}

template <typename F>
Choice<F> ChooseLevels(const Sampler& sampler, typename F::Floats wanted, bool isMagnified,
                       int small)
{
    alignas(32) float level[F::kCount];
    F::Store(level, wanted);
    Choice<F> choice;
    for (int lane = 0; lane < F::kCount; ++lane) {
        const bool isSmall = (small >> lane & 1) != 0;
        const bool linear = isSmall ? sampler.minifiesLinear : sampler.magnifiesLinear;
        int index = sampler.firstLevel;
        if (isSmall && !isMagnified)
            index =
                std::clamp(static_cast<int>(level[lane]), sampler.firstLevel, sampler.lastLevel);
        choice.key[lane] = index * 2 + (linear ? 1 : 0);
    }
    return choice;
}

/// What each pixel reads by its level: `sample` gives the colours of a choice.
template <typename F, typename Sample>
Rgba<F> AcrossLevels(const Sampler& sampler, typename F::Floats level, Sample sample)
{
    const int small = LaneBits(IsGreater(level, F::Splat(0.0f)));
    const auto chosen = [&](auto wanted, bool isMagnified) {
        return sample(ChooseLevels<F>(sampler, wanted, isMagnified, small));
    };
    // Covers every possible level and converts safely to an integer.
    const auto bounded = ClampLanes(level, F::Splat(0.0f), F::Splat(100.0f));
    if (sampler.mipFilter == D3DTEXF_NONE)
        return chosen(bounded, true);
    if (!sampler.MixesLevels())
        return chosen(bounded + F::Splat(0.5f), false);
    const auto share = bounded - F::FloorSmall(bounded);
    // Magnified pixels mix the same colour twice.
    return Mixed(chosen(bounded, false), chosen(bounded + F::Splat(1.0f), false), share);
}

/// A flat texture with any states. Only pixels with a bit in `lanes` need be correct.
template <typename F>
Rgba<F> SampleAny(const Sampler& sampler, typename F::Floats u, typename F::Floats v,
                  typename F::Floats level, int lanes)
{
    if (!sampler.NeedsLevel()) {
        if (sampler.isSrgb)
            return SampleSrgbLevel<F>(sampler, sampler.firstLevel, sampler.minifiesLinear, u, v);
        return ToColours<F>(
            sampler, SampleLevel<F>(sampler, sampler.firstLevel, sampler.minifiesLinear, u, v));
    }
    const FlatReader<F> reader = {sampler, u, v};
    return AcrossLevels<F>(sampler, level, [&](const Choice<F>& choice) {
        return SampleChosen<F>(sampler, reader, choice, lanes);
    });
}

} // namespace headless
