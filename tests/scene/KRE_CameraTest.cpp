#include "scene/KRE_Camera.h"

#include "tests/scene/SceneTesting.h"

TEST(KRE_Camera, StartsAndResetsToItsDefaults)
{
    KRE_Camera camera;
    EXPECT_EQ(camera.objectKind, 8);
    EXPECT_EQ(camera.fov, 0.785f);
    EXPECT_EQ(camera.IsMesh(), 0);
    camera.fov = 1;
    camera.objectKind = 3;
    camera.targetName = "Buoy";
    camera.Reset();
    EXPECT_EQ(camera.objectKind, 8);
    EXPECT_EQ(camera.fov, 0.785f);
    EXPECT_TRUE(camera.targetName.IsEmpty());
}

TEST(KRE_Camera, WithoutKeysAndParentLooksAlongMinusZOfItsOwnNode)
{
    // A quarter turn about y takes z to x, so -z to -x; y stays.
    KRE_Camera camera;
    camera.position = {1, 2, 3};
    camera.rotationAxis = {0, 1, 0};
    camera.rotationAngle = kPi / 2;
    camera.RebuildInitTM();
    camera.Evaluate(0, 1, 0);
    ExpectVector(camera.worldPosition, 1, 2, 3);
    ExpectVector(camera.direction, -1, 0, 0);
    ExpectVector(camera.up, 0, 1, 0);
}

TEST(KRE_Camera, WithATargetLooksAtItAndKeepsTheUpVectorStored)
{
    KRE_3dObject target;
    target.position = {4, 0, 0};
    KRE_Camera camera;
    camera.target = &target;
    camera.rotationAxis = {1, 0, 0};
    camera.rotationAngle = 1;
    camera.Evaluate(1, 1, 0);
    ExpectVector(camera.direction, 4, 0, 0);
    ExpectVector(camera.up, 0, 0, 1);
}

TEST(KRE_Camera, ACopyHasItsFieldOfViewAndItsLabel)
{
    KRE_Camera camera;
    camera.fov = 1.25f;
    const KRE_Camera copy(camera);
    EXPECT_EQ(copy.fov, 1.25f);
    EXPECT_STREQ(copy.className, "KRE_Camera");
}
