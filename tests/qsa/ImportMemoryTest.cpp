#include "gfx/KRE_Gfx.h"
#include "tests/qsa/QSATesting.h"
#include "tests/support/MemoryShortage.h"

#include <set>

using testing::HasSubstr;

namespace {

class ImportMemoryTest : public QSALoaderTest {
protected:
    ImportMemoryTest()
    {
        directory.Write("dot.bmp", OnePixelBitmap());
        directory.Write("scene.qsa", kText);
        loader.Load(scene, "scene.qsa", 0); // allocates what later loads reuse
        KRE_3dScene again;
        needed = AllocationsOf([&] { loader.Load(again, "scene.qsa", 0); });
    }

    const std::string kText =
        "*3DSMAX_QSAEXPORT 200\n*SCENE { *SCENE_FIRSTFRAME 0 *SCENE_LASTFRAME 9 "
        "*SCENE_FRAMESPEED 25 *SCENE_TICKSPERFRAME 160 }\n" +
        MaterialList({kTwoParts, "*MAP_DIFFUSE { *BITMAP \"dot.bmp\" }"}) + Cube({"1"}).Text() +
        Named(Triangle(), "Sail", "*MATERIAL_REF 1") + Clone("Copy", "Cube") +
        Helper("*NODE_NAME \"Mast\" *TM_ANIMATION { *CONTROL_POS_TRACK { "
               "*CONTROL_POS_SAMPLE 0 1 2 3 *CONTROL_POS_SAMPLE 160 4 5 6 } }");
    int64_t needed = 0;
};

} // namespace

// Each allocation of an import fails once, alone and with all after it.
TEST_F(ImportMemoryTest, RunningOutOfMemoryIsAnErrorThatNamesTheFile)
{
    ASSERT_GT(needed, 100);
    int64_t failed = 0;
    for (const int64_t count : {int64_t{1}, kAllFromThere}) {
        for (int64_t before = 0; before < needed; ++before) {
            KRE_3dScene target;
            const auto end =
                RunShortOfMemory(before, count, [&] { loader.Load(target, "scene.qsa", 0); });
            if (end.error.empty()) {
                EXPECT_EQ(FaultsOf(target), "") << "did not need allocation " << before;
                continue;
            }
            ++failed;
            EXPECT_THAT(end.log, HasSubstr("scene.qsa")) << end.error << " at " << before;
        }
    }
    EXPECT_GT(failed, needed);
}

TEST_F(ImportMemoryTest, ObjectThatMemoryRunsOutForIsNamed)
{
    std::set<std::string> errors;
    for (int64_t before = 0; before < needed; ++before) {
        KRE_3dScene target;
        const auto load = [&] { loader.Load(target, "scene.qsa", 0); };
        errors.insert(RunShortOfMemory(before, 1, load).error);
    }
    for (const char* name : {"Cube", "Sail", "Copy", "Mast"}) {
        const std::string expected =
            std::string("scene.qsa: Not enough memory for object '") + name + "'";
        EXPECT_EQ(errors.count(expected), 1u) << name;
    }
    EXPECT_EQ(errors.count("scene.qsa: Not enough memory for the scene"), 1u) << "of no object";
}
