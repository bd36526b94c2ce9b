#include "scene/KRE_3dScene.h"

#include "tests/scene/SceneObjects.h"
#include "tests/scene/SceneTesting.h"

static KRE_Camera& AddCamera(KRE_3dScene& scene, const char* name)
{
    KRE_Camera* camera = scene.cameras.GetSlot(scene.cameras.Add());
    camera->name = name;
    return *camera;
}

static KRE_Light& AddNamedLight(KRE_3dScene& scene, const char* name)
{
    KRE_Light* light = scene.AddLight(KRE_Light());
    light->name = name;
    return *light;
}

static void ExpectSceneDefaults(const KRE_3dScene& scene)
{
    EXPECT_EQ(scene.activeCamera, -1);
    EXPECT_EQ(scene.reservedIndex, -1);
    EXPECT_EQ(scene.opaqueMeshCount, 0);
    EXPECT_EQ(scene.timeScale, 1.0f);
    EXPECT_EQ(scene.ambientColor, 0xFF000000u);
    EXPECT_EQ(scene.backgroundColor, 0xFF000000u);
    EXPECT_EQ(scene.settings.showLights, -2);
    EXPECT_EQ(scene.clipMode, 0);
    EXPECT_EQ(scene.objects.Count() + scene.cameras.Count() + scene.lights.Count(), 0);
    EXPECT_STREQ(scene.name.c_str(), "*undefined*");
    EXPECT_FALSE(scene.posKeys);
}

TEST(KRE_3dScene, StartsWithItsDefaults)
{
    ExpectSceneDefaults(KRE_3dScene());
}

TEST(KRE_3dScene, ListsOfANewOneHaveRoomBeforeTheyGrow)
{
    const KRE_3dScene scene;
    EXPECT_EQ(scene.meshes.Capacity(), 64);
    EXPECT_EQ(scene.cameras.Capacity(), 16);
    EXPECT_EQ(scene.objects.Capacity(), 128);
    EXPECT_EQ(scene.lights.Capacity(), 64);
}

TEST(KRE_3dScene, ResetEmptiesIt)
{
    KRE_3dScene scene;
    AddObject(scene, "a");
    AddCamera(scene, "b");
    AddNamedLight(scene, "c");
    scene.name = "Boat";
    scene.AddPosKey(PosKey(0, 0));
    scene.clipMode = 3;
    scene.activeCamera = 0;
    scene.reservedIndex = 5;
    scene.opaqueMeshCount = 5;
    scene.timeScale = 2;
    scene.ambientColor = scene.backgroundColor = 1;
    scene.settings.showLights = 0;
    scene.Reset();
    ExpectSceneDefaults(scene);
}

TEST(KRE_3dScene, SetCameraBeyondTheLastReportsAndKeepsTheActiveOne)
{
    const LogScope log;
    KRE_3dScene scene;
    AddCamera(scene, "a");
    AddCamera(scene, "b");
    EXPECT_EQ(scene.SetCamera(1), 1);
    EXPECT_EQ(scene.SetCamera(2), 0);
    EXPECT_EQ(scene.activeCamera, 1);
    EXPECT_THAT(log.Text(),
                testing::HasSubstr("Warning:KRE_3dScene: *undefined*: Camera nr 2 does not exist"));
}

TEST(KRE_3dScene, QuirkSetCameraMinusOneAlwaysSucceeds)
{
    const LogScope log;
    KRE_3dScene scene;
    scene.activeCamera = 3;
    EXPECT_EQ(scene.SetCamera(-1), 1);
    EXPECT_EQ(scene.activeCamera, -1);
    EXPECT_EQ(log.Text(), "");
}

TEST(KRE_3dScene, UpdateEvaluatesAllObjectsAtTheScaledTime)
{
    KRE_3dScene scene;
    KRE_3dObject& object = AddObject(scene, "a");
    KRE_Camera& camera = AddCamera(scene, "b");
    KRE_Light& light = AddNamedLight(scene, "c");
    scene.timeScale = 0.5f;
    EXPECT_EQ(scene.Update(6, 1), 1);
    EXPECT_EQ(object.lastTime, 3.0);
    EXPECT_EQ(camera.lastTime, 3.0);
    EXPECT_EQ(light.lastTime, 3.0);
    EXPECT_EQ(scene.lastTime, 3.0);
}

TEST(KRE_3dScene, UpdateWithoutObjectsReachesOnlyParentsAndTargets)
{
    KRE_3dScene scene;
    KRE_3dObject& parent = AddObject(scene, "parent");
    KRE_3dObject& target = AddObject(scene, "target");
    KRE_3dObject& alone = AddObject(scene, "alone");
    AddNamedLight(scene, "light").parent = &parent;
    AddCamera(scene, "camera").target = &target;
    scene.Update(2, 0);
    EXPECT_EQ(parent.lastTime, 2.0);
    EXPECT_EQ(target.lastTime, 2.0);
    EXPECT_EQ(alone.lastTime, 0.0);
}

