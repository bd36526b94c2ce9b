#include "scene/KRE_Mesh.h"

#include <memory>

#include "tests/gfx/ErrorText.h"
#include "tests/scene/SceneTesting.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/TestMesh.h"

namespace {

constexpr DWORD kTwoWeights = D3DFVF_XYZB2 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL;

ULONG References(IUnknown* object)
{
    object->AddRef();
    return object->Release();
}

class Meshes : public SceneEngineTest {
protected:
    /// A source with everything that a copy may take over.
    static void MakeSource(KRE_Mesh& mesh, KRE_3dObject* bone)
    {
        mesh.name = "Source";
        AddBones(mesh, {"Arm"});
        MakeStrip(mesh, 4, 2, kTwoWeights);
        mesh.AllocateBoneObjects();
        mesh.boneObjects[1] = bone;
        mesh.materials[0].power = 7;
        mesh.textures[1].slotNames[0] = "sail.bmp";
        mesh.position = {1, 2, 3};
        mesh.AddPosKey(PosKey(0, 1));
        mesh.cloneSource = "Root";
        mesh.hasTransparency = 0;
        mesh.ownGeometry = 0;
        mesh.visible = 0;
        mesh.userTag = 5;
    }

    static void MakeDestination(KRE_Mesh& mesh)
    {
        mesh.name = "Copy";
        mesh.AllocateMaterials(3);
        mesh.materials[2].power = 9;
        mesh.textures[2].slotNames[0] = "flag.bmp";
        mesh.position = {4, 5, 6};
        mesh.AddPosKey(PosKey(0, 4));
        mesh.AddPosKey(PosKey(1, 5));
        mesh.hasTransparency = 1;
        mesh.userTag = 8;
        AddBones(mesh, {"a", "b", "c"});
    }
};

void ExpectGeometryOf(const KRE_Mesh& source, const KRE_Mesh& copy, const std::string& what)
{
    EXPECT_EQ(copy.mesh.Get(), source.mesh.Get()) << what;
    EXPECT_EQ(copy.manager, &gGfx->meshManager) << what;
    EXPECT_EQ(copy.resourceId, source.resourceId) << what;
    EXPECT_EQ(copy.vertexCount, 6) << what;
    EXPECT_EQ(copy.faceCount, 4) << what;
    EXPECT_EQ(copy.fvf, kTwoWeights) << what;
    EXPECT_EQ(copy.stride, source.stride) << what;
    EXPECT_EQ(copy.processing, source.processing) << what;
    EXPECT_EQ(copy.vertexBlendFlags, static_cast<DWORD>(D3DVBF_1WEIGHTS)) << what;
    EXPECT_STREQ(copy.cloneSource.c_str(), "Root") << what;
    EXPECT_EQ(copy.ownGeometry, 0) << what;
    EXPECT_EQ(copy.visible, 0) << what;
    EXPECT_EQ(copy.userTag, 5) << what;
    EXPECT_EQ(copy.clipMode, 3) << what;
    EXPECT_EQ(copy.boxMax.x, 5.0f) << what;
    EXPECT_EQ(copy.radius, source.radius) << what;
    ASSERT_EQ(copy.bones.Count(), 2) << what;
    EXPECT_STREQ(copy.bones.Get(1)->name, "Arm") << what;
    ASSERT_EQ(copy.boneObjectCount, 2) << what;
    EXPECT_EQ(copy.boneObjects[0], nullptr) << what;
    EXPECT_EQ(copy.boneObjects[1], source.boneObjects[1]) << what;
    EXPECT_NE(copy.boneObjects.Get(), source.boneObjects.Get()) << what << ": the array is its own";
}

void ExpectNode(const KRE_Mesh& mesh, const char* name, float x, int32_t keys,
                const std::string& what)
{
    EXPECT_STREQ(mesh.name.c_str(), name) << what;
    EXPECT_EQ(mesh.position.x, x) << what;
    EXPECT_EQ(mesh.posKeyCount, keys) << what;
    ASSERT_TRUE(mesh.posKeys) << what;
    EXPECT_EQ(mesh.posKeys.Head()->value.x, x) << what;
    EXPECT_EQ(mesh.objectKind, kObjectMesh) << what;
}

} // namespace

