#include "platform/headless/d3d9/Blending.h"

#include "platform/headless/d3d9/CallLog.h"

namespace headless {

namespace {

Rgba4 Inverse(const Rgba4& colour)
{
    return {{OneMinus(colour.c[0]), OneMinus(colour.c[1]), OneMinus(colour.c[2]),
             OneMinus(colour.c[3])}};
}

Rgba4 Everywhere(Lanes value)
{
    return {{value, value, value, value}};
}

void Zero(const BlendInput&, Rgba4& out)
{
    out = Everywhere(Splat(0.0f));
}

void One(const BlendInput&, Rgba4& out)
{
    out = Everywhere(Splat(1.0f));
}

void SourceColour(const BlendInput& in, Rgba4& out)
{
    out = *in.source;
}

void InverseSourceColour(const BlendInput& in, Rgba4& out)
{
    out = Inverse(*in.source);
}

void SourceAlpha(const BlendInput& in, Rgba4& out)
{
    out = Everywhere(in.source->c[3]);
}

void InverseSourceAlpha(const BlendInput& in, Rgba4& out)
{
    out = Everywhere(OneMinus(in.source->c[3]));
}

void TargetAlpha(const BlendInput& in, Rgba4& out)
{
    out = Everywhere(in.target->c[3]);
}

void InverseTargetAlpha(const BlendInput& in, Rgba4& out)
{
    out = Everywhere(OneMinus(in.target->c[3]));
}

void TargetColour(const BlendInput& in, Rgba4& out)
{
    out = *in.target;
}

void InverseTargetColour(const BlendInput& in, Rgba4& out)
{
    out = Inverse(*in.target);
}

void SaturatedSourceAlpha(const BlendInput& in, Rgba4& out)
{
    out = Everywhere(Min(in.source->c[3], OneMinus(in.target->c[3])));
    out.c[3] = Splat(1.0f);
}

void Constant(const BlendInput& in, Rgba4& out)
{
    out = *in.constant;
}

void InverseConstant(const BlendInput& in, Rgba4& out)
{
    out = Inverse(*in.constant);
}

struct FactorRow {
    DWORD blend;
    BlendFactor factor;
};

constexpr FactorRow kFactors[] = {
    {D3DBLEND_ZERO, Zero},
    {D3DBLEND_ONE, One},
    {D3DBLEND_SRCCOLOR, SourceColour},
    {D3DBLEND_INVSRCCOLOR, InverseSourceColour},
    {D3DBLEND_SRCALPHA, SourceAlpha},
    {D3DBLEND_INVSRCALPHA, InverseSourceAlpha},
    {D3DBLEND_DESTALPHA, TargetAlpha},
    {D3DBLEND_INVDESTALPHA, InverseTargetAlpha},
    {D3DBLEND_DESTCOLOR, TargetColour},
    {D3DBLEND_INVDESTCOLOR, InverseTargetColour},
    {D3DBLEND_SRCALPHASAT, SaturatedSourceAlpha},
    {D3DBLEND_BLENDFACTOR, Constant},
    {D3DBLEND_INVBLENDFACTOR, InverseConstant},
};

Lanes Add(Lanes s, Lanes sf, Lanes t, Lanes tf)
{
    return s * sf + t * tf;
}

Lanes Subtract(Lanes s, Lanes sf, Lanes t, Lanes tf)
{
    return s * sf - t * tf;
}

Lanes SubtractReversed(Lanes s, Lanes sf, Lanes t, Lanes tf)
{
    return t * tf - s * sf;
}

Lanes Least(Lanes s, Lanes, Lanes t, Lanes)
{
    return Min(s, t);
}

Lanes Most(Lanes s, Lanes, Lanes t, Lanes)
{
    return Max(s, t);
}

constexpr BlendOperation kBlendOperations[] = {Add, Subtract, SubtractReversed, Least, Most};

BlendFactor FindFactor(DWORD blend)
{
    for (const FactorRow& row : kFactors)
        if (row.blend == blend)
            return row.factor;
    return nullptr;
}

} // namespace

HRESULT MakeBlendHalf(DWORD source, DWORD target, DWORD operation, BlendHalf& halfOut)
{
    if (operation < D3DBLENDOP_ADD || operation > D3DBLENDOP_MAX)
        return Unmodelled("D3DRS_BLENDOP", operation);
    // These two set both factors and override the other one.
    if (source == D3DBLEND_BOTHSRCALPHA) {
        source = D3DBLEND_SRCALPHA;
        target = D3DBLEND_INVSRCALPHA;
    } else if (source == D3DBLEND_BOTHINVSRCALPHA) {
        source = D3DBLEND_INVSRCALPHA;
        target = D3DBLEND_SRCALPHA;
    }
    halfOut = {FindFactor(source), FindFactor(target),
               kBlendOperations[operation - D3DBLENDOP_ADD]};
    if (!halfOut.source)
        return Unmodelled("D3DRS_SRCBLEND", source);
    return halfOut.target ? D3D_OK : Unmodelled("D3DRS_DESTBLEND", target);
}

Rgba4 BlendConstant(D3DCOLOR colour)
{
    const auto part = [colour](int shift) {
        return static_cast<float>(colour >> shift & 0xFF) / 255.0f;
    };
    return SplatColour(part(16), part(8), part(0), part(24));
}

} // namespace headless
