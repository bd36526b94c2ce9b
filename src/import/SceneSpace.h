#pragma once

#include "import/Model.h"

/// From a model's axes to those of the scene format, Z up: with Y up, (x, y, z) becomes (x, -z, y). Both are
/// right-handed. A node turns its own axes as well; a camera or a light, which looks along -Z in both, only
/// those around it.
struct SceneSpace {
    bool turns = true; ///< Y up
    double unit = 1;

    /// A position of a vertex: exact unless units differ.
    ModelPoint Point(const ModelPoint& p) const
    {
        const auto part = [this](float value) {
            return unit == 1 ? value : static_cast<float>(value * unit);
        };
        return turns ? ModelPoint{part(p[0]), part(-p[2]), part(p[1])}
                     : ModelPoint{part(p[0]), part(p[1]), part(p[2])};
    }
    ModelVector Position(const ModelVector& p) const
    {
        return turns ? ModelVector{p[0] * unit, -p[2] * unit, p[1] * unit}
                     : ModelVector{p[0] * unit, p[1] * unit, p[2] * unit};
    }
    ModelVector Scale(const ModelVector& s) const
    {
        return turns ? ModelVector{s[0], s[2], s[1]} : s;
    }
    ModelQuaternion Rotation(const ModelQuaternion& q) const
    {
        return turns ? ModelQuaternion{q[0], -q[2], q[1], q[3]} : q;
    }
    /// The rotation that a view has below a turned node.
    ModelQuaternion View() const
    {
        constexpr double kHalfRoot = 0.70710678118654752440;
        return turns ? ModelQuaternion{kHalfRoot, 0, 0, kHalfRoot} : ModelQuaternion{0, 0, 0, 1};
    }
    ModelMatrix Matrix(const ModelMatrix& m) const;
};
