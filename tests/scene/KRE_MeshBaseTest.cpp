#include "scene/KRE_MeshBase.h"

#include "tests/gfx/ErrorText.h"
#include "tests/scene/FakeMesh.h"
#include "tests/scene/SceneTesting.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/TestMesh.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// A mesh over a device mesh that records its calls.
class FakedMesh : public testing::Test {
protected:
    FakedMesh() : fake(new FakeMesh) { mesh.mesh = ComPointer<ID3DXMesh>::Share(fake.get()); }

    const LogScope log;
    ComHandle<FakeMesh> fake;
    KRE_Mesh mesh;
};

class RealMesh : public SceneEngineTest {};

} // namespace

// ---- Locks

TEST_F(FakedMesh, LockAllLocksIndexVertexAndAttributeBuffer)
{
    EXPECT_EQ(mesh.LockAll(D3DLOCK_READONLY), 1); // 16
    EXPECT_THAT(fake->calls,
                ElementsAre("LockIndexBuffer 16", "LockVertexBuffer 16", "LockAttributeBuffer 16"));
    EXPECT_EQ(mesh.indexData, reinterpret_cast<uint16_t*>(fake->bytes));
    EXPECT_EQ(mesh.vertexData, reinterpret_cast<uint8_t*>(fake->bytes + 16));
    EXPECT_EQ(mesh.attributeData, fake->bytes + 32);
    EXPECT_EQ(mesh.indexLocked + mesh.vertexLocked + mesh.attributeLocked, 3);
}

TEST_F(FakedMesh, UnlockAllGoesBackwards)
{
    mesh.LockAll(0);
    fake->calls.clear();
    EXPECT_EQ(mesh.UnlockAll(), 1);
    EXPECT_THAT(fake->calls,
                ElementsAre("UnlockAttributeBuffer", "UnlockVertexBuffer", "UnlockIndexBuffer"));
    EXPECT_EQ(mesh.indexLocked + mesh.vertexLocked + mesh.attributeLocked, 0);
    EXPECT_EQ(mesh.indexData, nullptr);
    EXPECT_EQ(mesh.vertexData, nullptr);
    EXPECT_EQ(mesh.attributeData, nullptr);
}

TEST_F(FakedMesh, ASecondLockWithOtherFlagsKeepsTheFirstPointer)
{
    mesh.LockAll(D3DLOCK_READONLY);
    const uint8_t* first = mesh.vertexData;
    fake->calls.clear();
    EXPECT_EQ(mesh.LockVertexBuffer(0), 1);
    EXPECT_EQ(mesh.LockIndexBuffer(0), 1);
    EXPECT_EQ(mesh.LockAttributeBuffer(0), 1);
    EXPECT_EQ(mesh.vertexData, first);
    EXPECT_TRUE(fake->calls.empty());
}

TEST_F(FakedMesh, LocksAreNotNested)
{
    mesh.LockVertexBuffer(0);
    mesh.LockVertexBuffer(0);
    mesh.UnlockVertexBuffer();
    EXPECT_EQ(mesh.vertexLocked, 0);
    EXPECT_THAT(fake->calls, ElementsAre("LockVertexBuffer", "UnlockVertexBuffer"));
}

TEST_F(FakedMesh, UnlockingAnUnlockedBufferIsANoOpThatReturnsOne)
{
    EXPECT_EQ(mesh.UnlockIndexBuffer(), 1);
    EXPECT_EQ(mesh.UnlockVertexBuffer(), 1);
    EXPECT_EQ(mesh.UnlockAttributeBuffer(), 1);
    EXPECT_EQ(mesh.UnlockAll(), 1);
    EXPECT_TRUE(fake->calls.empty());
}

TEST_F(FakedMesh, AFailedLockOrUnlockIsAnErrorThatNamesTheResult)
{
    static const struct {
        const char* call;
        const char* message;
    } cases[] = {
        {"LockIndexBuffer", "*undefined*: LockIndexBuffer failed: D3DERR_INVALIDCALL"},
        {"LockVertexBuffer", "*undefined*: LockVertexBuffer failed: D3DERR_INVALIDCALL"},
        {"LockAttributeBuffer", "*undefined*: LockAttributeBuffer failed: D3DERR_INVALIDCALL"},
        {"UnlockIndexBuffer", "*undefined*: UnlockIndexBuffer failed: D3DERR_INVALIDCALL"},
        {"UnlockVertexBuffer", "*undefined*: UnlockVertexBuffer failed: D3DERR_INVALIDCALL"},
        {"UnlockAttributeBuffer", "*undefined*: UnlockAttributeBuffer failed: D3DERR_INVALIDCALL"},
    };
    for (const auto& c : cases) {
        fake->failures = {{c.call, D3DERR_INVALIDCALL}};
        EXPECT_EQ(ErrorText([&] {
                      mesh.LockAll(0);
                      mesh.UnlockAll();
                  }),
                  c.message);
        EXPECT_EQ(mesh.lastResult, D3DERR_INVALIDCALL) << c.call;
        fake->failures.clear();
        mesh.UnlockAll();
    }
}

