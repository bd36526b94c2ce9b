#pragma once

#include <cstring>

#include <d3dx9.h>

/// The six planes of what a view and a projection show, in world space.
class KRE_Frustum {
public:
    static constexpr int kPlanes = 6;

    /// Takes the planes from the product of both matrices, unless they are those of the last call.
    /// A plane that does not follow from them, as that of a projection without depth, has all
    /// points on it.
    void Update(const D3DXMATRIX& view, const D3DXMATRIX& projection);
    /// Signed distance of a point from plane `i`, in units of the world: above 0 is outside.
    double Distance(int i, const D3DXVECTOR3& point) const
    {
        const Plane& plane = planes[i];
        return plane.normal[0] * point.x + plane.normal[1] * point.y + plane.normal[2] * point.z +
               plane.offset;
    }

private:
    /// Of length 1 and pointing outwards; in double precision, as the planes of a deep view are
    /// nearly parallel to one another.
    struct Plane {
        double normal[3]{};
        double offset = 0.0;
    };

    Plane planes[kPlanes];
    bool hasPlanes = false; ///< the matrices begin as whatever lies in their memory
    D3DXMATRIX ofView;
    D3DXMATRIX ofProjection;
};
