// The cost of a frame without the device's work: a scene of 1,000 meshes with 4 materials
// over a device that does nothing.

#include <benchmark/benchmark.h>

#include "tests/support/CountedAllocations.h"
#include "tests/support/FakeDirect3D.h"
#include "tests/support/RecordingDirect3D.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/TestMesh.h"

namespace {

constexpr int32_t kMeshes = 1000;
constexpr int32_t kMaterials = 4;
constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1;
constexpr DWORD kBlendedFormat =
    D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL | D3DFVF_TEX1;

enum Kind : int64_t {
    kOpaque,     ///< four pictures, one transparent material
    kSorted,     ///< the same, all meshes in the sort
    kOutside,    ///< the same, out of view one by one
    kReflecting, ///< all materials compute a reflection
    kSkinned,    ///< three bones
};
constexpr const char* kNames[] = {"opaque", "sorted", "outside", "reflecting", "skinned"};

KRE_Texture* Pictures()
{
    static KRE_Texture pictures[kMaterials];
    return pictures;
}

void AddMesh(KRE_3dScene& scene, int32_t number, Kind kind)
{
    KRE_Mesh& mesh = AddStrip(scene, ("mesh " + std::to_string(number)).c_str(), kMaterials * 2,
                              kMaterials, kind == kSkinned ? kBlendedFormat : kFormat);
    // In rows and columns in front of the camera, or behind the camera.
    const float z = static_cast<float>(100 + number % 10);
    mesh.SetPosition(static_cast<float>(number / 10 % 10 - 5), static_cast<float>(number / 100 - 5),
                     kind == kOutside ? -z : z, 1);
    for (int32_t i = 0; i < kMaterials; ++i) {
        mesh.textures[i].CopyFrom(Pictures()[i]);
        mesh.materials[i].reflectionSet = kind == kReflecting ? 0 : -1;
    }
    mesh.materials[3].transparent = 1;
    mesh.materials[3].transparency = 0.5f;
    if (kind != kSkinned)
        return;
    AddBones(mesh, {"a", "b", "c"});
    mesh.AllocateBoneObjects();
    for (int32_t i = 1; i < mesh.bones.Count(); ++i)
        mesh.boneObjects[i] = scene.objects.GetSlot(0);
}

void FillScene(KRE_3dScene& scene, Kind kind)
{
    gGfx->caps.MaxVertexBlendMatrixIndex = 32;
    for (int32_t i = 0; i < kMaterials; ++i)
        gGfx->CreateTexture(&Pictures()[i], 4, 4, -1, D3DFMT_X8R8G8B8, 1);
    scene.objects.Add();
    for (int32_t i = 0; i < kMeshes; ++i)
        AddMesh(scene, i, kind);
    scene.opaqueMeshCount = kind == kSorted ? 0 : kMeshes;
    scene.settings.clearBackground = scene.settings.mirrorView = 1;
    scene.AddLight(KRE_Light());
    gGfx->SetLookAt({0, 0, 0}, {0, 0, 1}, {0, 1, 0});
}

void DrawFrame(KRE_3dScene& scene)
{
    gGfx->BeginScene();
    gGfx->DrawScene(&scene, 0, 0);
    gGfx->EndScene();
}

void FreePictures()
{
    for (int32_t i = 0; i < kMaterials; ++i)
        Pictures()[i].Free();
}

/// The device calls of one frame after the first, counted by a recording device.
double CallsOfAFrame(Kind kind)
{
    const auto direct3D = RecordingDirect3D::Standalone();
    const SceneEngine engine(2, direct3D.get());
    KRE_3dScene scene;
    FillScene(scene, kind);
    DrawFrame(scene);
    direct3D->ClearLines();
    DrawFrame(scene);
    const auto calls = static_cast<double>(direct3D->Lines().size());
    FreePictures();
    return calls;
}

void Frame(benchmark::State& state)
{
    const auto kind = static_cast<Kind>(state.range(0));
    state.SetLabel(kNames[kind]);
    const double calls = CallsOfAFrame(kind);

    const ComHandle<IDirect3D9> direct3D(new FakeDirect3D);
    const SceneEngine engine(2, direct3D.get());
    KRE_3dScene scene;
    FillScene(scene, kind);
    DrawFrame(scene);
    const int64_t before = gAllocations;
    for (auto _ : state)
        DrawFrame(scene);
    const auto frames = static_cast<double>(state.iterations());
    state.counters["allocations"] = static_cast<double>(gAllocations - before) / frames;
    state.counters["calls_per_mesh"] = calls / kMeshes;
    state.counters["time_per_mesh"] = benchmark::Counter(
        frames * kMeshes, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    FreePictures();
}
BENCHMARK(Frame)->DenseRange(kOpaque, kSkinned)->Unit(benchmark::kMillisecond);

} // namespace
