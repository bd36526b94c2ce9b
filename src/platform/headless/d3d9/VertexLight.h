#pragma once

#include "platform/headless/d3d9/VertexTransform.h"

#include <vector>

namespace headless {

/// The two colours of a lit vertex, 0..1.
struct VertexColours {
    Float4 diffuse;
    Float4 specular;
};

/// The lights and the material of a draw, in camera space.
class VertexLight {
public:
    void Prepare(const DrawState& state, const VertexLayout& layout);

    /// Lit colours, or the vertex's own if lighting is off.
    VertexColours Colours(const SourceVertex& source, const CameraVertex& vertex) const;

private:
    /// An enabled light, prepared for camera space.
    struct Light {
        D3DLIGHTTYPE type;
        Float4 diffuse, specular, ambient;
        Vector3 position;
        Vector3 direction; ///< unit length, away from the light
        float range;
        float attenuation[3];
        float falloff;
        float cosInner, cosOuter; ///< of half the cone angles
    };

    /// The light that reaches a vertex, before the material reflects it.
    struct Sums {
        Float4 ambient, diffuse, specular;
    };

    static Light MakeLight(const D3DLIGHT9& light, const D3DMATRIX& view);
    void AddLight(const Light& light, const CameraVertex& vertex, const Vector3& toEye, float power,
                  Sums& sums) const;

    bool isLit = false;
    bool isLocalViewer = false;
    bool hasHighlights = false;
    D3DMATERIAL9 material = {};
    /// For ambient, diffuse, specular and emissive: a D3DMATERIALCOLORSOURCE; MATERIAL if the
    /// vertex has no such colour.
    DWORD sources[4] = {};
    Float4 globalAmbient = {};
    std::vector<Light> lights;
};

Float4 ColourOf(D3DCOLOR colour);

} // namespace headless
