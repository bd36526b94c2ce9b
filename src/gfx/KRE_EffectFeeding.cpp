// Sets an effect's parameters before it draws: matrices, times, textures and lights.

#include "gfx/KRE_EffectFeeding.h"

#include <algorithm>
#include <string>

#include "base/Clock.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_ShaderEffect.h"

namespace {

constexpr int32_t kOmniLights = 6;
constexpr int32_t kDirectionalLights = 2;
constexpr int32_t kLightSlots = 8;

D3DXVECTOR4 ToVector(const D3DCOLORVALUE& color)
{
    return {color.r, color.g, color.b, color.a};
}

D3DXVECTOR4 ToVector(const D3DVECTOR& vector, float w)
{
    return {vector.x, vector.y, vector.z, w};
}

float ChannelAt(D3DCOLOR color, int shift)
{
    return static_cast<float>(color >> shift & 0xFF) / 255.0f;
}

D3DXVECTOR4 ToVector(D3DCOLOR color)
{
    return {ChannelAt(color, 16), ChannelAt(color, 8), ChannelAt(color, 0), 1.0f};
}

/// Identity for a matrix without an inverse.
D3DXMATRIX InverseOf(const D3DXMATRIX& matrix)
{
    D3DXMATRIX inverse;
    if (!D3DXMatrixInverse(&inverse, nullptr, &matrix))
        D3DXMatrixIdentity(&inverse);
    return inverse;
}

/// The lights passed to an effect, in their order. Entries after the last one are zero.
struct EffectLights {
    int32_t omniCount = 0;
    D3DXVECTOR4 omniPosition[kOmniLights];
    D3DXVECTOR4 omniDiffuse[kOmniLights];
    D3DXVECTOR4 omniSpecular[kOmniLights];
    D3DXVECTOR4 omniAmbient[kOmniLights];
    D3DXVECTOR4 omniAttenuation[kOmniLights];
    int32_t directionalCount = 0;
    D3DXVECTOR4 direction[kDirectionalLights];
    D3DXVECTOR4 directionalDiffuse[kDirectionalLights];
    D3DXVECTOR4 directionalSpecular[kDirectionalLights];
    D3DXVECTOR4 ambient;

    /// The default constructor of a D3DX vector leaves it uninitialised.
    explicit EffectLights(const D3DXVECTOR4& ambientBase) : ambient(ambientBase)
    {
        const D3DXVECTOR4 zero(0.0f, 0.0f, 0.0f, 0.0f);
        for (D3DXVECTOR4* vectors :
             {omniPosition, omniDiffuse, omniSpecular, omniAmbient, omniAttenuation})
            std::fill_n(vectors, kOmniLights, zero);
        for (D3DXVECTOR4* vectors : {direction, directionalDiffuse, directionalSpecular})
            std::fill_n(vectors, kDirectionalLights, zero);
    }

    void Add(const D3DLIGHT9& light)
    {
        if (light.Type == D3DLIGHT_POINT || light.Type == D3DLIGHT_SPOT)
            AddOmni(light);
        else if (light.Type == D3DLIGHT_DIRECTIONAL)
            AddDirectional(light);
    }

private:
    void AddOmni(const D3DLIGHT9& light)
    {
        if (omniCount == kOmniLights)
            return;
        omniPosition[omniCount] = ToVector(light.Position, 1.0f);
        omniDiffuse[omniCount] = ToVector(light.Diffuse);
        omniSpecular[omniCount] = ToVector(light.Specular);
        omniAmbient[omniCount] = ToVector(light.Ambient);
        omniAttenuation[omniCount] = {light.Attenuation0, light.Attenuation1, light.Attenuation2,
                                      0.0f};
        ++omniCount;
    }

    void AddDirectional(const D3DLIGHT9& light)
    {
        if (directionalCount == kDirectionalLights)
            return;
        direction[directionalCount] = ToVector(light.Direction, 1.0f);
        directionalDiffuse[directionalCount] = ToVector(light.Diffuse);
        directionalSpecular[directionalCount] = ToVector(light.Specular);
        ambient += ToVector(light.Ambient);
        ++directionalCount;
    }
};

} // namespace

