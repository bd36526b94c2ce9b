#include "tests/qsb/SceneFileTest.h"
#include "tests/support/MemoryShortage.h"

#include <gmock/gmock.h>

namespace {

using LoadMemoryTest = SceneFileTest;

} // namespace

TEST_F(LoadMemoryTest, ABoneThatFitsTheNewMeshsListAllocatesNoOtherList)
{
    // The list has room for 128. Each bone up to there costs the same as the one before it.
    const auto allocationsOf = [this](size_t bones) {
        QsbFile file;
        file.scene.meshes = {QsbTriangle("Hull")};
        file.scene.meshes[0].fvf = 0x1018;
        file.scene.meshes[0].bones.resize(bones);
        KRE_3dScene scene;
        const std::string bytes = MakeQsb(file).bytes;
        const int64_t before = gAllocations;
        LoadBytes(scene, bytes);
        return gAllocations - before;
    };
    allocationsOf(126); // allocates what later loads reuse
    const int64_t most = allocationsOf(126);
    const int64_t oneBone = allocationsOf(127) - most;
    EXPECT_GT(oneBone, 0) << "allocations are counted";
    EXPECT_EQ(allocationsOf(128) - most, 2 * oneBone);
    EXPECT_GT(allocationsOf(129) - most, 3 * oneBone) << "a longer list, and the old one";
}

// Each allocation of a load fails once, alone and with all after it.
TEST_F(LoadMemoryTest, RunningOutOfMemoryIsAnErrorThatNamesTheFile)
{
    directory.Write("scene.qsb", MakeQsb(FullQsb()).bytes);
    const auto load = [](KRE_3dScene& scene) { gGfx->LoadScene(scene, "scene.qsb", 0); };
    KRE_3dScene whole;
    load(whole); // allocates what later loads reuse
    KRE_3dScene again;
    const int64_t needed = AllocationsOf([&] { load(again); });
    ASSERT_GT(needed, 100);
    int64_t failed = 0;
    for (const int64_t count : {int64_t{1}, kAllFromThere}) {
        for (int64_t before = 0; before < needed; ++before) {
            KRE_3dScene scene;
            const auto end = RunShortOfMemory(before, count, [&] { load(scene); });
            if (end.error.empty()) {
                EXPECT_EQ(CheckScene(scene), "") << "did not need allocation " << before;
                continue;
            }
            ++failed;
            EXPECT_THAT(end.log, testing::HasSubstr("scene.qsb")) << end.error << " at " << before;
        }
    }
    EXPECT_GT(failed, needed);
}

TEST_F(LoadMemoryTest, MeshThatMemoryRunsOutForIsNamed)
{
    QsbFile file;
    file.scene.meshes = {QsbTriangle("Keel"), QsbTriangle("Hull")};
    directory.Write("scene.qsb", MakeQsb(file).bytes);
    const auto load = [](KRE_3dScene& scene) { gGfx->LoadScene(scene, "scene.qsb", 0); };
    KRE_3dScene whole;
    load(whole);
    KRE_3dScene again;
    const int64_t needed = AllocationsOf([&] { load(again); });
    int64_t keels = 0;
    int64_t hulls = 0;
    for (int64_t before = 0; before < needed; ++before) {
        KRE_3dScene scene;
        const auto end = RunShortOfMemory(before, 1, [&] { load(scene); });
        keels += end.error == "Keel: File 'scene.qsb': Not enough memory for the scene" ? 1 : 0;
        hulls += end.error == "Hull: File 'scene.qsb': Not enough memory for the scene" ? 1 : 0;
    }
    EXPECT_GT(keels, 0);
    EXPECT_GT(hulls, 0);
}

TEST_F(LoadMemoryTest, SaveThatRunsOutOfMemoryIsAnErrorThatNamesTheTargetAndLeavesIt)
{
    KRE_3dScene scene;
    Load(scene, FullQsb());
    directory.Write("saved.qsb", "old");
    const auto save = [&] { gGfx->SaveScene(scene, "saved.qsb"); };
    const int64_t needed = AllocationsOf(save);
    ASSERT_GT(needed, 5);
    for (const int64_t count : {int64_t{1}, kAllFromThere}) {
        for (int64_t before = 0; before < needed; ++before) {
            directory.Write("saved.qsb", "old");
            const auto end = RunShortOfMemory(before, count, save);
            if (end.error.empty())
                continue;
            EXPECT_THAT(end.error, testing::HasSubstr("saved.qsb")) << before;
            EXPECT_TRUE(directory.Read("saved.qsb") == "old") << before;
        }
    }
    // The geometry of the first mesh that has some.
    std::string geometry;
    for (int64_t before = 0; before < needed && geometry.empty(); ++before) {
        const std::string error = RunShortOfMemory(before, 1, save).error;
        if (error.find("bytes of geometry") != std::string::npos)
            geometry = error;
    }
    EXPECT_THAT(geometry, testing::StartsWith("saved.qsb: Not enough memory for "));
    EXPECT_THAT(geometry, testing::EndsWith(" bytes of geometry of mesh 'Sail'"));
}