TEST(KRE_Mesh, StartsAsAMeshWithoutGeometry)
{
    const KRE_Mesh mesh;
    EXPECT_EQ(mesh.IsMesh(), 1);
    EXPECT_EQ(mesh.objectKind, 1);
    EXPECT_EQ(mesh.userTag, -1);
    EXPECT_EQ(mesh.visible, 1);
    EXPECT_EQ(mesh.ownGeometry, 1);
    EXPECT_EQ(mesh.hasTransparency, -1);
    EXPECT_EQ(mesh.vertexBlendFlags, 0u);
    EXPECT_FALSE(mesh.mesh);
    EXPECT_STREQ(mesh.className, "KRE_Mesh");
}

TEST(KRE_Mesh, ResetRestoresKindTagBonesAndBlendFlags)
{
    KRE_Mesh mesh;
    AddBones(mesh, {"Arm"});
    mesh.AllocateBoneObjects();
    mesh.objectKind = kObjectPlain;
    mesh.userTag = 3;
    mesh.vertexBlendFlags = D3DVBF_2WEIGHTS;
    mesh.Reset();
    EXPECT_EQ(mesh.objectKind, kObjectMesh);
    EXPECT_EQ(mesh.userTag, -1);
    EXPECT_EQ(mesh.vertexBlendFlags, 0u);
    EXPECT_EQ(mesh.bones.Count(), 0);
    EXPECT_FALSE(mesh.boneObjects);
    EXPECT_EQ(mesh.boneObjectCount, 0);
}

TEST(KRE_Mesh, BlendFlagsFollowTheWeightCount)
{
    static constexpr struct {
        int32_t weights;
        DWORD flags;
    } kCases[] = {{0, 0}, {1, 256}, {2, 1}, {3, 2}, {4, 3}};
    for (const auto& c : kCases) {
        KRE_Mesh mesh;
        mesh.blendCount = c.weights;
        mesh.SetVertexBlendFlags();
        EXPECT_EQ(mesh.vertexBlendFlags, c.flags) << c.weights;
    }
}

TEST(KRE_Mesh, AWeightCountOfFiveOrAboveRaisesWhenTheFlagsAreSet)
{
    const LogScope log;
    for (const int32_t weights : {5, 100, -1}) {
        KRE_Mesh mesh;
        mesh.blendCount = weights;
        EXPECT_EQ(ErrorText([&] { mesh.SetVertexBlendFlags(); }),
                  "*undefined*: Invalid weight number")
            << weights;
    }
}

TEST(KRE_Mesh, AllocateBoneObjectsMakesANullPointerForEachBone)
{
    KRE_Mesh mesh;
    AddBones(mesh, {"Arm", "Leg"});
    mesh.AllocateBoneObjects();
    ASSERT_EQ(mesh.boneObjectCount, 3);
    mesh.boneObjects[1] = &mesh;
    mesh.AllocateBoneObjects();
    for (int32_t i = 0; i < 3; ++i)
        EXPECT_EQ(mesh.boneObjects[i], nullptr) << i;
}

// ---- Palette

namespace {

/// A mesh at x = 1, with one bone. The bone's `bindTM` moves by 10 along x.
class Skinned : public testing::Test {
protected:
    Skinned()
    {
        D3DXMATRIX boneInit;
        D3DXMatrixTranslation(&boneInit, 10, 0, 0);
        AddBones(mesh, {});
        const KRE_BoneInfo bone("Arm", boneInit, IdentityMatrix());
        mesh.bones.Add(&bone);
        mesh.AllocateBoneObjects();
        D3DXMatrixTranslation(&mesh.worldTM, 1, 0, 0);
        D3DXMatrixScaling(&extra, 2, 2, 2);
    }

    float XOf(int32_t i) const { return mesh.PaletteMatrix(i, extra)._41; }

    KRE_Mesh mesh;
    D3DXMATRIX extra; ///< doubles
};

} // namespace

TEST_F(Skinned, ABoneAppliesBindMatrixPoseAndExtraMatrixInThisOrder)
{
    // (0, 0, 0) goes to 10, by the pose (times 3, plus 100) to 130, doubled to 260.
    KRE_3dObject bone;
    D3DXMatrixScaling(&bone.worldTM, 3, 3, 3);
    bone.worldTM._41 = 100;
    mesh.boneObjects[1] = &bone;
    EXPECT_EQ(XOf(1), 260.0f);
    EXPECT_EQ(mesh.PaletteMatrix(1, extra)._11, 6.0f);
}

