#include "scene/KRE_3dScene.h"
#include "tests/scene/SceneObjects.h"
#include "tests/scene/SceneTesting.h"

static KRE_Camera& AddCamera(KRE_3dScene& scene, const char* name, const char* parentName,
                             const char* targetName)
{
    KRE_Camera* camera = scene.cameras.GetSlot(scene.cameras.Add());
    camera->name = name;
    camera->parentName = parentName;
    camera->targetName = targetName;
    return *camera;
}

TEST(KRE_3dSceneLink, FindsParentsByTheirExactNames)
{
    const LogScope log;
    KRE_3dScene scene;
    const KRE_3dObject& child = AddObject(scene, "child", "Keel");
    AddObject(scene, "keel");
    const KRE_3dObject& keel = AddObject(scene, "Keel");
    EXPECT_EQ(scene.LinkObjects(scene), 1);
    EXPECT_EQ(child.parent, &keel);
    EXPECT_EQ(keel.parent, nullptr);
    EXPECT_EQ(log.Text(), "");
}

TEST(KRE_3dSceneLink, OfSeveralWithOneNameTakesTheFirstAsFindObjectDoes)
{
    KRE_3dScene scene;
    AddCamera(scene, "Keel", "", "");
    const KRE_3dObject& child = AddObject(scene, "child", "Keel");
    for (int i = 0; i < 20; ++i)
        AddObject(scene, "Keel");
    scene.LinkObjects(scene);
    EXPECT_EQ(child.parent, scene.FindObject("Keel", 1));
    EXPECT_EQ(child.parent, scene.objects.Get(1));
}

TEST(KRE_3dSceneLink, AnEmptyParentNameClearsTheParent)
{
    KRE_3dScene scene;
    KRE_3dObject& child = AddObject(scene, "child");
    AddObject(scene, ""); // an unnamed object is nobody's parent
    child.parent = &scene;
    scene.LinkObjects(scene);
    EXPECT_EQ(child.parent, nullptr);
}

TEST(KRE_3dSceneLink, AParentThatIsNotFoundWarnsAndLeavesNull)
{
    const LogScope log;
    KRE_3dScene scene;
    scene.name = "Boat";
    KRE_3dObject& child = AddObject(scene, "child", "Keel");
    KRE_3dObject& other = AddObject(scene, "other", "child");
    child.parent = &other;
    scene.LinkObjects(scene);
    EXPECT_EQ(child.parent, nullptr);
    EXPECT_EQ(other.parent, &child) << "the pass goes on";
    EXPECT_THAT(log.Text(), testing::HasSubstr("Warning:KRE_3dScene: Boat: Parent object 'Keel' "
                                               "not found in scene 'Boat'. Child: 'child'"));
}

TEST(KRE_3dSceneLink, LooksInTheSourceScene)
{
    const LogScope log;
    KRE_3dScene scene;
    scene.name = "Boat";
    KRE_3dScene source;
    source.name = "Harbour";
    const KRE_3dObject& child = AddObject(scene, "child", "Keel");
    AddObject(scene, "Keel");
    const KRE_3dObject& lost = AddObject(scene, "lost", "child");
    const KRE_3dObject& keel = AddObject(source, "Keel");
    scene.LinkObjects(source);
    EXPECT_EQ(child.parent, &keel);
    EXPECT_EQ(lost.parent, nullptr);
    EXPECT_THAT(log.Text(), testing::HasSubstr("Boat: Parent object 'child' not found in scene "
                                               "'Harbour'. Child: 'lost'"));
}

TEST(KRE_3dSceneLink, QuirkACameraWithAParentAndNoTargetNameLosesItsParent)
{
    const LogScope log;
    KRE_3dScene scene;
    KRE_3dObject& keel = AddObject(scene, "Keel");
    KRE_Camera& camera = AddCamera(scene, "camera", "Keel", "");
    camera.target = &keel;
    scene.LinkObjects(scene);
    EXPECT_EQ(camera.parent, nullptr);
    EXPECT_EQ(camera.target, &keel) << "the target is not cleared";
    EXPECT_EQ(log.Text(), "");
}

TEST(KRE_3dSceneLink, ACameraWithATargetKeepsItsParent)
{
    KRE_3dScene scene;
    const KRE_3dObject& keel = AddObject(scene, "Keel");
    const KRE_3dObject& buoy = AddObject(scene, "Buoy");
    const KRE_Camera& camera = AddCamera(scene, "camera", "Keel", "Buoy");
    scene.LinkObjects(scene);
    EXPECT_EQ(camera.parent, &keel);
    EXPECT_EQ(camera.target, &buoy);
}

TEST(KRE_3dSceneLink, QuirkAMissingTargetIsReportedUnderTheParentsName)
{
    const LogScope log;
    KRE_3dScene scene;
    const KRE_3dObject& keel = AddObject(scene, "Keel");
    KRE_Camera& camera = AddCamera(scene, "camera", "Keel", "Buoy");
    camera.target = &scene;
    scene.LinkObjects(scene);
    EXPECT_EQ(camera.parent, &keel);
    EXPECT_EQ(camera.target, nullptr);
    EXPECT_THAT(log.Text(), testing::HasSubstr("Parent object 'Keel' not found in scene "
                                               "'*undefined*'. Child: 'camera'"));
}

TEST(KRE_3dSceneLink, ALightGetsAParentButNoTarget)
{
    KRE_3dScene scene;
    const KRE_3dObject& keel = AddObject(scene, "Keel");
    KRE_Light* light = scene.AddLight(KRE_Light());
    light->parentName = "Keel";
    light->targetName = "Keel";
    scene.LinkObjects(scene);
    EXPECT_EQ(light->parent, &keel);
    EXPECT_EQ(light->target, nullptr);
}
