#include "tests/render/SceneDrawing.h"

#include "tests/support/FakeDirect3D.h"
#include "tests/support/MemoryShortage.h"

namespace {

constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1;
constexpr DWORD kBlendedFormat =
    D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL | D3DFVF_TEX1;

/// A mesh of four materials: a picture, none, a transparent one, and one that reflects.
void AddMesh(KRE_3dScene& scene, int32_t number, DWORD fvf)
{
    KRE_Mesh& mesh = *scene.meshes.GetSlot(scene.meshes.Add());
    mesh.SetVertexFormat(fvf);
    mesh.SetVertexBlendFlags();
    mesh.processing = 1;
    mesh.AllocateMaterials(4);
    mesh.clipMode = 3;
    mesh.radius = 1.0f;
    mesh.worldTM = Shift(0, 0, static_cast<float>(100 + number % 7));
    gGfx->CreateTexture(&mesh.textures[0], 4, 4, -1, D3DFMT_X8R8G8B8, 1);
    mesh.materials[2].transparent = 1;
    mesh.materials[2].transparency = 0.5f;
    mesh.materials[3].reflectionSet = 0;

    auto* const device = new NotedMesh(nullptr, "");
    device->vertexCount = device->faceCount = 4;
    device->vertices.resize(static_cast<size_t>(mesh.stride * 4));
    device->table = {{0, 0, 1, 0, 4}, {1, 1, 1, 0, 4}, {2, 2, 1, 0, 4}, {3, 3, 1, 0, 4}};
    mesh.mesh = ComPointer<ID3DXMesh>::Adopt(device);
    if (mesh.blendCount == 0)
        return;
    const KRE_BoneInfo bone("bone");
    mesh.bones.Add(&bone);
    mesh.bones.Add(&bone);
    mesh.AllocateBoneObjects();
}

void FillScene(KRE_3dScene& scene)
{
    for (int32_t i = 0; i < 50; ++i)
        AddMesh(scene, i, i % 5 ? kFormat : kBlendedFormat);
    scene.PartitionMeshes();
    scene.AddLight(KRE_Light())->parent = scene.meshes.Get(0);
    for (int i = 0; i < 10; ++i)
        scene.objects.Add();
    KRE_Camera& camera = *scene.cameras.GetSlot(scene.cameras.Add());
    camera.SetDirection(0, 0, 1);
    camera.SetUp(0, 1, 0);
    scene.activeCamera = 0;
    KRE_SceneSettings& settings = scene.settings;
    settings.clearBackground = settings.mirrorView = settings.useAmbient = settings.useFog = 1;
    settings.showHierarchy = 1;
    settings.showObjects = settings.showLights = kMarkersAll;
    gGfx->CreateTexture(&scene.backgroundTexture, 4, 4, -1, D3DFMT_X8R8G8B8, 1);
}

} // namespace

// The device records nothing, because recording allocates memory.
TEST(FrameMemory, AllocatesNothingAfterTheFirst)
{
    const ScratchDirectory scratch;
    const ComHandle<IDirect3D9> quiet(new FakeDirect3D);
    const SceneEngine engine(2, quiet.get());
    gGfx->caps.MaxVertexBlendMatrixIndex = 32;
    KRE_3dScene scene;
    FillScene(scene);

    int64_t before = 0;
    for (int frame = 0; frame < 4; ++frame) {
        if (frame == 1)
            before = gAllocations;
        scene.overrideMaterial.transparency = 0.125f * static_cast<float>(frame + 1);
        gGfx->BeginScene();
        EXPECT_EQ(gGfx->DrawScene(&scene, 0, 0), 1);
        gGfx->EndScene();
    }
    ASSERT_GT(before, 0) << "allocations are counted";
    EXPECT_EQ(gAllocations - before, 0);
    EXPECT_EQ(gGfx->drawnMeshes, 200);
}

// The first frame of an engine, with each of its allocations failing once, and with all after it.
TEST(FrameMemory, RunningOutOfMemoryIsAnErrorThatNamesTheScene)
{
    const ScratchDirectory scratch;
    const ComHandle<IDirect3D9> quiet(new FakeDirect3D);
    int64_t needed = 1;
    for (const int64_t count : {int64_t{0}, int64_t{1}, kAllFromThere}) {
        for (int64_t before = 0; before < needed; ++before) {
            const SceneEngine engine(2, quiet.get());
            gGfx->caps.MaxVertexBlendMatrixIndex = 32;
            KRE_3dScene scene;
            scene.name = "harbour.qsa";
            FillScene(scene);
            gGfx->BeginScene();
            const auto draw = [&] { gGfx->DrawScene(&scene, 0, 0); };
            if (count == 0) {
                needed = AllocationsOf(draw);
                break;
            }
            EXPECT_EQ(RunShortOfMemory(before, count, draw).error,
                      "harbour.qsa: Not enough memory for the frame")
                << before;
        }
    }
    EXPECT_GT(needed, 5);
}
