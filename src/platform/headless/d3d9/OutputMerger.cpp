#include "platform/headless/d3d9/OutputMerger.h"

#include "platform/headless/d3d9/Blending.h"
#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/ColourParts.h"

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

/// False for formats that cannot be drawn into.
bool FindLayout(D3DFORMAT format, OutputMerger& merger)
{
    merger.unused = format == D3DFMT_X8R8G8B8 ? 0xFF000000 : 0;
    switch (format) {
    case D3DFMT_A8R8G8B8:
        merger.layout = TargetLayout::Argb;
        return true;
    case D3DFMT_X8R8G8B8:
        merger.layout = TargetLayout::Xrgb;
        return true;
    case D3DFMT_R5G6B5:
        merger.layout = TargetLayout::Rgb565;
        return true;
    default:
        return false;
    }
}

HRESULT MakeBlending(const DrawState& state, OutputMerger& merger)
{
    const DWORD source = state.Render(D3DRS_SRCBLEND);
    const DWORD target = state.Render(D3DRS_DESTBLEND);
    UnpackColour(state.Render(D3DRS_BLENDFACTOR), merger.blendConstant);
    HRESULT result = MakeBlendChoice(source, target, state.Render(D3DRS_BLENDOP), merger.colour);
    merger.alpha = merger.colour;
    if (SUCCEEDED(result) && state.Render(D3DRS_SEPARATEALPHABLENDENABLE) != 0)
        result =
            MakeBlendChoice(state.Render(D3DRS_SRCBLENDALPHA), state.Render(D3DRS_DESTBLENDALPHA),
                            state.Render(D3DRS_BLENDOPALPHA), merger.alpha);
    return result;
}

} // namespace

HRESULT MakeOutputMerger(const DrawState& state, OutputMerger& mergerOut)
{
    mergerOut = OutputMerger();
    mergerOut.target = state.target;
    mergerOut.rows = PixelRows(*mergerOut.target);
    const PixelFormat& format = *mergerOut.target->format;
    mergerOut.width = static_cast<int>(mergerOut.target->width);
    if (!FindLayout(format.format, mergerOut))
        return Unmodelled("Drawing into the format", format.format);
    mergerOut.isSrgb = state.Render(D3DRS_SRGBWRITEENABLE) != 0;
    mergerOut.writeMask = WordMask(format, state.Render(D3DRS_COLORWRITEENABLE));
    const auto function = static_cast<D3DCMPFUNC>(state.Render(D3DRS_ALPHAFUNC));
    mergerOut.testsAlpha = state.Render(D3DRS_ALPHATESTENABLE) != 0 && function != D3DCMP_ALWAYS;
    mergerOut.alphaComparison = Comparison(function);
    mergerOut.alphaReference = static_cast<int>(state.Render(D3DRS_ALPHAREF) & 0xFF);
    mergerOut.blends = state.Render(D3DRS_ALPHABLENDENABLE) != 0;
    return mergerOut.blends ? MakeBlending(state, mergerOut) : D3D_OK;
}

} // namespace headless
