#pragma once

#include "platform/headless/d3d9/TextureLevels.h"

namespace headless {

// Textures that a level and two coordinates are not enough for: cubes, volumes, and flat ones through
// an anisotropic filter.

// ---- Cubes

/// Where directions meet a cube: the face, and a flat footprint on it.
template <typename F>
struct OnFace {
    typename F::Ints face; ///< D3DCUBEMAP_FACES
    TextureFootprint<F> flat;
};

/// The face of the largest component, x before y before z. Each face's u and v lie along two of the axes
/// as the public layout of cubes says.
template <typename F>
OnFace<F> FindFace(const TextureFootprint<F>& footprint)
{
    using Floats = typename F::Floats;
    const auto zero = F::Splat(0.0f), half = F::Splat(0.5f);
    const TexturePlace<F>& at = footprint.at;
    const Floats x = Absolute(at.u), y = Absolute(at.v), z = Absolute(at.w);
    const Floats isX = AsFloats(AsInts(IsLess(x, y) | IsLess(x, z)) ^ F::SplatInt(-1));
    const Floats isZ = Select(isX, zero, IsLess(y, z));
    const auto major = [&](const TexturePlace<F>& of) {
        return Select(isX, of.u, Select(isZ, of.w, of.v));
    };
    const Floats isNegative = IsLess(major(at), zero);
    const Floats sign = Select(isNegative, F::Splat(-1.0f), F::Splat(1.0f));
    const auto across = [&](const TexturePlace<F>& of) {
        return Select(isX, zero - of.w * sign, Select(isZ, of.u * sign, of.u));
    };
    const auto down = [&](const TexturePlace<F>& of) {
        return Select(isX | isZ, zero - of.v, of.w * sign);
    };
    const Floats scale = F::Splat(1.0f) / (major(at) * sign);
    const Floats s = across(at) * scale, t = down(at) * scale;
    const auto slope = [&](const TexturePlace<F>& of) { // by the quotient rule
        const Floats change = major(of) * sign;
        return TexturePlace<F>{(across(of) - s * change) * scale * half,
                               (down(of) - t * change) * scale * half, zero};
    };
    OnFace<F> found;
    found.face =
        Select(AsInts(isX), F::SplatInt(0), Select(AsInts(isZ), F::SplatInt(4), F::SplatInt(2))) -
        AsInts(isNegative); // a set mask is -1
    found.flat = {
        {s * half + half, t * half + half, zero}, slope(footprint.dx), slope(footprint.dy)};
    return found;
}

/// Reads one level of a face. The filter ends at its edges, whatever the address modes say.
template <typename F>
struct FaceReader {
    const Sampler& sampler;
    typename F::Floats u, v;

    Taps<F> Across(const Texels& level) const
    {
        return LinearTaps<D3DTADDRESS_CLAMP>(u, level.width);
    }
    Taps<F> Down(const Texels& level) const
    {
        return LinearTaps<D3DTADDRESS_CLAMP>(v, level.height);
    }
    typename F::Ints Words(int index, bool isLinear) const
    {
        const Texels& level = sampler.levels[index];
        if (isLinear)
            return MixFour<F>(sampler, level, Across(level), Down(level));
        return F::Gather(level.words, level.pitch, NearestTap<D3DTADDRESS_CLAMP>(u, level.width),
                         NearestTap<D3DTADDRESS_CLAMP>(v, level.height));
    }
    Rgba<F> Srgb(int index, bool isLinear) const
    {
        const Texels& level = sampler.levels[index];
        if (isLinear)
            return MixFourSrgb<F>(sampler, level, Across(level), Down(level));
        return Linearised<F>(sampler, Words(index, false));
    }
};

template <typename F>
Rgba<F> SampleFace(const Sampler& sampler, const OnFace<F>& on, typename F::Floats level, int lanes)
{
    alignas(32) int32_t faces[F::kCount];
    F::Store(faces, on.face);
    const FaceReader<F> reader = {sampler, on.flat.at.u, on.flat.at.v};
    return AcrossLevels<F>(sampler, level, [&](const Choice<F>& ofFace) {
        Choice<F> choice = ofFace;
        for (int lane = 0; lane < F::kCount; ++lane)
            choice.key[lane] += faces[lane] * kMaxLevels * 2;
        return SampleChosen<F>(sampler, reader, choice, lanes);
    });
}

// ---- Volumes

/// The row of the picture of a level that holds row `y` of slice `z`; -1 if one of them is the border.
template <typename F>
typename F::Ints RowOfSlice(const Texels& level, typename F::Ints y, typename F::Ints z)
{
    alignas(32) int32_t rows[F::kCount], slices[F::kCount];
    F::Store(rows, y);
    F::Store(slices, z);
    for (int lane = 0; lane < F::kCount; ++lane)
        rows[lane] =
            rows[lane] < 0 || slices[lane] < 0 ? -1 : slices[lane] * level.sliceRows + rows[lane];
    return F::LoadInts(rows);
}

/// Reads one level of a volume.
template <typename F>
struct VolumeReader {
    const Sampler& sampler;
    TexturePlace<F> at;

