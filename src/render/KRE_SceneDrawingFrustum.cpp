#include <algorithm>
#include <cmath>

#include "gfx/KRE_Gfx.h"
#include "render/KRE_SceneDrawing.h"
#include "scene/KRE_ClipObject.h"

namespace {

constexpr int32_t kClipSphere = 1; // bits of `clipMode`
constexpr int32_t kClipBox = 2;
constexpr int kCorners = 8;

enum class Answer { inside, outside, open };

/// The largest factor by which a matrix lengthens one of the three axes.
double LargestScale(const D3DXMATRIX& matrix)
{
    double largest = 0.0;
    for (int row = 0; row < 3; ++row) {
        const auto& axis = matrix.m[row];
        largest = std::max(largest, std::hypot(double{axis[0]}, double{axis[1]}, double{axis[2]}));
    }
    return largest;
}

Answer TestSphere(const KRE_Frustum& frustum, const D3DXVECTOR3& center, double radius)
{
    bool isCenterInside = true;
    for (int i = 0; i < KRE_Frustum::kPlanes; ++i) {
        const double distance = frustum.Distance(i, center);
        if (distance > radius)
            return Answer::outside;
        if (!(distance <= 0.0))
            isCenterInside = false;
    }
    return isCenterInside ? Answer::inside : Answer::open;
}

/// Bit `i` is set if the point is outside plane `i`.
unsigned PlanesPassed(const KRE_Frustum& frustum, const D3DXVECTOR3& point)
{
    unsigned passed = 0;
    for (int i = 0; i < KRE_Frustum::kPlanes; ++i) {
        if (frustum.Distance(i, point) > 0.0)
            passed |= 1u << i;
    }
    return passed;
}

/// Visible unless all corners are outside the same plane. A large box may have no corner inside. A
/// NaN distance is not outside.
bool IsBoxVisible(const KRE_Frustum& frustum, const KRE_ClipObject& clip, const D3DXMATRIX& matrix)
{
    static constexpr int kOrder[kCorners] = {7, 0, 1, 2, 3, 4, 5, 6};
    unsigned passedByAll = ~0u;
    for (const int corner : kOrder) {
        const D3DXVECTOR3 point(corner & 1 ? clip.boxMax.x : clip.boxMin.x,
                                corner & 2 ? clip.boxMax.y : clip.boxMin.y,
                                corner & 4 ? clip.boxMax.z : clip.boxMin.z);
        D3DXVECTOR3 moved;
        D3DXVec3TransformCoord(&moved, &point, &matrix);
        const unsigned passed = PlanesPassed(frustum, moved);
        if (passed == 0)
            return true;
        passedByAll &= passed;
    }
    return passedByAll == 0;
}

} // namespace

bool KRE_SceneDrawing::IsVisible(const KRE_ClipObject& clip, const D3DXMATRIX& matrix)
{
    if (clip.clipMode < 1)
        return true;
    frustum.Update(gfx.view, gfx.projection);
    if (clip.clipMode & kClipSphere) {
        D3DXVECTOR3 center;
        D3DXVec3TransformCoord(&center, &clip.center, &matrix);
        const Answer answer = TestSphere(frustum, center, clip.radius * LargestScale(matrix));
        if (answer != Answer::open)
            return answer == Answer::inside;
    }
    return !(clip.clipMode & kClipBox) || IsBoxVisible(frustum, clip, matrix);
}
