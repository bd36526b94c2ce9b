#include "platform/headless/d3dx/effect/FxStates.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "platform/headless/d3dx/effect/FxStateWords.h"
#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

namespace {

using Kind = FxStateKind;
using Value = FxStateValue;

/// The offset of a field, in floats.
#define FX_LIGHT_FIELD(field) (offsetof(D3DLIGHT9, field) / sizeof(float))
#define FX_MATERIAL_FIELD(field) (offsetof(D3DMATERIAL9, field) / sizeof(float))

constexpr FxState kPassStates[] = {
    // Render states.
    {"ZEnable", Kind::Render, D3DRS_ZENABLE, Value::Number, &kFxZBufferWords},
    {"FillMode", Kind::Render, D3DRS_FILLMODE, Value::Number, &kFxFillWords},
    {"ShadeMode", Kind::Render, D3DRS_SHADEMODE, Value::Number, &kFxShadeWords},
    {"ZWriteEnable", Kind::Render, D3DRS_ZWRITEENABLE, Value::Truth},
    {"AlphaTestEnable", Kind::Render, D3DRS_ALPHATESTENABLE, Value::Truth},
    {"LastPixel", Kind::Render, D3DRS_LASTPIXEL, Value::Truth},
    {"SrcBlend", Kind::Render, D3DRS_SRCBLEND, Value::Number, &kFxBlendWords},
    {"DestBlend", Kind::Render, D3DRS_DESTBLEND, Value::Number, &kFxBlendWords},
    {"CullMode", Kind::Render, D3DRS_CULLMODE, Value::Number, &kFxCullWords},
    {"ZFunc", Kind::Render, D3DRS_ZFUNC, Value::Number, &kFxCompareWords},
    {"AlphaRef", Kind::Render, D3DRS_ALPHAREF, Value::Number},
    {"AlphaFunc", Kind::Render, D3DRS_ALPHAFUNC, Value::Number, &kFxCompareWords},
    {"DitherEnable", Kind::Render, D3DRS_DITHERENABLE, Value::Truth},
    {"AlphaBlendEnable", Kind::Render, D3DRS_ALPHABLENDENABLE, Value::Truth},
    {"FogEnable", Kind::Render, D3DRS_FOGENABLE, Value::Truth},
    {"SpecularEnable", Kind::Render, D3DRS_SPECULARENABLE, Value::Truth},
    {"FogColor", Kind::Render, D3DRS_FOGCOLOR, Value::Color},
    {"FogTableMode", Kind::Render, D3DRS_FOGTABLEMODE, Value::Number, &kFxFogWords},
    {"FogStart", Kind::Render, D3DRS_FOGSTART, Value::Float},
    {"FogEnd", Kind::Render, D3DRS_FOGEND, Value::Float},
    {"FogDensity", Kind::Render, D3DRS_FOGDENSITY, Value::Float},
    {"RangeFogEnable", Kind::Render, D3DRS_RANGEFOGENABLE, Value::Truth},
    {"StencilEnable", Kind::Render, D3DRS_STENCILENABLE, Value::Truth},
    {"StencilFail", Kind::Render, D3DRS_STENCILFAIL, Value::Number, &kFxStencilWords},
    {"StencilZFail", Kind::Render, D3DRS_STENCILZFAIL, Value::Number, &kFxStencilWords},
    {"StencilPass", Kind::Render, D3DRS_STENCILPASS, Value::Number, &kFxStencilWords},
    {"StencilFunc", Kind::Render, D3DRS_STENCILFUNC, Value::Number, &kFxCompareWords},
    {"StencilRef", Kind::Render, D3DRS_STENCILREF, Value::Number},
    {"StencilMask", Kind::Render, D3DRS_STENCILMASK, Value::Number},
    {"StencilWriteMask", Kind::Render, D3DRS_STENCILWRITEMASK, Value::Number},
    {"TextureFactor", Kind::Render, D3DRS_TEXTUREFACTOR, Value::Color},
    {"Wrap0", Kind::Render, D3DRS_WRAP0, Value::Number, &kFxWrapWords},
    {"Wrap1", Kind::Render, D3DRS_WRAP1, Value::Number, &kFxWrapWords},
    {"Wrap2", Kind::Render, D3DRS_WRAP2, Value::Number, &kFxWrapWords},
    {"Wrap3", Kind::Render, D3DRS_WRAP3, Value::Number, &kFxWrapWords},
    {"Wrap4", Kind::Render, D3DRS_WRAP4, Value::Number, &kFxWrapWords},
    {"Wrap5", Kind::Render, D3DRS_WRAP5, Value::Number, &kFxWrapWords},
    {"Wrap6", Kind::Render, D3DRS_WRAP6, Value::Number, &kFxWrapWords},
    {"Wrap7", Kind::Render, D3DRS_WRAP7, Value::Number, &kFxWrapWords},
    {"Wrap8", Kind::Render, D3DRS_WRAP8, Value::Number, &kFxWrapWords},
    {"Wrap9", Kind::Render, D3DRS_WRAP9, Value::Number, &kFxWrapWords},
    {"Wrap10", Kind::Render, D3DRS_WRAP10, Value::Number, &kFxWrapWords},
    {"Wrap11", Kind::Render, D3DRS_WRAP11, Value::Number, &kFxWrapWords},
    {"Wrap12", Kind::Render, D3DRS_WRAP12, Value::Number, &kFxWrapWords},
    {"Wrap13", Kind::Render, D3DRS_WRAP13, Value::Number, &kFxWrapWords},
    {"Wrap14", Kind::Render, D3DRS_WRAP14, Value::Number, &kFxWrapWords},
    {"Wrap15", Kind::Render, D3DRS_WRAP15, Value::Number, &kFxWrapWords},
    {"Clipping", Kind::Render, D3DRS_CLIPPING, Value::Truth},
    {"Lighting", Kind::Render, D3DRS_LIGHTING, Value::Truth},
    {"Ambient", Kind::Render, D3DRS_AMBIENT, Value::Color},
    {"FogVertexMode", Kind::Render, D3DRS_FOGVERTEXMODE, Value::Number, &kFxFogWords},
    {"ColorVertex", Kind::Render, D3DRS_COLORVERTEX, Value::Truth},
    {"LocalViewer", Kind::Render, D3DRS_LOCALVIEWER, Value::Truth},
    {"NormalizeNormals", Kind::Render, D3DRS_NORMALIZENORMALS, Value::Truth},
    {"DiffuseMaterialSource", Kind::Render, D3DRS_DIFFUSEMATERIALSOURCE, Value::Number,
     &kFxMaterialSourceWords},
    {"SpecularMaterialSource", Kind::Render, D3DRS_SPECULARMATERIALSOURCE, Value::Number,
     &kFxMaterialSourceWords},
    {"AmbientMaterialSource", Kind::Render, D3DRS_AMBIENTMATERIALSOURCE, Value::Number,
     &kFxMaterialSourceWords},
    {"EmissiveMaterialSource", Kind::Render, D3DRS_EMISSIVEMATERIALSOURCE, Value::Number,
     &kFxMaterialSourceWords},
    {"VertexBlend", Kind::Render, D3DRS_VERTEXBLEND, Value::Number, &kFxVertexBlendWords},
    {"ClipPlaneEnable", Kind::Render, D3DRS_CLIPPLANEENABLE, Value::Number, &kFxClipPlaneWords},
    {"PointSize", Kind::Render, D3DRS_POINTSIZE, Value::Float},
    {"PointSize_Min", Kind::Render, D3DRS_POINTSIZE_MIN, Value::Float},
    {"PointSize_Max", Kind::Render, D3DRS_POINTSIZE_MAX, Value::Float},
    {"PointSpriteEnable", Kind::Render, D3DRS_POINTSPRITEENABLE, Value::Truth},
    {"PointScaleEnable", Kind::Render, D3DRS_POINTSCALEENABLE, Value::Truth},
    {"PointScale_A", Kind::Render, D3DRS_POINTSCALE_A, Value::Float},
    {"PointScale_B", Kind::Render, D3DRS_POINTSCALE_B, Value::Float},
    {"PointScale_C", Kind::Render, D3DRS_POINTSCALE_C, Value::Float},
    {"MultiSampleAntialias", Kind::Render, D3DRS_MULTISAMPLEANTIALIAS, Value::Truth},
    {"MultiSampleMask", Kind::Render, D3DRS_MULTISAMPLEMASK, Value::Number},
    {"PatchEdgeStyle", Kind::Render, D3DRS_PATCHEDGESTYLE, Value::Number, &kFxPatchEdgeWords},
    {"DebugMonitorToken", Kind::Render, D3DRS_DEBUGMONITORTOKEN, Value::Number, &kFxDebugWords},
    {"IndexedVertexBlendEnable", Kind::Render, D3DRS_INDEXEDVERTEXBLENDENABLE, Value::Truth},
    {"ColorWriteEnable", Kind::Render, D3DRS_COLORWRITEENABLE, Value::Number, &kFxColorWriteWords},
    {"ColorWriteEnable1", Kind::Render, D3DRS_COLORWRITEENABLE1, Value::Number,
     &kFxColorWriteWords},
    {"ColorWriteEnable2", Kind::Render, D3DRS_COLORWRITEENABLE2, Value::Number,
     &kFxColorWriteWords},
    {"ColorWriteEnable3", Kind::Render, D3DRS_COLORWRITEENABLE3, Value::Number,
     &kFxColorWriteWords},
    {"TweenFactor", Kind::Render, D3DRS_TWEENFACTOR, Value::Float},
    {"BlendOp", Kind::Render, D3DRS_BLENDOP, Value::Number, &kFxBlendOpWords},
    {"PositionDegree", Kind::Render, D3DRS_POSITIONDEGREE, Value::Number, &kFxDegreeWords},
    {"NormalDegree", Kind::Render, D3DRS_NORMALDEGREE, Value::Number, &kFxDegreeWords},
    {"ScissorTestEnable", Kind::Render, D3DRS_SCISSORTESTENABLE, Value::Truth},
    {"SlopeScaleDepthBias", Kind::Render, D3DRS_SLOPESCALEDEPTHBIAS, Value::Float},
    {"DepthBias", Kind::Render, D3DRS_DEPTHBIAS, Value::Float},
    {"AntialiasedLineEnable", Kind::Render, D3DRS_ANTIALIASEDLINEENABLE, Value::Truth},
    {"MinTessellationLevel", Kind::Render, D3DRS_MINTESSELLATIONLEVEL, Value::Float},
    {"MaxTessellationLevel", Kind::Render, D3DRS_MAXTESSELLATIONLEVEL, Value::Float},
    {"AdaptiveTess_X", Kind::Render, D3DRS_ADAPTIVETESS_X, Value::Float},
    {"AdaptiveTess_Y", Kind::Render, D3DRS_ADAPTIVETESS_Y, Value::Float},
    {"AdaptiveTess_Z", Kind::Render, D3DRS_ADAPTIVETESS_Z, Value::Float},
    {"AdaptiveTess_W", Kind::Render, D3DRS_ADAPTIVETESS_W, Value::Float},
    {"EnableAdaptiveTessellation", Kind::Render, D3DRS_ENABLEADAPTIVETESSELLATION, Value::Truth},
    {"TwoSidedStencilMode", Kind::Render, D3DRS_TWOSIDEDSTENCILMODE, Value::Truth},
    {"CCW_StencilFail", Kind::Render, D3DRS_CCW_STENCILFAIL, Value::Number, &kFxStencilWords},
    {"CCW_StencilZFail", Kind::Render, D3DRS_CCW_STENCILZFAIL, Value::Number, &kFxStencilWords},
    {"CCW_StencilPass", Kind::Render, D3DRS_CCW_STENCILPASS, Value::Number, &kFxStencilWords},
    {"CCW_StencilFunc", Kind::Render, D3DRS_CCW_STENCILFUNC, Value::Number, &kFxCompareWords},
    {"BlendFactor", Kind::Render, D3DRS_BLENDFACTOR, Value::Color},
    {"SRGBWriteEnable", Kind::Render, D3DRS_SRGBWRITEENABLE, Value::Truth},
    {"SeparateAlphaBlendEnable", Kind::Render, D3DRS_SEPARATEALPHABLENDENABLE, Value::Truth},
    {"SrcBlendAlpha", Kind::Render, D3DRS_SRCBLENDALPHA, Value::Number, &kFxBlendWords},
    {"DestBlendAlpha", Kind::Render, D3DRS_DESTBLENDALPHA, Value::Number, &kFxBlendWords},
    {"BlendOpAlpha", Kind::Render, D3DRS_BLENDOPALPHA, Value::Number, &kFxBlendOpWords},

    // Texture stages.
    {"ColorOp", Kind::Stage, D3DTSS_COLOROP, Value::Number, &kFxTextureOpWords, kFxStageCount},
    {"AlphaOp", Kind::Stage, D3DTSS_ALPHAOP, Value::Number, &kFxTextureOpWords, kFxStageCount},
    {"ColorArg0", Kind::Stage, D3DTSS_COLORARG0, Value::Number, &kFxTextureArgumentWords,
     kFxStageCount},
    {"ColorArg1", Kind::Stage, D3DTSS_COLORARG1, Value::Number, &kFxTextureArgumentWords,
     kFxStageCount},
    {"ColorArg2", Kind::Stage, D3DTSS_COLORARG2, Value::Number, &kFxTextureArgumentWords,
     kFxStageCount},
    {"AlphaArg0", Kind::Stage, D3DTSS_ALPHAARG0, Value::Number, &kFxTextureArgumentWords,
     kFxStageCount},
    {"AlphaArg1", Kind::Stage, D3DTSS_ALPHAARG1, Value::Number, &kFxTextureArgumentWords,
     kFxStageCount},
    {"AlphaArg2", Kind::Stage, D3DTSS_ALPHAARG2, Value::Number, &kFxTextureArgumentWords,
     kFxStageCount},
    {"ResultArg", Kind::Stage, D3DTSS_RESULTARG, Value::Number, &kFxTextureArgumentWords,
     kFxStageCount},
    {"BumpEnvMat00", Kind::Stage, D3DTSS_BUMPENVMAT00, Value::Float, nullptr, kFxStageCount},
    {"BumpEnvMat01", Kind::Stage, D3DTSS_BUMPENVMAT01, Value::Float, nullptr, kFxStageCount},
    {"BumpEnvMat10", Kind::Stage, D3DTSS_BUMPENVMAT10, Value::Float, nullptr, kFxStageCount},
    {"BumpEnvMat11", Kind::Stage, D3DTSS_BUMPENVMAT11, Value::Float, nullptr, kFxStageCount},
    {"BumpEnvLScale", Kind::Stage, D3DTSS_BUMPENVLSCALE, Value::Float, nullptr, kFxStageCount},
    {"BumpEnvLOffset", Kind::Stage, D3DTSS_BUMPENVLOFFSET, Value::Float, nullptr, kFxStageCount},
    {"TexCoordIndex", Kind::Stage, D3DTSS_TEXCOORDINDEX, Value::Number, &kFxTexCoordWords,
     kFxStageCount},
    {"TextureTransformFlags", Kind::Stage, D3DTSS_TEXTURETRANSFORMFLAGS, Value::Number,
     &kFxTransformFlagWords, kFxStageCount},
    {"Constant", Kind::Stage, D3DTSS_CONSTANT, Value::Color, nullptr, kFxStageCount},

    // Samplers and textures.
    {"AddressU", Kind::Sampler, D3DSAMP_ADDRESSU, Value::Number, &kFxAddressWords, kFxSamplerCount},
    {"AddressV", Kind::Sampler, D3DSAMP_ADDRESSV, Value::Number, &kFxAddressWords, kFxSamplerCount},
    {"AddressW", Kind::Sampler, D3DSAMP_ADDRESSW, Value::Number, &kFxAddressWords, kFxSamplerCount},
    {"BorderColor", Kind::Sampler, D3DSAMP_BORDERCOLOR, Value::Color, nullptr, kFxSamplerCount},
    {"MagFilter", Kind::Sampler, D3DSAMP_MAGFILTER, Value::Number, &kFxFilterWords,
     kFxSamplerCount},
    {"MinFilter", Kind::Sampler, D3DSAMP_MINFILTER, Value::Number, &kFxFilterWords,
     kFxSamplerCount},
    {"MipFilter", Kind::Sampler, D3DSAMP_MIPFILTER, Value::Number, &kFxFilterWords,
     kFxSamplerCount},
    {"MipMapLodBias", Kind::Sampler, D3DSAMP_MIPMAPLODBIAS, Value::Float, nullptr, kFxSamplerCount},
    {"MaxMipLevel", Kind::Sampler, D3DSAMP_MAXMIPLEVEL, Value::Number, nullptr, kFxSamplerCount},
    {"MaxAnisotropy", Kind::Sampler, D3DSAMP_MAXANISOTROPY, Value::Number, nullptr,
     kFxSamplerCount},
    {"SRGBTexture", Kind::Sampler, D3DSAMP_SRGBTEXTURE, Value::Truth, nullptr, kFxSamplerCount},
    {"ElementIndex", Kind::Sampler, D3DSAMP_ELEMENTINDEX, Value::Number, nullptr, kFxSamplerCount},
    {"DMapOffset", Kind::Sampler, D3DSAMP_DMAPOFFSET, Value::Number, nullptr, kFxSamplerCount},
    {"Texture", Kind::Texture, 0, Value::Object, nullptr, kFxSamplerCount},
    {"Sampler", Kind::SamplerObject, 0, Value::Object, nullptr, kFxSamplerCount},

    // Transforms.
    {"ViewTransform", Kind::Transform, D3DTS_VIEW, Value::Matrix},
    {"ProjectionTransform", Kind::Transform, D3DTS_PROJECTION, Value::Matrix},
    {"WorldTransform", Kind::Transform, 256, Value::Matrix, nullptr, 256},
    {"TextureTransform", Kind::Transform, D3DTS_TEXTURE0, Value::Matrix, nullptr, kFxStageCount},

    // The material and the lights.
    {"MaterialDiffuse", Kind::Material, FX_MATERIAL_FIELD(Diffuse), Value::Floats, nullptr, 1, 4},
    {"MaterialAmbient", Kind::Material, FX_MATERIAL_FIELD(Ambient), Value::Floats, nullptr, 1, 4},
    {"MaterialSpecular", Kind::Material, FX_MATERIAL_FIELD(Specular), Value::Floats, nullptr, 1, 4},
    {"MaterialEmissive", Kind::Material, FX_MATERIAL_FIELD(Emissive), Value::Floats, nullptr, 1, 4},
    {"MaterialPower", Kind::Material, FX_MATERIAL_FIELD(Power), Value::Floats},
    {"LightType", Kind::Light, FX_LIGHT_FIELD(Type), Value::Number, &kFxLightTypeWords,
     kFxLightCount},
    {"LightDiffuse", Kind::Light, FX_LIGHT_FIELD(Diffuse), Value::Floats, nullptr, kFxLightCount,
     4},
    {"LightSpecular", Kind::Light, FX_LIGHT_FIELD(Specular), Value::Floats, nullptr, kFxLightCount,
     4},
    {"LightAmbient", Kind::Light, FX_LIGHT_FIELD(Ambient), Value::Floats, nullptr, kFxLightCount,
     4},
    {"LightPosition", Kind::Light, FX_LIGHT_FIELD(Position), Value::Floats, nullptr, kFxLightCount,
     3},
    {"LightDirection", Kind::Light, FX_LIGHT_FIELD(Direction), Value::Floats, nullptr,
     kFxLightCount, 3},
    {"LightRange", Kind::Light, FX_LIGHT_FIELD(Range), Value::Floats, nullptr, kFxLightCount, 1},
    {"LightFalloff", Kind::Light, FX_LIGHT_FIELD(Falloff), Value::Floats, nullptr, kFxLightCount,
     1},
    {"LightAttenuation0", Kind::Light, FX_LIGHT_FIELD(Attenuation0), Value::Floats, nullptr,
     kFxLightCount, 1},
    {"LightAttenuation1", Kind::Light, FX_LIGHT_FIELD(Attenuation1), Value::Floats, nullptr,
     kFxLightCount, 1},
    {"LightAttenuation2", Kind::Light, FX_LIGHT_FIELD(Attenuation2), Value::Floats, nullptr,
     kFxLightCount, 1},
    {"LightTheta", Kind::Light, FX_LIGHT_FIELD(Theta), Value::Floats, nullptr, kFxLightCount, 1},
    {"LightPhi", Kind::Light, FX_LIGHT_FIELD(Phi), Value::Floats, nullptr, kFxLightCount, 1},
    {"LightEnable", Kind::LightEnable, 0, Value::Truth, nullptr, kFxLightCount},

    // Shaders and the form of vertices.
    {"VertexShader", Kind::VertexShader, 0, Value::Object},
    {"PixelShader", Kind::PixelShader, 0, Value::Object},
    {"VertexShaderConstant", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 1},
    {"VertexShaderConstantF", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 1},
    {"VertexShaderConstant1", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 1},
    {"VertexShaderConstant2", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 1},
    {"VertexShaderConstant3", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 1},
    {"VertexShaderConstant4", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 1},
    {"VertexShaderConstantI", Kind::ShaderConstant, kFxWholeRegisters, Value::Registers, nullptr,
     256, 1},
    {"VertexShaderConstantB", Kind::ShaderConstant, kFxTruthRegisters, Value::Registers, nullptr,
     256, 1},
    {"PixelShaderConstant", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr, 256,
     0},
    {"PixelShaderConstantF", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 0},
    {"PixelShaderConstant1", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 0},
    {"PixelShaderConstant2", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 0},
    {"PixelShaderConstant3", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 0},
    {"PixelShaderConstant4", Kind::ShaderConstant, kFxFloatRegisters, Value::Registers, nullptr,
     256, 0},
    {"PixelShaderConstantI", Kind::ShaderConstant, kFxWholeRegisters, Value::Registers, nullptr,
     256, 0},
    {"PixelShaderConstantB", Kind::ShaderConstant, kFxTruthRegisters, Value::Registers, nullptr,
     256, 0},
    {"FVF", Kind::VertexFormat, 0, Value::Number, &kFxVertexFormatWords},
    {"PatchSegments", Kind::PatchSegments, 0, Value::Float},
};

#undef FX_LIGHT_FIELD
#undef FX_MATERIAL_FIELD

} // namespace

const FxStateWord* FxStateWords::Find(std::string_view name) const
{
    if (name.size() > prefix.size() && FxSameWord(name.substr(0, prefix.size()), prefix))
        name.remove_prefix(prefix.size());
    for (const FxStateWord& word : words)
        if (FxSameWord(word.name, name))
            return &word;
    return nullptr;
}

bool FxIsUnmodelledState(std::string_view name)
{
    static constexpr std::string_view kNames[] = {"StateBlock", "NPatchMode", "VertexFragment",
                                                  "PixelFragment"};
    return std::any_of(std::begin(kNames), std::end(kNames),
                       [name](std::string_view row) { return FxSameWord(row, name); });
}

const FxState* FxFindPassState(std::string_view name)
{
    for (const FxState& state : kPassStates)
        if (FxSameWord(state.name, name))
            return &state;
    return nullptr;
}

const FxState* FxFindSamplerState(std::string_view name)
{
    const FxState* state = FxFindPassState(name);
    const bool fits = state && (state->kind == Kind::Sampler || state->kind == Kind::Texture);
    return fits ? state : nullptr;
}

} // namespace headless::fx