    /// The eight texels around each pixel, as two slices of four.
    struct Around {
        Taps<F> x, nearRows, farRows;
        typename F::Ints share; ///< of the far slice
    };

    Around Find(const Texels& level) const
    {
        const Taps<F> y = LinearTaps(sampler.addressV, at.v, level.height);
        const Taps<F> z = LinearTaps(sampler.addressW, at.w, level.depth);
        const auto rows = [&](auto slice) {
            // Neighbouring rows of a slice may be border, so each is looked at.
            return Taps<F>{RowOfSlice<F>(level, y.first, slice),
                           RowOfSlice<F>(level, y.second, slice), y.share, 1};
        };
        return {LinearTaps(sampler.addressU, at.u, level.width), rows(z.first), rows(z.second),
                z.share};
    }

    typename F::Ints Nearest(const Texels& level) const
    {
        const auto row = RowOfSlice<F>(level, NearestTap(sampler.addressV, at.v, level.height),
                                       NearestTap(sampler.addressW, at.w, level.depth));
        return GatherOrBorder<F>(level, NearestTap(sampler.addressU, at.u, level.width), row,
                                 sampler.border);
    }

    typename F::Ints Words(int index, bool isLinear) const
    {
        const Texels& level = sampler.levels[index];
        if (!isLinear)
            return Nearest(level);
        const Around around = Find(level);
        return MixTexels<F>(MixFour<F>(sampler, level, around.x, around.nearRows),
                            MixFour<F>(sampler, level, around.x, around.farRows), around.share);
    }

