// Evaluation of animated objects: the cost of one as its tracks grow, and of a frame of a large
// hierarchy.

#include <cmath>
#include <ctime>
#include <random>

#include <benchmark/benchmark.h>

#include "scene/KRE_3dScene.h"
#include "tests/support/CountedAllocations.h"

namespace {

constexpr float kKeySeconds = 0.25f;
constexpr double kFrameSeconds = 0.04;
constexpr int32_t kObjects = 10000;
constexpr int32_t kKeysOfEach = 10;

enum Tracks : int { kBezierTracks, kTcbTrack };
enum Order : int { kSequential, kRandom };

float Wave(int32_t i, float step)
{
    return static_cast<float>(std::sin(static_cast<double>(i) * step));
}

template <class T>
T BezierKey(int32_t i)
{
    T key;
    key.time = static_cast<float>(i) * kKeySeconds;
    key.value = {1 + Wave(i, 0.3f) / 2, 1 + Wave(i, 0.5f) / 2, 1 + Wave(i, 0.7f) / 2};
    key.inTangent = {0.1f, -0.2f, 0.3f};
    key.outTangent = {-0.1f, 0.2f, -0.3f};
    key.interpolation = kKeyBezier;
    return key;
}

void AddBezierKeys(KRE_3dObject& object, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) {
        object.AddPosKey(BezierKey<KRE_PosKeyData>(i));
        object.AddScaleKey(BezierKey<KRE_ScaleKeyData>(i));
    }
}

void AddTcbKeys(KRE_3dObject& object, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) {
        KRE_RotKeyData key;
        key.time = static_cast<float>(i) * kKeySeconds;
        key.axis = {Wave(i, 0.2f), Wave(i, 0.4f), 1};
        key.angle = 0.4f;
        key.tension = 0.25f;
        key.continuity = -0.25f;
        key.easeIn = 0.25f;
        key.easeOut = 0.5f;
        key.interpolation = kKeyTcb;
        object.AddRotKey(key);
    }
    for (KRE_RotKeyData* key = object.rotKeys.Head(); key; key = key->next)
        ComputeInnerControls(*key);
}

/// CPU time of this process: ratios hold on a busy machine, too.
double SecondsSince(std::clock_t start)
{
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// One object, each time at a new time. `time_to_10_keys` is the cost of an evaluation divided by that
/// with ten keys, measured in the same run: it grows with the logarithm of the number of keys, and with
/// the keys that no longer fit in the caches.
void EvaluateObject(benchmark::State& state)
{
    const auto tracks = static_cast<int>(state.range(0));
    const auto order = static_cast<int>(state.range(1));
    const auto keys = static_cast<int32_t>(state.range(2));
    KRE_3dObject object;
    if (tracks == kBezierTracks)
        AddBezierKeys(object, keys);
    else
        AddTcbKeys(object, keys);
    object.BuildKeyIndex();

    const double length = static_cast<double>(keys - 1) * kKeySeconds;
    std::minstd_rand random(1);
    double time = 0;
    const std::clock_t start = std::clock();
    for (auto _ : state) {
        time += order == kSequential ? kFrameSeconds : static_cast<double>(random()) * 1e-3;
        time = std::fmod(time, length);
        object.Evaluate(time, 1, 0);
        benchmark::DoNotOptimize(object.worldTM);
    }
    const double seconds = SecondsSince(start) / static_cast<double>(state.iterations());

    static double secondsOfTenKeys[2][2] = {};
    if (keys == 10)
        secondsOfTenKeys[tracks][order] = seconds;
    state.counters["time_to_10_keys"] = seconds / secondsOfTenKeys[tracks][order];
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(EvaluateObject)
    ->ArgNames({"tcb", "random", "keys"})
    ->ArgsProduct({{kBezierTracks, kTcbTrack}, {kSequential, kRandom}, {10, 1000, 100000}});

/// Animated objects, each below an earlier one of the list that has less than `children` of them.
void FillHierarchy(KRE_3dScene& scene, int32_t children)
{
    for (int32_t i = 0; i < kObjects; ++i) {
        KRE_3dObject* object = scene.objects.GetSlot(scene.objects.Add());
        AddBezierKeys(*object, kKeysOfEach);
        AddTcbKeys(*object, kKeysOfEach);
        object->BuildKeyIndex();
        if (i > 0)
            object->parent = scene.objects.GetSlot((i - 1) / children);
    }
    scene.SetLoop(1);
    scene.SetLoopEnd(kKeysOfEach * kKeySeconds);
}

/// A frame at a new time. With one child each, the objects form one chain.
void UpdateScene(benchmark::State& state)
{
    KRE_3dScene scene;
    FillHierarchy(scene, static_cast<int32_t>(state.range(0)));
    double time = 0;
    scene.Update(time, 1); // the order of the lists is made once after a change
    int64_t allocations = 0;
    const std::clock_t start = std::clock();
    for (auto _ : state) {
        const int64_t before = gAllocations;
        scene.Update(time += kFrameSeconds, 1);
        allocations += gAllocations - before;
    }
    const double seconds = SecondsSince(start);
    if (gAllocations == 0 || allocations != 0)
        state.SkipWithError("frames are not free of allocations, or these are not counted");
    const auto evaluations = static_cast<double>(state.iterations()) * kObjects;
    state.counters["allocations"] = static_cast<double>(allocations);
    state.counters["ns_per_object"] = seconds * 1e9 / evaluations;
    state.SetItemsProcessed(state.iterations() * kObjects);
}
BENCHMARK(UpdateScene)->ArgName("children")->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond);

} // namespace
