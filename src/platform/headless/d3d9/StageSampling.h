#pragma once

#include "platform/headless/d3d9/SpanPixels.h"
#include "platform/headless/d3d9/TextureFootprint.h"
#include "platform/headless/d3d9/TextureStages.h"

namespace headless {

// What a texture stage reads from its texture.

template <typename F>
using SampleFunction = Rgba<F> (*)(const Sampler& sampler, typename F::Floats u,
                                   typename F::Floats v, typename F::Floats level, int lanes);

template <typename F, D3DTEXTUREADDRESS Mode, bool IsLinear>
Rgba<F> SampleOneLevel(const Sampler& sampler, typename F::Floats u, typename F::Floats v,
                       typename F::Floats, int)
{
    const Texels& level = sampler.levels[sampler.firstLevel];
    if (IsLinear)
        return ToColours<F>(sampler, MixFour<F>(sampler, level, LinearTaps<Mode>(u, level.width),
                                                LinearTaps<Mode>(v, level.height)));
    return ToColours<F>(sampler,
                        F::Gather(level.words, level.pitch, NearestTap<Mode>(u, level.width),
                                  NearestTap<Mode>(v, level.height)));
}

/// A function of its own for what nearly all textures need: one level, one address mode.
template <typename F>
SampleFunction<F> FindSampling(const Sampler& sampler)
{
    if (!sampler.IsSimple())
        return SampleAny<F>;
    return WithMode(sampler.addressU, [&]<D3DTEXTUREADDRESS Mode>() -> SampleFunction<F> {
        return sampler.minifiesLinear ? SampleOneLevel<F, Mode, true>
                                      : SampleOneLevel<F, Mode, false>;
    });
}

/// How a bump map moves the coordinates of the next stage and darkens its texture. The offsets are a row
/// vector times the matrix, as the public formula has it.
template <typename F>
struct BumpOf {
    typename F::Floats u, v, luminance;
};

template <typename F>
BumpOf<F> MakeBump(const StageProgram& stage, const Rgba<F>& texture)
{
    const auto along = [&](int column) {
        return texture.c[0] * F::Splat(stage.bumpMatrix[0][column]) +
               texture.c[1] * F::Splat(stage.bumpMatrix[1][column]);
    };
    return {
        along(0), along(1),
        Saturate(texture.c[2] * F::Splat(stage.luminanceScale) + F::Splat(stage.luminanceOffset))};
}

template <typename F>
struct StageCoordinates {
    typename F::Floats u, v, level;
};

/// Coordinates are s / d, where d is the divisor over w, or just 1 / w. Their slopes follow from
/// those of s and d by the quotient rule.
template <typename F>
StageCoordinates<F> CoordinatesOf(const StageProgram& stage, const SpanPixels<F>& pixels)
{
    const Planes& planes = *pixels.planes;
    const int at = stage.coordinates;
    auto scale = pixels.w;
    float divisorDx = planes.reciprocalW.dx, divisorDy = planes.reciprocalW.dy;
    if (stage.isProjected) {
        scale = F::Splat(1.0f) / pixels.Linear(at + 2);
        divisorDx = planes.dx[at + 2];
        divisorDy = planes.dy[at + 2];
    }
    const auto u = pixels.Linear(at) * scale, v = pixels.Linear(at + 1) * scale;
    if (!stage.needsLevel)
        return {u, v, F::Splat(0.0f)};
    const auto slope = [scale](float ofValue, auto value, float ofDivisor) {
        return (F::Splat(ofValue) - value * F::Splat(ofDivisor)) * scale;
    };
    const SlopesOf<F> slopes = {
        slope(planes.dx[at], u, divisorDx), slope(planes.dx[at + 1], v, divisorDx),
        slope(planes.dy[at], u, divisorDy), slope(planes.dy[at + 1], v, divisorDy)};
    return {u, v, LevelOf<F>(stage.sampler, slopes)};
}

/// The same with all slopes, and with a third coordinate where the texture has one.
template <typename F>
TextureFootprint<F> FootprintOfStage(const StageProgram& stage, const SpanPixels<F>& pixels)
{
    const Planes& planes = *pixels.planes;
    const int at = stage.coordinates, divisor = at + stage.coordinateCount;
    const auto scale = stage.isProjected ? F::Splat(1.0f) / pixels.Linear(divisor) : pixels.w;
    const float divisorDx = stage.isProjected ? planes.dx[divisor] : planes.reciprocalW.dx;
    const float divisorDy = stage.isProjected ? planes.dy[divisor] : planes.reciprocalW.dy;
    typename F::Floats values[3][3] = {};
    for (int c = 0; c < 3; ++c) {
        const bool isThere = c < stage.coordinateCount;
        const auto zero = F::Splat(0.0f);
        const auto value = isThere ? pixels.Linear(at + c) * scale : zero;
        values[0][c] = value;
        values[1][c] =
            isThere ? (F::Splat(planes.dx[at + c]) - value * F::Splat(divisorDx)) * scale : zero;
        values[2][c] =
            isThere ? (F::Splat(planes.dy[at + c]) - value * F::Splat(divisorDy)) * scale : zero;
    }
    const auto place = [&](int i) {
        return TexturePlace<F>{values[i][0], values[i][1], values[i][2]};
    };
    return {place(0), place(1), place(2)};
}

} // namespace headless
