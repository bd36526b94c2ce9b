#include "gfx/KRE_Gfx.h"

#include "scene/KRE_Mesh.h"
#include "tests/gfx/ErrorText.h"
#include "tests/scene/SceneTesting.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/TestMesh.h"

namespace {

constexpr DWORD kPlain = D3DFVF_XYZ | D3DFVF_NORMAL;
constexpr DWORD kThreeWeights = D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL;
constexpr DWORD kManaged = 544;          // D3DXMESH_VB_MANAGED, D3DXMESH_IB_MANAGED
constexpr DWORD kSystemMemory = 272;     // D3DXMESH_VB_SYSTEMMEM, D3DXMESH_IB_SYSTEMMEM
constexpr DWORD kSoftwareSystem = 98576; // and D3DXMESH_SOFTWAREPROCESSING

class KRE_GfxMeshesTest : public SceneEngineTest {
protected:
    static void Create(KRE_Mesh& mesh, DWORD fvf = kPlain, DWORD options = 0, int32_t bones = 0)
    {
        gGfx->CreateMesh(&mesh, 2, 4, 1, fvf, options, bones);
    }
};

} // namespace

TEST_F(KRE_GfxMeshesTest, MakesADeviceMeshOfTheCountsAndTheFormat)
{
    KRE_Mesh mesh;
    gGfx->CreateMesh(&mesh, 7, 9, 2, kPlain | D3DFVF_TEX1, 0, 0);
    ASSERT_TRUE(mesh.mesh);
    EXPECT_EQ(mesh.mesh->GetNumFaces(), 7u);
    EXPECT_EQ(mesh.mesh->GetNumVertices(), 9u);
    EXPECT_EQ(mesh.mesh->GetFVF(), kPlain | D3DFVF_TEX1);
    EXPECT_EQ(mesh.mesh->GetNumBytesPerVertex(), 32u) << "12 + 12 + 8";
    EXPECT_EQ(mesh.stride, 32);
    EXPECT_EQ(mesh.faceCount, 7);
    EXPECT_EQ(mesh.vertexCount, 9);
    EXPECT_EQ(mesh.materialCount, 2);
}

TEST_F(KRE_GfxMeshesTest, OptionsAreManagedOrSystemMemoryOrTheCallersOwn)
{
    static const struct {
        const char* what;
        DWORD asked, expected;
    } cases[] = {
        {"nothing said", 0, kManaged},
        {"minus one", ~DWORD{0}, kManaged},
        {"system memory", KRE_Gfx::kMeshSystemMemory, kSystemMemory},
        {"the caller's own", D3DXMESH_VB_SYSTEMMEM | D3DXMESH_IB_MANAGED, 0x210},
    };
    for (const auto& c : cases) {
        KRE_Mesh mesh;
        Create(mesh, kPlain, c.asked);
        EXPECT_EQ(mesh.mesh->GetOptions(), c.expected) << c.what;
        EXPECT_EQ(mesh.processing, 1) << c.what;
    }
}

TEST_F(KRE_GfxMeshesTest, WhatTheHardwareCannotBlendGoesToSoftwareInSystemMemory)
{
    gGfx->caps.MaxVertexBlendMatrixIndex = 100;
    gGfx->hardwareSkinningLimit = 18;
    static const struct {
        const char* what;
        DWORD fvf;
        int32_t bones, hardwareSkinning, path;
        DWORD options;
    } cases[] = {
        {"rigid", kPlain, 0, 1, 1, kManaged},
        {"as many bones as configured", kThreeWeights, 18, 1, 1, kManaged},
        {"one bone more", kThreeWeights, 19, 1, 0, kSoftwareSystem},
        {"no bones known", kThreeWeights, -1, 1, 0, kSoftwareSystem},
        {"switched off", kThreeWeights, 1, 0, 0, kSoftwareSystem},
    };
    for (const auto& c : cases) {
        gGfx->hardwareSkinning = c.hardwareSkinning;
        KRE_Mesh mesh;
        mesh.processing = 2; // the old value
        Create(mesh, c.fvf, 0, c.bones);
        EXPECT_EQ(mesh.processing, c.path) << c.what;
        EXPECT_EQ(mesh.mesh->GetOptions(), c.options) << c.what;
    }
}

TEST_F(KRE_GfxMeshesTest, OnASoftwareDeviceEveryMeshIsProcessedInSoftware)
{
    Restart(0);
    KRE_Mesh mesh;
    Create(mesh, kPlain, KRE_Gfx::kMeshSystemMemory);
    EXPECT_EQ(mesh.processing, 0);
    EXPECT_EQ(mesh.mesh->GetOptions(), kSoftwareSystem);
}

TEST_F(KRE_GfxMeshesTest, AVertexCountOfExactly65535IsAccepted)
{
    KRE_Mesh mesh;
    gGfx->CreateMesh(&mesh, 1, 65535, 0, kPlain, 0, 0);
    EXPECT_EQ(mesh.mesh->GetNumVertices(), 65535u);
    EXPECT_EQ(ErrorText([&] { gGfx->CreateMesh(&mesh, 1, 65536, 0, kPlain, 0, 0); }),
              "Number of vertices too high: 65536 - only 65535 allowed");
    EXPECT_EQ(mesh.vertexCount, 65535) << "the mesh is left as it was";
}

