#include "gfx/KRE_Frustum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <random>

namespace {

/// Random numbers that are the same on each host.
class Random {
public:
    float Between(double low, double high)
    {
        const double part = static_cast<double>(bits()) / 4294967296.0;
        return static_cast<float>(low + (high - low) * part);
    }
    D3DXVECTOR3 Cube(double side)
    {
        const float x = Between(-side, side), y = Between(-side, side);
        return {x, y, Between(-side, side)};
    }

private:
    std::mt19937 bits{4711};
};

/// How far a point violates the six conditions of clip space, in clip-space units: left, right,
/// bottom, top, near, far.
struct ClipSpace {
    double outside[6];

    ClipSpace(const D3DXVECTOR3& point, const D3DXMATRIX& view, const D3DXMATRIX& projection)
    {
        const double at[4] = {point.x, point.y, point.z, 1.0};
        double seen[4] = {}, clip[4] = {};
        for (int column = 0; column < 4; ++column) {
            for (int row = 0; row < 4; ++row)
                seen[column] += at[row] * view.m[row][column];
        }
        for (int column = 0; column < 4; ++column) {
            for (int row = 0; row < 4; ++row)
                clip[column] += seen[row] * projection.m[row][column];
        }
        const double x = clip[0], y = clip[1], z = clip[2], w = clip[3];
        const double values[6] = {-w - x, x - w, -w - y, y - w, -z, z - w};
        std::copy(values, values + 6, outside);
    }
};

} // namespace

TEST(KRE_Frustum, SidesAreThoseOfClipSpace)
{
    Random random;
    int inside = 0, outside = 0;
    KRE_Frustum frustum;
    for (int i = 0; i < 2000; ++i) {
        D3DXMATRIX view, projection;
        const D3DXVECTOR3 eye = random.Cube(10), at = random.Cube(10), up = random.Cube(1);
        D3DXMatrixLookAtLH(&view, &eye, &at, &up);
        if (i % 3 == 0)
            D3DXMatrixOrthoLH(&projection, random.Between(5, 30), random.Between(5, 30), 1, 30);
        else
            D3DXMatrixPerspectiveFovLH(&projection, random.Between(0.3, 2.5),
                                       random.Between(0.5, 2), random.Between(0.1, 2),
                                       random.Between(10, 40));
        if (i % 2)
            projection._11 = -projection._11; // mirrored
        frustum.Update(view, projection);
        for (int k = 0; k < 20; ++k) {
            const D3DXVECTOR3 point = random.Cube(25);
            const ClipSpace clip(point, view, projection);
            for (int side = 0; side < KRE_Frustum::kPlanes; ++side) {
                if (std::abs(clip.outside[side]) < 1e-4)
                    continue;
                EXPECT_EQ(frustum.Distance(side, point) > 0.0, clip.outside[side] > 0.0)
                    << "view " << i << " side " << side;
                ++(clip.outside[side] > 0.0 ? outside : inside);
            }
        }
    }
    EXPECT_GT(inside, 10000);
    EXPECT_GT(outside, 10000);
}

// 90 degrees wide and high: the sides slope by 45 degrees. Near 1, far 100.
TEST(KRE_Frustum, DistanceIsInWorldUnits)
{
    D3DXMATRIX view, projection;
    D3DXMatrixIdentity(&view);
    D3DXMatrixPerspectiveFovLH(&projection, 1.57079633f, 1.0f, 1.0f, 100.0f);
    KRE_Frustum frustum;
    frustum.Update(view, projection);
    const double half = std::sqrt(0.5);
    static const struct {
        const char* what;
        D3DXVECTOR3 point;
        double distances[6]; // left, right, bottom, top, near, far
    } cases[] = {
        {"the eye", {0, 0, 0}, {0, 0, 0, 0, 1, -100}},
        {"ahead", {0, 0, 10}, {-10 * half, -10 * half, -10 * half, -10 * half, -9, -90}},
        {"to the right", {30, 0, 10}, {-40 * half, 20 * half, -10 * half, -10 * half, -9, -90}},
        {"below", {0, -30, 10}, {-10 * half, -10 * half, 20 * half, -40 * half, -9, -90}},
        {"too far", {0, 0, 150}, {-150 * half, -150 * half, -150 * half, -150 * half, -149, 50}},
    };
    for (const auto& c : cases) {
        for (int side = 0; side < KRE_Frustum::kPlanes; ++side)
            EXPECT_NEAR(frustum.Distance(side, c.point), c.distances[side], 2e-3)
                << c.what << ", side " << side;
    }
}

TEST(KRE_Frustum, FollowsBothMatrices)
{
    D3DXMATRIX view, projection;
    D3DXMatrixIdentity(&view);
    D3DXMatrixPerspectiveFovLH(&projection, 1.0f, 1.0f, 1.0f, 100.0f);
    KRE_Frustum frustum;
    frustum.Update(view, projection);
    constexpr int kNear = 4, kFar = 5;
    EXPECT_NEAR(frustum.Distance(kNear, {0, 0, 0}), 1.0, 1e-4);
    view._43 = -5; // the eye moves five ahead
    frustum.Update(view, projection);
    EXPECT_NEAR(frustum.Distance(kNear, {0, 0, 0}), 6.0, 1e-4);
    D3DXMatrixPerspectiveFovLH(&projection, 1.0f, 1.0f, 1.0f, 50.0f);
    frustum.Update(view, projection);
    EXPECT_NEAR(frustum.Distance(kFar, {0, 0, 0}), -55.0, 1e-2);
}

// A new engine may reuse the memory of an earlier one, with that one's matrices still in it.
TEST(KRE_Frustum, MatricesOfAnEarlierObjectInTheSameMemoryAreNotReused)
{
    D3DXMATRIX view, projection;
    D3DXMatrixIdentity(&view);
    D3DXMatrixPerspectiveFovLH(&projection, 1.0f, 1.0f, 1.0f, 100.0f);
    alignas(KRE_Frustum) unsigned char memory[sizeof(KRE_Frustum)];
    for (int i = 0; i < 2; ++i) {
        auto* const frustum = new (memory) KRE_Frustum;
        frustum->Update(view, projection);
        EXPECT_NEAR(frustum->Distance(4, {0, 0, 0}), 1.0, 1e-4) << i;
        frustum->~KRE_Frustum();
    }
}

TEST(KRE_Frustum, PlanesThatDoNotExistContainEverything)
{
    D3DXMATRIX view;
    D3DXMatrixIdentity(&view);
    const D3DXMATRIX projection(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    KRE_Frustum frustum;
    frustum.Update(view, projection);
    for (int side = 0; side < KRE_Frustum::kPlanes; ++side)
        EXPECT_EQ(frustum.Distance(side, {1, 2, 3}), 0.0);
}

TEST(KRE_Frustum, SurvivesMatricesThatAreNotNumbers)
{
    D3DXMATRIX view, projection;
    D3DXMatrixIdentity(&view);
    D3DXMatrixIdentity(&projection);
    projection._33 = std::numeric_limits<float>::quiet_NaN();
    projection._34 = std::numeric_limits<float>::infinity();
    KRE_Frustum frustum;
    frustum.Update(view, projection);
    frustum.Update(view, projection);
    EXPECT_FALSE(frustum.Distance(5, {1, 2, 3}) <= 0.0);
}
