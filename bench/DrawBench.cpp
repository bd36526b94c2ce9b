// The rows of bench/DrawScene.h in real time. tools/bench-draw compares them with another rasterizer.

#include "bench/DrawScene.h"

#include <benchmark/benchmark.h>

using namespace draw_bench;

namespace {

void Run(benchmark::State& state, const Row& row)
{
    Scene scene;
    row.setUp(scene.Device());
    scene.Draw(); // allocates what the first draw creates
    for (auto _ : state)
        scene.Draw();
    state.counters["triangles/s"] = benchmark::Counter(static_cast<double>(kTriangles) *
                                                           static_cast<double>(state.iterations()),
                                                       benchmark::Counter::kIsRate);
}

const bool kAreRegistered = [] {
    for (const Row& row : kRows)
        benchmark::RegisterBenchmark(row.name, Run, row)->Unit(benchmark::kMillisecond);
    return true;
}();

} // namespace
