// Loading and saving QSB files against reading and writing the same bytes with the standard library.
// Compare `LoadScene` with `ReadBytes` of the same kind, and `SaveScene` with `WriteBytes`.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "gfx/KRE_Gfx.h"
#include "scene/KRE_3dScene.h"
#include "tests/support/HiddenWindow.h"

namespace {

enum Kind : int64_t { kBigMeshes, kSkinnedMeshes, kSmallMeshes, kKeys };

constexpr const char* kFile = "bench.qsb";
constexpr const char* kCopy = "copy.qsb";

/// An engine, and a file of a scene of one kind in its own directory.
class Stage {
public:
    explicit Stage(int64_t kind)
        : before(std::filesystem::current_path()),
          directory(std::filesystem::temp_directory_path() / "qsa2qsb-bench")
    {
        std::filesystem::create_directory(directory);
        std::filesystem::current_path(directory);
        engine = std::make_unique<KRE_Gfx>();
        engine->InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, 0);
        gGfx = engine.get();
        KRE_3dScene scene;
        FillScene(scene, kind);
        gGfx->SaveScene(scene, kFile);
    }
    ~Stage()
    {
        gGfx = nullptr;
        engine.reset();
        std::filesystem::current_path(before);
        std::filesystem::remove_all(directory);
    }

    static int64_t FileBytes() { return static_cast<int64_t>(std::filesystem::file_size(kFile)); }

private:
    static void FillScene(KRE_3dScene& scene, int64_t kind)
    {
        switch (kind) {
        case kBigMeshes:
            AddMeshes(scene, 40, 40000, 70000, D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1);
            break;
        case kSkinnedMeshes:
            AddMeshes(scene, 40, 40000, 70000,
                      D3DFVF_XYZB4 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL | D3DFVF_TEX1);
            break;
        case kSmallMeshes:
            AddMeshes(scene, 13500, 32, 32, D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1);
            break;
        default:
            AddKeys(scene);
        }
    }

    static void AddMeshes(KRE_3dScene& scene, int count, int32_t vertices, int32_t faces, DWORD fvf)
    {
        for (int m = 0; m < count; ++m) {
            KRE_Mesh& mesh = *scene.meshes.GetSlot(scene.meshes.Add());
            mesh.name.Format("Mesh%i", m);
            gGfx->CreateMesh(&mesh, faces, vertices, 2, fvf, 0, 0);
            mesh.LockAll(0);
            for (int32_t i = 0; i < vertices; ++i) {
                const float angle = static_cast<float>(i) * 0.001f;
                *mesh.Position(i) = {angle, 1 - angle, 0};
                *mesh.Normal(i) = {0.6f, -0.64f, 0.48f};
                mesh.TexCoord(i)[0] = angle;
                for (int32_t w = 0; w < mesh.blendCount - 1; ++w)
                    mesh.Weights(i)[w] = 0.25f;
            }
            for (int32_t i = 0; i < faces; ++i) {
                for (int32_t corner = 0; corner < 3; ++corner)
                    mesh.Face(i)[corner] = static_cast<uint16_t>((i + corner) % vertices);
                *mesh.Attribute(i) = i * 2 / faces;
            }
            mesh.UnlockAll();
            mesh.Optimize();
        }
    }

    static void AddKeys(KRE_3dScene& scene)
    {
        for (int m = 0; m < 100; ++m) {
            KRE_3dObject& object = *scene.objects.GetSlot(scene.objects.Add());
            KRE_PosKeyData key;
            KRE_RotKeyData turn;
            turn.rotation = {0, 0, 0, 1};
            for (int i = 0; i < 2500; ++i) {
                key.time = turn.time = static_cast<float>(i);
                object.posKeys.Append(key);
                object.rotKeys.Append(turn);
            }
            object.posKeyCount = object.rotKeyCount = 2500;
        }
    }

    std::filesystem::path before;
    std::filesystem::path directory;
    HiddenWindow window{16, 16};
    std::unique_ptr<KRE_Gfx> engine;
};

void ReadBytes(benchmark::State& state)
{
    const Stage stage(state.range(0));
    const int64_t size = Stage::FileBytes();
    for (auto _ : state) {
        const std::unique_ptr<char[]> bytes(new char[static_cast<size_t>(size)]);
        FILE* file = std::fopen(kFile, "rb");
        if (std::fread(bytes.get(), 1, static_cast<size_t>(size), file) !=
            static_cast<size_t>(size))
            state.SkipWithError("short read");
        std::fclose(file);
        benchmark::DoNotOptimize(bytes.get());
    }
    state.SetBytesProcessed(state.iterations() * size);
}

void LoadScene(benchmark::State& state)
{
    const Stage stage(state.range(0));
    for (auto _ : state) {
        auto scene = std::make_unique<KRE_3dScene>();
        gGfx->LoadScene(*scene, kFile, 0);
        state.PauseTiming();
        scene.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * Stage::FileBytes());
}

void WriteBytes(benchmark::State& state)
{
    const Stage stage(state.range(0));
    const std::vector<char> bytes(static_cast<size_t>(Stage::FileBytes()), 'x');
    for (auto _ : state) {
        FILE* file = std::fopen(kCopy, "wb");
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::fclose(file);
    }
    state.SetBytesProcessed(state.iterations() * Stage::FileBytes());
}

void SaveScene(benchmark::State& state)
{
    const Stage stage(state.range(0));
    KRE_3dScene scene;
    gGfx->LoadScene(scene, kFile, 0);
    for (auto _ : state)
        gGfx->SaveScene(scene, kCopy);
    state.SetBytesProcessed(state.iterations() * Stage::FileBytes());
}

BENCHMARK(ReadBytes)->DenseRange(kBigMeshes, kKeys)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadScene)->DenseRange(kBigMeshes, kKeys)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteBytes)->DenseRange(kBigMeshes, kKeys)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveScene)->DenseRange(kBigMeshes, kKeys)->Unit(benchmark::kMillisecond);

} // namespace
