#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <d3d9.h>

#include "scene/KRE_ColorTrack.h"
#include "scene/KRE_EffectParams.h"
#include "scene/KRE_FloatTrack.h"

/// How a transparent surface blends with what is behind it.
enum KRE_TransparencyType : int32_t {
    kTransparencyFilter = 0,
    kTransparencyAdditive = 1,
    kTransparencySubtractive = 2,
};

class KRE_ShaderEffect;

/// The material of one attribute of a mesh. Its first fields are laid out as in `D3DMATERIAL9`.
class KRE_MaterialInfo {
public:
    D3DCOLORVALUE diffuse = {1, 1, 1, 1};
    D3DCOLORVALUE ambient = {1, 1, 1, 1};
    D3DCOLORVALUE specular = {1, 1, 1, 1};
    D3DCOLORVALUE emissive = {0, 0, 0, 1};
    float power = 0.0f;      ///< specular exponent
    int32_t twoSided = 0;    ///< not 0: drawn without culling
    int32_t transparent = 0; ///< 1: drawn in the transparent pass of its mesh
    uint8_t mirrorU = 0;
    uint8_t mirrorV = 0;
    uint8_t tileU = 1;
    uint8_t tileV = 1;
    uint8_t addEmissive = 1; ///< for an override: its emissive colour is added, not multiplied
    int32_t transparencyType = kTransparencyFilter; ///< files may hold any value
    /// Texture coordinate set of the reflection map, computed for each frame; -1 for none.
    int32_t reflectionSet = -1;
    float reflectionAmount = 1.0f;
    float transparency = 0.0f; ///< 0 opaque, 1 invisible
    KRE_ColorTrack diffuseTrack;
    KRE_ColorTrack ambientTrack;
    KRE_ColorTrack specularTrack;
    KRE_ColorTrack selfIllumTrack;
    KRE_FloatTrack opacityTrack; ///< of `transparency`, despite its name
    KRE_EffectParams effectParams;
    std::shared_ptr<KRE_ShaderEffect> effect; ///< loaded from it, shared by copies; or null

    /// Sets the colours and exponent of a newly created mesh.
    void SetDrawingDefaults();
    /// Colours and exponent as the device takes them.
    D3DMATERIAL9 DeviceMaterial() const;
    /// Sets what is animated for a time in seconds.
    /// QUIRK: self-illumination goes into the ambient colour and overrides that colour's own track;
    /// scenes are lit accordingly.
    void Evaluate(float time);
    /// This material combined with an override that applies to a whole draw.
    KRE_MaterialInfo Combine(const KRE_MaterialInfo& override) const;
    /// As in QSB files.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);
};
