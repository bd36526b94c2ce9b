
#include "scene/KRE_3dScene.h"
#include "tests/scene/SceneTesting.h"
#include "tests/support/MemoryShortage.h"

TEST(EvaluationMemory, AllocatesNothing)
{
    KRE_3dScene scene;
    KRE_3dObject* parent = nullptr;
    for (int i = 0; i < 50; ++i) {
        KRE_3dObject* object = scene.objects.GetSlot(scene.objects.Add());
        for (int k = 0; k < 5; ++k) {
            object->AddPosKey(PosKey(static_cast<float>(k), 1));
            object->AddScaleKey(ScaleKey(static_cast<float>(k), 1, 2, 3));
            object->AddRotKey(RotKey(static_cast<float>(k), 1));
        }
        object->BuildKeyIndex();
        object->parent = parent;
        parent = object;
    }
    scene.AddLight(KRE_Light())->parent = parent;
    scene.cameras.GetSlot(scene.cameras.Add())->target = parent;
    scene.Update(0, 1); // the order of the lists is rebuilt once after a change

    const int64_t before = gAllocations;
    ASSERT_GT(before, 0) << "allocations are counted";
    for (const double time : {0.5, 1.0, 1.0, 9.0})
        scene.Update(time, 1);
    EXPECT_EQ(gAllocations - before, 0);
}

TEST(SceneLists, RunningOutOfMemoryIsAnErrorThatNamesTheScene)
{
    const LogScope log;
    static const KRE_Light light; // nothing of the scene's
    const auto addFirst = [](KRE_3dScene& scene) { scene.AddLight(light); };
    const auto trim = [](KRE_3dScene& scene) { scene.TrimLists(); };
    for (void (*const change)(KRE_3dScene&) : {+addFirst, +trim}) {
        KRE_3dScene whole;
        const int64_t needed = AllocationsOf([&] { change(whole); });
        EXPECT_GT(needed, 1);
        for (int64_t before = 0; before < needed; ++before) {
            KRE_3dScene scene;
            scene.name = "harbour.qsa";
            EXPECT_EQ(RunShortOfMemory(before, 1, [&] { change(scene); }).error,
                      "harbour.qsa: Not enough memory for the scene")
                << before;
        }
    }
}

TEST(TrackCopy, RunningOutOfMemoryDoesNotLeaveATrackWithoutKeys)
{
    KRE_FloatTrack track;
    track.SetKeyCount(3);
    KRE_FloatTrack copy;
    gFirstFailing = gAllocations + 1;
    gLastFailing = gAllocations + 1;
    EXPECT_THROW(copy = track, std::bad_alloc);
    gFirstFailing = INT64_MAX;
}