TEST_F(KRE_GfxMeshesTest, AFailedCreationIsAnErrorWithBlanksAroundIt)
{
    RecordingDirect3D& direct3D = StartRecording();
    direct3D.FailNext("CreateVertexBuffer", D3DERR_OUTOFVIDEOMEMORY);
    KRE_Mesh mesh;
    EXPECT_EQ(ErrorText([&] { Create(mesh); }),
              " D3DXCreateMeshFVF failed: D3DERR_OUTOFVIDEOMEMORY ");
    EXPECT_EQ(gGfx->lastResult, D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_FALSE(mesh.mesh);
}

TEST_F(KRE_GfxMeshesTest, InvalidCountsAndFormatsFailTheCreation)
{
    static const struct {
        const char* what;
        int32_t faces, vertices;
        DWORD fvf;
    } cases[] = {
        {"no faces", 0, 3, kPlain},
        {"fewer than none", -1, 3, kPlain},
        {"no vertices", 1, 0, kPlain},
        {"a negative number of vertices", 1, -3, kPlain},
        {"no format", 1, 3, 0},
        {"no position", 1, 3, D3DFVF_NORMAL},
        {"matrix indices without weights", 1, 3, kPlain | D3DFVF_LASTBETA_UBYTE4},
        {"nine texture sets", 1, 3, kPlain | 0x900},
    };
    for (const auto& c : cases) {
        KRE_Mesh mesh;
        EXPECT_EQ(ErrorText([&] { gGfx->CreateMesh(&mesh, c.faces, c.vertices, 0, c.fvf, 0, 0); }),
                  " D3DXCreateMeshFVF failed: D3DERR_INVALIDCALL ")
            << c.what;
    }
}

TEST_F(KRE_GfxMeshesTest, ADeviceVertexHoldsWhatTheLayoutSays)
{
    for (DWORD position = D3DFVF_XYZ; position <= D3DFVF_XYZB5; position += 2) {
        for (const DWORD more :
             {DWORD{0}, DWORD{D3DFVF_NORMAL}, DWORD{0x2F0}, DWORD{0x10000 | 0x100},
              DWORD{D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL}}) {
            KRE_Mesh mesh;
            if (!ErrorText([&] { Create(mesh, position | more); }).empty())
                continue;
            EXPECT_GE(mesh.mesh->GetNumBytesPerVertex(), static_cast<DWORD>(mesh.stride))
                << position << " " << more;
            EXPECT_GE(mesh.mesh->GetNumBytesPerVertex(), 12u) << position << " " << more;
        }
    }
}

TEST_F(KRE_GfxMeshesTest, MaterialsOfANewMeshAreLightGreyAndTheirTexturesHaveTheDevice)
{
    KRE_Mesh mesh;
    gGfx->CreateMesh(&mesh, 2, 4, 2, kPlain, 0, 0);
    for (int32_t i = 0; i < 2; ++i) {
        EXPECT_EQ(mesh.materials[i].diffuse.r, 0.9f);
        EXPECT_EQ(mesh.materials[i].ambient.g, 0.9f);
        EXPECT_EQ(mesh.materials[i].specular.b, 0.0f);
        EXPECT_EQ(mesh.materials[i].emissive.a, 1.0f);
        EXPECT_EQ(mesh.textures[i].device, gGfx->device.Get());
    }
}

TEST_F(KRE_GfxMeshesTest, ASecondCreationKeepsTheMaterials)
{
    KRE_Mesh mesh;
    Create(mesh);
    mesh.materials[0].power = 3;
    gGfx->CreateMesh(&mesh, 5, 6, 1, kPlain, 0, 0);
    EXPECT_EQ(mesh.materials[0].power, 3.0f);
    EXPECT_EQ(mesh.mesh->GetNumFaces(), 5u);
}

TEST_F(KRE_GfxMeshesTest, ASecondCreationWithADifferentMaterialCountIsAnError)
{
    KRE_Mesh mesh;
    Create(mesh);
    EXPECT_EQ(ErrorText([&] { gGfx->CreateMesh(&mesh, 2, 4, 2, kPlain, 0, 0); }),
              "nrMat does not match!");
}

TEST_F(KRE_GfxMeshesTest, ASecondCreationLeavesTheOtherUsersTheirMesh)
{
    KRE_Mesh mesh, clone;
    MakeStrip(mesh, 4, 1);
    mesh.CopyGeometryTo(clone, 0, 0);
    mesh.LockAll(0);
    gGfx->CreateMesh(&mesh, 7, 9, 1, kPlain, 0, 0);
    EXPECT_EQ(mesh.vertexData, nullptr);
    EXPECT_EQ(mesh.resourceId, -1);
    EXPECT_EQ(clone.mesh->GetNumFaces(), 4u);
    EXPECT_EQ(gGfx->meshManager.GetEntry(0)->useCount, 1);
}

TEST_F(KRE_GfxMeshesTest, EndsBySettingTheBlendFlags)
{
    KRE_Mesh mesh;
    Create(mesh, kThreeWeights);
    EXPECT_EQ(mesh.vertexBlendFlags, static_cast<DWORD>(D3DVBF_2WEIGHTS));
    Create(mesh, kPlain);
    EXPECT_EQ(mesh.vertexBlendFlags, static_cast<DWORD>(D3DVBF_DISABLE));
}

TEST_F(KRE_GfxMeshesTest, ReleasesTheLocksOfThePreviousMesh)
{
    KRE_Mesh mesh;
    Create(mesh);
    mesh.LockAll(0);
    Create(mesh);
    EXPECT_EQ(mesh.indexLocked + mesh.vertexLocked + mesh.attributeLocked, 0);
    EXPECT_EQ(mesh.vertexData, nullptr);
    EXPECT_NE(ErrorText([&] { gGfx->CreateMesh(&mesh, 0, 4, 1, kPlain, 0, 0); }), "");
    EXPECT_FALSE(mesh.mesh) << "the one before went first";
}
