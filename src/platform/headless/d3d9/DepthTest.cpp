#include "platform/headless/d3d9/DepthTest.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace headless {

namespace {

IntLanes AllOrNone(bool all)
{
    return SplatInt(all ? -1 : 0);
}

/// 32 bits of depth do not fit a signed integer, so the lowest value maps to 0x80000000 for
/// comparisons.
int32_t Signed(uint32_t steps, int bits)
{
    return static_cast<int32_t>(bits == 32 ? steps ^ 0x80000000u : steps);
}

/// The words of up to four pixels; those beyond `count` read as 0. Fewer than four pixels are
/// copied one by one because the picture may end there.
IntLanes LoadWords(const uint8_t* at, int count)
{
    if (count == 4)
        return LoadInts(at);
    int words[3] = {};
    for (int i = 0; i < count; ++i)
        std::memcpy(&words[i], at + i * 4, 4);
    return MakeInts(words[0], words[1], words[2], 0);
}

IntLanes LoadHalves(const uint8_t* at, int count)
{
    if (count == 4)
        return simd::LoadFourHalves(at);
    uint16_t halves[3] = {};
    for (int i = 0; i < count; ++i)
        std::memcpy(&halves[i], at + i * 2, 2);
    return MakeInts(halves[0], halves[1], halves[2], 0);
}

IntLanes LoadSteps(const DepthTest& test, int x, int y, int count)
{
    const uint8_t* at = test.rows.At(x, y);
    if (test.depthBits == 16)
        return LoadHalves(at, count);
    const IntLanes words = LoadWords(at, count);
    if (test.depthBits == 24)
        return ShiftRight(words, 8);
    return words ^ SplatInt(static_cast<int>(0x80000000u));
}

void StoreSteps(int depthBits, uint32_t steps, uint8_t* at)
{
    if (depthBits == 16) {
        const auto half = static_cast<uint16_t>(steps);
        std::memcpy(at, &half, 2);
        return;
    }
    const uint32_t word = depthBits == 24 ? steps << 8 | *at : steps ^ 0x80000000u;
    std::memcpy(at, &word, 4);
}

/// The w range that a W buffer spreads its steps over, from the published formula for a projection
/// matrix. False for a projection without perspective.
bool FindWRange(const D3DMATRIX& m, float& nearOut, float& farOut)
{
    if (m._33 == 0.0f || m._34 == 0.0f || m._33 == m._34)
        return false;
    nearOut = m._44 - m._43 / m._33 * m._34;
    farOut = (m._44 - m._43) / (m._33 - m._34) * m._34 + m._44;
    // If the far plane is too far for the division to tell it from infinity, the sign is arbitrary.
    return std::isfinite(nearOut) && std::isfinite(farOut) && farOut > nearOut;
}

} // namespace

Comparison::Comparison() : Comparison(D3DCMP_ALWAYS)
{}

/// The values of D3DCMPFUNC are bit sets plus one: less 1, equal 2, greater 4.
Comparison::Comparison(D3DCMPFUNC function)
    : less(AllOrNone(((function - 1) & 1) != 0)),
      equal(AllOrNone(((function - 1) & 2) != 0)),
      greater(AllOrNone(((function - 1) & 4) != 0))
{}

IntLanes Comparison::Passes(IntLanes a, IntLanes b) const
{
    const IntLanes passed = (IsLess(a, b) & less) | (IsGreater(a, b) & greater);
    return passed | (IsEqual(a, b) & equal);
}

DepthTest MakeDepthTest(const DrawState& state)
{
    DepthTest test;
    const DWORD mode = state.Render(D3DRS_ZENABLE);
    if (!state.depth || mode == D3DZB_FALSE)
        return test;
    const auto function = static_cast<D3DCMPFUNC>(state.Render(D3DRS_ZFUNC));
    test.comparison = Comparison(function);
    test.writes = state.Render(D3DRS_ZWRITEENABLE) != 0;
    test.isOn = test.writes || function != D3DCMP_ALWAYS;
    test.buffer = state.depth;
    test.rows = PixelRows(*state.depth);
    test.depthBits = test.buffer->format->r.bits;
    float farW = 1.0f;
    test.usesW = mode == D3DZB_USEW && FindWRange(state.projection, test.nearW, farW);
    test.scaleW = test.usesW ? 1.0f / (farW - test.nearW) : 1.0f;
    test.bias = state.RenderFloat(D3DRS_DEPTHBIAS);
    test.slopeBias = state.RenderFloat(D3DRS_SLOPESCALEDEPTHBIAS);
    return test;
}

Lanes BiasedDepth(const DepthTest& test, const Planes& planes, Lanes depth)
{
    const float steepest = std::max(std::fabs(planes.depth.dx), std::fabs(planes.depth.dy));
    return Saturate(depth + Splat(test.bias + test.slopeBias * steepest));
}

IntLanes DepthSteps(const DepthTest& test, Lanes depth, Lanes w)
{
    const Lanes share = test.usesW ? Saturate((w - Splat(test.nearW)) * Splat(test.scaleW)) : depth;
    if (test.depthBits == 16)
        return Round(share * Splat(65535.0f));
    if (test.depthBits == 24)
        return Round(share * Splat(16777215.0f));
    alignas(16) float shares[4];
    alignas(16) int32_t steps[4];
    StoreFloats(shares, share);
    for (int i = 0; i < 4; ++i)
        steps[i] = Signed(static_cast<uint32_t>(static_cast<double>(shares[i]) * 4294967295.0), 32);
    return LoadInts(steps);
}

int TestDepth(const DepthTest& test, int x, int y, int count, IntLanes steps, int lanes)
{
    const IntLanes passed = test.comparison.Passes(steps, LoadSteps(test, x, y, count));
    return LaneBits(passed) & lanes;
}

void WriteDepth(const DepthTest& test, int x, int y, IntLanes steps, int lanes)
{
    uint8_t* at = test.rows.At(x, y);
    if (lanes == 15 && test.depthBits == 24) { // the low byte holds the stencil
        const IntLanes stencil = LoadInts(at) & SplatInt(0xFF);
        StoreInts(at, stencil | ShiftLeft(steps, 8));
        return;
    }
    alignas(16) uint32_t values[4];
    StoreInts(values, steps);
    for (unsigned i = 0; i < 4; ++i, at += test.rows.pixelBytes)
        if ((lanes >> i & 1) != 0)
            StoreSteps(test.depthBits, values[i], at);
}

} // namespace headless
