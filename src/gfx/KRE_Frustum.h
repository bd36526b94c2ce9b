#pragma once

#include <cstring>

#include <d3dx9.h>

/// The six planes of the view frustum, in world space.
class KRE_Frustum {
public:
    static constexpr int kPlanes = 6;

    /// Computes the planes from the product of both matrices, unless these are unchanged since the
    /// last call. A plane that cannot be computed, as with a projection without depth, contains
    /// every point.
    void Update(const D3DXMATRIX& view, const D3DXMATRIX& projection);
    /// Signed distance of a point from plane `i`, in world units: above 0 is outside.
    double Distance(int i, const D3DXVECTOR3& point) const
    {
        const Plane& plane = planes[i];
        return plane.normal[0] * point.x + plane.normal[1] * point.y + plane.normal[2] * point.z +
               plane.offset;
    }

private:
    /// The normal has length 1 and points outwards. In double precision, because the planes of a
    /// deep view are nearly parallel to one another.
    struct Plane {
        double normal[3]{};
        double offset = 0.0;
    };

    Plane planes[kPlanes];
    bool hasPlanes = false; ///< until then the matrices are uninitialised
    D3DXMATRIX ofView;
    D3DXMATRIX ofProjection;
};
