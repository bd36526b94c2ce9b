// Vectors and planes. Sums are taken in the order x, y, z, w, as in the header.

#include <d3dx9.h>

D3DXVECTOR2* WINAPI D3DXVec2Normalize(D3DXVECTOR2* vectorOut, const D3DXVECTOR2* vector)
{
    const float length = D3DXVec2Length(vector);
    *vectorOut = length == 0 ? D3DXVECTOR2(0, 0) : *vector / length;
    return vectorOut;
}

D3DXVECTOR2* WINAPI D3DXVec2TransformCoord(D3DXVECTOR2* vectorOut, const D3DXVECTOR2* vector,
                                           const D3DXMATRIX* matrix)
{
    const D3DXMATRIX& m = *matrix;
    const float w = m._14 * vector->x + m._24 * vector->y + m._44;
    *vectorOut = D3DXVECTOR2((m._11 * vector->x + m._21 * vector->y + m._41) / w,
                             (m._12 * vector->x + m._22 * vector->y + m._42) / w);
    return vectorOut;
}

D3DXVECTOR2* WINAPI D3DXVec2TransformNormal(D3DXVECTOR2* vectorOut, const D3DXVECTOR2* vector,
                                            const D3DXMATRIX* matrix)
{
    const D3DXMATRIX& m = *matrix;
    *vectorOut =
        D3DXVECTOR2(m._11 * vector->x + m._21 * vector->y, m._12 * vector->x + m._22 * vector->y);
    return vectorOut;
}

D3DXVECTOR3* WINAPI D3DXVec3Normalize(D3DXVECTOR3* vectorOut, const D3DXVECTOR3* vector)
{
    const float length = D3DXVec3Length(vector);
    *vectorOut = length == 0 ? D3DXVECTOR3(0, 0, 0) : *vector / length;
    return vectorOut;
}

D3DXVECTOR4* WINAPI D3DXVec3Transform(D3DXVECTOR4* vectorOut, const D3DXVECTOR3* vector,
                                      const D3DXMATRIX* matrix)
{
    const D3DXMATRIX& m = *matrix;
    const D3DXVECTOR3 v = *vector;
    *vectorOut = D3DXVECTOR4(m._11 * v.x + m._21 * v.y + m._31 * v.z + m._41,
                             m._12 * v.x + m._22 * v.y + m._32 * v.z + m._42,
                             m._13 * v.x + m._23 * v.y + m._33 * v.z + m._43,
                             m._14 * v.x + m._24 * v.y + m._34 * v.z + m._44);
    return vectorOut;
}

D3DXVECTOR3* WINAPI D3DXVec3TransformCoord(D3DXVECTOR3* vectorOut, const D3DXVECTOR3* vector,
                                           const D3DXMATRIX* matrix)
{
    D3DXVECTOR4 point;
    D3DXVec3Transform(&point, vector, matrix);
    *vectorOut = D3DXVECTOR3(point.x / point.w, point.y / point.w, point.z / point.w);
    return vectorOut;
}

D3DXVECTOR3* WINAPI D3DXVec3TransformNormal(D3DXVECTOR3* vectorOut, const D3DXVECTOR3* vector,
                                            const D3DXMATRIX* matrix)
{
    const D3DXMATRIX& m = *matrix;
    const D3DXVECTOR3 v = *vector;
    *vectorOut = D3DXVECTOR3(m._11 * v.x + m._21 * v.y + m._31 * v.z,
                             m._12 * v.x + m._22 * v.y + m._32 * v.z,
                             m._13 * v.x + m._23 * v.y + m._33 * v.z);
    return vectorOut;
}

D3DXVECTOR4* WINAPI D3DXVec4Normalize(D3DXVECTOR4* vectorOut, const D3DXVECTOR4* vector)
{
    const float length = D3DXVec4Length(vector);
    *vectorOut = length == 0 ? D3DXVECTOR4(0, 0, 0, 0) : *vector / length;
    return vectorOut;
}

D3DXVECTOR4* WINAPI D3DXVec4Transform(D3DXVECTOR4* vectorOut, const D3DXVECTOR4* vector,
                                      const D3DXMATRIX* matrix)
{
    const D3DXMATRIX& m = *matrix;
    const D3DXVECTOR4 v = *vector;
    *vectorOut = D3DXVECTOR4(m._11 * v.x + m._21 * v.y + m._31 * v.z + m._41 * v.w,
                             m._12 * v.x + m._22 * v.y + m._32 * v.z + m._42 * v.w,
                             m._13 * v.x + m._23 * v.y + m._33 * v.z + m._43 * v.w,
                             m._14 * v.x + m._24 * v.y + m._34 * v.z + m._44 * v.w);
    return vectorOut;
}

D3DXPLANE* WINAPI D3DXPlaneNormalize(D3DXPLANE* planeOut, const D3DXPLANE* plane)
{
    const D3DXPLANE p = *plane;
    const D3DXVECTOR3 normal(p.a, p.b, p.c);
    const float length = D3DXVec3Length(&normal);
    *planeOut = length == 0 ? D3DXPLANE(0, 0, 0, 0)
                            : D3DXPLANE(p.a / length, p.b / length, p.c / length, p.d / length);
    return planeOut;
}

D3DXPLANE* WINAPI D3DXPlaneFromPointNormal(D3DXPLANE* planeOut, const D3DXVECTOR3* point,
                                           const D3DXVECTOR3* normal)
{
    *planeOut = D3DXPLANE(normal->x, normal->y, normal->z, -D3DXVec3Dot(point, normal));
    return planeOut;
}

D3DXPLANE* WINAPI D3DXPlaneFromPoints(D3DXPLANE* planeOut, const D3DXVECTOR3* a,
                                      const D3DXVECTOR3* b, const D3DXVECTOR3* c)
{
    const D3DXVECTOR3 toB = *b - *a;
    const D3DXVECTOR3 toC = *c - *a;
    D3DXVECTOR3 normal;
    D3DXVec3Cross(&normal, &toB, &toC);
    D3DXVec3Normalize(&normal, &normal);
    return D3DXPlaneFromPointNormal(planeOut, a, &normal);
}
