#include "scene/CopyBudget.h"

#include <gtest/gtest.h>

#include "tests/gfx/ErrorText.h"
#include "tests/support/SceneEngine.h"

namespace {

class CopyBudgetTest : public SceneEngineTest {
protected:
    std::string Take(CopyBudget& budget, int64_t bytes)
    {
        mesh.name = "Oar";
        return ErrorText([&] { budget.Take(bytes, mesh, reporter); });
    }

    KRE_Mesh mesh;
    struct Reporter : ErrorClassSimple {};
    Reporter reporter;
};

constexpr int64_t kMebibyte = int64_t{1} << 20;

} // namespace

TEST_F(CopyBudgetTest, GrowsWithTheFile)
{
    static const struct {
        const char* what;
        int64_t fileBytes, most;
    } cases[] = {
        {"no file", 0, 32 * kMebibyte},
        {"half a MiB", kMebibyte / 2, 32 * kMebibyte},
        {"a MiB", kMebibyte, 32 * kMebibyte},
        {"two MiB", 2 * kMebibyte, 96 * kMebibyte},
        {"two GiB", 2048 * kMebibyte, 64 * 2048 * kMebibyte - 32 * kMebibyte},
    };
    for (const auto& c : cases) {
        CopyBudget budget(c.fileBytes);
        EXPECT_EQ(Take(budget, c.most - 1), "") << c.what;
        EXPECT_EQ(Take(budget, 1), "") << c.what;
        EXPECT_EQ(Take(budget, 1), "Mesh 'Oar': more than " + std::to_string(c.most) +
                                       " bytes of materials and bones are copied")
            << c.what;
    }
}

TEST_F(CopyBudgetTest, AMaterialTakesItsKeys)
{
    KRE_MaterialInfo material;
    EXPECT_EQ(AnimationBytes(material), 0);
    int32_t keys = 1;
    for (KRE_ColorTrack* track : {&material.diffuseTrack, &material.ambientTrack,
                                  &material.specularTrack, &material.selfIllumTrack}) {
        track->SetKeyCount(keys);
        keys *= 10;
    }
    material.opacityTrack.SetKeyCount(100000);
    // A key of a colour: time, value and two tangents of four numbers each; of a number: four.
    EXPECT_EQ(AnimationBytes(material), 1111 * 13 * 4 + 100000 * 4 * 4);
}

TEST_F(CopyBudgetTest, ATextureTakesItsKeysAndFrames)
{
    KRE_Texture texture;
    EXPECT_EQ(AnimationBytes(texture), 0);
    texture.CreateSequence(1000, false);
    const int64_t ofFrames = AnimationBytes(texture);
    EXPECT_EQ(ofFrames, 1000 * int64_t{sizeof(void*) + 4});
    texture.matrixAni[3].tracks[KRE_TextMatrixAni::kAngle].SetKeyCount(5000);
    EXPECT_EQ(AnimationBytes(texture) - ofFrames,
              5000 * 4 * 4 + 4 * int64_t{sizeof(KRE_TextMatrixAni)});
}