    Rgba<F> Srgb(int index, bool isLinear) const
    {
        const Texels& level = sampler.levels[index];
        if (!isLinear)
            return Linearised<F>(sampler, Nearest(level));
        const Around around = Find(level);
        return Mixed(MixFourSrgb<F>(sampler, level, around.x, around.nearRows),
                     MixFourSrgb<F>(sampler, level, around.x, around.farRows),
                     ToFloats(around.share) * F::Splat(1.0f / 256.0f));
    }
};

template <typename F>
Rgba<F> SampleVolume(const Sampler& sampler, const TexturePlace<F>& at, typename F::Floats level,
                     int lanes)
{
    const VolumeReader<F> reader = {sampler, at};
    return AcrossLevels<F>(sampler, level, [&](const Choice<F>& choice) {
        return SampleChosen<F>(sampler, reader, choice, lanes);
    });
}

/// As `LevelOf`, with three coordinates.
template <typename F>
typename F::Floats LevelInVolume(const Sampler& sampler, const TextureFootprint<F>& footprint)
{
    const Texels& level = sampler.levels[0];
    const auto squared = [&](const TexturePlace<F>& step) {
        const auto s = step.u * F::Splat(static_cast<float>(level.width));
        const auto t = step.v * F::Splat(static_cast<float>(level.height));
        const auto r = step.w * F::Splat(static_cast<float>(level.depth));
        return s * s + t * t + r * r;
    };
    return LevelOfSquare<F>(sampler, Max(squared(footprint.dx), squared(footprint.dy)));
}

// ---- Anisotropic filters

/// How a footprint is sampled: at some places along its longer side, each at the level of its shorter
/// one.
template <typename F>
struct Walk {
    typename F::Floats level;
    typename F::Floats count;
    typename F::Floats u, v; ///< the longer side
};

/// A footprint up to 1/64 longer than wide counts as square. One too long for the most samples takes a
/// higher level, so that they touch each other. A pixel that the filter of magnified textures serves
/// takes one sample.
template <typename F>
Walk<F> FindWalk(const Sampler& sampler, const TextureFootprint<F>& footprint,
                 typename F::Floats bias)
{
    const auto squared = [&](const TexturePlace<F>& step) {
        const auto s = step.u * F::Splat(static_cast<float>(sampler.levels[0].width));
        const auto t = step.v * F::Splat(static_cast<float>(sampler.levels[0].height));
        return UsableSquare<F>(s * s + t * t);
    };
    const auto right = squared(footprint.dx), down = squared(footprint.dy);
    const auto isDown = IsLess(right, down);
    const auto longer = Max(right, down), shorter = Min(right, down);
    const auto most = static_cast<float>(sampler.maxAnisotropy);
    const auto narrow = Max(shorter, longer * F::Splat(1.0f / (most * most)));
    const auto one = F::Splat(1.0f);
    auto count = one;
    for (int i = 1; i < sampler.maxAnisotropy; ++i) {
        const float ratio = static_cast<float>(i) + 1.0f / 64.0f;
        count = count + (IsGreater(longer, shorter * F::Splat(ratio * ratio)) & one);
    }
    const auto isSmall = IsGreater(LevelOfSquare<F>(sampler, longer) + bias, F::Splat(0.0f));
    const auto level = LevelOfSquare<F>(sampler, narrow) + bias;
    // Just above 0 is the largest level through the filter of minified textures.
    return {Select(isSmall, Max(level, F::Splat(1e-6f)), level), Select(isSmall, count, one),
            Select(isDown, footprint.dy.u, footprint.dx.u),
            Select(isDown, footprint.dy.v, footprint.dx.v)};
}

template <typename F>
Rgba<F> SampleAnisotropic(const Sampler& sampler, const TextureFootprint<F>& footprint,
                          typename F::Floats bias, int lanes)
{
    const Walk<F> walk = FindWalk<F>(sampler, footprint, bias);
    const auto share = F::Splat(1.0f) / walk.count;
    Rgba<F> sum = SplatRgba<F>({0.0f, 0.0f, 0.0f, 0.0f});
    for (int i = 0;; ++i) {
        const auto number = F::Splat(static_cast<float>(i));
        const auto isTaken = IsLess(number, walk.count);
        const int left = lanes & LaneBits(isTaken);
        if (left == 0)
            return sum;
        const auto way = (number + F::Splat(0.5f)) * share - F::Splat(0.5f);
        const Rgba<F> colour = SampleAny<F>(sampler, footprint.at.u + walk.u * way,
                                            footprint.at.v + walk.v * way, walk.level, left);
        for (int c = 0; c < 4; ++c)
            sum.c[c] = sum.c[c] + (colour.c[c] * share & isTaken);
    }
}

// ---- All of them

/// At a level that is given.
template <typename F>
Rgba<F> SamplePlace(const Sampler& sampler, const TexturePlace<F>& at, typename F::Floats level,
                    int lanes)
{
    if (sampler.kind == TextureKind::Cube)
        return SampleFace<F>(sampler, FindFace<F>({at, at, at}), level, lanes);
    if (sampler.kind == TextureKind::Volume)
        return SampleVolume<F>(sampler, at, level, lanes);
    return SampleAny<F>(sampler, at.u, at.v, level, lanes);
}

/// At the level that the footprint needs, plus `bias` and the sampler's own.
template <typename F>
Rgba<F> SampleFootprint(const Sampler& sampler, const TextureFootprint<F>& footprint,
                        typename F::Floats bias, int lanes)
{
    if (sampler.maxAnisotropy > 1)
        return SampleAnisotropic<F>(sampler, footprint, bias, lanes);
    if (sampler.kind == TextureKind::Volume)
        return SampleVolume<F>(sampler, footprint.at, LevelInVolume<F>(sampler, footprint) + bias,
                               lanes);
    const auto flatLevel = [&](const TextureFootprint<F>& flat) {
        return LevelOf<F>(sampler, {flat.dx.u, flat.dx.v, flat.dy.u, flat.dy.v}) + bias;
    };
    if (sampler.kind == TextureKind::Flat)
        return SampleAny<F>(sampler, footprint.at.u, footprint.at.v, flatLevel(footprint), lanes);
    const OnFace<F> on = FindFace<F>(footprint);
    return SampleFace<F>(sampler, on, flatLevel(on.flat), lanes);
}

} // namespace headless
