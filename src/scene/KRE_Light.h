#pragma once

#include <cstdint>
#include <cstring>

#include "scene/KRE_Target3dObject.h"

/// A device light that moves with a node.
class KRE_Light : public KRE_Target3dObject {
public:
    KRE_Light();

    void Save(File& file) const override;
    void Load(QSB_InputFile& file) override;

    /// Writes the world position and direction to `light`, transformed by the pivot and `extraTM`,
    /// which may be null. The direction is not normalised; the device does that.
    /// QUIRK: the direction is transformed as a point, so a pivot's translation moves it too.
    void UpdateLightData(const D3DXMATRIX* extraTM) override;
    /// Makes this a directional light and clears the rest of `light`; returns 1. The alphas are
    /// ignored and stay 0.
    int32_t SetDirectional(float diffuseR, float diffuseG, float diffuseB, float diffuseA,
                           float specularR, float specularG, float specularB, float specularA,
                           float ambientR, float ambientG, float ambientB, float ambientA,
                           float range);
    /// The type of the device light as a number; a file may store one outside the enumeration.
    uint32_t TypeNumber() const
    {
        uint32_t number;
        std::memcpy(&number, &light.Type, sizeof number);
        return number;
    }
    /// Whether the device supports this type of light. A scene keeps others unchanged, but they do
    /// not shine.
    bool HasDeviceType() const
    {
        return TypeNumber() >= D3DLIGHT_POINT && TypeNumber() <= D3DLIGHT_DIRECTIONAL;
    }
    void Reset();

    int32_t lightMode = 1; ///< kept for files; drawing does not read it
    int32_t lightOn = 1;   ///< not 0: the scene draw enables the light
    D3DLIGHT9 light = DefaultLight();

private:
    static D3DLIGHT9 DefaultLight();
};