TEST_F(Skinned, EntryZeroIsTheMeshItselfWithoutItsPivot)
{
    KRE_3dObject bone;
    mesh.boneObjects[0] = &bone;
    D3DXMatrixTranslation(&mesh.pivotTM, 50, 0, 0);
    EXPECT_EQ(XOf(0), 2.0f);
}

TEST_F(Skinned, AMeshWhoseBonesWereAllMissingMovesRigidlyWithTheMesh)
{
    EXPECT_EQ(XOf(1), 2.0f);
    EXPECT_EQ(XOf(0), XOf(1));
}

TEST_F(Skinned, WeightsWithoutBonesFollowEntryZeroOnly)
{
    mesh.bones.Clear();
    mesh.AllocateBoneObjects();
    EXPECT_EQ(XOf(0), 2.0f);
    EXPECT_EQ(XOf(7), 2.0f) << "beyond the palette";
}

TEST_F(Skinned, ABoneThatResolvesToACameraMovesTheVerticesWithThatCamera)
{
    KRE_3dScene scene;
    KRE_Camera* camera = scene.cameras.GetSlot(scene.cameras.Add());
    camera->name = "Arm";
    camera->SetPosition(7, 0, 0);
    KRE_Mesh* skinned = scene.meshes.GetSlot(scene.meshes.Add());
    skinned->name = "Skin";
    AddBones(*skinned, {"Arm"});
    scene.LinkObjects(scene);
    ASSERT_EQ(skinned->boneObjects[1], camera);
    EXPECT_EQ(skinned->PaletteMatrix(1, extra)._41, 14.0f);
}

// ---- Copies

TEST_F(Meshes, CopyGeometryTakesNodeAndMaterialsAsTheFlagsSay)
{
    static constexpr struct {
        const char* what;
        int32_t keepObject, keepMaterials;
    } kCases[] = {{"all from the source", 0, 0},
                  {"node kept", 1, 0},
                  {"materials kept", 0, 1},
                  {"both kept", 1, 1}};
    for (const auto& c : kCases) {
        KRE_3dObject bone;
        KRE_Mesh source, copy;
        MakeSource(source, &bone);
        MakeDestination(copy);
        EXPECT_EQ(source.CopyGeometryTo(copy, c.keepObject, c.keepMaterials), 1) << c.what;
        ExpectGeometryOf(source, copy, c.what);
        if (c.keepObject)
            ExpectNode(copy, "Copy", 4, 2, c.what);
        else
            ExpectNode(copy, "Source", 1, 1, c.what);
        if (c.keepMaterials) {
            ASSERT_EQ(copy.materialCount, 3) << c.what;
            EXPECT_EQ(copy.materials[2].power, 9.0f) << c.what;
            EXPECT_STREQ(copy.textures[2].slotNames[0].c_str(), "flag.bmp") << c.what;
            EXPECT_EQ(copy.hasTransparency, 0) << c.what << ": the source's";
        } else {
            ASSERT_EQ(copy.materialCount, 2) << c.what;
            EXPECT_EQ(copy.materials[0].power, 7.0f) << c.what;
            EXPECT_STREQ(copy.textures[1].slotNames[0].c_str(), "sail.bmp") << c.what;
            EXPECT_EQ(copy.hasTransparency, 0) << c.what;
        }
        ExpectNode(source, "Source", 1, 1, c.what);
        EXPECT_EQ(source.materialCount, 2) << c.what;
        EXPECT_NE(source.posKeys.Head(), copy.posKeys.Head()) << c.what << ": keys of its own";
    }
}

TEST_F(Meshes, CopyGeometryWithoutADeviceMeshResetsTheDestination)
{
    KRE_Mesh source, copy;
    source.name = "Source";
    source.AllocateMaterials(1);
    MakeDestination(copy);
    EXPECT_EQ(source.CopyGeometryTo(copy, 1, 1), 0);
    EXPECT_STREQ(copy.name.c_str(), "*undefined*");
    EXPECT_EQ(copy.materialCount, 0);
    EXPECT_FALSE(copy.materials);
    EXPECT_EQ(copy.bones.Count(), 0);
    EXPECT_EQ(gGfx->meshManager.GetCount(), 0);
}