void KRE_EffectFeeding::Prepare(KRE_ShaderEffect& effect, const KRE_Mesh* mesh,
                                int32_t materialIndex)
{
    static constexpr int32_t kIndexedStages = 6;
    static constexpr int32_t kTransformedStages = 4;
    if (effect.needsStageIndices) {
        for (int32_t stage = 0; stage < kIndexedStages; ++stage)
            gfx.SetTexCoordIndex(stage, static_cast<DWORD>(stage));
    }
    if (effect.TechniqueHasVertexShader()) {
        for (int32_t stage = 0; stage < kTransformedStages; ++stage)
            gfx.SetTextureTransformFlags(stage, D3DTTFF_DISABLE);
    }
    UpdateFrame(effect);
    if (mesh)
        UpdateObject(effect, *mesh, materialIndex);
    if (effect.needsLights)
        UpdateLights(effect);
}

/// The texture bound to a stage; null if there is none or it is not known.
IDirect3DBaseTexture9* KRE_EffectFeeding::TextureOnStage(int32_t stage) const
{
    if (stage < 0 || stage >= KRE_Gfx::kStages ||
        gfx.boundTexture[stage] == KRE_Gfx::UnknownTexture())
        return nullptr;
    return gfx.boundTexture[stage];
}

void KRE_EffectFeeding::UpdateFrame(KRE_ShaderEffect& effect)
{
    UpdateMatrices(effect);
    UpdateTimes(effect);
    UpdateTextures(effect);
    const ShaderEffectData& data = *effect.data;
    using enum EffectSemantic;
    effect.SetVectorParameter(data.Handle(kFogStartEnd), gfx.fog.start, gfx.fog.end, 0.0f, 0.0f);
    effect.SetVectorParameter(data.Handle(kInvViewPortDim),
                              1.0f / static_cast<float>(gfx.viewport.Width),
                              1.0f / static_cast<float>(gfx.viewport.Height), 0.0f, 0.0f);
    effect.SetMatrixParameter(data.Handle(kTextureMatrix), gfx.textureMatrix[0]);
    effect.SetFloatParameter(data.Handle(kOpacity), static_cast<float>(gfx.blendValue) / 255.0f);
}

void KRE_EffectFeeding::UpdateMatrices(KRE_ShaderEffect& effect)
{
    const ShaderEffectData& data = *effect.data;
    const auto set = [&](EffectSemantic semantic, const auto& compute) {
        if (const D3DXHANDLE handle = data.Handle(semantic))
            effect.SetMatrixParameter(handle, compute());
    };
    using enum EffectSemantic;
    set(kWorldViewProjection, [&] { return gfx.world[0] * gfx.view * gfx.projection; });
    set(kWorldView, [&] { return gfx.world[0] * gfx.view; });
    set(kWorld, [&] { return gfx.world[0]; });
    set(kWorldInverseTranspose, [&] {
        D3DXMATRIX transposed;
        const D3DXMATRIX inverse = InverseOf(gfx.world[0]);
        return *D3DXMatrixTranspose(&transposed, &inverse);
    });
    set(kView, [&] { return gfx.view; });
    set(kViewInverse, [&] { return InverseOf(gfx.view); });
    set(kProjection, [&] { return gfx.projection; });
    set(kViewProjection, [&] { return gfx.view * gfx.projection; });
    if (const D3DXHANDLE handle = data.Handle(kViewPosition)) {
        const D3DXMATRIX inverse = InverseOf(gfx.view);
        effect.SetVectorParameter(handle, inverse._41, inverse._42, inverse._43, inverse._44);
    }
}

void KRE_EffectFeeding::UpdateTimes(KRE_ShaderEffect& effect)
{
    const ShaderEffectData& data = *effect.data;
    using enum EffectSemantic;
    const auto seconds = static_cast<float>(GetTimeSeconds() - gfx.startTime);
    effect.SetFloatParameter(data.Handle(kTime), seconds);
    effect.SetFloatParameter(data.Handle(kElapsedTime), 1.0f / gfx.GetFramesPerSecond());
    effect.SetFloatParameter(data.Handle(kGameTime), gfx.getGameTime ? gfx.getGameTime() : seconds);
    if (const D3DXHANDLE handle = data.Handle(kRandom))
        effect.SetFloatParameter(handle, gfx.random.NextFloat());
}

