// The arithmetic of the texture stages, as the public reference defines it: S = arg1 op arg2.

#include "platform/headless/d3d9/StageOperations.h"

namespace headless {

namespace {

/// One channel of the arguments, the alpha of argument 1, and the blend weight.
struct Channel {
    Lanes a0, a1, a2;
    Lanes alpha1;
    Lanes share;
};

Lanes Mixed(Lanes share, Lanes a, Lanes b)
{
    return a * share + b * OneMinus(share);
}

Lanes SelectArg1(const Channel& in)
{
    return in.a1;
}

Lanes SelectArg2(const Channel& in)
{
    return in.a2;
}

Lanes Modulate(const Channel& in)
{
    return in.a1 * in.a2;
}

Lanes Modulate2x(const Channel& in)
{
    return Modulate(in) * Splat(2.0f);
}

Lanes Modulate4x(const Channel& in)
{
    return Modulate(in) * Splat(4.0f);
}

Lanes Add(const Channel& in)
{
    return in.a1 + in.a2;
}

Lanes AddSigned(const Channel& in)
{
    return Add(in) - Splat(0.5f);
}

Lanes AddSigned2x(const Channel& in)
{
    return AddSigned(in) * Splat(2.0f);
}

Lanes Subtract(const Channel& in)
{
    return in.a1 - in.a2;
}

Lanes AddSmooth(const Channel& in)
{
    return Add(in) - Modulate(in);
}

Lanes Blend(const Channel& in)
{
    return Mixed(in.share, in.a1, in.a2);
}

/// Argument 1 is already multiplied by its alpha.
Lanes BlendPremultiplied(const Channel& in)
{
    return in.a1 + in.a2 * OneMinus(in.share);
}

Lanes ModulateAlphaAddColour(const Channel& in)
{
    return in.a1 + in.alpha1 * in.a2;
}

Lanes ModulateColourAddAlpha(const Channel& in)
{
    return Modulate(in) + in.alpha1;
}

Lanes ModulateInverseAlphaAddColour(const Channel& in)
{
    return in.a1 + OneMinus(in.alpha1) * in.a2;
}

Lanes ModulateInverseColourAddAlpha(const Channel& in)
{
    return OneMinus(in.a1) * in.a2 + in.alpha1;
}

Lanes MultiplyAdd(const Channel& in)
{
    return in.a0 + Modulate(in);
}

Lanes Interpolate(const Channel& in)
{
    return Mixed(in.a0, in.a1, in.a2);
}

template <Lanes (*Operation)(const Channel&), int First, int End>
void RunChannels(const OperationInput& input, Rgba4& out)
{
    const Lanes alpha1 = input.arg1->c[3];
    for (int c = First; c < End; ++c)
        out.c[c] = Saturate(
            Operation({input.arg0->c[c], input.arg1->c[c], input.arg2->c[c], alpha1, input.share}));
}

/// Treats colours as vectors: each channel encodes -1..1 as 0..1. The sum goes to all four
/// channels.
void DotProduct(const OperationInput& input, Rgba4& out)
{
    const Lanes half = Splat(0.5f);
    Lanes sum = Splat(0.0f);
    for (int c = 0; c < 3; ++c)
        sum = sum + (input.arg1->c[c] - half) * (input.arg2->c[c] - half);
    const Lanes result = Saturate(sum * Splat(4.0f));
    for (Lanes& channel : out.c)
        channel = result;
}

template <Lanes (*Operation)(const Channel&)>
constexpr OperationRow Row(DWORD operation, uint8_t arguments, int shareFrom = -1)
{
    return {operation, RunChannels<Operation, 0, 3>, RunChannels<Operation, 3, 4>, arguments,
            shareFrom};
}

constexpr uint8_t kArg1 = 2, kArg2 = 4, kBoth = 6, kAll = 7;

constexpr OperationRow kStageOperations[] = {
    Row<SelectArg1>(D3DTOP_SELECTARG1, kArg1),
    Row<SelectArg2>(D3DTOP_SELECTARG2, kArg2),
    Row<Modulate>(D3DTOP_MODULATE, kBoth),
    Row<Modulate2x>(D3DTOP_MODULATE2X, kBoth),
    Row<Modulate4x>(D3DTOP_MODULATE4X, kBoth),
    Row<Add>(D3DTOP_ADD, kBoth),
    Row<AddSigned>(D3DTOP_ADDSIGNED, kBoth),
    Row<AddSigned2x>(D3DTOP_ADDSIGNED2X, kBoth),
    Row<Subtract>(D3DTOP_SUBTRACT, kBoth),
    Row<AddSmooth>(D3DTOP_ADDSMOOTH, kBoth),
    Row<Blend>(D3DTOP_BLENDDIFFUSEALPHA, kBoth, D3DTA_DIFFUSE),
    Row<Blend>(D3DTOP_BLENDTEXTUREALPHA, kBoth, D3DTA_TEXTURE),
    Row<Blend>(D3DTOP_BLENDFACTORALPHA, kBoth, D3DTA_TFACTOR),
    Row<BlendPremultiplied>(D3DTOP_BLENDTEXTUREALPHAPM, kBoth, D3DTA_TEXTURE),
    Row<Blend>(D3DTOP_BLENDCURRENTALPHA, kBoth, D3DTA_CURRENT),
    Row<SelectArg1>(D3DTOP_PREMODULATE, kArg1),
    Row<ModulateAlphaAddColour>(D3DTOP_MODULATEALPHA_ADDCOLOR, kBoth),
    Row<ModulateColourAddAlpha>(D3DTOP_MODULATECOLOR_ADDALPHA, kBoth),
    Row<ModulateInverseAlphaAddColour>(D3DTOP_MODULATEINVALPHA_ADDCOLOR, kBoth),
    Row<ModulateInverseColourAddAlpha>(D3DTOP_MODULATEINVCOLOR_ADDALPHA, kBoth),
    // Bump mapping changes the coordinates of the next stage and passes the colour through.
    {D3DTOP_BUMPENVMAP, nullptr, nullptr, 0, -1},
    {D3DTOP_BUMPENVMAPLUMINANCE, nullptr, nullptr, 0, -1},
    {D3DTOP_DOTPRODUCT3, DotProduct, DotProduct, kBoth, -1},
    Row<MultiplyAdd>(D3DTOP_MULTIPLYADD, kAll),
    Row<Interpolate>(D3DTOP_LERP, kAll),
};

} // namespace

const OperationRow* FindOperation(DWORD operation)
{
    for (const OperationRow& row : kStageOperations)
        if (row.operation == operation)
            return &row;
    return nullptr;
}

} // namespace headless
