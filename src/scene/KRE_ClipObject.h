#pragma once

#include <cstdint>

#include <d3dx9.h>

class File;
class QSB_InputFile;

/// A bounding sphere and box, and which of them the frustum test uses.
struct KRE_ClipObject {
    void Reset() { *this = KRE_ClipObject(); }
    /// Sets the box to the bounds of its own corners transformed by `matrix`, and the sphere to the
    /// one around the new box.
    void TransformBounds(const D3DXMATRIX& matrix);
    /// As in QSB files.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);

    int32_t clipMode = 0; ///< bit 0: sphere, bit 1: box; below 1 everything is visible
    float radius = 0;
    D3DXVECTOR3 center = {0, 0, 0};
    D3DXVECTOR3 boxMin = {0, 0, 0};
    D3DXVECTOR3 boxMax = {0, 0, 0};
};

/// An axis-aligned box that grows to include what is added.
struct KRE_GrowingBox {
    /// An empty box: `limit` on each axis as its low end, -`limit` as its high end.
    explicit KRE_GrowingBox(float limit) : low(limit, limit, limit), high(-limit, -limit, -limit) {}

    void Add(const D3DXVECTOR3& point);
    /// Adds the eight corners of a box, transformed by `matrix`.
    void AddCorners(const D3DXVECTOR3& boxMin, const D3DXVECTOR3& boxMax, const D3DXMATRIX& matrix);
    D3DXVECTOR3 Center() const { return (low + high) * 0.5f; }
    /// Radius of the sphere around the box.
    float Radius() const;

    D3DXVECTOR3 low;
    D3DXVECTOR3 high;
};
