#pragma once

#include "platform/headless/d3d9/LaneMath.h"

#include <d3d9.h>

namespace headless {

// Blending a colour with the one that the target holds.

/// The public numbers of one blend equation: for colour or for alpha.
struct BlendChoice {
    DWORD source = D3DBLEND_ONE;
    DWORD target = D3DBLEND_ZERO;
    DWORD operation = D3DBLENDOP_ADD;
};

/// The inputs of the blend factors.
template <typename F>
struct BlendInput {
    const Rgba<F>* source;
    const Rgba<F>* target;
    const Rgba<F>* constant; ///< D3DRS_BLENDFACTOR
};

template <typename F>
struct BlendFactors {
    using In = const BlendInput<F>&;
    using Floats = typename F::Floats;

    static Rgba<F> Everywhere(Floats value) { return {{value, value, value, value}}; }
    static Rgba<F> Inverse(const Rgba<F>& colour)
    {
        return {{OneMinus(colour.c[0]), OneMinus(colour.c[1]), OneMinus(colour.c[2]),
                 OneMinus(colour.c[3])}};
    }

    static void Zero(In, Rgba<F>& out) { out = Everywhere(F::Splat(0.0f)); }
    static void One(In, Rgba<F>& out) { out = Everywhere(F::Splat(1.0f)); }
    static void SourceColour(In in, Rgba<F>& out) { out = *in.source; }
    static void InverseSourceColour(In in, Rgba<F>& out) { out = Inverse(*in.source); }
    static void SourceAlpha(In in, Rgba<F>& out) { out = Everywhere(in.source->c[3]); }
    static void InverseSourceAlpha(In in, Rgba<F>& out)
    {
        out = Everywhere(OneMinus(in.source->c[3]));
    }
    static void TargetAlpha(In in, Rgba<F>& out) { out = Everywhere(in.target->c[3]); }
    static void InverseTargetAlpha(In in, Rgba<F>& out)
    {
        out = Everywhere(OneMinus(in.target->c[3]));
    }
    static void TargetColour(In in, Rgba<F>& out) { out = *in.target; }
    static void InverseTargetColour(In in, Rgba<F>& out) { out = Inverse(*in.target); }
    static void SaturatedSourceAlpha(In in, Rgba<F>& out)
    {
        out = Everywhere(Min(in.source->c[3], OneMinus(in.target->c[3])));
        out.c[3] = F::Splat(1.0f);
    }
    static void Constant(In in, Rgba<F>& out) { out = *in.constant; }
    static void InverseConstant(In in, Rgba<F>& out) { out = Inverse(*in.constant); }

    using Function = void (*)(In, Rgba<F>&);
    /// Null for an unknown D3DBLEND.
    static Function Find(DWORD blend)
    {
        static constexpr Function kFactors[] = {nullptr,
                                                Zero,
                                                One,
                                                SourceColour,
                                                InverseSourceColour,
                                                SourceAlpha,
                                                InverseSourceAlpha,
                                                TargetAlpha,
                                                InverseTargetAlpha,
                                                TargetColour,
                                                InverseTargetColour,
                                                SaturatedSourceAlpha,
                                                nullptr,
                                                nullptr,
                                                Constant,
                                                InverseConstant};
        return blend < sizeof(kFactors) / sizeof(kFactors[0]) ? kFactors[blend] : nullptr;
    }
};

template <typename Floats>
struct BlendOperations {
    using Function = Floats (*)(Floats source, Floats sourceFactor, Floats target,
                                Floats targetFactor);

    static Floats Add(Floats s, Floats sf, Floats t, Floats tf) { return s * sf + t * tf; }
    static Floats Subtract(Floats s, Floats sf, Floats t, Floats tf) { return s * sf - t * tf; }
    static Floats SubtractReversed(Floats s, Floats sf, Floats t, Floats tf)
    {
        return t * tf - s * sf;
    }
    static Floats Least(Floats s, Floats, Floats t, Floats) { return Min(s, t); }
    static Floats Most(Floats s, Floats, Floats t, Floats) { return Max(s, t); }

    /// A known operation, from D3DBLENDOP_ADD on.
    static Function Find(DWORD operation)
    {
        static constexpr Function kOperations[] = {Add, Subtract, SubtractReversed, Least, Most};
        return kOperations[operation - D3DBLENDOP_ADD];
    }
};

/// A draw's blend equations with their functions looked up.
template <typename F>
class Blender {
public:
    Blender() = default;
    Blender(const BlendChoice& ofColour, const BlendChoice& ofAlpha,
            const float (&blendConstant)[4])
        : colour(ofColour),
          alpha(ofAlpha),
          constant(SplatRgba<F>(blendConstant)),
          isAlphaApart(ofColour.source != ofAlpha.source || ofColour.target != ofAlpha.target ||
                       ofColour.operation != ofAlpha.operation),
          isPlain(!isAlphaApart && ofColour.source == D3DBLEND_SRCALPHA &&
                  ofColour.target == D3DBLEND_INVSRCALPHA && ofColour.operation == D3DBLENDOP_ADD)
    {}

    /// Both colours are within 0..1.
    void Blend(const Rgba<F>& target, Rgba<F>& colourInOut) const
    {
        const Rgba<F> source = colourInOut;
        if (isPlain) { // by far the most frequent
            const auto share = source.c[3], rest = OneMinus(share);
            for (int c = 0; c < 4; ++c)
                colourInOut.c[c] = source.c[c] * share + target.c[c] * rest;
            return;
        }
        const BlendInput<F> input = {&source, &target, &constant};
        colour.Run(input, 0, 4, colourInOut);
        if (isAlphaApart)
            alpha.Run(input, 3, 4, colourInOut);
    }

private:
    struct Half {
        typename BlendFactors<F>::Function source = nullptr;
        typename BlendFactors<F>::Function target = nullptr;
        typename BlendOperations<typename F::Floats>::Function operation = nullptr;

        Half() = default;
        explicit Half(const BlendChoice& choice)
            : source(BlendFactors<F>::Find(choice.source)),
              target(BlendFactors<F>::Find(choice.target)),
              operation(BlendOperations<typename F::Floats>::Find(choice.operation))
        {}

        void Run(const BlendInput<F>& input, int first, int end, Rgba<F>& out) const
        {
            Rgba<F> sourceFactor, targetFactor;
            source(input, sourceFactor);
            target(input, targetFactor);
            for (int c = first; c < end; ++c)
                out.c[c] = operation(input.source->c[c], sourceFactor.c[c], input.target->c[c],
                                     targetFactor.c[c]);
        }
    };

    Half colour, alpha;
    Rgba<F> constant;
    bool isAlphaApart = false;
    bool isPlain = false;
};

} // namespace headless
