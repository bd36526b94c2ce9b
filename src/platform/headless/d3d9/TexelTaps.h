#pragma once

#include "platform/headless/d3d9/LaneMath.h"
#include "platform/headless/d3d9/TextureSample.h"

namespace headless {

// Which texels a coordinate reads, along one axis.

/// Two adjacent texels and the weight of the second in 1/256. -1 means the border colour.
template <typename F>
struct Taps {
    typename F::Ints first, second, share;
    int outside; ///< the pixels whose texels were not neighbours inside the picture
};

/// Applies the address mode to a coordinate: 0..1 spans the picture. The border mode may leave that
/// range.
template <D3DTEXTUREADDRESS Mode, typename Floats>
Floats Fold(Floats value)
{
    using F = Form<Floats>;
    const Floats one = F::Splat(1.0f);
    switch (Mode) {
    case D3DTADDRESS_WRAP:
        return value - F::Floor(value);
    case D3DTADDRESS_MIRROR: {
        const Floats half = value * F::Splat(0.5f);
        const Floats pair = half - F::Floor(half); // 0..1 over a picture and its mirror
        return one - Absolute(one - (pair + pair));
    }
    case D3DTADDRESS_MIRRORONCE:
        return Absolute(value);
    default:
        return value;
    }
}

/// The texels that contain the coordinates.
template <D3DTEXTUREADDRESS Mode, typename Floats>
auto NearestTap(Floats value, int size)
{
    using F = Form<Floats>;
    const Floats first = F::Splat(0.0f), last = F::Splat(static_cast<float>(size - 1));
    const Floats place = F::Floor(Fold<Mode>(value) * F::Splat(static_cast<float>(size)));
    auto texel = Truncate(ClampLanes(place, first, last));
    if (Mode == D3DTADDRESS_BORDER) // all bits set: -1
        texel = texel | AsInts(IsLess(place, first) | IsGreater(place, last));
    return texel;
}

/// Texels before the first or after the last one become `before` and `behind`.
template <typename F>
typename F::Ints Settle(typename F::Ints texel, int size, int before, int behind)
{
    const auto isBefore = IsLess(texel, F::SplatInt(0));
    const auto isBehind = IsGreater(texel, F::SplatInt(size - 1));
    texel = Select(isBefore, F::SplatInt(before), texel);
    return Select(isBehind, F::SplatInt(behind), texel);
}

/// The two texels whose centres enclose the coordinates.
template <D3DTEXTUREADDRESS Mode, typename Floats>
Taps<Form<Floats>> LinearTaps(Floats value, int size)
{
    using F = Form<Floats>;
    constexpr bool hasBorder = Mode == D3DTADDRESS_BORDER;
    const float extent = static_cast<float>(size);
    const Floats scaled = Fold<Mode>(value) * F::Splat(extent);
    const Floats place = ClampLanes(scaled - F::Splat(0.5f), F::Splat(hasBorder ? -1.0f : -0.5f),
                                    F::Splat(hasBorder ? extent : extent - 0.5f));
    const Floats whole = F::FloorSmall(place);
    Taps<F> taps;
    taps.first = Truncate(whole);
    taps.second = taps.first + F::SplatInt(1);
    taps.share = Round((place - whole) * F::Splat(256.0f));
    taps.outside = LaneBits(IsLess(taps.first, F::SplatInt(0)) |
                            IsGreater(taps.second, F::SplatInt(size - 1)));
    if (taps.outside != 0) {
        // Past the edge, wrap reads the other edge, border stays outside, all other modes read the
        // edge.
        constexpr bool wraps = Mode == D3DTADDRESS_WRAP;
        const int before = hasBorder ? -1 : (wraps ? size - 1 : 0);
        const int behind = hasBorder ? -1 : (wraps ? 0 : size - 1);
        taps.first = Settle<F>(taps.first, size, before, behind);
        taps.second = Settle<F>(taps.second, size, before, behind);
    }
    return taps;
}

/// Calls `run` with the address mode as a constant.
template <typename Run>
auto WithMode(D3DTEXTUREADDRESS mode, Run run)
{
    switch (mode) {
    case D3DTADDRESS_MIRROR:
        return run.template operator()<D3DTADDRESS_MIRROR>();
    case D3DTADDRESS_CLAMP:
        return run.template operator()<D3DTADDRESS_CLAMP>();
    case D3DTADDRESS_BORDER:
        return run.template operator()<D3DTADDRESS_BORDER>();
    case D3DTADDRESS_MIRRORONCE:
        return run.template operator()<D3DTADDRESS_MIRRORONCE>();
    default:
        return run.template operator()<D3DTADDRESS_WRAP>();
    }
}

template <typename Floats>
auto NearestTap(D3DTEXTUREADDRESS mode, Floats value, int size)
{
    return WithMode(mode, [=]<D3DTEXTUREADDRESS Mode>() { return NearestTap<Mode>(value, size); });
}

template <typename Floats>
auto LinearTaps(D3DTEXTUREADDRESS mode, Floats value, int size)
{
    return WithMode(mode, [=]<D3DTEXTUREADDRESS Mode>() { return LinearTaps<Mode>(value, size); });
}

} // namespace headless
