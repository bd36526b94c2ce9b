#pragma once

#include <cstdint>
#include <memory>

#include <d3dx9.h>

#include "gfx/KRE_ResourceBase.h"
#include "gfx/ShaderEffectData.h"

class KRE_Gfx;
struct KRE_EffectParams;

/// A material's use of an effect file, with the parameter values that the material supplies. The
/// compiled effect is shared by all users of the file. `KRE_Gfx::LoadEffect` fills it; it must be
/// destroyed before the engine.
class KRE_ShaderEffect : public KRE_ResourceBase {
public:
    KRE_ShaderEffect();
    ~KRE_ShaderEffect() override;

    /// Whether there is an effect with a technique that runs on this device.
    bool IsUsable() const { return data && data->effect && !data->invalid; }
    /// Whether a pass of a technique has a vertex shader; -1 means the chosen technique. False if
    /// there is no such technique.
    bool TechniqueHasVertexShader(int32_t whichTechnique = -1) const;

    /// Begins the chosen technique and returns the number of its passes. These four require a
    /// usable effect; a failure is an `Error`.
    UINT Begin();
    /// Begins a pass and makes the buffer that it names the render target.
    void BeginPass(UINT pass);
    void EndPass();
    void End();

    /// Set a parameter; a null handle is ignored. A failure is an `Error`.
    void SetFloatParameter(D3DXHANDLE handle, float value);
    void SetIntParameter(D3DXHANDLE handle, int32_t value);
    void SetVectorParameter(D3DXHANDLE handle, float x, float y, float z, float w);
    void SetVectorArrayParameter(D3DXHANDLE handle, const D3DXVECTOR4* vectors, UINT count);
    void SetMatrixParameter(D3DXHANDLE handle, const D3DXMATRIX& matrix);
    void SetMatrixArrayParameter(D3DXHANDLE handle, const D3DXMATRIX* matrices, UINT count);
    void SetTextureParameter(D3DXHANDLE handle, IDirect3DBaseTexture9* texture);

    /// Stores the values that a material supplies.
    void SetParams(const KRE_EffectParams& params);
    /// Passes those that are set to the effect.
    void SendParams();
    /// Binds the semantics, reads the passes and chooses a technique of a newly loaded effect.
    void Initialise(const char* fileName);
    /// Releases the effect. The values stay.
    void Free();

    struct FloatParam {
        float value = 0.0f;
        bool set = false;
    };
    struct VectorParam {
        float x = 0.0f;
        float y = 0.0f;
        float z = 0.0f;
        bool set = false;
    };

    /// Warns with what the host knows about why the chosen technique cannot be drawn.
    void WarnOfFault();

    std::shared_ptr<ShaderEffectData> data; ///< the manager counts its users as well
    KRE_Gfx* gfx = nullptr;                 ///< not owned
    int32_t technique = -1; ///< index of the chosen one; if set before the load, no other is tried
    bool needsLights = true;
    bool needsStageIndices = true;
    FloatParam fParam[ShaderEffectData::kParams];
    VectorParam vParam[ShaderEffectData::kParams];

private:
    void Check(HRESULT result, const char* text);
    void BindSemantics();
    void BindResources(const char* fileName);
    void ReadTechniques();
    void ReadPass(EffectTechnique& target, UINT pass);
    EffectPassTarget ParseTarget(const char* text);
    int32_t ReadBufferNumber(const char* text, int32_t limit);
    void ChooseTechnique();
};
