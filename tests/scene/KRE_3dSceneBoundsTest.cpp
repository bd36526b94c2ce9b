#include "scene/KRE_3dScene.h"
#include "tests/scene/SceneTesting.h"

static void AddAt(KRE_3dScene& scene, float x, float y, float z)
{
    scene.objects.GetSlot(scene.objects.Add())->SetPosition(x, y, z, 1);
}

TEST(ComputeBounds, EnclosesThePositionsOfTheObjects)
{
    // From (-1, 2, 3) to (5, 10, 3): the extent is (3, 4, 0), so the radius 5.
    KRE_3dScene scene;
    scene.clipMode = 2;
    AddAt(scene, -1, 10, 3);
    AddAt(scene, 5, 2, 3);
    AddAt(scene, 0, 5, 3);
    scene.ComputeBounds();
    ExpectVector(scene.boxMin, -1, 2, 3);
    ExpectVector(scene.boxMax, 5, 10, 3);
    ExpectVector(scene.center, 2, 6, 3);
    EXPECT_EQ(scene.radius, 5.0f);
    EXPECT_EQ(scene.clipMode, 2);
}

TEST(ComputeBounds, WithoutObjectsChangesNothing)
{
    KRE_3dScene scene;
    scene.cameras.Add();
    scene.radius = 7;
    scene.ComputeBounds();
    EXPECT_EQ(scene.radius, 7.0f);
}

TEST(GetSphere, IncludesCamerasAndStoresNothing)
{
    KRE_3dScene scene;
    AddAt(scene, 0, 0, 0);
    scene.cameras.GetSlot(scene.cameras.Add())->SetPosition(6, 8, 0);
    scene.AddLight(KRE_Light())->SetPosition(100, 0, 0); // lights do not count
    D3DXVECTOR3 center;
    EXPECT_EQ(scene.GetSphere(center), 5.0f);
    ExpectVector(center, 3, 4, 0);
    EXPECT_EQ(scene.radius, 0.0f);
}

TEST(GetSphere, QuirkOfAnEmptySceneIsHuge)
{
    // Nothing is added: low stays 89999998976 and high its negative. Their mean is 0, half their
    // difference 89999998976 on each axis, so the radius is sqrt(3) times that.
    const KRE_3dScene scene;
    D3DXVECTOR3 center;
    EXPECT_NEAR(scene.GetSphere(center), std::sqrt(3.0) * 89999998976.0, 2e4);
    ExpectVector(center, 0, 0, 0);
}
