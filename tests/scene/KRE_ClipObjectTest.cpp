#include "scene/KRE_ClipObject.h"

#include "scene/KRE_3dClipObject.h"
#include "tests/scene/SceneTesting.h"

TEST(KRE_ClipObject, TransformBoundsTakesTheBoxOfTheTransformedCorners)
{
    // A box from (0, 0, 0) to (2, 4, 6), x and y swapped by a quarter turn about z (x to y, y to
    // -x), then moved by (10, 0, 0): x runs from 6 to 10, y from 0 to 2, z from 0 to 6. The
    // diagonal is (4, 2, 6), its half length sqrt(56) / 2.
    KRE_ClipObject clip;
    clip.boxMax = {2, 4, 6};
    D3DXMATRIX matrix;
    D3DXMatrixRotationZ(&matrix, kPi / 2);
    matrix._41 = 10;
    clip.TransformBounds(matrix);
    ExpectVector(clip.boxMin, 6, 0, 0);
    ExpectVector(clip.boxMax, 10, 2, 6);
    ExpectVector(clip.center, 8, 1, 3);
    EXPECT_NEAR(clip.radius, std::sqrt(56.0) / 2, 1e-5);
}

TEST(KRE_ClipObject, QuirkTransformBoundsEndsAtItsOwnLimit)
{
    // Corners beyond 8999999488 do not lower the box below the value it starts from.
    KRE_ClipObject clip;
    clip.boxMin = {2e10f, 0, 0};
    clip.boxMax = {3e10f, 0, 0};
    clip.TransformBounds(IdentityMatrix());
    EXPECT_EQ(clip.boxMin.x, 8999999488.0f);
    EXPECT_EQ(clip.boxMax.x, 3e10f);
}

TEST(KRE_ClipObject, ResetClearsAllFields)
{
    KRE_ClipObject clip;
    clip.clipMode = 3;
    clip.radius = 1;
    clip.center = clip.boxMin = clip.boxMax = {1, 1, 1};
    clip.Reset();
    EXPECT_EQ(clip.clipMode, 0);
    EXPECT_EQ(clip.radius, 0.0f);
    ExpectVector(clip.center, 0, 0, 0);
    ExpectVector(clip.boxMin, 0, 0, 0);
    ExpectVector(clip.boxMax, 0, 0, 0);
}

TEST(KRE_3dClipObject, ResetClearsBothParts)
{
    KRE_3dClipObject object;
    object.clipMode = 3;
    object.name = "Bounds";
    object.Reset();
    EXPECT_EQ(object.clipMode, 0);
    EXPECT_STREQ(object.name.c_str(), "*undefined*");
}
