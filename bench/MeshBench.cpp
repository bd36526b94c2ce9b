// Meshes at the sizes of large scenes: the cost of creating, evaluating, cloning and linking one.

#include <memory>

#include <benchmark/benchmark.h>

#include "gfx/KRE_Gfx.h"
#include "scene/KRE_3dScene.h"
#include "scene/ResolveClones.h"
#include "tests/support/HiddenWindow.h"

namespace {

constexpr int32_t kMeshes = 13500;
constexpr int32_t kFaces = 32;
constexpr int32_t kVertices = 25;

/// The engine on a hidden window, for as long as a benchmark runs.
class Engine {
public:
    Engine() : engine(std::make_unique<KRE_Gfx>())
    {
        engine->InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, 0);
        gGfx = engine.get();
    }
    ~Engine()
    {
        gGfx = nullptr;
        engine.reset();
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

private:
    HiddenWindow window{64, 64};
    std::unique_ptr<KRE_Gfx> engine;
};

void AddMeshes(KRE_3dScene& scene, int32_t count, int32_t materials)
{
    for (int32_t i = 0; i < count; ++i) {
        KRE_Mesh* mesh = scene.meshes.GetSlot(scene.meshes.Add());
        gGfx->CreateMesh(mesh, kFaces, kVertices, materials, D3DFVF_XYZ | D3DFVF_NORMAL, 0, 0);
    }
}

/// With materials each one has a texture, and each texture a quad on the device.
void CreateMeshes(benchmark::State& state)
{
    const Engine engine;
    for (auto _ : state) {
        KRE_3dScene scene;
        AddMeshes(scene, kMeshes, static_cast<int32_t>(state.range(0)));
        state.PauseTiming();
        scene.Reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(CreateMeshes)->Arg(0)->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond);

void MakeQuads(benchmark::State& state)
{
    const Engine engine;
    for (auto _ : state) {
        HeapArray<KRE_Texture> textures(kMeshes);
        for (int32_t i = 0; i < kMeshes; ++i)
            textures[i].SetDevice(gGfx->device.Get());
    }
    state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(MakeQuads)->Unit(benchmark::kMillisecond);

void MakeTexturesWithoutQuads(benchmark::State& state)
{
    for (auto _ : state) {
        HeapArray<KRE_Texture> textures(kMeshes);
        benchmark::DoNotOptimize(textures.Get());
    }
    state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(MakeTexturesWithoutQuads)->Unit(benchmark::kMillisecond);

void EvaluateMeshes(benchmark::State& state)
{
    const Engine engine;
    KRE_3dScene scene;
    AddMeshes(scene, kMeshes, 1);
    double time = 0;
    for (auto _ : state)
        scene.Update(time += 0.04, 1);
    state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(EvaluateMeshes)->Unit(benchmark::kMillisecond);

void LockAndUnlockMeshes(benchmark::State& state)
{
    const Engine engine;
    KRE_3dScene scene;
    AddMeshes(scene, kMeshes, 1);
    for (auto _ : state) {
        for (KRE_Mesh* mesh : scene.meshes) {
            mesh->LockAll(0);
            mesh->UnlockAll();
        }
    }
    state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(LockAndUnlockMeshes)->Unit(benchmark::kMillisecond);

struct Reporter : ErrorClassSimple {};

void ResolveAllClones(benchmark::State& state)
{
    const Engine engine;
    KRE_3dScene scene;
    AddMeshes(scene, 1, 1);
    scene.meshes.Get(0)->name = "source";
    String name;
    for (int32_t i = 1; i < kMeshes; ++i) {
        KRE_Mesh* mesh = scene.meshes.GetSlot(scene.meshes.Add());
        name.Format("clone%05i", i);
        mesh->name = name;
        mesh->cloneSource = "source";
        mesh->AllocateMaterials(1);
    }
    Reporter reporter;
    for (auto _ : state) {
        CopyBudget budget(0);
        ResolveClones(scene, budget, reporter);
    }
    state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(ResolveAllClones)->Unit(benchmark::kMillisecond);

void LinkAllBones(benchmark::State& state)
{
    constexpr int32_t kBonesOfEach = 20;
    KRE_3dScene scene;
    String name;
    for (int32_t i = 0; i < kMeshes; ++i) {
        KRE_Mesh* mesh = scene.meshes.GetSlot(scene.meshes.Add());
        name.Format("mesh%05i", i);
        mesh->name = name;
        for (int32_t bone = 0; bone < (i % 10 == 0 ? kBonesOfEach : 0); ++bone) {
            name.Format("mesh%05i", (i * 7 + bone * 101) % kMeshes);
            const KRE_BoneInfo info(name.c_str());
            mesh->bones.Add(&info);
        }
    }
    for (auto _ : state)
        scene.LinkObjects(scene);
    state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(LinkAllBones)->Unit(benchmark::kMillisecond);

void CombineMaterials(benchmark::State& state)
{
    const KRE_MaterialInfo own, override;
    for (auto _ : state)
        benchmark::DoNotOptimize(own.Combine(override));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(CombineMaterials);

} // namespace
