#include "platform/headless/d3d9/TextureSample.h"

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/SrgbCurve.h"

#include <algorithm>
#include <bit>

namespace headless {

namespace {

/// Where to read along one axis: two adjacent texels and the weight of the second in 1/256. -1
/// means the border colour.
struct alignas(16) Taps {
    int32_t first[4];
    int32_t second[4];
    IntLanes share;
};

/// Applies the address mode to a coordinate: 0..1 spans the picture. The border mode may leave that
/// range.
template <D3DTEXTUREADDRESS Mode>
Lanes Fold(Lanes value)
{
    const Lanes one = Splat(1.0f);
    switch (Mode) {
    case D3DTADDRESS_WRAP:
        return value - Floor(value);
    case D3DTADDRESS_MIRROR: {
        const Lanes half = value * Splat(0.5f);
        const Lanes pair = half - Floor(half); // 0..1 over a picture and its mirror
        return one - Absolute(one - (pair + pair));
    }
    case D3DTADDRESS_MIRRORONCE:
        return Absolute(value);
    default:
        return value;
    }
}

/// The texels that contain the coordinates.
template <D3DTEXTUREADDRESS Mode>
void NearestTaps(Lanes value, int size, Taps& tapsOut)
{
    const float last = static_cast<float>(size - 1);
    const Lanes place = Floor(Fold<Mode>(value) * Splat(static_cast<float>(size)));
    IntLanes texel = Truncate(ClampLanes(place, Splat(0.0f), Splat(last)));
    if (Mode == D3DTADDRESS_BORDER) {
        const Lanes outside = IsLess(place, Splat(0.0f)) | IsGreater(place, Splat(last));
        texel = texel | AsInts(outside); // all bits set: -1
    }
    StoreInts(tapsOut.first, texel);
}

/// Texels before the first or after the last one become `before` and `behind`.
IntLanes Settle(IntLanes texel, IntLanes lastTexel, int before, int behind)
{
    const IntLanes isBefore = IsLess(texel, SplatInt(0));
    const IntLanes isBehind = IsGreater(texel, lastTexel);
    texel = Select(isBefore, SplatInt(before), texel);
    return Select(isBehind, SplatInt(behind), texel);
}

/// The two texels whose centres enclose the coordinates.
template <D3DTEXTUREADDRESS Mode>
void LinearTaps(Lanes value, int size, Taps& tapsOut)
{
    constexpr bool hasBorder = Mode == D3DTADDRESS_BORDER;
    const float extent = static_cast<float>(size);
    const Lanes scaled = Fold<Mode>(value) * Splat(extent);
    const Lanes place = ClampLanes(scaled - Splat(0.5f), Splat(hasBorder ? -1.0f : -0.5f),
                                   Splat(hasBorder ? extent : extent - 0.5f));
    const Lanes whole = FloorSmall(place);
    IntLanes first = Truncate(whole);
    IntLanes second = first + SplatInt(1);
    const IntLanes lastTexel = SplatInt(size - 1);
    const IntLanes isOut = IsLess(first, SplatInt(0)) | IsGreater(second, lastTexel);
    if (LaneBits(isOut) != 0) {
        // Past the edge, wrap reads the other edge, border stays outside, all other modes read the
        // edge.
        constexpr bool wraps = Mode == D3DTADDRESS_WRAP;
        const int before = hasBorder ? -1 : (wraps ? size - 1 : 0);
        const int behind = hasBorder ? -1 : (wraps ? 0 : size - 1);
        first = Settle(first, lastTexel, before, behind);
        second = Settle(second, lastTexel, before, behind);
    }
    const Lanes share = (place - whole) * Splat(256.0f);
    StoreInts(tapsOut.first, first);
    StoreInts(tapsOut.second, second);
    tapsOut.share = Round(share);
}

using TapFunction = void (*)(Lanes value, int size, Taps& tapsOut);

/// Indexed by address mode, starting at D3DTADDRESS_WRAP.
constexpr TapFunction kNearestTaps[] = {
    NearestTaps<D3DTADDRESS_WRAP>, NearestTaps<D3DTADDRESS_MIRROR>, NearestTaps<D3DTADDRESS_CLAMP>,
    NearestTaps<D3DTADDRESS_BORDER>, NearestTaps<D3DTADDRESS_MIRRORONCE>};
constexpr TapFunction kLinearTaps[] = {
    LinearTaps<D3DTADDRESS_WRAP>, LinearTaps<D3DTADDRESS_MIRROR>, LinearTaps<D3DTADDRESS_CLAMP>,
    LinearTaps<D3DTADDRESS_BORDER>, LinearTaps<D3DTADDRESS_MIRRORONCE>};

/// One texel for each of the four pixels.
template <bool HasBorder>
IntLanes Gather(const Texels& level, const int32_t (&x)[4], const int32_t (&y)[4], uint32_t border)
{
    const auto texel = [&](int lane) {
        if (HasBorder && (x[lane] | y[lane]) < 0)
            return static_cast<int>(border);
        return static_cast<int>(level.words[ptrdiff_t{y[lane]} * level.pitch + x[lane]]);
    };
    return MakeInts(texel(0), texel(1), texel(2), texel(3));
}

/// Mixes eight 8-bit channels in 16-bit lanes; 255 * 256 just fits. `shareOfB` is 0..256.
inline IntLanes MixChannels(IntLanes a, IntLanes b, IntLanes shareOfA, IntLanes shareOfB)
{
    const IntLanes sum = AddHalves(MultiplyHalves(a, shareOfA), MultiplyHalves(b, shareOfB));
    return ShiftHalvesRight(AddHalves(sum, SplatHalf(128)), 8);
}

/// Mixes two texels of each pixel by the pixel's own weight: even bytes first, then odd ones.
inline IntLanes MixTexels(IntLanes a, IntLanes b, IntLanes share)
{
    const IntLanes ofB = share | ShiftLeft(share, 16);
    const IntLanes ofA = SubtractHalves(SplatHalf(256), ofB);
    const IntLanes low = SplatHalf(0xFF);
    const IntLanes even = MixChannels(a & low, b & low, ofA, ofB);
    const IntLanes odd = MixChannels(ShiftHalvesRight(a, 8), ShiftHalvesRight(b, 8), ofA, ofB);
    return even | ShiftHalvesLeft(odd, 8);
}

template <bool HasBorder>
IntLanes SampleLinear(const Sampler& sampler, const Texels& level, Lanes u, Lanes v)
{
    Taps x, y;
    kLinearTaps[sampler.addressU - D3DTADDRESS_WRAP](u, level.width, x);
    kLinearTaps[sampler.addressV - D3DTADDRESS_WRAP](v, level.height, y);
    const IntLanes top =
        MixTexels(Gather<HasBorder>(level, x.first, y.first, sampler.border),
                  Gather<HasBorder>(level, x.second, y.first, sampler.border), x.share);
    const IntLanes bottom =
        MixTexels(Gather<HasBorder>(level, x.first, y.second, sampler.border),
                  Gather<HasBorder>(level, x.second, y.second, sampler.border), x.share);
    return MixTexels(top, bottom, y.share);
}

IntLanes SampleLevel(const Sampler& sampler, int levelIndex, bool isLinear, Lanes u, Lanes v)
{
    const Texels& level = sampler.levels[levelIndex];
    const bool hasBorder =
        sampler.addressU == D3DTADDRESS_BORDER || sampler.addressV == D3DTADDRESS_BORDER;
    if (isLinear)
        return hasBorder ? SampleLinear<true>(sampler, level, u, v)
                         : SampleLinear<false>(sampler, level, u, v);
    Taps x, y;
    kNearestTaps[sampler.addressU - D3DTADDRESS_WRAP](u, level.width, x);
    kNearestTaps[sampler.addressV - D3DTADDRESS_WRAP](v, level.height, y);
    return hasBorder ? Gather<true>(level, x.first, y.first, sampler.border)
                     : Gather<false>(level, x.first, y.first, sampler.border);
}

Rgba4 ToColours(const Sampler& sampler, IntLanes words)
{
    words = words | SplatInt(static_cast<int>(sampler.opaque));
    Rgba4 colours = UnpackColours(words);
    if (sampler.isSigned)
        for (int c = 0; c < 2; ++c)
            colours.c[c] = (colours.c[c] * Splat(255.0f) - Splat(128.0f)) / Splat(127.0f);
    return colours;
}

/// sRGB texels as linear light.
Rgba4 Linearised(const Sampler& sampler, IntLanes words)
{
    Rgba4 colours = ToColours(sampler, words);
    for (int c = 0; c < 3; ++c)
        colours.c[c] = LinearOfSrgb(colours.c[c]);
    return colours;
}

Rgba4 Mixed(const Rgba4& a, const Rgba4& b, Lanes share)
{
    Rgba4 mixed;
    for (int c = 0; c < 4; ++c)
        mixed.c[c] = a.c[c] + (b.c[c] - a.c[c]) * share;
    return mixed;
}

/// Like `SampleLevel`, but texels are linearised before they are mixed.
Rgba4 SampleSrgbLevel(const Sampler& sampler, int levelIndex, bool isLinear, Lanes u, Lanes v)
{
    if (!isLinear)
        return Linearised(sampler, SampleLevel(sampler, levelIndex, false, u, v));
    const Texels& level = sampler.levels[levelIndex];
    Taps x, y;
    kLinearTaps[sampler.addressU - D3DTADDRESS_WRAP](u, level.width, x);
    kLinearTaps[sampler.addressV - D3DTADDRESS_WRAP](v, level.height, y);
    const auto texels = [&](const int32_t(&column)[4], const int32_t(&row)[4]) {
        return Linearised(sampler, Gather<true>(level, column, row, sampler.border));
    };
    const Lanes across = ToFloats(x.share) * Splat(1.0f / 256.0f);
    const Lanes down = ToFloats(y.share) * Splat(1.0f / 256.0f);
    return Mixed(Mixed(texels(x.first, y.first), texels(x.second, y.first), across),
                 Mixed(texels(x.first, y.second), texels(x.second, y.second), across), down);
}

Rgba4 SampleColours(const Sampler& sampler, int levelIndex, bool isLinear, Lanes u, Lanes v)
{
    return sampler.isSrgb ? SampleSrgbLevel(sampler, levelIndex, isLinear, u, v)
                          : ToColours(sampler, SampleLevel(sampler, levelIndex, isLinear, u, v));
}

/// What each pixel reads: level * 2, plus 1 for the linear filter.
struct alignas(16) Choice {
    int32_t key[4];
};

/// Samples each combination of level and filter among the lanes once.
Rgba4 SampleChosen(const Sampler& sampler, Lanes u, Lanes v, const Choice& choice, int lanes)
{
    const IntLanes keys = LoadInts(choice.key);
    IntLanes words = SplatInt(0);
    Rgba4 linear = SplatColour(0.0f, 0.0f, 0.0f, 0.0f);
    while (lanes != 0) {
        const int key = choice.key[std::countr_zero(static_cast<unsigned>(lanes))];
        const IntLanes same = IsEqual(keys, SplatInt(key));
        if (sampler.isSrgb) {
            const Rgba4 colours = SampleSrgbLevel(sampler, key / 2, key % 2 != 0, u, v);
            for (int c = 0; c < 4; ++c)
                linear.c[c] = Select(AsFloats(same), colours.c[c], linear.c[c]);
        } else {
            words = Select(same, SampleLevel(sampler, key / 2, key % 2 != 0, u, v), words);
        }
        lanes &= ~LaneBits(same);
    }
    return sampler.isSrgb ? linear : ToColours(sampler, words);
}

Choice ChooseLevels(const Sampler& sampler, Lanes wanted, bool isMagnified, const int isSmall[4])
{
    alignas(16) float level[4];
    StoreFloats(level, wanted);
    Choice choice;
    for (int lane = 0; lane < 4; ++lane) {
        const bool linear = isSmall[lane] ? sampler.minifiesLinear : sampler.magnifiesLinear;
        const int index =
            isSmall[lane] && !isMagnified
                ? std::clamp(static_cast<int>(level[lane]), sampler.firstLevel, sampler.lastLevel)
                : sampler.firstLevel;
        choice.key[lane] = index * 2 + (linear ? 1 : 0);
    }
    return choice;
}

/// Binary logarithm of positive numbers: the exponent, and a polynomial for the rest with an error
/// of at most 0.0013, far below a visible difference of levels.
Lanes Log2(Lanes value)
{
    const IntLanes bits = AsInts(value);
    const Lanes exponent = ToFloats(ShiftRight(bits, 23) - SplatInt(127));
    const Lanes m = AsFloats((bits & SplatInt(0x7FFFFF)) | SplatInt(0x3F800000));
    // Exact at 1, 4/3, 5/3 and 2.
    Lanes p = Splat(0.15397072f);
    p = p * m + Splat(-1.0348752f);
    p = p * m + Splat(3.0268306f);
    p = p * m + Splat(-2.1459261f);
    return exponent + p;
}

bool IsLinear(DWORD filter)
{
    return filter == D3DTEXF_LINEAR || filter == D3DTEXF_ANISOTROPIC;
}

} // namespace

bool Sampler::NeedsLevel() const
{
    return magnifiesLinear != minifiesLinear ||
           (mipFilter != D3DTEXF_NONE && lastLevel > firstLevel);
}

HRESULT CheckSamplerStates(const DrawState& state, UINT stage)
{
    const auto& states = state.sampler[stage];
    for (const D3DSAMPLERSTATETYPE type : {D3DSAMP_ADDRESSU, D3DSAMP_ADDRESSV})
        if (states[type] < D3DTADDRESS_WRAP || states[type] > D3DTADDRESS_MIRRORONCE)
            return Unmodelled("D3DSAMP_ADDRESS", states[type]);
    for (const D3DSAMPLERSTATETYPE type : {D3DSAMP_MAGFILTER, D3DSAMP_MINFILTER, D3DSAMP_MIPFILTER})
        if (states[type] > D3DTEXF_ANISOTROPIC)
            return Unmodelled("D3DSAMP_FILTER", states[type]);
    return D3D_OK;
}

HRESULT MakeSampler(const DrawState& state, UINT stage, Sampler& samplerOut)
{
    if (const HRESULT result = CheckSamplerStates(state, stage); FAILED(result))
        return result;
    const auto& states = state.sampler[stage];
    const TexturePicture& texture = *state.pictures[stage];
    samplerOut.addressU = static_cast<D3DTEXTUREADDRESS>(states[D3DSAMP_ADDRESSU]);
    samplerOut.addressV = static_cast<D3DTEXTUREADDRESS>(states[D3DSAMP_ADDRESSV]);
    samplerOut.magnifiesLinear = IsLinear(states[D3DSAMP_MAGFILTER]);
    samplerOut.minifiesLinear = IsLinear(states[D3DSAMP_MINFILTER]);
    samplerOut.mipFilter = static_cast<D3DTEXTUREFILTERTYPE>(states[D3DSAMP_MIPFILTER]);
    samplerOut.levelBias = std::bit_cast<float>(states[D3DSAMP_MIPMAPLODBIAS]);
    samplerOut.border = states[D3DSAMP_BORDERCOLOR];
    samplerOut.lastLevel =
        static_cast<int>(std::min<size_t>(texture.levels.size(), kMaxLevels)) - 1;
    samplerOut.firstLevel =
        static_cast<int>(std::min(std::max(states[D3DSAMP_MAXMIPLEVEL], texture.leastLevel),
                                  static_cast<DWORD>(samplerOut.lastLevel)));
    const PixelFormat& format = *texture.levels[0]->pixels.format;
    samplerOut.opaque = format.HasAlpha() ? 0 : 0xFF000000;
    samplerOut.isSigned = format.kind == PixelKind::Signed;
    samplerOut.isSrgb = states[D3DSAMP_SRGBTEXTURE] != 0 && !samplerOut.isSigned;
    for (int i = 0; i <= samplerOut.lastLevel; ++i)
        if (!texture.levels[static_cast<size_t>(i)]->Read(samplerOut.levels[i]))
            return E_OUTOFMEMORY;
    return D3D_OK;
}

Lanes LevelOfDetail(const Sampler& sampler, const CoordinateSlopes& slopes)
{
    const Lanes width = Splat(static_cast<float>(sampler.levels[0].width));
    const Lanes height = Splat(static_cast<float>(sampler.levels[0].height));
    const auto squared = [&](Lanes u, Lanes v) {
        const Lanes s = u * width, t = v * height;
        return s * s + t * t;
    };
    const Lanes longer = Max(squared(slopes.ux, slopes.vx), squared(slopes.uy, slopes.vy));
    const Lanes usable = ClampLanes(longer, Splat(1e-20f), Splat(1e20f)); // NaN too
    return Log2(usable) * Splat(0.5f) + Splat(sampler.levelBias);
}

Rgba4 SampleTexture(const Sampler& sampler, Lanes u, Lanes v, Lanes level, int lanes)
{
    if (!sampler.NeedsLevel())
        return SampleColours(sampler, sampler.firstLevel, sampler.minifiesLinear, u, v);

    const int small = LaneBits(IsGreater(level, Splat(0.0f)));
    const int isSmall[4] = {small & 1, small & 2, small & 4, small & 8};
    // Covers every possible level and converts safely to an integer.
    const Lanes bounded = ClampLanes(level, Splat(0.0f), Splat(100.0f));
    if (sampler.mipFilter == D3DTEXF_NONE)
        return SampleChosen(sampler, u, v, ChooseLevels(sampler, bounded, true, isSmall), lanes);
    if (!IsLinear(sampler.mipFilter)) {
        const Lanes nearest = bounded + Splat(0.5f);
        return SampleChosen(sampler, u, v, ChooseLevels(sampler, nearest, false, isSmall), lanes);
    }
    const Lanes share = bounded - FloorSmall(bounded);
    const Rgba4 fine =
        SampleChosen(sampler, u, v, ChooseLevels(sampler, bounded, false, isSmall), lanes);
    const Lanes next = bounded + Splat(1.0f);
    // Magnified pixels mix the same colour twice.
    const Rgba4 coarse =
        SampleChosen(sampler, u, v, ChooseLevels(sampler, next, false, isSmall), lanes);
    Rgba4 mixed;
    for (int c = 0; c < 4; ++c)
        mixed.c[c] = fine.c[c] + (coarse.c[c] - fine.c[c]) * share;
    return mixed;
}

} // namespace headless