TEST(KRE_MeshBase, LockingWithoutADeviceMeshIsAnError)
{
    const LogScope log;
    KRE_MeshBase mesh;
    EXPECT_THAT(ErrorText([&] { mesh.LockIndexBuffer(0); }), HasSubstr("LockIndexBuffer failed"));
    EXPECT_THAT(ErrorText([&] { mesh.LockVertexBuffer(0); }), HasSubstr("LockVertexBuffer failed"));
    EXPECT_THAT(ErrorText([&] { mesh.LockAttributeBuffer(0); }),
                HasSubstr("LockAttributeBuffer failed"));
    EXPECT_EQ(mesh.UnlockAll(), 1);
}

TEST_F(FakedMesh, ReleasingADeviceMeshUnlocksIt)
{
    mesh.LockVertexBuffer(0);
    mesh.ReleaseDeviceMesh();
    EXPECT_THAT(fake->calls, ElementsAre("LockVertexBuffer", "UnlockVertexBuffer"));
    EXPECT_EQ(mesh.vertexLocked, 0);
    EXPECT_EQ(mesh.vertexData, nullptr);
    EXPECT_FALSE(mesh.mesh);
}

TEST_F(FakedMesh, AccessorsAreOffsetsIntoTheLockedBuffers)
{
    // XYZB3 with indices: position 12, weights 2 * 4, indices at 20, normal at 24, set 0 at 36;
    // with its 8 bytes a vertex has 44.
    mesh.SetVertexFormat(D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL | D3DFVF_TEX1);
    mesh.LockAll(0);
    const auto offsetOf = [&](const void* part) {
        return static_cast<const uint8_t*>(part) - mesh.vertexData;
    };
    EXPECT_EQ(offsetOf(mesh.Position(0)), 0);
    EXPECT_EQ(offsetOf(mesh.Position(2)), 88);
    EXPECT_EQ(offsetOf(mesh.Weights(1)), 44 + 12);
    EXPECT_EQ(offsetOf(mesh.BlendIndices(1)), 44 + 20);
    EXPECT_EQ(offsetOf(mesh.Normal(1)), 44 + 24);
    EXPECT_EQ(offsetOf(mesh.TexCoord(1)), 44 + 36);
    EXPECT_EQ(mesh.Face(3) - mesh.indexData, 9);
    EXPECT_EQ(mesh.Attribute(3) - mesh.attributeData, 3);
}

TEST(KRE_MeshBase, SetVertexFormatKeepsOnlyTheBlendPath)
{
    KRE_MeshBase mesh;
    mesh.processing = 2;
    mesh.SetVertexFormat(D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX2);
    EXPECT_EQ(mesh.textureCount, 2);
    mesh.SetVertexFormat(D3DFVF_XYZ);
    EXPECT_EQ(mesh.processing, 2);
    EXPECT_EQ(mesh.fvf, static_cast<DWORD>(D3DFVF_XYZ));
    EXPECT_EQ(mesh.stride, 12);
    EXPECT_EQ(mesh.textureCount, 0);
    EXPECT_EQ(mesh.normalOffset, VertexInfo::kNoOffset);
}

// ---- Materials and textures

TEST(KRE_MeshBase, QuirkGetMaterialOfTheCountItselfDoesNotRaise)
{
    const LogScope log;
    KRE_MeshBase mesh;
    mesh.AllocateMaterials(3);
    EXPECT_EQ(mesh.GetMaterial(2), &mesh.materials[2]);
    EXPECT_EQ(mesh.GetMaterial(3), mesh.materials.Get() + 3);
    EXPECT_EQ(ErrorText([&] { mesh.GetMaterial(4); }), "*undefined*: Wrong material number !");
    EXPECT_EQ(ErrorText([&] { mesh.GetMaterial(-1); }), "*undefined*: Wrong material number !");
}

TEST(KRE_MeshBase, GetTextureCopiesOrWarns)
{
    const LogScope log;
    KRE_MeshBase mesh;
    mesh.AllocateMaterials(2);
    mesh.textures[1].slotNames[0] = "sail.bmp";
    KRE_Texture texture;
    EXPECT_EQ(mesh.GetTexture(texture, 1), 1);
    EXPECT_STREQ(texture.slotNames[0].c_str(), "sail.bmp");
    EXPECT_EQ(log.Text(), "");
    EXPECT_EQ(mesh.GetTexture(texture, 2), 0);
    EXPECT_THAT(log.Text(), HasSubstr("Invalid texture number in SetTexture!"));
    EXPECT_EQ(mesh.GetTexture(texture, -1), 0);
    EXPECT_STREQ(texture.slotNames[0].c_str(), "sail.bmp") << "left alone";
}

