#pragma once

#include "platform/headless/d3d9/BlendLanes.h"
#include "platform/headless/d3d9/DepthLanes.h"
#include "platform/headless/d3d9/OutputMerger.h"
#include "platform/headless/d3d9/PixelFog.h"
#include "platform/headless/d3d9/SrgbCurve.h"

namespace headless {

// The last steps of some pixels: alpha test, fog, blending, and writing.

/// The pixels of `mask` whose alpha passes, compared in 256 steps.
template <typename F>
typename F::Ints TestAlphaOf(const OutputMerger& merger, typename F::Floats alpha,
                             typename F::Ints mask)
{
    return mask & Passes<F>(merger.alphaComparison, Quantise(alpha, 255.0f),
                            F::SplatInt(merger.alphaReference));
}

/// Applies a function that takes four numbers at a time.
template <typename F>
typename F::Floats ByFours(typename F::Floats values, void (*function)(float*, int))
{
    alignas(32) float stored[F::kCount];
    F::Store(stored, values);
    function(stored, F::kCount);
    return F::Load(stored);
}

/// Fog factors of some pixels from their depth or w.
template <typename F>
typename F::Floats FogFactorsOf(const PixelFog& fog, typename F::Floats depth, typename F::Floats w)
{
    const auto distance = fog.source == FogSource::Depth ? depth : w;
    if (fog.curve.mode == D3DFOG_LINEAR && fog.curve.start != fog.curve.end) {
        const auto left = F::Splat(fog.curve.end) - distance;
        return Saturate(left / F::Splat(fog.curve.end - fog.curve.start));
    }
    alignas(32) float values[F::kCount];
    F::Store(values, distance);
    for (float& value : values)
        value = fog.curve.Factor(value);
    return F::Load(values);
}

/// Mixes red, green and blue with the fog colour; a factor of 1 leaves them unchanged.
template <typename F>
void MixFog(const PixelFog& fog, typename F::Floats factor, Rgba<F>& colourInOut)
{
    for (int c = 0; c < 3; ++c) {
        const auto fogColour = F::Splat(fog.colour[c]);
        colourInOut.c[c] = fogColour + (colourInOut.c[c] - fogColour) * factor;
    }
}

template <typename F>
Rgba<F> LoadColours(const OutputMerger& merger, const PixelWindow<F>& window)
{
    if (merger.layout != TargetLayout::Rgb565)
        return UnpackArgb<F>(window.Words() | F::SplatInt(static_cast<int>(merger.unused)));
    const auto halves = window.Halves();
    const auto field = [halves](int shift, int max) {
        const auto value = ShiftRight(halves, shift) & F::SplatInt(max);
        return ToFloats(value) / F::Splat(static_cast<float>(max));
    };
    return {{field(11, 31), field(5, 63), field(0, 31), F::Splat(1.0f)}};
}

template <typename F>
void StoreColours(const OutputMerger& merger, PixelWindow<F>& window, const Rgba<F>& colour,
                  typename F::Ints mask)
{
    const auto written = mask & F::SplatInt(static_cast<int>(merger.writeMask));
    const auto field = [&colour](int c, float most, int shift) {
        return ShiftLeft(Quantise(colour.c[c], most), shift);
    };
    if (merger.layout == TargetLayout::Rgb565) {
        const auto stored = window.Halves();
        const auto halves = field(0, 31.0f, 11) | field(1, 63.0f, 5) | field(2, 31.0f, 0);
        window.StoreHalves(Select(written, halves, stored));
        return;
    }
    auto words = field(0, 255.0f, 16) | field(1, 255.0f, 8) | field(2, 255.0f, 0);
    if (merger.layout == TargetLayout::Argb)
        words = words | field(3, 255.0f, 24);
    else // the unused byte is filled with ones, as everywhere in this host
        words = words | F::SplatInt(static_cast<int>(merger.unused));
    window.StoreWords(Select(written, words, window.Words()));
}

/// Blending works on linear light, also where the target holds sRGB colours.
template <typename F>
void MergeSrgb(const OutputMerger& merger, const Blender<F>& blender, PixelWindow<F>& window,
               Rgba<F>& colour, typename F::Ints mask)
{
    for (auto& channel : colour.c)
        channel = Saturate(channel);
    if (merger.blends) {
        Rgba<F> stored = LoadColours(merger, window);
        for (int c = 0; c < 3; ++c)
            stored.c[c] = ByFours<F>(stored.c[c], LinearOfSrgb);
        blender.Blend(stored, colour);
    }
    for (int c = 0; c < 3; ++c)
        colour.c[c] = ByFours<F>(Saturate(colour.c[c]), SrgbOfLinear);
    StoreColours(merger, window, colour, mask);
}

/// Blends and writes the pixels of `mask`. `colour` is changed on the way.
template <typename F>
void Merge(const OutputMerger& merger, const Blender<F>& blender, PixelWindow<F>& window,
           Rgba<F>& colour, typename F::Ints mask)
{
    if (merger.isSrgb) {
        MergeSrgb(merger, blender, window, colour, mask);
        return;
    }
    if (merger.blends) {
        for (auto& channel : colour.c) // blending works on stored colours, 0..1
            channel = Saturate(channel);
        blender.Blend(LoadColours(merger, window), colour);
    }
    StoreColours(merger, window, colour, mask);
}

} // namespace headless
