#pragma once

#include "platform/headless/d3d9/LaneMath.h"

#include <d3d9.h>

namespace headless {

// The arithmetic of the texture stages, as the public reference defines it: S = arg1 op arg2.

/// The arguments of an operation, and the alpha that blend operations use as weight.
template <typename F>
struct OperationInput {
    const Rgba<F>* arguments[3];
    const typename F::Floats* share;
};

/// Writes its channels of `out`, within 0..1. `out` must not alias an argument.
template <typename F>
using StageFunction = void (*)(const OperationInput<F>& input, Rgba<F>& out);

/// One channel of the arguments, the alpha of argument 1, and the blend weight.
template <typename Floats>
struct Channel {
    Floats a0, a1, a2;
    Floats alpha1;
    Floats share;
};

/// Each function computes one operation for one channel.
template <typename Floats>
struct StageArithmetic {
    using F = Form<Floats>;
    using In = const Channel<Floats>&;

    static Floats Mixed(Floats share, Floats a, Floats b)
    {
        return a * share + b * OneMinus(share);
    }

    static Floats SelectArg1(In in) { return in.a1; }
    static Floats SelectArg2(In in) { return in.a2; }
    static Floats Modulate(In in) { return in.a1 * in.a2; }
    static Floats Modulate2x(In in) { return Modulate(in) * F::Splat(2.0f); }
    static Floats Modulate4x(In in) { return Modulate(in) * F::Splat(4.0f); }
    static Floats Add(In in) { return in.a1 + in.a2; }
    static Floats AddSigned(In in) { return Add(in) - F::Splat(0.5f); }
    static Floats AddSigned2x(In in) { return AddSigned(in) * F::Splat(2.0f); }
    static Floats Subtract(In in) { return in.a1 - in.a2; }
    static Floats AddSmooth(In in) { return Add(in) - Modulate(in); }
    static Floats Blend(In in) { return Mixed(in.share, in.a1, in.a2); }
    /// Argument 1 is already multiplied by its alpha.
    static Floats BlendPremultiplied(In in) { return in.a1 + in.a2 * OneMinus(in.share); }
    static Floats ModulateAlphaAddColour(In in) { return in.a1 + in.alpha1 * in.a2; }
    static Floats ModulateColourAddAlpha(In in) { return Modulate(in) + in.alpha1; }
    static Floats ModulateInverseAlphaAddColour(In in)
    {
        return in.a1 + OneMinus(in.alpha1) * in.a2;
    }
    static Floats ModulateInverseColourAddAlpha(In in)
    {
        return OneMinus(in.a1) * in.a2 + in.alpha1;
    }
    static Floats MultiplyAdd(In in) { return in.a0 + Modulate(in); }
    static Floats Interpolate(In in) { return Mixed(in.a0, in.a1, in.a2); }
};

template <typename F, typename F::Floats (*Operation)(const Channel<typename F::Floats>&),
          int First, int End>
void RunChannels(const OperationInput<F>& input, Rgba<F>& out)
{
    const auto& arguments = input.arguments;
    const auto alpha1 = arguments[1]->c[3];
    for (int c = First; c < End; ++c)
        out.c[c] = Saturate(Operation(
            {arguments[0]->c[c], arguments[1]->c[c], arguments[2]->c[c], alpha1, *input.share}));
}

/// Treats colours as vectors: each channel encodes -1..1 as 0..1. The sum goes to all four
/// channels.
template <typename F>
void DotProduct(const OperationInput<F>& input, Rgba<F>& out)
{
    const auto half = F::Splat(0.5f);
    auto sum = F::Splat(0.0f);
    for (int c = 0; c < 3; ++c)
        sum = sum + (input.arguments[1]->c[c] - half) * (input.arguments[2]->c[c] - half);
    const auto result = Saturate(sum * F::Splat(4.0f));
    for (auto& channel : out.c)
        channel = result;
}

/// Both halves of an operation; null for those that pass the colour through.
template <typename F>
struct OperationFunctions {
    StageFunction<F> colour = nullptr; ///< red, green and blue
    StageFunction<F> alpha = nullptr;
};

template <typename F, typename F::Floats (*Operation)(const Channel<typename F::Floats>&)>
constexpr OperationFunctions<F> kFunctions = {RunChannels<F, Operation, 0, 3>,
                                              RunChannels<F, Operation, 3, 4>};

/// None for bump mapping, which changes the coordinates of the next stage.
template <typename F>
OperationFunctions<F> FunctionsOf(DWORD operation)
{
    using A = StageArithmetic<typename F::Floats>;
    struct Row {
        DWORD operation;
        OperationFunctions<F> functions;
    };
    static constexpr Row kRows[] = {
        {D3DTOP_SELECTARG1, kFunctions<F, A::SelectArg1>},
        {D3DTOP_SELECTARG2, kFunctions<F, A::SelectArg2>},
        {D3DTOP_MODULATE, kFunctions<F, A::Modulate>},
        {D3DTOP_MODULATE2X, kFunctions<F, A::Modulate2x>},
        {D3DTOP_MODULATE4X, kFunctions<F, A::Modulate4x>},
        {D3DTOP_ADD, kFunctions<F, A::Add>},
        {D3DTOP_ADDSIGNED, kFunctions<F, A::AddSigned>},
        {D3DTOP_ADDSIGNED2X, kFunctions<F, A::AddSigned2x>},
        {D3DTOP_SUBTRACT, kFunctions<F, A::Subtract>},
        {D3DTOP_ADDSMOOTH, kFunctions<F, A::AddSmooth>},
        {D3DTOP_BLENDDIFFUSEALPHA, kFunctions<F, A::Blend>},
        {D3DTOP_BLENDTEXTUREALPHA, kFunctions<F, A::Blend>},
        {D3DTOP_BLENDFACTORALPHA, kFunctions<F, A::Blend>},
        {D3DTOP_BLENDTEXTUREALPHAPM, kFunctions<F, A::BlendPremultiplied>},
        {D3DTOP_BLENDCURRENTALPHA, kFunctions<F, A::Blend>},
        {D3DTOP_PREMODULATE, kFunctions<F, A::SelectArg1>},
        {D3DTOP_MODULATEALPHA_ADDCOLOR, kFunctions<F, A::ModulateAlphaAddColour>},
        {D3DTOP_MODULATECOLOR_ADDALPHA, kFunctions<F, A::ModulateColourAddAlpha>},
        {D3DTOP_MODULATEINVALPHA_ADDCOLOR, kFunctions<F, A::ModulateInverseAlphaAddColour>},
        {D3DTOP_MODULATEINVCOLOR_ADDALPHA, kFunctions<F, A::ModulateInverseColourAddAlpha>},
        {D3DTOP_MULTIPLYADD, kFunctions<F, A::MultiplyAdd>},
        {D3DTOP_LERP, kFunctions<F, A::Interpolate>},
        {D3DTOP_DOTPRODUCT3, {DotProduct<F>, DotProduct<F>}},
    };
    for (const Row& row : kRows)
        if (row.operation == operation)
            return row.functions;
    return {};
}

} // namespace headless
