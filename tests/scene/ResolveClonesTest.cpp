#include "scene/ResolveClones.h"

#include <cstdarg>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "base/FormatText.h"
#include "tests/gfx/ErrorText.h"
#include "tests/scene/SceneTesting.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/TestMesh.h"

namespace {

class ResolveClonesTest : public SceneEngineTest {
protected:
    std::string Resolve()
    {
        return ErrorText([&] { ResolveClones(scene, budget, reporter); });
    }

    struct Reporter : ErrorClassSimple {
        [[gnu::format(printf, 2, 3)]] void Warning(const char* format, ...) override
        {
            char text[1024];
            va_list arguments;
            va_start(arguments, format);
            FormatTextV(text, sizeof text, format, arguments);
            va_end(arguments);
            warnings.push_back(text);
        }
        std::vector<std::string> warnings;
    };
    Reporter reporter;
    CopyBudget budget{0};
    KRE_3dScene scene;
};

} // namespace

TEST_F(ResolveClonesTest, ACloneGetsTheGeometryAndKeepsItsOwnFields)
{
    KRE_3dObject parent;
    KRE_Mesh& source = AddStrip(scene, "Oar", 4, 2);
    source.visible = 0;
    KRE_Mesh& clone = AddClone(scene, "Oar2", "Oar", 3);
    clone.position = {1, 2, 3};
    clone.AddPosKey(PosKey(0, 5));
    clone.parent = &parent;
    clone.parentName = "Boat";
    clone.materials[1].power = 8;
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(clone.mesh.Get(), source.mesh.Get());
    EXPECT_EQ(clone.vertexCount, 6);
    EXPECT_EQ(clone.boxMax.x, 5.0f);
    EXPECT_STREQ(clone.name.c_str(), "Oar2");
    EXPECT_EQ(clone.visible, 1);
    EXPECT_STREQ(clone.cloneSource.c_str(), "Oar");
    EXPECT_EQ(clone.position.y, 2.0f);
    EXPECT_EQ(clone.posKeyCount, 1);
    EXPECT_EQ(clone.parent, &parent);
    EXPECT_STREQ(clone.parentName.c_str(), "Boat");
    EXPECT_EQ(clone.materialCount, 3);
    EXPECT_EQ(clone.materials[1].power, 8.0f);
    EXPECT_TRUE(source.cloneSource.IsEmpty());
}

TEST_F(ResolveClonesTest, ASourceMayComeAfterTheClone)
{
    const KRE_Mesh& clone = AddClone(scene, "Oar2", "Oar");
    const KRE_Mesh& source = AddStrip(scene, "Oar");
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(clone.mesh.Get(), source.mesh.Get());
}

TEST_F(ResolveClonesTest, ACloneOfACloneComesAfterItsSource)
{
    KRE_Mesh& third = AddClone(scene, "c", "b");
    KRE_Mesh& second = AddClone(scene, "b", "a");
    const KRE_Mesh& first = AddStrip(scene, "a");
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(third.mesh.Get(), first.mesh.Get());
    EXPECT_EQ(second.mesh.Get(), first.mesh.Get());
    EXPECT_STREQ(third.cloneSource.c_str(), "b");
    EXPECT_EQ(gGfx->meshManager.GetEntry(0)->useCount, 3);
}

TEST_F(ResolveClonesTest, OfSeveralSourcesOfOneNameTheFirstIsTaken)
{
    const KRE_Mesh& clone = AddClone(scene, "Oar2", "Oar");
    for (int i = 0; i < 20; ++i)
        AddStrip(scene, "Oar", 4 + i);
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(clone.faceCount, 4);
    EXPECT_EQ(clone.mesh.Get(), scene.FindMesh("Oar", 0)->mesh.Get());
}

TEST_F(ResolveClonesTest, ASourceNameOfSeveralMeshesIsAWarningForAllItsClones)
{
    AddClone(scene, "Oar2", "Oar");
    AddClone(scene, "Oar3", "Oar");
    AddClone(scene, "Sail", "Sail2");
    AddClone(scene, "Mast2", "Mast");
    AddStrip(scene, "Oar");
    AddStrip(scene, "Mast");
    AddStrip(scene, "Oar");
    AddStrip(scene, "Sail2");
    AddStrip(scene, "Sail2");
    AddStrip(scene, "Sail2");
    AddStrip(scene, ""); // two that are not clone sources
    AddStrip(scene, "");
    EXPECT_EQ(Resolve(), "");
    EXPECT_THAT(reporter.warnings,
                testing::ElementsAre("2 meshes are named 'Oar', the source of clone 'Oar2'",
                                     "3 meshes are named 'Sail2', the source of clone 'Sail'"));
}

