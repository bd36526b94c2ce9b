#pragma once

#include "platform/headless/d3d9/Clip.h"
#include "platform/headless/d3d9/PixelProgram.h"

#include <utility>

namespace headless {

/// From homogeneous space to the target: position = clip / w * scale + offset.
struct ScreenMap {
    float scaleX = 1.0f, offsetX = 0.0f;
    float scaleY = 1.0f, offsetY = 0.0f;
    float scaleZ = 1.0f, offsetZ = 0.0f;
};

/// Clips shaded vertices, projects them to the target and fills their primitive's pixels.
class PrimitiveDrawer {
public:
    /// `program` outlives this draw. `isTransformed`: vertices already hold positions on the
    /// target.
    void Prepare(const DrawState& state, const PixelProgram& program, bool isTransformed);

    void DrawPoint(const ShadedVertex& vertex);
    void DrawLine(const ShadedVertex& a, const ShadedVertex& b, bool drawsEnd);
    /// Flat shading takes the colours of the first corner.
    void DrawTriangle(const ShadedVertex& a, const ShadedVertex& b, const ShadedVertex& c);
    /// Pixels that primitives covered since the last call, hidden ones too. A triangle counts when the next
    /// one is drawn.
    uint64_t TakeCovered() { return std::exchange(covered, 0); }
    /// Ends the draw: a triangle and pixels may have been waiting.
    void Finish();

private:
    /// A triangle ready to be filled. It waits while the next one is prepared, so that its pixels are on
    /// their way from memory.
    struct Waiting {
        TriangleRows rows;
        int y, left, right; ///< the first row that has pixels
        bool isFront;
        Planes planes;
    };

    Corner ToCorner(const ShadedVertex& vertex) const;
    void CopyFlatColours(const ShadedVertex& from, ShadedVertex& to) const;
    bool IsCulled(bool isClockwise) const;
    bool IsClockwise(const ShadedVertex& a, const ShadedVertex& b, const ShadedVertex& c) const;
    void FindWraps(const DrawState& state);
    void WrapTo(const ShadedVertex& first, ShadedVertex& vertex) const;
    void DrawRow(const Planes& of, int y, int left, int right);
    void FinishRows(const Planes& of);
    void FetchRows(const Waiting& triangle, int left, int right) const;
    void Fill(Waiting& triangle);
    void FillWaiting();
    void FillTriangle(const ShadedVertex& a, const ShadedVertex& b, const ShadedVertex& c);
    void FillClipped(const ShadedVertex& a, const ShadedVertex& b, const ShadedVertex& c,
                     DWORD codes);
    void DrawOutline(const ShadedVertex& a, const ShadedVertex& b, const ShadedVertex& c);
    void FillSquare(const ShadedVertex& vertex, float side, bool isSprite);

    const PixelProgram* program = nullptr; ///< not owned
    ScreenMap map;
    ClipRules clip;
    D3DCULL cull = D3DCULL_CCW;
    D3DFILLMODE fill = D3DFILL_SOLID;
    bool isFlat = false;
    bool drawsSprites = false;
    /// A coordinate that takes the shorter way round, as D3DRS_WRAP0 and so on say.
    int wraps[kStageCount * 4] = {}; ///< indices into the varyings
    int wrapCount = 0;
    Planes planes = {}; ///< of a line or point
    Waiting triangles[2] = {};
    int next = 0;            ///< the one to be prepared
    bool hasWaiting = false; ///< the other one waits
    uint64_t covered = 0;    ///< pixels
};

} // namespace headless
