#pragma once

#include "scene/KRE_Target3dObject.h"

class KRE_Camera : public KRE_Target3dObject {
public:
    KRE_Camera();

    void Save(File& file) const override;
    void Load(QSB_InputFile& file) override;
    void Reset();

    float fov = kDefaultFov; ///< radians, the whole vertical field of view

private:
    static constexpr float kDefaultFov = 0.785f;
};
