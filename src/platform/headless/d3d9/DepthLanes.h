#pragma once

#include "platform/headless/d3d9/DepthTest.h"
#include "platform/headless/d3d9/SpanPixels.h"

namespace headless {

// The depth test on some pixels. Stored depth is compared as signed integers; 32 bits of it do not fit,
// so the lowest value is 0x80000000 there.

/// All bits set where `a function b` holds.
template <typename F>
typename F::Ints Passes(const Comparison& comparison, typename F::Ints a, typename F::Ints b)
{
    const auto passed = (IsLess(a, b) & F::SplatInt(comparison.less)) |
                        (IsGreater(a, b) & F::SplatInt(comparison.greater));
    return passed | (IsEqual(a, b) & F::SplatInt(comparison.equal));
}

/// The stored value for a Z depth of 0..1, or for w.
template <typename F>
typename F::Ints StepsOf(const DepthTest& test, typename F::Floats depth, typename F::Floats w)
{
    auto share = depth;
    if (test.usesW)
        share = Saturate((w - F::Splat(test.nearW)) * F::Splat(test.scaleW));
    if (test.depthBits == 16)
        return Round(share * F::Splat(65535.0f));
    if (test.depthBits == 24)
        return Round(share * F::Splat(16777215.0f));
    alignas(32) float shares[F::kCount];
    alignas(32) int32_t steps[F::kCount];
    F::Store(shares, share);
    for (int i = 0; i < F::kCount; ++i)
        steps[i] = static_cast<int32_t>(
            static_cast<uint32_t>(static_cast<double>(shares[i]) * 4294967295.0) ^ 0x80000000u);
    return F::LoadInts(steps);
}

template <typename F>
typename F::Ints StoredSteps(const DepthTest& test, const PixelWindow<F>& window)
{
    if (test.depthBits == 24)
        return ShiftRight(window.Words(), 8);
    if (test.depthBits == 16)
        return window.Halves();
    return window.Words() ^ F::SplatInt(static_cast<int>(0x80000000u));
}

/// The pixels of `mask` that pass.
template <typename F>
typename F::Ints TestSteps(const DepthTest& test, const PixelWindow<F>& window,
                           typename F::Ints steps, typename F::Ints mask)
{
    if (test.comparison.PassesAll())
        return mask;
    return mask & Passes<F>(test.comparison, steps, StoredSteps(test, window));
}

template <typename F>
void StoreSteps(const DepthTest& test, PixelWindow<F>& window, typename F::Ints steps,
                typename F::Ints mask)
{
    if (test.depthBits == 16) {
        window.StoreHalves(Select(mask, steps, window.Halves()));
        return;
    }
    const auto stored = window.Words();
    // With 24 bits the low byte holds the stencil.
    const auto words = test.depthBits == 24 ? ShiftLeft(steps, 8) | (stored & F::SplatInt(0xFF))
                                            : steps ^ F::SplatInt(static_cast<int>(0x80000000u));
    window.StoreWords(Select(mask, words, stored));
}

} // namespace headless