TEST(KRE_MeshBase, HasTransparencyChecksTheMaterialsOnce)
{
    KRE_MeshBase mesh;
    mesh.AllocateMaterials(3);
    mesh.materials[2].transparent = 1;
    EXPECT_EQ(mesh.hasTransparency, -1);
    EXPECT_EQ(mesh.HasTransparency(), 1);
    mesh.materials[2].transparent = 0;
    EXPECT_EQ(mesh.HasTransparency(), 1) << "not looked for again";
    EXPECT_EQ(KRE_MeshBase().HasTransparency(), 0) << "no materials";
}

TEST(KRE_MeshBase, AllocateMaterialsReplacesBothArrays)
{
    KRE_MeshBase mesh;
    mesh.AllocateMaterials(2);
    mesh.materials[0].power = 5;
    mesh.AllocateMaterials(1);
    EXPECT_EQ(mesh.materialCount, 1);
    EXPECT_EQ(mesh.materials[0].power, 0.0f);
    for (const int32_t count : {0, -5}) {
        mesh.AllocateMaterials(count);
        EXPECT_EQ(mesh.materialCount, 0);
        EXPECT_FALSE(mesh.materials);
        EXPECT_FALSE(mesh.textures);
    }
}

// ---- Optimize

TEST_F(FakedMesh, OptimizeSortsByAttributeAndReportsAFailure)
{
    mesh.Optimize();
    EXPECT_THAT(fake->calls, ElementsAre("OptimizeInplace " + std::to_string(0x02000000)));
    fake->failures = {{"OptimizeInplace", E_OUTOFMEMORY}};
    EXPECT_EQ(ErrorText([&] { mesh.Optimize(); }),
              "*undefined*: OptimizeInplace failed: E_OUTOFMEMORY");
}

TEST(KRE_MeshBase, OptimizeWithoutADeviceMeshDoesNothing)
{
    KRE_MeshBase mesh;
    mesh.Optimize();
    EXPECT_EQ(mesh.lastResult, S_OK);
}

TEST_F(RealMesh, OptimizeMakesEachAttributeOneRange)
{
    // Six faces with the attributes 0 1 2 0 1 2 become three ranges of two faces each.
    KRE_Mesh mesh;
    MakeStrip(mesh, 6, 3);
    D3DXATTRIBUTERANGE table[3] = {};
    DWORD count = 3;
    ASSERT_EQ(mesh.mesh->GetAttributeTable(table, &count), D3D_OK);
    ASSERT_EQ(count, 3u);
    for (DWORD i = 0; i < 3; ++i) {
        EXPECT_EQ(table[i].AttribId, i);
        EXPECT_EQ(table[i].FaceStart, 2 * i);
        EXPECT_EQ(table[i].FaceCount, 2u);
    }
    mesh.LockAll(D3DLOCK_READONLY);
    EXPECT_EQ(mesh.Face(0)[0], 0);
    EXPECT_EQ(mesh.Face(1)[0], 3) << "the second face of attribute 0";
    EXPECT_EQ(*mesh.Attribute(1), 0u);
    mesh.UnlockAll();
}

// ---- Animation

namespace {

/// A mesh with a material whose transparency is the time, from -10 to 10 seconds, and a node that
/// moves along x by 1 per second from 0 to 10.
void Animate(KRE_Mesh& mesh)
{
    mesh.AllocateMaterials(1);
    KRE_FloatTrack& track = mesh.materials[0].opacityTrack;
    track.interpolation = KRE_FloatTrack::kLinear;
    track.SetKeyCount(2);
    track.Key(0).time = track.Key(0).value = -10;
    track.Key(1).time = track.Key(1).value = 10;
    mesh.AddPosKey(PosKey(0, 0));
    mesh.AddPosKey(PosKey(10, 10));
    mesh.BuildKeyIndex();
}

} // namespace

TEST(KRE_MeshBase, EvaluateAnimatesMaterialsTexturesAndTheNode)
{
    KRE_Mesh mesh;
    Animate(mesh);
    EXPECT_EQ(mesh.Evaluate(4, 1, 0), 1);
    EXPECT_FLOAT_EQ(mesh.materials[0].transparency, 4);
    EXPECT_FLOAT_EQ(mesh.textures[0].currentTime, 4);
    EXPECT_FLOAT_EQ(mesh.worldTM._41, 4);
}

TEST(KRE_MeshBase, QuirkTheMaterialTimeIsNotClampedAtZeroUnlikeTheNodes)
{
    KRE_Mesh mesh;
    Animate(mesh);
    mesh.Evaluate(-3, 1, 0);
    EXPECT_FLOAT_EQ(mesh.materials[0].transparency, -3);
    EXPECT_FLOAT_EQ(mesh.worldTM._41, 0);
}

