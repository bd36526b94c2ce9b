#pragma once

#include <cstdint>

#include <d3d9.h>

class KRE_Gfx;
class KRE_Mesh;
class KRE_ShaderEffect;

/// Before an effect draws, sets the parameters that it asks for by semantic: matrices, times,
/// textures, lights and mesh data. Parameters that the effect lacks cost nothing. `KRE_Gfx` owns
/// the only instance and forwards to it; all values come from there. Effects must be usable.
class KRE_EffectFeeding {
public:
    explicit KRE_EffectFeeding(KRE_Gfx& engine) : gfx(engine) {}

    /// Sets all of them. `mesh` may be null; `materialIndex` is its material.
    void Prepare(KRE_ShaderEffect& effect, const KRE_Mesh* mesh, int32_t materialIndex);
    /// Matrices, times in seconds, fog, textures of the stages and of the screen.
    void UpdateFrame(KRE_ShaderEffect& effect);
    /// Bones and reflection of a mesh: scene/KRE_GfxSceneEffects.cpp
    void UpdateObject(KRE_ShaderEffect& effect, const KRE_Mesh& mesh, int32_t materialIndex);
    /// The material's colours and the lights, once per frame and effect file while `effectCacheOn`
    /// is set.
    void UpdateLights(KRE_ShaderEffect& effect);

private:
    IDirect3DBaseTexture9* TextureOnStage(int32_t stage) const;
    void UpdateMatrices(KRE_ShaderEffect& effect);
    void UpdateTimes(KRE_ShaderEffect& effect);
    void UpdateTextures(KRE_ShaderEffect& effect);
    void SetResourceTexture(KRE_ShaderEffect& effect, int32_t index);

    KRE_Gfx& gfx; ///< the owner
};