TEST_F(Meshes, CopyGeometryToItselfChangesNothing)
{
    KRE_Mesh mesh;
    MakeStrip(mesh, 4, 2);
    EXPECT_EQ(mesh.CopyGeometryTo(mesh, 0, 0), 1);
    EXPECT_EQ(mesh.materialCount, 2);
    EXPECT_EQ(KRE_Mesh().CopyGeometryTo(mesh, 0, 0), 0);
    EXPECT_EQ(mesh.CopyGeometryTo(mesh, 0, 0), 0);
}

// ---- Shared device meshes

TEST_F(Meshes, UsersOfADeviceMeshAreCountedAndTheLastOneReleasesIt)
{
    KRE_ResourceManager& shared = gGfx->meshManager;
    auto source = std::make_unique<KRE_Mesh>();
    source->name = "Source";
    MakeStrip(*source, 4, 1);
    EXPECT_EQ(shared.GetCount(), 0) << "a mesh of one user is not entered";
    const ULONG before = References(gGfx->device.Get());

    auto first = std::make_unique<KRE_Mesh>();
    auto second = std::make_unique<KRE_Mesh>();
    source->CopyGeometryTo(*first, 0, 0);
    first->CopyGeometryTo(*second, 0, 0);
    ASSERT_EQ(shared.GetCount(), 1);
    EXPECT_STREQ(shared.GetEntry(0)->name, "Source");
    EXPECT_EQ(shared.GetEntry(0)->useCount, 3);
    EXPECT_EQ(shared.GetPointer(second->resourceId), source->mesh.Get());
    EXPECT_EQ(References(source->mesh.Get()), 3u);

    source.reset();
    EXPECT_EQ(shared.GetEntry(0)->useCount, 2);
    first->Reset();
    EXPECT_EQ(shared.GetEntry(0)->useCount, 1);
    EXPECT_EQ(References(second->mesh.Get()), 1u);
    second->LockAll(D3DLOCK_READONLY); // it is still alive
    EXPECT_EQ(second->Face(3)[2], 5);
    second->UnlockAll();
    second.reset();
    EXPECT_EQ(shared.GetCount(), 0);
    first.reset();
    EXPECT_LT(References(gGfx->device.Get()), before) << "the mesh and its texture are gone";
}

TEST_F(Meshes, TheCountSurvivesCopiesOverCopies)
{
    KRE_Mesh a, b, copy;
    MakeStrip(a, 4, 1);
    MakeStrip(b, 5, 1);
    for (int i = 0; i < 3; ++i) {
        a.CopyGeometryTo(copy, 0, 0);
        EXPECT_EQ(copy.faceCount, 4);
        b.CopyGeometryTo(copy, 0, 0);
        EXPECT_EQ(copy.faceCount, 5);
    }
    EXPECT_EQ(gGfx->meshManager.GetCount(), 2);
    EXPECT_EQ(References(a.mesh.Get()), 1u);
    EXPECT_EQ(References(b.mesh.Get()), 2u);
}

TEST_F(Meshes, MeshesAreSharedEvenWithAFullTable)
{
    KRE_ResourceManager& shared = gGfx->meshManager;
    KRE_Mesh source, copy;
    MakeStrip(source, 4, 1);
    for (int32_t i = 0; i < KRE_ResourceManager::kCapacity; ++i)
        shared.Add(nullptr, "other");
    EXPECT_EQ(source.CopyGeometryTo(copy, 0, 0), 1);
    EXPECT_EQ(copy.mesh.Get(), source.mesh.Get());
    EXPECT_EQ(copy.resourceId, -1);
    EXPECT_EQ(References(copy.mesh.Get()), 2u);
    source.Reset();
    EXPECT_EQ(References(copy.mesh.Get()), 1u);
    EXPECT_EQ(shared.GetCount(), KRE_ResourceManager::kCapacity);
}

TEST_F(Meshes, AnotherUserCanLockWhatADestroyedUserHadLocked)
{
    KRE_Mesh source;
    MakeStrip(source, 4, 1);
    {
        KRE_Mesh copy;
        source.CopyGeometryTo(copy, 0, 0);
        copy.LockAll(0);
    }
    EXPECT_EQ(source.LockAll(0), 1);
    *source.Attribute(0) = 0;
    EXPECT_EQ(source.UnlockAll(), 1);
    source.Optimize();
}
