#include "check/CheckScene.h"

#include <cmath>
#include <functional>
#include <limits>

#include <gmock/gmock.h>

#include "scene/ResolveClones.h"
#include "tests/scene/SceneTesting.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/TestMesh.h"

namespace {

constexpr DWORD kBlended = D3DFVF_XYZB2 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL;

KRE_RotKeyData UnitRotKey(float time)
{
    KRE_RotKeyData key = RotKey(time, 0.5f);
    key.rotation = {0, 0, 0, 1};
    return key;
}

/// Meshes 0 to 3: "Hull" with two materials, its clone, "Skin" with one bone, and the transparent
/// "Glass"; the object "Arm" with keys, the camera "Eye" that looks at it, the light "Sun" on it.
void MakeSoundScene(KRE_3dScene& scene)
{
    AddStrip(scene, "Hull", 6, 2);
    AddClone(scene, "Hull2", "Hull", 2);
    KRE_Mesh& skin = AddStrip(scene, "Skin", 4, 1, kBlended);
    AddBones(skin, {"Arm"});
    AddStrip(scene, "Glass").materials[0].transparent = 1;
    KRE_3dObject* arm = scene.objects.GetSlot(scene.objects.Add());
    arm->name = "Arm";
    arm->parentName = "Hull";
    for (int i = 0; i < 3; ++i) {
        const float time = static_cast<float>(i);
        arm->AddPosKey(PosKey(time, 1));
        arm->AddScaleKey(ScaleKey(time, 1, 1, 1));
        arm->AddRotKey(UnitRotKey(time));
    }
    KRE_Camera* eye = scene.cameras.GetSlot(scene.cameras.Add());
    eye->name = "Eye";
    eye->targetName = "Arm";
    KRE_Light* sun = scene.AddLight(KRE_Light());
    sun->name = "Sun";
    sun->parentName = "Arm";
    scene.name = "Boat";
    scene.LinkObjects(scene);
    arm->BuildKeyIndex();
    struct : ErrorClassSimple {
    } reporter;
    CopyBudget budget(0);
    ResolveClones(scene, budget, reporter);
    scene.PartitionMeshes();
    scene.SetCamera(0);
}

KRE_Mesh& MeshOf(KRE_3dScene& scene, const char* name)
{
    return *scene.FindMesh(name, 0);
}

/// A mesh's buffers, locked for writing during its lifetime. The faces are sorted afterwards.
class Opened {
public:
    explicit Opened(KRE_Mesh& meshIn) : mesh(meshIn) { mesh.LockAll(0); }
    ~Opened()
    {
        mesh.UnlockAll();
        mesh.Optimize();
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    KRE_Mesh* operator->() { return &mesh; }

private:
    KRE_Mesh& mesh;
};

class CheckSceneTest : public SceneEngineTest {
protected:
    struct Damage {
        const char* expected; ///< part of the faults' text
        std::function<void(KRE_3dScene&)> make;
    };

