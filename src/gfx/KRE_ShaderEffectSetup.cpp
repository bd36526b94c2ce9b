// Reads an effect's tables when it is loaded: parameters by semantic, passes, the technique.

#include "gfx/KRE_ShaderEffect.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "base/Paths.h"

namespace {

/// In the order of `EffectSemantic`.
constexpr const char* kSemanticNames[] = {
    "WORLDVIEWPROJECTION",
    "WORLDVIEW",
    "WORLD",
    "WORLDINVERSETRANSPOSE",
    "VIEW",
    "VIEWINVERSE",
    "PROJECTION",
    "VIEWPROJECTION",
    "VIEWPOSITION",
    "DIFFUSEMAP",
    "NORMALMAP",
    "TIME",
    "ELAPSEDTIME",
    "GAMETIME",
    "RANDOM",
    "FOGSTARTEND",
    "InvViewPortDim",
    "TextureMatrix",
    "Opacity",
    "SCREENCOPY",
    "NUMBLENDWEIGHTS",
    "WORLDMATRIXARRAY",
    "REFLECTIONMAPTYPE",
    "REFLECTIONMAP",
    "TransformReflectionMap",
    "DiffuseMaterial",
    "AmbientMaterial",
    "SpecularMaterial",
    "SpecularPower",
    "EmissiveMaterial",
    "NumDirectionalLights",
    "NumOmniLights",
    "OmniLightPosition",
    "OmniLightDiffCol",
    "OmniLightSpecCol",
    "OmniLightAmbiCol",
    "OmniLightAttenuation",
    "DirectionalLightDirection",
    "DirectionalLightDiffCol",
    "DirectionalLightSpecCol",
    "AmbientColor",
};
static_assert(std::size(kSemanticNames) == static_cast<size_t>(EffectSemantic::kCount));

constexpr std::string_view kScreenBuffer = "ScreenBuffer";
constexpr std::string_view kScreenQuarterBuffer = "ScreenQuarterBuffer";
constexpr std::string_view kInitial = "Initial";

/// Binds parameters whose semantics are one text with a number, counted from 1.
template <size_t kCount>
void BindNumbered(ID3DXEffect& effect, const char* format, D3DXHANDLE (&handlesOut)[kCount])
{
    for (size_t i = 0; i < kCount; ++i) {
        char name[40];
        std::snprintf(name, sizeof name, format, static_cast<int>(i + 1));
        handlesOut[i] = effect.GetParameterBySemantic(nullptr, name);
    }
}

/// 0 for a text without a number.
int32_t RoundedNumber(const char* text)
{
    return RoundToInt(static_cast<float>(std::strtod(text, nullptr)));
}

} // namespace

void KRE_ShaderEffect::Initialise(const char* fileName)
{
    data->invalid = true; // until a technique is chosen: an error may occur first
    D3DXEFFECT_DESC description{};
    Check(data->effect->GetDesc(&description), "Can not read effect: %s");
    data->parameterCount = static_cast<int32_t>(description.Parameters);
    data->techniqueCount = static_cast<int32_t>(description.Techniques);
    BindSemantics();
    BindResources(fileName);
    ReadTechniques();
    ChooseTechnique();
}

void KRE_ShaderEffect::BindSemantics()
{
    ID3DXEffect& effect = *data->effect.Get();
    for (size_t i = 0; i < std::size(kSemanticNames); ++i)
        data->semantics[i] = effect.GetParameterBySemantic(nullptr, kSemanticNames[i]);
    BindNumbered(effect, "SCREENBUFFER%i", data->screenBuffers);
    BindNumbered(effect, "SCREENQUARTERBUFFER%i", data->screenQuarterBuffers);
    BindNumbered(effect, "fParam%i", data->fParams);
    BindNumbered(effect, "vParam%i", data->vParams);
}

