#include "scene/KRE_3dScene.h"

#include "tests/scene/SceneObjects.h"
#include "tests/scene/SceneTesting.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/TestMesh.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

KRE_Mesh& AddMesh(KRE_3dScene& scene, const char* name, int32_t transparent = 0)
{
    KRE_Mesh* mesh = scene.meshes.GetSlot(scene.meshes.Add());
    mesh->name = name;
    mesh->hasTransparency = transparent;
    return *mesh;
}

std::vector<std::string> Order(KRE_3dScene& scene)
{
    std::vector<std::string> names;
    for (int32_t i = 0; i < scene.meshes.Count(); ++i)
        names.push_back(scene.GetMesh(i)->name.c_str());
    return names;
}

class SceneMeshes : public SceneEngineTest {};

} // namespace

// ---- Look-ups

TEST(KRE_3dSceneMeshes, GetMeshIsNullOutsideTheOrder)
{
    KRE_3dScene scene;
    EXPECT_EQ(scene.GetMesh(0), nullptr);
    const KRE_Mesh& first = AddMesh(scene, "a");
    const KRE_Mesh& second = AddMesh(scene, "b");
    EXPECT_EQ(scene.GetMesh(0), &first);
    EXPECT_EQ(scene.GetMesh(1), &second);
    EXPECT_EQ(scene.GetMesh(2), nullptr);
    EXPECT_EQ(scene.GetMesh(-1), nullptr);
}

TEST(KRE_3dSceneMeshes, FindMeshComparesTheNameOrItsBeginning)
{
    KRE_3dScene scene;
    const KRE_Mesh& longer = AddMesh(scene, "Mast02");
    const KRE_Mesh& exact = AddMesh(scene, "Mast");
    const KRE_Mesh& unnamed = AddMesh(scene, "");
    EXPECT_EQ(scene.FindMesh("Mast", 0), &exact);
    EXPECT_EQ(scene.FindMesh("Mast", 1), &longer);
    EXPECT_EQ(scene.FindMesh("mast", 1), nullptr);
    EXPECT_EQ(scene.FindMesh("Mast022", 1), nullptr);
    EXPECT_EQ(scene.FindMesh("", 0), &unnamed);
    EXPECT_EQ(scene.FindMesh("", 1), &longer) << "every name begins with nothing";
    EXPECT_EQ(scene.FindMesh(nullptr, 0), &unnamed);
}

TEST(KRE_3dSceneMeshes, FindObjectFindsAMeshBeforeAnObjectOfTheSameName)
{
    KRE_3dScene scene;
    const KRE_3dObject& object = AddObject(scene, "Same");
    EXPECT_EQ(scene.FindObject("Same", 1), &object);
    const KRE_Mesh& mesh = AddMesh(scene, "Same");
    EXPECT_EQ(scene.FindObject("Same", 1), &mesh);
}

TEST(KRE_3dSceneMeshes, UpdateAndTheLoopReachThem)
{
    KRE_3dScene scene;
    const KRE_Mesh& mesh = AddMesh(scene, "a");
    scene.SetLoop(1);
    scene.SetLoopEnd(7);
    EXPECT_EQ(mesh.loop, 1);
    EXPECT_EQ(mesh.loopEnd, 7.0f);
    scene.Update(3, 0);
    EXPECT_EQ(mesh.lastTime, 3.0);
}

// ---- Partition

TEST(PartitionMeshes, ASceneWithNoMeshesHasNoOpaqueOnes)
{
    KRE_3dScene scene;
    scene.opaqueMeshCount = 5;
    EXPECT_EQ(scene.PartitionMeshes(), 0);
    EXPECT_EQ(scene.opaqueMeshCount, 0);
}

TEST(PartitionMeshes, ASceneOfOnlyTransparentMeshesKeepsItsOrder)
{
    KRE_3dScene scene;
    for (const char* name : {"a", "b", "c"})
        AddMesh(scene, name, 1);
    EXPECT_EQ(scene.PartitionMeshes(), 0);
    EXPECT_THAT(Order(scene), ElementsAre("a", "b", "c"));
}

TEST(PartitionMeshes, EachTransparentMeshSwapsPlacesWithTheNextOpaqueOne)
{
    // t1 o1 t2 o2: at 0, t1 and o1 swap places; at 1, t1 and o2; at 2 no opaque one is left.
    KRE_3dScene scene;
    AddMesh(scene, "t1", 1);
    AddMesh(scene, "o1");
    AddMesh(scene, "t2", 1);
    AddMesh(scene, "o2");
    EXPECT_EQ(scene.PartitionMeshes(), 2);
    EXPECT_EQ(scene.opaqueMeshCount, 2);
    EXPECT_THAT(Order(scene), ElementsAre("o1", "o2", "t2", "t1"));
    EXPECT_STREQ(scene.meshes.GetSlot(0)->name.c_str(), "t1") << "the elements stay in their slots";
}