TEST(KRE_MeshBase, ALoopingMeshWrapsTheMaterialTime)
{
    // 13 s in a loop of 5 s is 3 s.
    KRE_Mesh mesh;
    Animate(mesh);
    mesh.SetLoop(1);
    mesh.SetLoopEnd(5);
    mesh.Evaluate(13, 1, 0);
    EXPECT_FLOAT_EQ(mesh.materials[0].transparency, 3);
    EXPECT_FLOAT_EQ(mesh.textures[0].currentTime, 3);
}

TEST(KRE_MeshBase, AnInvisibleMeshKeepsItsMaterialValuesButItsMatricesAreEvaluated)
{
    KRE_Mesh mesh;
    Animate(mesh);
    mesh.visible = 0;
    mesh.Evaluate(4, 1, 0);
    EXPECT_FLOAT_EQ(mesh.materials[0].transparency, 0);
    EXPECT_FLOAT_EQ(mesh.textures[0].currentTime, 0);
    EXPECT_FLOAT_EQ(mesh.worldTM._41, 4);
    mesh.Evaluate(5, 1, 1);
    EXPECT_FLOAT_EQ(mesh.materials[0].transparency, 5) << "forced";
}

TEST(KRE_MeshBase, MaterialsAreEvaluatedEvenIfTheNodeIsSkipped)
{
    KRE_Mesh mesh;
    Animate(mesh);
    mesh.Evaluate(4, 1, 0);
    mesh.materials[0].transparency = 0.5f;
    mesh.Evaluate(4, 1, 0);
    EXPECT_FLOAT_EQ(mesh.materials[0].transparency, 4);
}

TEST(KRE_MeshBase, TimesAndLoopsThatAreNotNumbersDoNoHarm)
{
    KRE_Mesh mesh;
    Animate(mesh);
    mesh.textures[0].CreateSequence(3, false);
    mesh.SetLoop(1);
    for (const float loopEnd : {0.0f, -1.0f, std::nanf(""), INFINITY}) {
        mesh.SetLoopEnd(loopEnd);
        for (const double time :
             {0.0, -1.0, 1e300, static_cast<double>(std::nanf("")), static_cast<double>(INFINITY)})
            EXPECT_EQ(mesh.Evaluate(time, 1, 1), 1) << loopEnd << " " << time;
    }
    EXPECT_LT(mesh.textures[0].frameIndex, 3);
}

// ---- Reset

TEST_F(RealMesh, ResetReleasesEverythingAndRestoresTheDefaults)
{
    KRE_Mesh mesh;
    MakeStrip(mesh, 4, 2, D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1);
    mesh.name = "Hull";
    mesh.cloneSource = "Other";
    mesh.AddPosKey(PosKey(0, 1));
    mesh.hasTransparency = 1;
    mesh.ownGeometry = mesh.visible = 0;
    mesh.processing = 1;
    mesh.LockAll(0);
    mesh.Reset();
    EXPECT_FALSE(mesh.mesh);
    EXPECT_FALSE(mesh.materials);
    EXPECT_FALSE(mesh.textures);
    EXPECT_FALSE(mesh.posKeys);
    EXPECT_STREQ(mesh.name.c_str(), "*undefined*");
    EXPECT_TRUE(mesh.cloneSource.IsEmpty());
    EXPECT_EQ(mesh.materialCount + mesh.vertexCount + mesh.faceCount + mesh.posKeyCount, 0);
    EXPECT_EQ(mesh.fvf, 0u);
    EXPECT_EQ(mesh.stride, 0);
    EXPECT_EQ(mesh.processing, 0);
    EXPECT_EQ(mesh.hasTransparency, -1);
    EXPECT_EQ(mesh.ownGeometry, 1);
    EXPECT_EQ(mesh.visible, 1);
    EXPECT_EQ(mesh.clipMode, 0);
    EXPECT_EQ(mesh.radius, 0.0f);
    EXPECT_EQ(mesh.indexLocked + mesh.vertexLocked + mesh.attributeLocked, 0);
    EXPECT_EQ(mesh.vertexData, nullptr);
}

TEST_F(RealMesh, ReleaseMeshReleasesMeshMaterialsTexturesAndKeys)
{
    KRE_Mesh mesh;
    MakeStrip(mesh, 4, 2);
    mesh.name = "Hull";
    mesh.AddPosKey(PosKey(0, 1));
    mesh.ReleaseMesh();
    EXPECT_FALSE(mesh.mesh);
    EXPECT_FALSE(mesh.materials);
    EXPECT_FALSE(mesh.textures);
    EXPECT_EQ(mesh.materialCount, 0);
    EXPECT_FALSE(mesh.posKeys);
    EXPECT_STREQ(mesh.name.c_str(), "Hull");
}
