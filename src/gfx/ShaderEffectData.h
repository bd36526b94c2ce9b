#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <d3dx9.h>

#include "gfx/EffectTarget.h"
#include "platform/ComPointer.h"

/// What an effect file may ask the engine for, by the semantic of a parameter.
enum class EffectSemantic : int32_t {
    kWorldViewProjection,
    kWorldView,
    kWorld,
    kWorldInverseTranspose,
    kView,
    kViewInverse,
    kProjection,
    kViewProjection,
    kViewPosition,
    kDiffuseMap,
    kNormalMap,
    kTime,
    kElapsedTime,
    kGameTime,
    kRandom,
    kFogStartEnd,
    kInvViewPortDim,
    kTextureMatrix,
    kOpacity,
    kScreenCopy,
    kNumBlendWeights,
    kWorldMatrixArray,
    kReflectionMapType,
    kReflectionMap,
    kTransformReflectionMap,
    kDiffuseMaterial,
    kAmbientMaterial,
    kSpecularMaterial,
    kSpecularPower,
    kEmissiveMaterial,
    kNumDirectionalLights,
    kNumOmniLights,
    kOmniLightPosition,
    kOmniLightDiffCol,
    kOmniLightSpecCol,
    kOmniLightAmbiCol,
    kOmniLightAttenuation,
    kDirectionalLightDirection,
    kDirectionalLightDiffCol,
    kDirectionalLightSpecCol,
    kAmbientColor,
    kCount
};

struct EffectTechnique {
    int32_t passCount = 0;
    D3DXHANDLE handle = nullptr;
    std::vector<EffectPassTarget> passTargets; ///< `passCount` of them
    bool hasVertexShader = false;              ///< in any pass
};

/// The data that all users of one effect file share and jointly own. Registered with the engine's
/// effect manager. Handles belong to the effect; null means a parameter that it lacks.
struct ShaderEffectData : std::enable_shared_from_this<ShaderEffectData> {
    static constexpr int32_t kResources = 16;
    static constexpr int32_t kParams = 8;

    ComPointer<ID3DXEffect> effect;
    std::string file; ///< as it was loaded
    D3DXHANDLE semantics[static_cast<int32_t>(EffectSemantic::kCount)]{};
    D3DXHANDLE screenBuffers[kScreenBuffers]{};
    D3DXHANDLE screenQuarterBuffers[kScreenQuarterBuffers]{};
    D3DXHANDLE fParams[kParams]{};
    D3DXHANDLE vParams[kParams]{};
    D3DXHANDLE resourceParams[kResources]{}; ///< textures that the effect names itself
    D3DXHANDLE resourceNames[kResources]{};  ///< their "ResourceName" annotations
    int32_t resourceCount = 0;
    int32_t parameterCount = 0;
    int32_t techniqueCount = 0;
    int32_t technique = -1;   ///< the one that was chosen for all users
    int32_t lightsFrame = -1; ///< number of the frame that the lights were set for
    bool invalid = false;     ///< no technique runs on this device
    std::vector<EffectTechnique> techniques;

    D3DXHANDLE Handle(EffectSemantic semantic) const
    {
        return semantics[static_cast<int32_t>(semantic)];
    }
};
