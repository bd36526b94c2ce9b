#include "platform/headless/d3d9/OutputMerger.h"

#include "platform/headless/d3d9/Blending.h"
#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/SrgbCurve.h"

#include <cstring>

namespace headless {

namespace {

uint32_t Mask(PixelChannel channel)
{
    return ((1u << channel.bits) - 1) << channel.shift;
}

/// The bits that D3DRS_COLORWRITEENABLE lets through. Unused bits of a format follow red, so that a
/// full mask covers the whole word.
uint32_t WordMask(const PixelFormat& format, DWORD enabled)
{
    const uint32_t all = Mask(format.r) | Mask(format.g) | Mask(format.b) | Mask(format.a);
    uint32_t mask = 0;
    mask |= enabled & D3DCOLORWRITEENABLE_RED ? Mask(format.r) | ~all : 0;
    mask |= enabled & D3DCOLORWRITEENABLE_GREEN ? Mask(format.g) : 0;
    mask |= enabled & D3DCOLORWRITEENABLE_BLUE ? Mask(format.b) : 0;
    mask |= enabled & D3DCOLORWRITEENABLE_ALPHA ? Mask(format.a) : 0;
    return mask;
}

Rgba4 Load32(const uint8_t* pixels, int count, uint32_t opaque)
{
    IntLanes words;
    if (count == 4) {
        words = LoadInts(pixels);
    } else { // the picture may end here
        int values[3] = {};
        for (int i = 0; i < count; ++i)
            std::memcpy(&values[i], pixels + i * 4, 4);
        words = MakeInts(values[0], values[1], values[2], 0);
    }
    return UnpackColours(words | SplatInt(static_cast<int>(opaque)));
}

Rgba4 LoadArgb(const uint8_t* pixels, int count)
{
    return Load32(pixels, count, 0);
}

Rgba4 LoadXrgb(const uint8_t* pixels, int count)
{
    return Load32(pixels, count, 0xFF000000);
}

inline void Store32(uint8_t* pixels, IntLanes words, uint32_t writeMask, int lanes)
{
    if (lanes == 15 && writeMask == 0xFFFFFFFF) {
        StoreInts(pixels, words);
        return;
    }
    alignas(16) uint32_t values[4];
    StoreInts(values, words);
    for (int i = 0; i < 4; ++i, pixels += 4) {
        if ((lanes >> i & 1) == 0)
            continue;
        uint32_t word = 0;
        std::memcpy(&word, pixels, 4);
        word = (word & ~writeMask) | (values[i] & writeMask);
        std::memcpy(pixels, &word, 4);
    }
}

IntLanes PackColours(const Rgba4& colour)
{
    const IntLanes red = ShiftLeft(Quantise(colour.c[0], 255.0f), 16);
    const IntLanes green = ShiftLeft(Quantise(colour.c[1], 255.0f), 8);
    return red | green | Quantise(colour.c[2], 255.0f);
}

void StoreArgb(uint8_t* pixels, const Rgba4& colour, uint32_t writeMask, int lanes)
{
    const IntLanes alpha = ShiftLeft(Quantise(colour.c[3], 255.0f), 24);
    Store32(pixels, alpha | PackColours(colour), writeMask, lanes);
}

/// Fills the unused byte with ones, as everywhere in this host.
void StoreXrgb(uint8_t* pixels, const Rgba4& colour, uint32_t writeMask, int lanes)
{
    const IntLanes unused = SplatInt(static_cast<int>(0xFF000000));
    Store32(pixels, unused | PackColours(colour), writeMask, lanes);
}

Rgba4 Load565(const uint8_t* pixels, int count)
{
    uint16_t halves[4] = {};
    std::memcpy(halves, pixels, static_cast<size_t>(count) * 2);
    const IntLanes words = MakeInts(halves[0], halves[1], halves[2], halves[3]);
    const auto field = [words](int shift, int max) {
        const IntLanes value = ShiftRight(words, shift) & SplatInt(max);
        return ToFloats(value) / Splat(static_cast<float>(max));
    };
    return {{field(11, 31), field(5, 63), field(0, 31), Splat(1.0f)}};
}

void Store565(uint8_t* pixels, const Rgba4& colour, uint32_t writeMask, int lanes)
{
    const IntLanes red = ShiftLeft(Quantise(colour.c[0], 31.0f), 11);
    const IntLanes green = ShiftLeft(Quantise(colour.c[1], 63.0f), 5);
    alignas(16) uint32_t values[4];
    StoreInts(values, red | green | Quantise(colour.c[2], 31.0f));
    for (int i = 0; i < 4; ++i, pixels += 2) {
        if ((lanes >> i & 1) == 0)
            continue;
        uint16_t word = 0;
        std::memcpy(&word, pixels, 2);
        word = static_cast<uint16_t>((word & ~writeMask) | (values[i] & writeMask));
        std::memcpy(pixels, &word, 2);
    }
}

constexpr TargetFormat kTargets[] = {
    {D3DFMT_A8R8G8B8, LoadArgb, StoreArgb},
    {D3DFMT_X8R8G8B8, LoadXrgb, StoreXrgb},
    {D3DFMT_R5G6B5, Load565, Store565},
};

const TargetFormat* FindTarget(D3DFORMAT format)
{
    for (const TargetFormat& row : kTargets)
        if (row.format == format)
            return &row;
    return nullptr;
}

HRESULT MakeBlending(const DrawState& state, OutputMerger& merger)
{
    const DWORD source = state.Render(D3DRS_SRCBLEND);
    const DWORD target = state.Render(D3DRS_DESTBLEND);
    merger.blendConstant = BlendConstant(state.Render(D3DRS_BLENDFACTOR));
    HRESULT result = MakeBlendHalf(source, target, state.Render(D3DRS_BLENDOP), merger.colour);
    merger.blendsAlphaApart = state.Render(D3DRS_SEPARATEALPHABLENDENABLE) != 0;
    if (SUCCEEDED(result) && merger.blendsAlphaApart)
        result =
            MakeBlendHalf(state.Render(D3DRS_SRCBLENDALPHA), state.Render(D3DRS_DESTBLENDALPHA),
                          state.Render(D3DRS_BLENDOPALPHA), merger.alpha);
    return result;
}

void Blend(const OutputMerger& merger, const Rgba4& target, Rgba4& colourInOut)
{
    const Rgba4 source = colourInOut;
    const BlendInput input = {&source, &target, &merger.blendConstant};
    Rgba4 sourceFactor, targetFactor;
    merger.colour.source(input, sourceFactor);
    merger.colour.target(input, targetFactor);
    for (int c = 0; c < 4; ++c)
        colourInOut.c[c] =
            merger.colour.operation(source.c[c], sourceFactor.c[c], target.c[c], targetFactor.c[c]);
    if (!merger.blendsAlphaApart)
        return;
    merger.alpha.source(input, sourceFactor);
    merger.alpha.target(input, targetFactor);
    colourInOut.c[3] =
        merger.alpha.operation(source.c[3], sourceFactor.c[3], target.c[3], targetFactor.c[3]);
}

} // namespace

HRESULT MakeOutputMerger(const DrawState& state, OutputMerger& mergerOut)
{
    mergerOut = OutputMerger();
    mergerOut.target = state.target;
    mergerOut.rows = PixelRows(*mergerOut.target);
    const PixelFormat& format = *mergerOut.target->format;
    mergerOut.format = FindTarget(format.format);
    if (!mergerOut.format)
        return Unmodelled("Drawing into the format", format.format);
    mergerOut.isSrgb = state.Render(D3DRS_SRGBWRITEENABLE) != 0;
    mergerOut.writeMask = WordMask(format, state.Render(D3DRS_COLORWRITEENABLE));
    const auto function = static_cast<D3DCMPFUNC>(state.Render(D3DRS_ALPHAFUNC));
    mergerOut.testsAlpha = state.Render(D3DRS_ALPHATESTENABLE) != 0 && function != D3DCMP_ALWAYS;
    mergerOut.alphaComparison = Comparison(function);
    mergerOut.alphaReference = SplatInt(static_cast<int>(state.Render(D3DRS_ALPHAREF) & 0xFF));
    mergerOut.blends = state.Render(D3DRS_ALPHABLENDENABLE) != 0;
    return mergerOut.blends ? MakeBlending(state, mergerOut) : D3D_OK;
}

int TestAlpha(const OutputMerger& merger, Lanes alpha, int lanes)
{
    const IntLanes steps = Quantise(alpha, 255.0f);
    const IntLanes passed = merger.alphaComparison.Passes(steps, merger.alphaReference);
    return LaneBits(passed) & lanes;
}

/// Blending works on linear light, also where the target holds sRGB colours.
void WriteSrgb(const OutputMerger& merger, uint8_t* at, int count, const Rgba4& colour, int lanes)
{
    Rgba4 result = colour;
    for (Lanes& channel : result.c)
        channel = Saturate(channel);
    if (merger.blends) {
        Rgba4 stored = merger.format->load(at, count);
        for (int c = 0; c < 3; ++c)
            stored.c[c] = LinearOfSrgb(stored.c[c]);
        Blend(merger, stored, result);
    }
    for (int c = 0; c < 3; ++c)
        result.c[c] = SrgbOfLinear(Saturate(result.c[c]));
    merger.format->store(at, result, merger.writeMask, lanes);
}

void WriteColour(const OutputMerger& merger, int x, int y, int count, const Rgba4& colour,
                 int lanes)
{
    uint8_t* at = merger.rows.At(x, y);
    if (merger.isSrgb) {
        WriteSrgb(merger, at, count, colour, lanes);
        return;
    }
    if (!merger.blends) {
        merger.format->store(at, colour, merger.writeMask, lanes);
        return;
    }
    Rgba4 blended = colour;
    for (Lanes& channel : blended.c) // blending works on stored colours, 0..1
        channel = Saturate(channel);
    Blend(merger, merger.format->load(at, count), blended);
    merger.format->store(at, blended, merger.writeMask, lanes);
}

} // namespace headless
