#include "gfx/KRE_ShaderEffect.h"

#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_Gfx.h"
#include "platform/EffectFault.h"
#include "scene/KRE_MaterialInfo.h"

KRE_ShaderEffect::KRE_ShaderEffect()
{
    SetClassName("KRE_ShaderEffect");
}

KRE_ShaderEffect::~KRE_ShaderEffect()
{
    Free();
}

void KRE_ShaderEffect::Free()
{
    if (gfx) {
        for (KRE_ShaderEffect** user :
             {&gfx->materialEffect, &gfx->sceneEffect, &gfx->skinningEffect}) {
            if (*user == this)
                *user = nullptr;
        }
    }
    if (!data)
        return; // a technique requested before the load stays
    if (manager)
        manager->Unacquire(resourceId);
    data.reset();
    resourceId = -1;
    technique = -1;
}

void KRE_ShaderEffect::Check(HRESULT result, const char* text)
{
    lastResult = result;
    if (FAILED(result))
        Error(text, DirectXErrorName(result));
}

bool KRE_ShaderEffect::TechniqueHasVertexShader(int32_t whichTechnique) const
{
    const int32_t index = whichTechnique == -1 ? technique : whichTechnique;
    return data && index >= 0 && index < data->techniqueCount &&
           data->techniques[static_cast<size_t>(index)].hasVertexShader;
}

UINT KRE_ShaderEffect::Begin()
{
    gfx->savedRenderTarget.Free();
    UINT passes = 0;
    Check(data->effect->Begin(&passes, 0), "Can not begin effect: %s");
    return passes;
}

void KRE_ShaderEffect::BeginPass(UINT pass)
{
    const HRESULT result = data->effect->BeginPass(pass);
    if (FAILED(result))
        WarnOfFault();
    Check(result, "Can not begin pass of effect: %s");
    if (technique < 0)
        return;
    const auto& targets = data->techniques[static_cast<size_t>(technique)].passTargets;
    if (pass < targets.size())
        gfx->SelectPassTarget(targets[pass]);
}

/// Warns with what the host knows about why a pass cannot begin.
void KRE_ShaderEffect::WarnOfFault()
{
    const bool isChosen = technique >= 0 && technique < data->techniqueCount;
    if (!isChosen)
        return;
    const D3DXHANDLE handle = data->techniques[static_cast<size_t>(technique)].handle;
    const std::string fault = EffectFault(*data->effect.Get(), handle);
    if (!fault.empty())
        Warning("Technique %i of the effect '%s' cannot be drawn: %s", technique,
                data->file.c_str(), fault.c_str());
}

void KRE_ShaderEffect::EndPass()
{
    Check(data->effect->EndPass(), "Can not end pass of effect: %s");
    if (!gfx->savedRenderTarget)
        return;
    gfx->SetRenderTarget(gfx->savedRenderTarget.Get(), 0);
    gfx->savedRenderTarget.Free();
}

void KRE_ShaderEffect::End()
{
    Check(data->effect->End(), "Can not end effect: %s");
}

// ---- Parameters

static constexpr const char* kCanNotSet = "Can not SetParameter :%s";

void KRE_ShaderEffect::SetFloatParameter(D3DXHANDLE handle, float value)
{
    if (handle)
        Check(data->effect->SetFloat(handle, value), kCanNotSet);
}

void KRE_ShaderEffect::SetIntParameter(D3DXHANDLE handle, int32_t value)
{
    if (handle)
        Check(data->effect->SetInt(handle, value), kCanNotSet);
}

void KRE_ShaderEffect::SetVectorParameter(D3DXHANDLE handle, float x, float y, float z, float w)
{
    const D3DXVECTOR4 vector(x, y, z, w);
    if (handle)
        Check(data->effect->SetVector(handle, &vector), kCanNotSet);
}

void KRE_ShaderEffect::SetVectorArrayParameter(D3DXHANDLE handle, const D3DXVECTOR4* vectors,
                                               UINT count)
{
    if (handle)
        Check(data->effect->SetVectorArray(handle, vectors, count), kCanNotSet);
}

void KRE_ShaderEffect::SetMatrixParameter(D3DXHANDLE handle, const D3DXMATRIX& matrix)
{
    if (handle)
        Check(data->effect->SetMatrix(handle, &matrix), kCanNotSet);
}

void KRE_ShaderEffect::SetMatrixArrayParameter(D3DXHANDLE handle, const D3DXMATRIX* matrices,
                                               UINT count)
{
    if (handle && count > 0)
        Check(data->effect->SetMatrixArray(handle, matrices, count), kCanNotSet);
}

void KRE_ShaderEffect::SetTextureParameter(D3DXHANDLE handle, IDirect3DBaseTexture9* texture)
{
    if (handle)
        Check(data->effect->SetTexture(handle, texture), kCanNotSet);
}

void KRE_ShaderEffect::SetParams(const KRE_EffectParams& params)
{
    for (int32_t i = 0; i < ShaderEffectData::kParams; ++i) {
        const KRE_EffectParam& param = params.params[i];
        const float* vector = param.vectorValue;
        fParam[i] = {param.floatValue, param.hasFloat != 0};
        vParam[i] = {vector[0], vector[1], vector[2], param.hasVector != 0};
    }
}

void KRE_ShaderEffect::SendParams()
{
    for (int32_t i = 0; i < ShaderEffectData::kParams; ++i) {
        if (fParam[i].set)
            SetFloatParameter(data->fParams[i], fParam[i].value);
        if (vParam[i].set)
            SetVectorParameter(data->vParams[i], vParam[i].x, vParam[i].y, vParam[i].z, 0.0f);
    }
}
static_assert(ShaderEffectData::kParams == KRE_EffectParams::kParams);
