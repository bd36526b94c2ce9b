#include "gfx/KRE_Gfx.h"
#include "tests/support/HiddenWindow.h"

#include <benchmark/benchmark.h>

namespace {

/// A hidden window for the device, created once.
HWND BenchWindow()
{
    static const HiddenWindow kWindow(640, 480);
    return kWindow.Handle();
}

void StartAndShutDown(benchmark::State& state)
{
    for (auto _ : state) {
        KRE_Gfx engine;
        engine.InitDevice(BenchWindow(), 1, nullptr, 16, 0, 1, 0);
        engine.FreeDevice();
    }
}
BENCHMARK(StartAndShutDown);

void Reset(benchmark::State& state)
{
    KRE_Gfx engine;
    engine.InitDevice(BenchWindow(), 1, nullptr, 16, 0, 1, 0);
    for (auto _ : state)
        engine.ResetDevice(nullptr);
}
BENCHMARK(Reset);

/// A checked state that the device already has: one comparison.
void UnchangedRenderState(benchmark::State& state)
{
    KRE_Gfx engine;
    engine.InitDevice(BenchWindow(), 1, nullptr, 16, 0, 1, 0);
    for (auto _ : state)
        engine.SetSpecular(0);
}
BENCHMARK(UnchangedRenderState);

void UnchangedStageState(benchmark::State& state)
{
    KRE_Gfx engine;
    engine.InitDevice(BenchWindow(), 1, nullptr, 16, 0, 1, 0);
    for (auto _ : state)
        engine.SetColorOp(0, D3DTOP_MODULATE);
}
BENCHMARK(UnchangedStageState);

/// The same state as `UnchangedRenderState`, passed on to the device.
void SentRenderState(benchmark::State& state)
{
    KRE_Gfx engine;
    engine.InitDevice(BenchWindow(), 1, nullptr, 16, 0, 1, 0);
    for (auto _ : state)
        engine.SetRenderState(D3DRS_SPECULARENABLE, DWORD{0});
}
BENCHMARK(SentRenderState);

/// A reflection with a diffuse map over it, blended: the most states that a material can have.
void MakeMaterial(KRE_Gfx& engine, KRE_Texture& texture)
{
    for (const int32_t slot : {0, 1}) {
        texture.SelectStage(slot);
        engine.CreateTexture(&texture, 4, 4, -1, D3DFMT_X8R8G8B8, 1);
        texture.SetStage(slot, slot == 0 ? StageReflection : StageDiffuse, 1.0f);
    }
    engine.SetBlendMode(7, 128, 0);
}

/// All states are set already: the cost of the binding itself, and one texture factor.
void BindMaterialAgain(benchmark::State& state)
{
    KRE_Gfx engine;
    engine.InitDevice(BenchWindow(), 1, nullptr, 16, 0, 1, 0);
    KRE_Texture texture;
    MakeMaterial(engine, texture);
    for (auto _ : state)
        engine.SetTexture(&texture);
}
BENCHMARK(BindMaterialAgain);

/// Every binding changes the pictures and most of the states.
void BindTwoMaterialsInTurn(benchmark::State& state)
{
    KRE_Gfx engine;
    engine.InitDevice(BenchWindow(), 1, nullptr, 16, 0, 1, 0);
    KRE_Texture reflecting;
    KRE_Texture plain;
    MakeMaterial(engine, reflecting);
    engine.CreateTexture(&plain, 4, 4, -1, D3DFMT_X8R8G8B8, 1);
    for (auto _ : state) {
        engine.SetTexture(&reflecting);
        engine.SetTexture(&plain);
    }
}
BENCHMARK(BindTwoMaterialsInTurn);

void FindAmongSharedNames(benchmark::State& state)
{
    KRE_ResourceManager manager;
    int object = 0;
    for (int64_t i = 0; i < state.range(0); ++i)
        manager.Add(&object, ("texture_" + std::to_string(i) + ".bmp").c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(manager.Acquire("texture_0.bmp_"));
}
BENCHMARK(FindAmongSharedNames)->Arg(16)->Arg(4096);

} // namespace
