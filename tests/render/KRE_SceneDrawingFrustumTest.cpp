#include "tests/render/SceneDrawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace {

using Point = std::array<double, 3>;

Point operator+(const Point& a, const Point& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
Point operator*(const Point& a, double b)
{
    return {a[0] * b, a[1] * b, a[2] * b};
}
double Dot(const Point& a, const Point& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Point Cross(const Point& a, const Point& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Point Unit(const Point& a)
{
    return a * (1.0 / std::sqrt(Dot(a, a)));
}
D3DXVECTOR3 ToFloat(const Point& a)
{
    return {static_cast<float>(a[0]), static_cast<float>(a[1]), static_cast<float>(a[2])};
}

/// Random numbers that are the same on each host.
class Random {
public:
    double Between(double low, double high)
    {
        return low + (high - low) * (static_cast<double>(bits()) / 4294967296.0);
    }
    Point Cube(double side)
    {
        return {Between(-side, side), Between(-side, side), Between(-side, side)};
    }

private:
    std::mt19937 bits{12345};
};

/// A truncated pyramid from angles and lengths, without any matrix.
struct Pyramid {
    Point eye, right, up, ahead;
    double slopeX, slopeY, nearZ, farZ;

    /// How far a point is outside each of the six sides; below 0 inside.
    std::array<double, 6> Distances(const Point& point) const
    {
        const Point way = point + eye * -1.0;
        const double x = Dot(way, right), y = Dot(way, up), z = Dot(way, ahead);
        const double lengthX = std::sqrt(1 + slopeX * slopeX);
        const double lengthY = std::sqrt(1 + slopeY * slopeY);
        return {(-x - slopeX * z) / lengthX,
                (x - slopeX * z) / lengthX,
                (-y - slopeY * z) / lengthY,
                (y - slopeY * z) / lengthY,
                nearZ - z,
                z - farZ};
    }
    double Farthest(const Point& point) const
    {
        const auto distances = Distances(point);
        return *std::max_element(distances.begin(), distances.end());
    }
};

constexpr double kTooClose = 1e-3; // single precision may decide either way

class KRE_SceneDrawingFrustumTest : public SceneDrawing {
protected:
    /// Sets a random view in the engine and returns its pyramid.
    Pyramid TakeView()
    {
        Pyramid pyramid;
        pyramid.eye = random.Cube(10);
        const Point at = pyramid.eye + Unit(random.Cube(1)) * 5.0;
        pyramid.ahead = Unit(at + pyramid.eye * -1.0);
        const Point upright = std::abs(pyramid.ahead[1]) < 0.9 ? Point{0, 1, 0} : Point{1, 0, 0};
        pyramid.right = Unit(Cross(upright, pyramid.ahead));
        pyramid.up = Cross(pyramid.ahead, pyramid.right);
        const double fieldOfView = random.Between(0.3, 2.0), aspect = random.Between(0.5, 2.0);
        pyramid.slopeY = std::tan(fieldOfView / 2);
        pyramid.slopeX = pyramid.slopeY * aspect;
        pyramid.nearZ = random.Between(0.5, 2.0);
        pyramid.farZ = random.Between(15.0, 40.0);
        gGfx->SetProjection(static_cast<float>(pyramid.nearZ), static_cast<float>(pyramid.farZ),
                            static_cast<float>(fieldOfView), static_cast<float>(aspect));
        gGfx->SetLookAt(ToFloat(pyramid.eye), ToFloat(at), ToFloat(upright));
        return pyramid;
    }

    static bool IsVisible(const KRE_ClipObject& clip, const D3DXMATRIX& matrix = Shift(0, 0, 0))
    {
        return gGfx->IsVisible(clip, matrix);
    }
    static KRE_ClipObject Sphere(const D3DXVECTOR3& center, float radius)
    {
        KRE_ClipObject clip;
        clip.clipMode = 1;
        clip.center = center;
        clip.radius = radius;
        return clip;
    }
    static KRE_ClipObject Box(const D3DXVECTOR3& low, const D3DXVECTOR3& high)
    {
        KRE_ClipObject clip;
        clip.clipMode = 2;
        clip.boxMin = low;
        clip.boxMax = high;
        return clip;
    }

    Random random;
};

} // namespace

// ---- Against angles and lengths in double precision

TEST_F(KRE_SceneDrawingFrustumTest, SpheresAreVisibleUnlessTheyAreWhollyOutsideOneSide)
{
    int seen = 0, unseen = 0;
    for (int i = 0; i < 5000; ++i) {
        const Pyramid pyramid = TakeView();
        const Point center = random.Cube(30);
        const double radius = random.Between(0.0, 8.0);
        const double farthest = pyramid.Farthest(center);
        if (std::abs(farthest - radius) < kTooClose)
            continue;
        const bool expected = farthest < radius;
        EXPECT_EQ(IsVisible(Sphere(ToFloat(center), static_cast<float>(radius))), expected) << i;
        ++(expected ? seen : unseen);
    }
    EXPECT_GT(seen, 500);
    EXPECT_GT(unseen, 500);
}

// A box starts aligned to the axes and is then rotated, scaled and moved.
TEST_F(KRE_SceneDrawingFrustumTest, BoxesAreVisibleUnlessAllCornersAreOutsideOneSide)
{
    int seen = 0, unseen = 0, withoutACornerInside = 0;
    for (int i = 0; i < 5000; ++i) {
        const Pyramid pyramid = TakeView();
        const Point low = random.Cube(3),
                    size = {random.Between(0, 20), random.Between(0, 5), random.Between(0, 5)};
        const Point x = Unit(random.Cube(1)), y = Unit(Cross(x, {0.3, 0.4, 0.5}));
        const Point z = Cross(x, y) * -2.0; // mirrored and stretched
        const Point place = random.Cube(20);

        bool isAnyInside = false, isOpen = false;
        std::array<bool, 6> isOutside;
        isOutside.fill(true);
        for (int corner = 0; corner < 8; ++corner) {
            Point at = place;
            const Point axes[] = {x, y, z};
            for (size_t axis = 0; axis < 3; ++axis)
                at = at + axes[axis] * (low[axis] + (corner >> axis & 1 ? size[axis] : 0.0));
            const auto distances = pyramid.Distances(at);
            for (size_t side = 0; side < 6; ++side) {
                isOutside[side] = isOutside[side] && distances[side] > 0;
                isOpen = isOpen || std::abs(distances[side]) < kTooClose;
            }
            isAnyInside = isAnyInside || pyramid.Farthest(at) < 0;
        }
        if (isOpen)
            continue;
        const bool expected = std::count(isOutside.begin(), isOutside.end(), true) == 0;
        const D3DXMATRIX matrix(static_cast<float>(x[0]), static_cast<float>(x[1]),
                                static_cast<float>(x[2]), 0, static_cast<float>(y[0]),
                                static_cast<float>(y[1]), static_cast<float>(y[2]), 0,
                                static_cast<float>(z[0]), static_cast<float>(z[1]),
                                static_cast<float>(z[2]), 0, static_cast<float>(place[0]),
                                static_cast<float>(place[1]), static_cast<float>(place[2]), 1);
        EXPECT_EQ(IsVisible(Box(ToFloat(low), ToFloat(low + size)), matrix), expected) << i;
        ++(expected ? seen : unseen);
        withoutACornerInside += expected && !isAnyInside;
    }
    EXPECT_GT(seen, 500);
    EXPECT_GT(unseen, 500);
    EXPECT_GT(withoutACornerInside, 50);
}

// Whatever the bounds hold, bounds with a point in the view must not be culled.
TEST_F(KRE_SceneDrawingFrustumTest, NothingVisibleIsCulled)
{
    int seen = 0;
    for (int i = 0; i < 2000; ++i) {
        const Pyramid pyramid = TakeView();
        const Point low = random.Cube(20);
        const Point size = {random.Between(0, 20), random.Between(0, 20), random.Between(0, 20)};
        bool isSeen = false;
        for (int sample = 0; sample < 9 * 9 * 9 && !isSeen; ++sample) {
            const Point at = {low[0] + size[0] * (sample % 9) / 8.0,
                              low[1] + size[1] * (sample / 9 % 9) / 8.0,
                              low[2] + size[2] * (sample / 81) / 8.0};
            isSeen = pyramid.Farthest(at) < -kTooClose;
        }
        if (!isSeen)
            continue;
        ++seen;
        KRE_ClipObject clip = Box(ToFloat(low), ToFloat(low + size));
        clip.clipMode = 3;
        clip.center = ToFloat(low + size * 0.5);
        clip.radius = static_cast<float>(std::sqrt(Dot(size, size)) / 2 + 1e-4);
        EXPECT_TRUE(IsVisible(clip)) << i;
    }
    EXPECT_GT(seen, 300);
}

// ---- What is tested

// The view looks along +Z from the origin, from 1 to 10000.
TEST_F(KRE_SceneDrawingFrustumTest, ClipModeChoosesWhatIsTested)
{
    const D3DXVECTOR3 inside(0, 0, 100), outside(0, 0, -100), across(0, 0, -1);
    static const struct {
        const char* what;
        int32_t mode;
        const D3DXVECTOR3 &sphere, &box;
        bool expected;
    } cases[] = {
        {"none", 0, outside, outside, true},
        {"a negative mode is none", -1, outside, outside, true},
        {"the sphere alone, inside", 1, inside, outside, true},
        {"the sphere alone, outside", 1, outside, inside, false},
        {"the sphere alone, across", 1, across, outside, true},
        {"the box alone, inside", 2, outside, inside, true},
        {"the box alone, outside", 2, inside, outside, false},
        {"a sphere inside settles it", 3, inside, outside, true},
        {"a sphere outside settles it", 3, outside, inside, false},
        {"across, the box decides: outside", 3, across, outside, false},
        {"across, the box decides: inside", 3, across, inside, true},
        {"other bits are neither", 4, outside, outside, true},
        {"other bits do not matter", 7, inside, outside, true},
    };
    for (const auto& c : cases) {
        KRE_ClipObject clip = Sphere(c.sphere, 5.0f);
        clip.clipMode = c.mode;
        clip.boxMin = c.box - D3DXVECTOR3(1, 1, 1);
        clip.boxMax = c.box + D3DXVECTOR3(1, 1, 1);
        EXPECT_EQ(IsVisible(clip), c.expected) << c.what;
    }
}

TEST_F(KRE_SceneDrawingFrustumTest, SphereWhoseCenterIsInsideNeedNoBoxHoweverLargeItIs)
{
    KRE_ClipObject clip = Sphere({0, 0, 5}, 1000.0f);
    clip.clipMode = 3;
    clip.boxMin = {0, 0, -10};
    clip.boxMax = {1, 1, -9};
    EXPECT_TRUE(IsVisible(clip));
}

/// Rows keep their length.
static D3DXMATRIX Turn45AboutZ()
{
    const float half = std::sqrt(0.5f);
    return {half, half, 0, 0, -half, half, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

// Its centre is 10 behind the near plane, which is at 1.
TEST_F(KRE_SceneDrawingFrustumTest, RadiusGrowsByTheLargestScale)
{
    const KRE_ClipObject clip = Sphere({0, 0, 0}, 5.0f);
    static const struct {
        const char* what;
        D3DXMATRIX scale;
        bool expected;
    } cases[] = {
        {"as it is", Scale(1, 1, 1), false},
        {"not enough", Scale(2.1f, 0, 2.1f), false},
        {"enough on one axis", Scale(1, 2.3f, 1), true},
        {"mirrored", Scale(1, 1, -2.3f), true},
        // Scaled by 0.5, 2.3 and 1 and then turned by 45 degrees about z: the y axis becomes
        // (-1.63, 1.63, 0) and is still 2.3 long, although no element and no column exceeds 1.67.
        {"unequal and turned, enough on one axis", Scale(0.5f, 2.3f, 1) * Turn45AboutZ(), true},
        {"unequal and turned, not enough", Scale(0.5f, 2.1f, 2.1f) * Turn45AboutZ(), false},
        // A rotation about y does not lengthen the rows: (0, 0, -2.1), (2.1, 0, 0).
        {"turned", {0, 0, -2.1f, 0, 0, 1, 0, 0, 2.1f, 0, 0, 0, 0, 0, 0, 1}, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(IsVisible(clip, c.scale * Shift(0, 0, -10)), c.expected) << c.what;
}

TEST_F(KRE_SceneDrawingFrustumTest, BoxAroundTheWholeViewIsVisible)
{
    const float large = 1e6f;
    EXPECT_TRUE(IsVisible(Box({-large, -large, -large}, {large, large, large})));
}

TEST_F(KRE_SceneDrawingFrustumTest, ChangedViewAndProjectionAreTakenIntoAccount)
{
    const KRE_ClipObject clip = Sphere({0, 0, 100}, 1.0f);
    EXPECT_TRUE(IsVisible(clip));
    gGfx->SetLookAt({0, 0, 0}, {0, 0, -1}, {0, 1, 0});
    EXPECT_FALSE(IsVisible(clip));
    gGfx->SetLookAt({0, 0, 0}, {0, 0, 1}, {0, 1, 0});
    gGfx->SetProjection(1.0f, 50.0f, 0.8f, 1.0f);
    EXPECT_FALSE(IsVisible(clip));
    gGfx->MirrorScene();
    gGfx->SetProjection(1.0f, 500.0f, 0.8f, 1.0f);
    gGfx->MirrorScene();
    EXPECT_TRUE(IsVisible(clip));
}

// A scene of radius 0 gives a projection that divides by 0: the distances from the near and far
// planes are NaN, and nothing is outside those planes.
TEST_F(KRE_SceneDrawingFrustumTest, NothingIsOutsideAnInvalidPlane)
{
    gGfx->SetProjection(0.0f, 0.0f, 0.7854f, 1.0f);
    KRE_ClipObject clip = Sphere({0, 0, 0}, 0.0f);
    for (clip.clipMode = 0; clip.clipMode < 4; ++clip.clipMode)
        EXPECT_TRUE(IsVisible(clip)) << clip.clipMode;
}