TEST(KRE_3dScene, TimeScaleZeroFreezesAllAnimationAtZeroButStillEvaluates)
{
    KRE_3dScene scene;
    KRE_3dObject& object = AddObject(scene, "a");
    object.AddPosKey(PosKey(0, 1));
    object.AddPosKey(PosKey(10, 2));
    scene.timeScale = 0;
    for (const double time : {0.0, 3.0, 100.0}) {
        object.dirty = 1;
        scene.Update(time, 1);
        EXPECT_EQ(object.dirty, 0) << time;
        EXPECT_EQ(object.worldTM._41, 1.0f) << time;
    }
}

TEST(KRE_3dScene, UpdateSeesChangesBetweenFramesOfTheSameTime)
{
    KRE_3dScene scene;
    KRE_3dObject& object = AddObject(scene, "a");
    scene.Update(1, 1);
    object.SetPosition(5, 0, 0, 0);
    scene.Update(1, 1);
    EXPECT_EQ(object.worldTM._41, 5.0f);
}

TEST(KRE_3dScene, SetLoopAndSetLoopEndReachEveryObject)
{
    KRE_3dScene scene;
    const KRE_3dObject& object = AddObject(scene, "a");
    const KRE_Camera& camera = AddCamera(scene, "b");
    const KRE_Light& light = AddNamedLight(scene, "c");
    EXPECT_EQ(scene.SetLoop(1), 1);
    EXPECT_EQ(scene.SetLoopEnd(7), 1);
    const KRE_3dObject* all[] = {&object, &camera, &light, &scene};
    for (const KRE_3dObject* each : all) {
        EXPECT_EQ(each->loop, 1);
        EXPECT_EQ(each->loopEnd, 7.0f);
    }
}

TEST(KRE_3dScene, FindObjectSearchesObjectsThenCamerasThenLights)
{
    KRE_3dScene scene;
    const KRE_Light& light = AddNamedLight(scene, "Same");
    EXPECT_EQ(scene.FindObject("Same", 1), &light);
    const KRE_Camera& camera = AddCamera(scene, "Same");
    EXPECT_EQ(scene.FindObject("Same", 1), &camera);
    const KRE_3dObject& object = AddObject(scene, "Same");
    AddObject(scene, "Same");
    EXPECT_EQ(scene.FindObject("Same", 1), &object);
}

TEST(KRE_3dScene, FindObjectComparesCaseOnlyWhenAsked)
{
    KRE_3dScene scene;
    const KRE_3dObject& upper = AddObject(scene, "MAST");
    const KRE_3dObject& lower = AddObject(scene, "mast");
    EXPECT_EQ(scene.FindObject("mast", 1), &lower);
    EXPECT_EQ(scene.FindObject("mast", 0), &upper);
    EXPECT_EQ(scene.FindObject("mast", 2), &upper);
    EXPECT_EQ(scene.FindObject("Mast", 1), nullptr);
    EXPECT_EQ(scene.FindObject("Masts", 0), nullptr);
}

TEST(KRE_3dScene, FindObjectTreatsANullNameAsEmpty)
{
    KRE_3dScene scene;
    EXPECT_EQ(scene.FindObject(nullptr, 1), nullptr);
    AddObject(scene, "a");
    const KRE_3dObject& unnamed = AddObject(scene, "");
    EXPECT_EQ(scene.FindObject(nullptr, 1), &unnamed);
    EXPECT_EQ(scene.FindObject("", 0), &unnamed);
}

TEST(KRE_3dScene, AddLightCopiesTheLight)
{
    KRE_3dScene scene;
    KRE_Light light;
    light.name = "Sun";
    light.SetDirectional(1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 50);
    KRE_Light* added = scene.AddLight(light);
    ASSERT_EQ(scene.lights.Count(), 1);
    EXPECT_EQ(added, scene.lights.Get(0));
    EXPECT_STREQ(added->name.c_str(), "Sun");
    EXPECT_EQ(added->light.Range, 50.0f);
    EXPECT_EQ(added->lightMode, 0);
}

TEST(KRE_3dScene, TrimListsLeavesNoSpareSlots)
{
    KRE_3dScene scene;
    AddObject(scene, "a");
    AddObject(scene, "b");
    AddCamera(scene, "c");
    scene.objects.Delete(0);
    scene.TrimLists();
    EXPECT_EQ(scene.objects.Capacity(), 1);
    EXPECT_EQ(scene.cameras.Capacity(), 1);
    EXPECT_EQ(scene.lights.Capacity(), 0);
    EXPECT_STREQ(scene.objects.Get(0)->name.c_str(), "b");
    AddNamedLight(scene, "d");
    EXPECT_EQ(scene.lights.Count(), 1);
}