TEST(PartitionMeshes, ChecksTheMaterialsIfTransparencyIsUnknown)
{
    KRE_3dScene scene;
    KRE_Mesh& mesh = AddMesh(scene, "glass", -1);
    mesh.AllocateMaterials(2);
    mesh.materials[1].transparent = 1;
    AddMesh(scene, "hull", -1).AllocateMaterials(1);
    EXPECT_EQ(scene.PartitionMeshes(), 1);
    EXPECT_THAT(Order(scene), ElementsAre("hull", "glass"));
}

TEST(PartitionMeshes, TrimmedListsKeepTheOrder)
{
    KRE_3dScene scene;
    AddMesh(scene, "t", 1);
    AddMesh(scene, "o");
    scene.PartitionMeshes();
    scene.TrimLists();
    EXPECT_THAT(Order(scene), ElementsAre("o", "t"));
    EXPECT_EQ(scene.meshes.Capacity(), 2);
}

// ---- Links

TEST(LinkBones, PointerHasTheIndexOfItsName)
{
    const LogScope log;
    KRE_3dScene scene;
    KRE_Mesh& mesh = AddMesh(scene, "Skin");
    AddBones(mesh, {"Leg", "Arm"});
    const KRE_3dObject& arm = AddObject(scene, "Arm");
    const KRE_3dObject& leg = AddObject(scene, "Leg");
    EXPECT_EQ(scene.LinkObjects(scene), 1);
    ASSERT_EQ(mesh.boneObjectCount, 3);
    EXPECT_EQ(mesh.boneObjects[0], &mesh) << "the first stands for the mesh itself";
    EXPECT_EQ(mesh.boneObjects[1], &leg);
    EXPECT_EQ(mesh.boneObjects[2], &arm);
    EXPECT_EQ(log.Text(), "");
}

TEST(LinkBones, AMissingBoneWarnsAndLeavesNull)
{
    const LogScope log;
    KRE_3dScene scene;
    scene.name = "Sea";
    KRE_Mesh& mesh = AddMesh(scene, "Skin");
    AddBones(mesh, {"Arm", "Leg"});
    const KRE_3dObject& leg = AddObject(scene, "Leg");
    AddObject(scene, "arm");
    scene.LinkObjects(scene);
    EXPECT_EQ(mesh.boneObjects[1], nullptr);
    EXPECT_EQ(mesh.boneObjects[2], &leg) << "the pass goes on";
    EXPECT_THAT(log.Text(), HasSubstr("Warning:KRE_3dScene: Sea: Bone 'Arm' not found in scene "
                                      "'Sea'. Child: 'Skin'"));
}

TEST(LinkBones, ANameMayBeThatOfAnyKindOfObject)
{
    KRE_3dScene scene;
    KRE_Mesh& mesh = AddMesh(scene, "Skin");
    AddBones(mesh, {"M", "C", "L"});
    const KRE_Mesh& other = AddMesh(scene, "M");
    KRE_Camera* camera = scene.cameras.GetSlot(scene.cameras.Add());
    camera->name = "C";
    KRE_Light* light = scene.AddLight(KRE_Light());
    light->name = "L";
    scene.LinkObjects(scene);
    EXPECT_EQ(mesh.boneObjects[1], &other);
    EXPECT_EQ(mesh.boneObjects[2], camera);
    EXPECT_EQ(mesh.boneObjects[3], light);
}

TEST(LinkBones, AMeshFindsItsParentAmongTheMeshes)
{
    const LogScope log;
    KRE_3dScene scene;
    KRE_Mesh& child = AddMesh(scene, "Flag");
    child.parentName = "Mast";
    KRE_Mesh& lost = AddMesh(scene, "Buoy");
    lost.parentName = "Chain";
    const KRE_Mesh& mast = AddMesh(scene, "Mast");
    scene.LinkObjects(scene);
    EXPECT_EQ(child.parent, &mast);
    EXPECT_EQ(lost.parent, nullptr);
    EXPECT_THAT(log.Text(), HasSubstr("Parent object 'Chain' not found in scene '*undefined*'. "
                                      "Child: 'Buoy'"));
}

TEST(ForgetObject, ClearsEveryPointerToIt)
{
    KRE_3dScene scene;
    KRE_Mesh& mesh = AddMesh(scene, "Skin");
    AddBones(mesh, {"Gone", "Stays"});
    KRE_3dObject& gone = AddObject(scene, "Gone");
    KRE_3dObject& stays = AddObject(scene, "Stays");
    KRE_Camera* camera = scene.cameras.GetSlot(scene.cameras.Add());
    KRE_Light* light = scene.AddLight(KRE_Light());
    scene.LinkObjects(scene);
    mesh.parent = stays.parent = camera->parent = light->parent = &gone;
    camera->target = light->target = &gone;
    scene.ForgetObject(&gone);
    const KRE_3dObject* pointers[] = {mesh.parent,        stays.parent,   camera->parent,
                                      light->parent,      camera->target, light->target,
                                      mesh.boneObjects[1]};
    for (const KRE_3dObject* pointer : pointers)
        EXPECT_EQ(pointer, nullptr);
    EXPECT_EQ(mesh.boneObjects[2], &stays);
    EXPECT_EQ(mesh.boneObjects[0], &mesh);
}

