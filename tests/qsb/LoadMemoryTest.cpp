#include "tests/qsb/SceneFileTest.h"
#include "tests/support/CountedAllocations.h"

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
    allocationsOf(126); // allocates what is kept for later loads
    const int64_t most = allocationsOf(126);
    const int64_t oneBone = allocationsOf(127) - most;
    EXPECT_GT(oneBone, 0) << "allocations are counted";
    EXPECT_EQ(allocationsOf(128) - most, 2 * oneBone);
    EXPECT_GT(allocationsOf(129) - most, 3 * oneBone) << "a longer list, and the old one";
}