void KRE_ShaderEffect::BindResources(const char* fileName)
{
    ID3DXEffect& effect = *data->effect.Get();
    for (int32_t i = 0; i < data->parameterCount; ++i) {
        const D3DXHANDLE parameter = effect.GetParameter(nullptr, static_cast<UINT>(i));
        const D3DXHANDLE name =
            parameter ? effect.GetAnnotationByName(parameter, "ResourceName") : nullptr;
        if (!name)
            continue;
        if (data->resourceCount == ShaderEffectData::kResources)
            Error("Not more than %i textures with a ResourceName supported: '%s'",
                  ShaderEffectData::kResources, fileName);
        data->resourceParams[data->resourceCount] = parameter;
        data->resourceNames[data->resourceCount] = name;
        ++data->resourceCount;
    }
}

void KRE_ShaderEffect::ReadTechniques()
{
    ID3DXEffect& effect = *data->effect.Get();
    data->techniques.resize(static_cast<size_t>(data->techniqueCount));
    for (UINT i = 0; i < data->techniques.size(); ++i) {
        EffectTechnique& target = data->techniques[i];
        target.handle = effect.GetTechnique(i);
        D3DXTECHNIQUE_DESC description{};
        Check(effect.GetTechniqueDesc(target.handle, &description),
              "Can not read technique of effect: %s");
        target.passCount = static_cast<int32_t>(description.Passes);
        target.passTargets.resize(description.Passes);
        for (UINT pass = 0; pass < description.Passes; ++pass)
            ReadPass(target, pass);
    }
}

void KRE_ShaderEffect::ReadPass(EffectTechnique& target, UINT pass)
{
    ID3DXEffect& effect = *data->effect.Get();
    const D3DXHANDLE handle = effect.GetPass(target.handle, pass);
    const D3DXHANDLE annotation = effect.GetAnnotationByName(handle, "RenderTarget");
    LPCSTR text = nullptr;
    if (annotation && SUCCEEDED(effect.GetString(annotation, &text)) && text)
        target.passTargets[pass] = ParseTarget(text);
    if (target.hasVertexShader)
        return;
    D3DXPASS_DESC description{};
    Check(effect.GetPassDesc(handle, &description), "Can not read pass of effect: %s");
    target.hasVertexShader = description.pVertexShaderFunction != nullptr;
}

/// Numbers in the text count from 1; 0 is no target.
EffectPassTarget KRE_ShaderEffect::ParseTarget(const char* text)
{
    const std::string_view name(text);
    if (name.starts_with(kScreenBuffer)) {
        const int32_t number = ReadBufferNumber(text + kScreenBuffer.size(), kScreenBuffers);
        if (number > 0)
            return {EffectTargetKind::kScreenBuffer, number - 1};
    } else if (name.starts_with(kScreenQuarterBuffer)) {
        const int32_t number =
            ReadBufferNumber(text + kScreenQuarterBuffer.size(), kScreenQuarterBuffers);
        if (number > 0)
            return {EffectTargetKind::kScreenQuarterBuffer, number - 1};
    } else if (name.starts_with(kInitial)) {
        return {EffectTargetKind::kInitial, 0};
    }
    return {};
}

int32_t KRE_ShaderEffect::ReadBufferNumber(const char* text, int32_t limit)
{
    const int32_t number = RoundedNumber(text);
    if (number > limit)
        Error("Not more than %i ScreenBuffer supported", limit);
    return number;
}

/// The technique requested before the load, else the first one that runs on this device. If none
/// does, the last one is selected and the effect is not usable.
void KRE_ShaderEffect::ChooseTechnique()
{
    ID3DXEffect& effect = *data->effect.Get();
    const auto isValid = [&](int32_t index) {
        return SUCCEEDED(
            effect.ValidateTechnique(data->techniques[static_cast<size_t>(index)].handle));
    };
    if (technique >= 0 && technique < data->techniqueCount) {
        data->invalid = !isValid(technique);
    } else {
        int32_t chosen = 0;
        while (chosen < data->techniqueCount && !isValid(chosen))
            ++chosen;
        data->invalid = chosen == data->techniqueCount;
        technique = std::min(chosen, data->techniqueCount - 1);
    }
    data->technique = technique;
    if (technique >= 0)
        lastResult = effect.SetTechnique(data->techniques[static_cast<size_t>(technique)].handle);
}