// ---- Bounds

TEST(ComputeBounds, TakesTheCornersOfTheBoxesUnderPivotAndWorldMatrix)
{
    // The box from (0, 0, 0) to (1, 2, 3) is moved by (1, 0, 0), then turned a quarter about z,
    // which takes (x, y) to (-y, x), then moved by (10, 0, 0): x from 10 - 2 to 10, y from 1 to 2.
    KRE_3dScene scene;
    KRE_Mesh& mesh = AddMesh(scene, "a");
    mesh.boxMax = {1, 2, 3};
    D3DXMatrixTranslation(&mesh.pivotTM, 1, 0, 0);
    mesh.worldTM = D3DXMATRIX(0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 10, 0, 0, 1);
    scene.ComputeBounds();
    ExpectVector(scene.boxMin, 8, 1, 0);
    ExpectVector(scene.boxMax, 10, 2, 3);
    ExpectVector(scene.center, 9, 1.5f, 1.5f);
    // half of the extent (2, 1, 3)
    EXPECT_FLOAT_EQ(scene.radius, std::sqrt(1 + 0.25f + 2.25f));
    D3DXVECTOR3 center;
    EXPECT_FLOAT_EQ(scene.GetSphere(center), scene.radius);
    ExpectVector(center, 9, 1.5f, 1.5f);
}

TEST(ComputeBounds, FoldsMeshesAndObjectsTogether)
{
    KRE_3dScene scene;
    AddMesh(scene, "a").boxMax = {1, 1, 1};
    AddObject(scene, "b").SetPosition(-4, 0, 7, 1);
    scene.ComputeBounds();
    ExpectVector(scene.boxMin, -4, 0, 0);
    ExpectVector(scene.boxMax, 1, 1, 7);
}

// ---- Life

TEST_F(SceneMeshes, ResetDestroysThemAndClearsMaterialAndBackground)
{
    KRE_3dScene scene;
    AddStrip(scene, "a", 4, 2);
    AddClone(scene, "b", "a");
    scene.opaqueMeshCount = 2;
    scene.overrideMaterial.diffuse = {0, 0, 0, 0};
    scene.overrideMaterial.emissive = {1, 1, 1, 1};
    scene.backgroundTexture.slotNames[0] = "sky.bmp";
    gGfx->CreateTexture(&scene.backgroundTexture, 4, 4, -1, -1, 1);
    ASSERT_TRUE(scene.backgroundTexture.IsValid());
    scene.Reset();
    EXPECT_EQ(scene.meshes.Count(), 0);
    EXPECT_EQ(scene.opaqueMeshCount, 0);
    EXPECT_EQ(scene.overrideMaterial.diffuse.r, 1.0f);
    EXPECT_EQ(scene.overrideMaterial.emissive.r, 0.0f);
    EXPECT_EQ(scene.overrideMaterial.emissive.a, 1.0f);
    EXPECT_FALSE(scene.backgroundTexture.IsValid());
    EXPECT_TRUE(scene.backgroundTexture.slotNames[0].IsEmpty());
}

TEST_F(SceneMeshes, ADestroyedSceneLeavesNothingBehind)
{
    gGfx->device->AddRef();
    const ULONG before = gGfx->device->Release();
    {
        KRE_3dScene scene;
        KRE_Mesh& source = AddStrip(scene, "a", 4, 3);
        for (int i = 0; i < 10; ++i)
            source.CopyGeometryTo(AddClone(scene, "b", "a"), 1, 1);
        gGfx->CreateTexture(&source.textures[1], 4, 4, -1, -1, 1);
        EXPECT_EQ(gGfx->meshManager.GetEntry(0)->useCount, 11);
    }
    EXPECT_EQ(gGfx->meshManager.GetCount(), 0);
    EXPECT_EQ(gGfx->textureManager.GetCount(), 0);
    gGfx->device->AddRef();
    EXPECT_EQ(gGfx->device->Release(), before) << "objects of the device hold it";
}

TEST_F(SceneMeshes, ASceneOf100000MeshesWithoutGeometryIsUpdatedAndDestroyed)
{
    KRE_3dScene scene;
    for (int32_t i = 0; i < 100000; ++i)
        scene.meshes.Add();
    EXPECT_EQ(scene.Update(1, 1), 1);
    EXPECT_EQ(scene.PartitionMeshes(), 100000);
    scene.Reset();
    EXPECT_EQ(scene.meshes.Count(), 0);
}

TEST(KRE_3dSceneMeshes, ASceneOf100000ObjectsIsLinkedAndDestroyed)
{
    KRE_3dScene scene;
    String name;
    for (int32_t i = 0; i < 100000; ++i) {
        KRE_3dObject* object = scene.objects.GetSlot(scene.objects.Add());
        object->parentName = name;
        name.Format("o%i", i);
        object->name = name;
    }
    scene.LinkObjects(scene);
    EXPECT_EQ(scene.objects.Get(99999)->parent, scene.objects.Get(99998));
    EXPECT_EQ(scene.Update(1, 1), 1);
}