    /// Applies each damage to a scene of its own and expects it to be found.
    static void ExpectFound(const std::vector<Damage>& damages)
    {
        for (const Damage& damage : damages) {
            KRE_3dScene scene;
            MakeSoundScene(scene);
            ASSERT_EQ(CheckScene(scene), "");
            damage.make(scene);
            EXPECT_THAT(CheckScene(scene), testing::HasSubstr(damage.expected));
        }
    }
};

KRE_3dObject gOutside; ///< an object that belongs to no scene

} // namespace

TEST_F(CheckSceneTest, SoundScenesHaveNoFaults)
{
    KRE_3dScene scene;
    EXPECT_EQ(CheckScene(scene), "");
    MakeSoundScene(scene);
    EXPECT_EQ(CheckScene(scene), "");
    scene.objects.GetSlot(0)->rotKeys.Head()->rotation = {NAN, 0, 0, 9};
    EXPECT_EQ(CheckScene(scene), "") << "what is no number has no length";
    scene.Update(1, 1);
    scene.objects.GetSlot(0)->currentRotation = {0, 0, 0, 1};
    EXPECT_EQ(CheckScene(scene), "");
    scene.TrimLists();
    EXPECT_EQ(CheckScene(scene), "");
    scene.Reset();
    EXPECT_EQ(CheckScene(scene), "");
}

TEST_F(CheckSceneTest, FindsDamagedLists)
{
    ExpectFound({
        {"objects: 2 elements are counted, 1 are there", [](auto& s) { s.objects.count = 2; }},
        {"lights: 65 elements in 64 slots", [](auto& s) { s.lights.count = 65; }},
        {"meshes: slot 0 is in the order twice", [](auto& s) { s.meshes.order[1] = 0; }},
        {"meshes: place 1 of the order is slot 60 without an element",
         [](auto& s) { s.meshes.order[1] = 60; }},
        {"meshes: place 1 of the order is slot -1 without an element",
         [](auto& s) { s.meshes.order[1] = -1; }},
        {"cameras: slot 1 is free, the search begins at 9",
         [](auto& s) { s.cameras.firstFree = 9; }},
        {"Skin: 3 elements are counted, 2 are there",
         [](auto& s) { MeshOf(s, "Skin").bones.count = 3; }},
    });
    KRE_3dScene scene;
    scene.lights.count = 1;
    EXPECT_EQ(CheckScene(scene), "lights: 1 elements and no slots\n");
    scene.lights.count = 0;
}

/// As of a text whose ticks are infinite.
TEST_F(CheckSceneTest, KeysWithoutATimeAreInTheIndex)
{
    KRE_3dScene scene;
    MakeSoundScene(scene);
    KRE_3dObject& arm = *scene.objects.Get(0);
    for (KRE_PosKeyData* key = arm.posKeys.Head(); key; key = key->next)
        key->time = std::numeric_limits<float>::quiet_NaN();
    arm.posKeys.TimesChanged();
    arm.BuildKeyIndex();
    EXPECT_EQ(CheckScene(scene), "");
}

TEST_F(CheckSceneTest, FindsDamagedKeys)
{
    static const auto armOf = [](KRE_3dScene& s) -> KRE_3dObject& { return *s.objects.Get(0); };
    ExpectFound({
        {"Arm: position key 1 is not linked to the one before",
         [](auto& s) { armOf(s).posKeys.Head()->next->prev = nullptr; }},
        {"Arm: rotation key 2 is not linked to the one before",
         [](auto& s) { armOf(s).rotKeys.Tail()->prev = armOf(s).rotKeys.Head(); }},
        {"Arm: the last scale key is not the tail",
         [](auto& s) { armOf(s).scaleKeys.Tail()->prev->next = nullptr; }},
        {"Arm: 4 position keys are counted, 3 are there",
         [](auto& s) { armOf(s).posKeyCount = 4; }},
        {"Arm: 2 scale keys are counted, 3 are there", [](auto& s) { armOf(s).scaleKeyCount = 2; }},
        {"Arm: 0 rotation keys are indexed, 3 are there",
         [](auto& s) { armOf(s).rotIndex.Free(); }},
        {"Arm: position key 1 is not the one of the index",
         [](auto& s) { armOf(s).posKeys.Head()->next->time = 0.5f; }},
        {"Arm: a rotation key has the length 1.01",
         [](auto& s) {
             armOf(s).rotKeys.Head()->rotation = {0, 0, 1.01f, 0};
         }},
        {"Arm: the current rotation has the length 0",
         [](auto& s) {
             armOf(s).currentRotation = {0, 0, 0, 0};
         }},
        {"Boat: 1 position keys are counted, 0 are there", [](auto& s) { s.posKeyCount = 1; }},
    });
}

TEST_F(CheckSceneTest, FindsLinksThatLeaveTheScene)
{
    ExpectFound({
        {"Arm: the parent is not of the scene",
         [](auto& s) { s.objects.Get(0)->parent = &gOutside; }},
        {"Hull: the parent is not of the scene",
         [](auto& s) { MeshOf(s, "Hull").parent = &gOutside; }},
        {"Sun: the target is not of the scene",
         [](auto& s) { s.lights.Get(0)->target = &gOutside; }},
        {"Eye: the target is not of the scene",
         [](auto& s) { s.cameras.Get(0)->target = &gOutside; }},
        {"Arm: the parent is the object itself",
         [](auto& s) { s.objects.Get(0)->parent = s.objects.Get(0); }},
        {"Arm: the parent is 'Hull' and not 'Mast'",
         [](auto& s) { s.objects.Get(0)->parentName = "Mast"; }},
        {"Skin: bone object 1 is not of the scene",
         [](auto& s) { MeshOf(s, "Skin").boneObjects[1] = &gOutside; }},
        {"Skin: 2 bones and 1 bone objects",
         [](auto& s) { MeshOf(s, "Skin").boneObjectCount = 1; }},
        {"Hull2: no mesh 'Mast' to be a clone of",
         [](auto& s) { MeshOf(s, "Hull2").cloneSource = "Mast"; }},
        {"Hull2: a clone with another geometry than 'Glass'",
         [](auto& s) { MeshOf(s, "Hull2").cloneSource = "Glass"; }},
    });
}

TEST_F(CheckSceneTest, FindsAWrongOrderOfMeshes)
{
    ExpectFound({
        {"Boat: the active camera is 1 of 1", [](auto& s) { s.activeCamera = 1; }},
        {"Boat: the active camera is -2 of 1", [](auto& s) { s.activeCamera = -2; }},
        {"Boat: 5 opaque meshes of 4", [](auto& s) { s.opaqueMeshCount = 5; }},
        {"Glass: transparent among the opaque meshes", [](auto& s) { s.opaqueMeshCount = 4; }},
        {"Skin: opaque behind the opaque meshes", [](auto& s) { s.opaqueMeshCount = 2; }},
        {"Skin: a mesh of the kind 2", [](auto& s) { MeshOf(s, "Skin").objectKind = kObjectBone; }},
    });
}

TEST_F(CheckSceneTest, FindsDamagedGeometry)
{
    ExpectFound({
        {"Glass: face 2 has the vertex 6 of 6",
         [](auto& s) { Opened(MeshOf(s, "Glass"))->Face(2)[1] = 6; }},
        {"Hull: face 5 has the attribute 2 of 2",
         [](auto& s) { *Opened(MeshOf(s, "Hull"))->Attribute(5) = 2; }},
        {"Glass: vertex 3 is outside the box",
         [](auto& s) { Opened(MeshOf(s, "Glass"))->Position(3)->y = 1.01f; }},
        {"Glass: vertex 3 is outside the box",
         [](auto& s) { Opened(MeshOf(s, "Glass"))->Position(3)->z = NAN; }},
        {"Glass: vertex 0 is outside the sphere", [](auto& s) { MeshOf(s, "Glass").radius = 2; }},
        {"Skin: vertex 1 has the bone 2 of 2",
         [](auto& s) { Opened(MeshOf(s, "Skin"))->BlendIndices(1)[3] = 2; }},
        {"Hull: the faces are not sorted",
         [](auto& s) {
             MeshOf(s, "Hull").LockAttributeBuffer(0);
             MeshOf(s, "Hull").UnlockAttributeBuffer();
         }},
        {"Glass: 7 vertices, 4 faces or the format are not the device mesh's",
         [](auto& s) { MeshOf(s, "Glass").vertexCount = 7; }},
        {"Glass: 6 vertices, 3 faces or the format are not the device mesh's",
         [](auto& s) { MeshOf(s, "Glass").faceCount = 3; }},
        {"Glass: the layout is not that of the format 0x12",
         [](auto& s) { MeshOf(s, "Glass").stride = 20; }},
        {"Glass: the blend path is 3", [](auto& s) { MeshOf(s, "Glass").processing = 3; }},
        {"Skin: the blend flags are 0 for 2 weights",
         [](auto& s) { MeshOf(s, "Skin").vertexBlendFlags = 0; }},
        {"Glass: 6 vertices and 4 faces without a device mesh",
         [](auto& s) { MeshOf(s, "Glass").mesh.Free(); }},
        {"Glass: a buffer is locked", [](auto& s) { MeshOf(s, "Glass").LockVertexBuffer(16); }},
        {"Hull: id 1 is of another device mesh",
         [](auto& s) { MeshOf(s, "Hull").resourceId = gGfx->meshManager.Add(nullptr, "x"); }},
        {"Glass: id 0 does not go with its manager",
         [](auto& s) { MeshOf(s, "Glass").resourceId = 0; }},
    });
}

TEST_F(CheckSceneTest, FindsAWrongAttributeTable)
{
    static const struct {
        const char* expected;
        D3DXATTRIBUTERANGE table[2];
    } cases[] = {
        {"does not fit the faces", {{0, 0, 2, 0, 8}, {1, 2, 4, 0, 8}}},
        {"does not fit the faces", {{0, 1, 3, 0, 8}, {1, 3, 3, 0, 8}}},
        {"does not fit the faces", {{0, 0, 3, 0, 6}, {1, 3, 3, 0, 8}}},
        {"does not fit the faces", {{0, 0, 3, 0, 8}, {1, 3, 4, 0, 8}}},
        {"ends at face 5 of 6", {{0, 0, 3, 0, 8}, {1, 3, 2, 0, 8}}},
        {"range 1 of the attribute table is out of order", {{1, 0, 3, 0, 8}, {0, 3, 3, 0, 8}}},
    };
    for (const auto& c : cases) {
        KRE_3dScene scene;
        MakeSoundScene(scene);
        ASSERT_EQ(MeshOf(scene, "Hull").mesh->SetAttributeTable(c.table, 2), D3D_OK);
        EXPECT_THAT(CheckScene(scene), testing::HasSubstr(c.expected));
    }
}

TEST_F(CheckSceneTest, FindsDamagedMaterialsTexturesAndBones)
{
    ExpectFound({
        {"Hull: 0 materials do not agree with their arrays",
         [](auto& s) { MeshOf(s, "Hull").materialCount = 0; }},
        {"Hull: 2 materials do not agree with their arrays",
         [](auto& s) { MeshOf(s, "Hull").textures.Free(); }},
        {"Hull: frame 2 of 0 is selected",
         [](auto& s) { MeshOf(s, "Hull").textures[1].frameIndex = 2; }},
        {"background: frame 0 of -1 is selected",
         [](auto& s) {
             s.backgroundTexture.sequenceCount = -1, s.backgroundTexture.frameIndex = 0;
         }},
        {"Glass: a picture is locked", [](auto& s) { MeshOf(s, "Glass").textures[0].locked = 1; }},
        {"Skin: the matrices of bone 1 do not agree",
         [](auto& s) { MeshOf(s, "Skin").bones.Get(1)->bindTM._41 = 1; }},
        {"Skin: the name of bone 1 has no end",
         [](auto& s) {
             for (char& letter : MeshOf(s, "Skin").bones.Get(1)->name)
                 letter = 'x';
         }},
    });
}

TEST_F(CheckSceneTest, FindsAPictureUnderAWrongId)
{
    KRE_3dScene scene;
    MakeSoundScene(scene);
    KRE_Texture& texture = MeshOf(scene, "Glass").textures[0];
    gGfx->CreateTexture(&texture, 4, 4, -1, -1, 1);
    EXPECT_EQ(CheckScene(scene), "");
    IDirect3DTexture9* const picture = texture.slotTextures[0];
    texture.slotTextures[0] = nullptr;
    EXPECT_THAT(CheckScene(scene), testing::HasSubstr("Glass: picture id 0 is of another picture"));
    texture.slotTextures[0] = picture;
}

TEST_F(CheckSceneTest, FindsASelectedSlotThatDoesNotExist)
{
    KRE_3dScene scene;
    MakeSoundScene(scene);
    int32_t& slot = MeshOf(scene, "Hull").textures[1].currentSlot;
    for (const int32_t wrong : {4, -1}) {
        slot = wrong;
        EXPECT_THAT(CheckScene(scene), testing::HasSubstr("Hull: texture slot " +
                                                          std::to_string(wrong) + " is selected"));
    }
    slot = 0; // a texture uses it when it releases its pictures
}

TEST_F(CheckSceneTest, FindsObjectsThatAreTheirOwnAncestors)
{
    KRE_3dScene scene;
    MakeSoundScene(scene);
    for (const char* name : {"A", "B", "C"})
        scene.objects.GetSlot(scene.objects.Add())->name = name;
    KRE_3dObject* ring[] = {scene.objects.Get(1), scene.objects.Get(2), scene.objects.Get(3)};
    for (int i = 0; i < 3; ++i) {
        ring[i]->parent = ring[(i + 1) % 3];
        ring[i]->parentName = ring[i]->parent->name;
    }
    scene.objects.Get(0)->parent = ring[1]; // below the ring but not part of it
    scene.objects.Get(0)->parentName = "B";
    EXPECT_EQ(CheckScene(scene), "B: an ancestor is the object itself\n");
}

TEST_F(CheckSceneTest, ACloneMayHaveFewerMaterialsThanTheGeometryHasAttributes)
{
    KRE_3dScene scene;
    MakeSoundScene(scene);
    MeshOf(scene, "Hull2").AllocateMaterials(1); // the geometry has two
    EXPECT_EQ(CheckScene(scene), "");
}

TEST_F(CheckSceneTest, FaultsBeyondTheLimitAreOnlyCounted)
{
    SceneFaults faults;
    for (int i = 0; i < 300; ++i)
        faults.Add("Hull", "fault %i", i);
    EXPECT_EQ(faults.Count(), 300);
    ASSERT_EQ(faults.Kept().size(), 200u);
    EXPECT_EQ(faults.Kept()[199].object, "Hull");
    EXPECT_EQ(faults.Kept()[199].what, "fault 199");
    EXPECT_EQ(faults.Text().substr(0, 28), "Hull: fault 0\nHull: fault 1\n");
}
