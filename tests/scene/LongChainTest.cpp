#include <pthread.h>

#include <functional>

#include "scene/KRE_3dScene.h"
#include "tests/scene/SceneTesting.h"

// Files decide how many keys a track has and how deep a hierarchy is. The stack here is a quarter
// of the smallest thread stack of any host.

static void* CallFunction(void* function)
{
    (*static_cast<std::function<void()>*>(function))();
    return nullptr;
}

static void RunOnSmallStack(std::function<void()> function)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 128 * 1024), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, CallFunction, &function), 0);
    EXPECT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

static constexpr int32_t kKeys = 1000000;
static constexpr int32_t kObjects = 100000;

TEST(LongChain, AMillionKeysAreBuiltIndexedCopiedTrimmedAndDestroyed)
{
    RunOnSmallStack([] {
        KRE_3dObject object;
        for (int32_t i = 0; i < kKeys; ++i)
            object.AddPosKey(PosKey(static_cast<float>(i), static_cast<float>(i)));
        object.BuildKeyIndex();
        object.Evaluate(kKeys / 2 + 0.5, 1, 0);
        EXPECT_EQ(object.currentPosition.x, kKeys / 2 + 0.5f);
        KRE_3dObject copy(object);
        EXPECT_EQ(copy.posIndex.Count(), kKeys);
        copy.TrimKeys(10, 20); // 10 to 20 and the last
        EXPECT_EQ(copy.posKeyCount, 12);
        copy.Evaluate(5, 1, 0);
        EXPECT_EQ(copy.currentPosition.x, 15.0f);
    });
}

TEST(LongChain, AMillionRotationKeysAccumulate)
{
    RunOnSmallStack([] {
        KRE_3dObject object;
        for (int32_t i = 0; i < kKeys; ++i) {
            KRE_RotKeyData key = RotKey(static_cast<float>(i), kPi / 2);
            key.interpolation = kKeyTcb;
            object.AddRotKey(key);
        }
        for (KRE_RotKeyData* key = object.rotKeys.Head(); key; key = key->next)
            ComputeInnerControls(*key);
        object.BuildKeyIndex();
        EXPECT_EQ(object.rotIndex.Count(), kKeys);
        object.Evaluate(1, 1, 0); // half a turn about z: x to -x
        EXPECT_NEAR(object.worldTM._11, -1, 1e-5f);
    });
}

TEST(LongChain, AMillionKeysInTheWorstOrderAreStillSorted)
{
    RunOnSmallStack([] {
        // From both ends towards the middle, 0, n, 1, n - 1, 2, ...: far from the head and from the
        // tail, and never next to the key added before.
        KRE_KeyTracks tracks;
        for (int32_t i = 0; i < kKeys; ++i) {
            const int32_t number = i % 2 ? kKeys - i / 2 : i / 2;
            tracks.AddPosKey(PosKey(static_cast<float>(number), 0));
        }
        int32_t count = 0;
        float last = -1;
        for (const KRE_PosKeyData* key = tracks.posKeys.Head(); key; key = key->next) {
            ASSERT_LE(last, key->time);
            last = key->time;
            ++count;
        }
        EXPECT_EQ(count, kKeys);
    });
}

/// Each object is a child of the next one in the list, one unit further along x.
static void MakeParentChain(KRE_3dScene& scene)
{
    for (int32_t i = 0; i < kObjects; ++i)
        scene.objects.Add();
    KRE_3dObject* child = nullptr;
    for (KRE_3dObject* object : scene.objects) {
        object->position = {1, 0, 0};
        if (child)
            child->parent = object;
        child = object;
    }
}

TEST(LongChain, AHundredThousandParentsAreEvaluated)
{
    RunOnSmallStack([] {
        KRE_3dScene scene;
        MakeParentChain(scene);
        KRE_3dObject& leaf = *scene.objects.Get(0);
        leaf.Evaluate(1, 1, 0);
        EXPECT_EQ(leaf.worldTM._41, static_cast<float>(kObjects));
        EXPECT_EQ(scene.objects.Get(kObjects - 1)->worldTM._41, 1.0f);
        scene.Update(2, 1);
        EXPECT_EQ(leaf.worldTM._41, static_cast<float>(kObjects));
    });
}

TEST(LongChain, AHundredThousandLoopingParentsAreEvaluated)
{
    RunOnSmallStack([] {
        KRE_3dScene scene;
        MakeParentChain(scene);
        scene.SetLoop(1);
        scene.SetLoopEnd(0.75f);
        scene.Update(2, 1);
        EXPECT_EQ(scene.objects.Get(0)->worldTM._41, static_cast<float>(kObjects));
        EXPECT_EQ(scene.objects.Get(0)->lastTime, 0.5);
    });
}

TEST(LongChain, AHundredThousandCamerasThatTargetEachOtherAreEvaluated)
{
    for (const int32_t loop : {0, 1}) {
        RunOnSmallStack([loop] {
            KRE_3dScene scene;
            for (int32_t i = 0; i < kObjects; ++i)
                scene.cameras.Add();
            KRE_Camera* before = nullptr;
            float x = 0;
            for (KRE_Camera* camera : scene.cameras) {
                camera->position = {x, 0, 0};
                x += 2;
                if (before)
                    before->target = camera;
                before = camera;
            }
            scene.SetLoop(loop);
            scene.SetLoopEnd(0.75f);
            scene.Update(2, 1);
            EXPECT_EQ(scene.cameras.Get(0)->direction.x, 2.0f);
            EXPECT_EQ(scene.cameras.Get(kObjects / 2)->direction.x, 2.0f);
        });
    }
}

TEST(LongChain, AHundredThousandNamesAreLinked)
{
    RunOnSmallStack([] {
        KRE_3dScene scene;
        for (int32_t i = 0; i < kObjects; ++i) {
            KRE_3dObject* object = scene.objects.GetSlot(scene.objects.Add());
            object->name.Format("Rope link number %i", i);
            object->parentName.Format("Rope link number %i", i + 1 < kObjects ? i + 1 : 0);
        }
        scene.LinkObjects(scene);
        EXPECT_EQ(scene.objects.Get(7)->parent, scene.objects.Get(8));
        EXPECT_EQ(scene.objects.Get(kObjects - 1)->parent, scene.objects.Get(0));
        scene.Update(1, 1); // a cycle of all of them
    });
}