TEST_F(ResolveClonesTest, ACloneMayHaveTheNameOfItsSource)
{
    const KRE_Mesh& source = AddStrip(scene, "Oar");
    const KRE_Mesh& clone = AddClone(scene, "Oar", "Oar");
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(clone.mesh.Get(), source.mesh.Get());
    EXPECT_THAT(reporter.warnings,
                testing::ElementsAre("2 meshes are named 'Oar', the source of clone 'Oar'"));
}

TEST_F(ResolveClonesTest, AMissingSourceIsAnError)
{
    AddStrip(scene, "oar"); // names are compared exactly
    AddClone(scene, "Oar2", "Oar");
    EXPECT_EQ(Resolve(), "Clone Mesh 'Oar' not found");
}

TEST_F(ResolveClonesTest, ClonesInARingAreAnError)
{
    AddClone(scene, "a", "c");
    AddClone(scene, "b", "a");
    AddClone(scene, "c", "b");
    EXPECT_EQ(Resolve(), "Clone Mesh 'c' not found");
}

TEST_F(ResolveClonesTest, ACloneOfItselfIsAnError)
{
    AddClone(scene, "a", "a");
    EXPECT_EQ(Resolve(), "Clone Mesh 'a' not found");
}

// 32 MiB hold 74,898 bones of 448 bytes: those of 74 clones, but not of 75.
TEST_F(ResolveClonesTest, BonesOfAllClonesTogetherHaveALimit)
{
    static_assert(sizeof(KRE_BoneInfo) == 448);
    KRE_Mesh& source = AddStrip(scene, "Crew");
    const KRE_BoneInfo bone("b");
    for (int i = 0; i < 1000; ++i)
        source.bones.Add(&bone);
    source.AllocateBoneObjects();
    for (int i = 0; i < 74; ++i)
        AddClone(scene, "c", "Crew");
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(scene.meshes.Get(74)->bones.Count(), 1000);
    AddClone(scene, "last", "Crew");
    budget = CopyBudget(0);
    EXPECT_EQ(Resolve(), "Mesh 'last': more than 33554432 bytes of materials and bones are copied");
}

TEST_F(ResolveClonesTest, ASourceWithoutGeometryLeavesTheNameVisibilityAndSource)
{
    KRE_Mesh& source = AddClone(scene, "Oar", "");
    KRE_Mesh& clone = AddClone(scene, "Oar2", "Oar");
    source.visible = 1;
    clone.visible = 0;
    EXPECT_EQ(Resolve(), "");
    EXPECT_STREQ(clone.name.c_str(), "Oar2");
    EXPECT_EQ(clone.visible, 0);
    EXPECT_STREQ(clone.cloneSource.c_str(), "Oar");
    EXPECT_FALSE(clone.mesh);
}

TEST_F(ResolveClonesTest, AChainOfAnyLengthIsWalkedByALoop)
{
    constexpr int32_t kClones = 20000;
    String name, source;
    for (int32_t i = kClones; i > 0; --i) {
        name.Format("m%i", i);
        source.Format("m%i", i - 1);
        AddClone(scene, name.c_str(), source.c_str(), 0);
    }
    const KRE_Mesh& first = AddStrip(scene, "m0");
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(scene.FindMesh("m20000", 0)->mesh.Get(), first.mesh.Get());
    EXPECT_EQ(gGfx->meshManager.GetEntry(0)->useCount, kClones + 1);
}

TEST_F(ResolveClonesTest, ResolvingTwiceGivesTheSame)
{
    const KRE_Mesh& source = AddStrip(scene, "Oar");
    const KRE_Mesh& clone = AddClone(scene, "Oar2", "Oar");
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(Resolve(), "");
    EXPECT_EQ(clone.mesh.Get(), source.mesh.Get());
    EXPECT_EQ(gGfx->meshManager.GetEntry(0)->useCount, 2);
}
