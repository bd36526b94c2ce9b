// Any functions as the shaders of an effect that draws a triangle.

#include "fuzz/EffectUse.h"

#include <cstdint>
#include <string>

namespace {

constexpr const char* kTechnique =
    "\ntechnique t { pass { VertexShader = compile vs_2_0 v(); PixelShader = compile ps_2_0 p(); } }"
    "\ntechnique u { pass { VertexShader = compile vs_3_0 v(); PixelShader = compile ps_3_0 p(); } }";

struct Vertex {
    float x, y, z;
    DWORD colour;
};

void Draw(ID3DXEffect& effect, IDirect3DDevice9& device)
{
    static constexpr Vertex kTriangle[] = {
        {-1, -1, 0, 0xFF804020}, {0, 1, 0, 0xFFFFFFFF}, {1, -1, 0, 0}};
    for (const char* technique : {"t", "u"}) {
        UINT passes = 0;
        if (FAILED(effect.ValidateTechnique(technique)) || FAILED(effect.SetTechnique(technique)))
            continue;
        Require(SUCCEEDED(effect.Begin(&passes, 0)));
        if (SUCCEEDED(effect.BeginPass(0))) {
            device.BeginScene();
            device.SetFVF(D3DFVF_XYZ | D3DFVF_DIFFUSE);
            device.DrawPrimitiveUP(D3DPT_TRIANGLELIST, 1, kTriangle, sizeof(Vertex));
            device.EndScene();
            effect.EndPass();
        }
        Require(SUCCEEDED(effect.End()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static EffectDevice device;
    const std::string text = std::string(reinterpret_cast<const char*>(data), size) + kTechnique;
    ComPointer<ID3DXEffect> effect;
    ComPointer<ID3DXBuffer> errors;
    D3DXCreateEffect(device.Get(), text.data(), static_cast<UINT>(text.size()), nullptr, nullptr, 0,
                     nullptr, effect.Out(), errors.Out());
    Require(static_cast<bool>(effect) != static_cast<bool>(errors));
    if (effect)
        Draw(*effect.Get(), *device.Get());
    else
        CheckError(*errors.Get());
    return 0;
}