void KRE_EffectFeeding::UpdateTextures(KRE_ShaderEffect& effect)
{
    const ShaderEffectData& data = *effect.data;
    using enum EffectSemantic;
    effect.SetTextureParameter(data.Handle(kDiffuseMap), TextureOnStage(gfx.diffuseStage));
    effect.SetTextureParameter(data.Handle(kNormalMap), TextureOnStage(gfx.diffuseStage + 1));
    if (const D3DXHANDLE handle = data.Handle(kScreenCopy))
        effect.SetTextureParameter(handle, gfx.GetScreenCopyTexture());
    for (int32_t i = 0; i < kScreenBuffers; ++i) {
        if (data.screenBuffers[i])
            effect.SetTextureParameter(data.screenBuffers[i],
                                       gfx.GetScreenBufferTexture(KRE_Gfx::kFullBuffer, i));
    }
    for (int32_t i = 0; i < kScreenQuarterBuffers; ++i) {
        if (data.screenQuarterBuffers[i])
            effect.SetTextureParameter(data.screenQuarterBuffers[i],
                                       gfx.GetScreenBufferTexture(KRE_Gfx::kQuarterBuffer, i));
    }
    for (int32_t i = 0; i < data.resourceCount; ++i)
        SetResourceTexture(effect, i);
}

/// A texture named by the effect file is kept in the catalogue, under a name that no scene uses.
void KRE_EffectFeeding::SetResourceTexture(KRE_ShaderEffect& effect, int32_t index)
{
    const ShaderEffectData& data = *effect.data;
    LPCSTR file = nullptr;
    if (FAILED(data.effect->GetString(data.resourceNames[index], &file)) || !file)
        return;
    std::string name(file);
    for (char& c : name) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
        if (c < 0x20 || c > 0x60)
            c = '_';
    }
    name += "_FX_";
    IDirect3DBaseTexture9* texture = nullptr;
    if (!gfx.catalogue.GetBaseTexture(name.c_str(), &texture)) {
        gfx.catalogue.AddTexture(name.c_str(), file, 0, true);
        gfx.catalogue.GetBaseTexture(name.c_str(), &texture);
    }
    effect.SetTextureParameter(data.resourceParams[index], texture);
}

/// QUIRK: with the cache on, the first user of an effect file sets the material colours for all
/// users within a frame. Programs that rely on the cache give such materials effect files of their
/// own.
void KRE_EffectFeeding::UpdateLights(KRE_ShaderEffect& effect)
{
    ShaderEffectData& data = *effect.data;
    if (gfx.effectCacheOn && data.lightsFrame == gfx.frameNumber)
        return;
    data.lightsFrame = gfx.frameNumber;

    using enum EffectSemantic;
    const auto setColor = [&](EffectSemantic semantic, const D3DXVECTOR4& color) {
        effect.SetVectorParameter(data.Handle(semantic), color.x, color.y, color.z, color.w);
    };
    setColor(kDiffuseMaterial, ToVector(gfx.material.Diffuse));
    setColor(kAmbientMaterial, ToVector(gfx.material.Ambient));
    setColor(kSpecularMaterial, ToVector(gfx.material.Specular));
    effect.SetFloatParameter(data.Handle(kSpecularPower), gfx.material.Power);
    D3DXVECTOR4 emissive = ToVector(gfx.material.Emissive) + ToVector(gfx.tintColor);
    emissive.w = 1.0f;
    setColor(kEmissiveMaterial, emissive);

    EffectLights taken(ToVector(gfx.lighting ? gfx.ambientColor : gfx.unlitColor));
    for (int32_t i = 0; gfx.lighting && i < kLightSlots; ++i) {
        if (gfx.cache.lightEnable[i] == 1)
            taken.Add(gfx.lights[i]);
    }
    effect.SetIntParameter(data.Handle(kNumDirectionalLights), taken.directionalCount);
    effect.SetIntParameter(data.Handle(kNumOmniLights), taken.omniCount);
    const auto setArray = [&](EffectSemantic semantic, const auto& vectors) {
        effect.SetVectorArrayParameter(data.Handle(semantic), vectors,
                                       static_cast<UINT>(std::size(vectors)));
    };
    setArray(kOmniLightPosition, taken.omniPosition);
    setArray(kOmniLightDiffCol, taken.omniDiffuse);
    setArray(kOmniLightSpecCol, taken.omniSpecular);
    setArray(kOmniLightAmbiCol, taken.omniAmbient);
    setArray(kOmniLightAttenuation, taken.omniAttenuation);
    setArray(kDirectionalLightDirection, taken.direction);
    setArray(kDirectionalLightDiffCol, taken.directionalDiffuse);
    setArray(kDirectionalLightSpecCol, taken.directionalSpecular);
    setColor(kAmbientColor, taken.ambient);
}
