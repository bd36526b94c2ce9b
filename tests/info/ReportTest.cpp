#include "info/Report.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "info/NameText.h"
#include "info/SceneFacts.h"
#include "tests/info/InfoTesting.h"
#include "tests/support/TreePaths.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

namespace {

class ReportTest : public InfoTest {
protected:
    std::string Report(const QsbFile& file, bool all = false)
    {
        return Printed(
            file, [all](LoadedScene& loaded, Output& output) { PrintReport(loaded, all, output); });
    }
};

} // namespace

TEST_F(ReportTest, ListsTheContents)
{
    QsbFile file = InfoBoat();
    file.frameSpeed = 25;
    file.firstFrame = 0;
    file.lastFrame = 60; // 2.4 seconds
    file.sound = "waves.wav";
    file.scene.clip = {3, 2.5f, {1, 2, 3}, {0, 0, 0}, {2, 4, 6}};
    file.scene.meshes[0].object.posKeys = {QsbVectorKey(0, {0, 0, 0}), QsbVectorKey(1, {1, 0, 0})};
    file.scene.meshes.push_back(InfoTriangle("Hull2"));
    file.scene.meshes[1].cloneSource = "Hull";
    file.scene.meshes[1].fvf = 0;
    file.scene.meshes[1].vertices.clear();
    file.scene.meshes[1].faces.clear();
    EXPECT_EQ(Report(file),
              "scene.qsb\n"
              "  Format      QSB version 106, " +
                  CountText(static_cast<int64_t>(MakeQsb(file).bytes.size())) +
                  " bytes\n"
                  "  Objects     2 meshes, 1 camera, 1 light, 1 helper, 1 bone\n"
                  "  Geometry    3 vertices, 1 face; shared by 1 clone\n"
                  "  Animation   2.4 s, frames 0 to 60 at 25 frames/s; 2 keys\n"
                  "  Bounds      (0, 0, 0) to (2, 4, 6)\n"
                  "                size 2 x 4 x 6, sphere of radius 2.5 around (1, 2, 3)\n"
                  "  Sound       waves.wav\n"
                  "  Materials   2, 1 different, 0 transparent\n"
                  "                2x   #FFFFFF\n"
                  "  Textures    0\n");
}

TEST_F(ReportTest, TexturesAreFoundOrMissing)
{
    fs::copy_file(SourcePath("examples/stone.png"), "stone.png");
    QsbFile file = InfoBoat();
    file.scene.meshes[0].textures[0].slots[0].file = "stone.png";
    file.scene.meshes[0].textures[0].slots[1].file = "gone.png";
    const std::string report = Report(file);
    EXPECT_THAT(report, HasSubstr("  Textures    2, 1 MISSING\n"));
    EXPECT_THAT(report, HasSubstr("gone.png   MISSING\n"));
    EXPECT_THAT(report, HasSubstr("stone.png  found, 64 x 64\n"));
    EXPECT_THAT(report, HasSubstr("  Warnings    1\n"));
    EXPECT_THAT(report, HasSubstr("Can not open texture: gone.png\n"));
}

TEST_F(ReportTest, MaterialsShowTheirSpecialSettings)
{
    QsbFile file = InfoBoat();
    QsbMaterial& material = file.scene.meshes[0].materials[0];
    material.colors[0] = 2;    // brighter than white is shown as white
    material.colors[1] = 0.5f; // 127.5, rounded up: 0x80
    material.colors[2] = -1;
    material.transparent = 1;
    material.twoSided = 1;
    material.effect = "waves.fx";
    material.opacityTrack.keys = {{0, 0.25f, 0, 0}}; // the load sets the transparency to this
    const std::string report = Report(file);
    EXPECT_THAT(report, HasSubstr("1x   #FF8000, transparent 25%, two-sided, animated, effect "
                                  "waves.fx\n"));
    EXPECT_THAT(report, HasSubstr("  Effects     1, 1 MISSING\n"));
}

TEST_F(ReportTest, LongListsAreCutUnlessAllIsRequested)
{
    QsbFile file = InfoBoat();
    file.scene.meshes.clear();
    for (int i = 0; i < 30; ++i) {
        file.scene.meshes.push_back(InfoTriangle("M" + std::to_string(i)));
        file.scene.meshes.back().textures[0].slots[0].file = "t" + std::to_string(i) + ".png";
        file.scene.meshes.back().materials[0].twoSided = 1;
        file.scene.meshes.back().materials[0].colors[0] = static_cast<float>(i) / 255.0f;
    }
    const std::string cut = Report(file);
    EXPECT_THAT(cut, HasSubstr("  Textures    30, 30 MISSING\n"));
    EXPECT_THAT(cut, HasSubstr("and 10 more (--all)\n"));
    const std::string all = Report(file, true);
    EXPECT_THAT(all, Not(HasSubstr("--all")));
    EXPECT_THAT(all, HasSubstr("t29.png"));
    EXPECT_THAT(all, HasSubstr("#1DFFFF")); // 29
}

TEST_F(ReportTest, NamesWithControlBytesStayInTheirLine)
{
    QsbFile file = InfoBoat();
    file.sound = "a\nb\x1B[2J";
    EXPECT_THAT(Report(file), HasSubstr("  Sound       a\\x0Ab\\x1B[2J\n"));
}

TEST_F(ReportTest, NansAndInfinitiesAreShownAsSuch)
{
    QsbFile file = InfoBoat();
    file.frameSpeed = NAN;
    file.scene.clip.radius = INFINITY;
    const std::string report = Report(file);
    EXPECT_THAT(report, HasSubstr("  Animation   frames 0 to 100 at nan frames/s; 0 keys\n"));
    EXPECT_THAT(report, HasSubstr("radius inf"));
}

TEST_F(ReportTest, FilesThatDoNotLookLikeScenesSaySo)
{
    LoadedScene readme;
    LoadBytes(readme, "Convert one with a click.\n", "readme.txt"); // 26 bytes
    LoadedScene scene;
    LoadBytes(scene, "*3DSMAX_QSAEXPORT 211\n", "scene.qsa"); // 22 bytes
    Output output;
    PrintReport(readme, false, output);
    PrintReport(scene, false, output);
    EXPECT_THAT(output.Text(),
                HasSubstr("Format      read as QSA text, which it does not look like, 26 bytes\n"));
    EXPECT_THAT(output.Text(), HasSubstr("Format      QSA text, 22 bytes\n"));
    EXPECT_THAT(output.Text(), HasSubstr("Bounds      none\n"));
}

TEST_F(ReportTest, KindsAndSlotTypesHaveNames)
{
    KRE_3dObject object;
    static const struct {
        int32_t kind;
        const char* expected;
    } kinds[] = {{1, "mesh"},   {2, "bone"},   {4, "helper"}, {8, "camera"},
                 {32, "light"}, {0, "object"}, {7, "object"}};
    for (const auto& c : kinds) {
        object.objectKind = c.kind;
        EXPECT_STREQ(KindName(object), c.expected);
    }
    EXPECT_EQ(SlotTypeName(1), "diffuse");
    EXPECT_EQ(SlotTypeName(6), "sphere");
    EXPECT_EQ(SlotTypeName(0), "type 0");
    EXPECT_EQ(SlotTypeName(-5), "type -5");
}

// ---- The tree

namespace {

class TreeTest : public InfoTest {
protected:
    std::string Tree(const QsbFile& file) { return Printed(file, PrintTree); }
};

} // namespace

TEST_F(TreeTest, ChildrenAreListedUnderTheirParents)
{
    QsbFile file = InfoBoat();
    file.scene.lights[0].target.object.parentName = "Arm";
    file.scene.lights[0].on = 0;
    file.scene.objects[1].rotKeys = {QsbRotKey(0)};
    EXPECT_EQ(Tree(file), "scene.qsb\n"
                          "  Keel  helper\n"
                          "    Hull  mesh, 3 vertices, 1 face, 1 material\n"
                          "    Arm  bone, 1 key\n"
                          "      Sun  light, directional, off\n"
                          "  Eye  camera, looks at \"Arm\"\n");
}

TEST_F(TreeTest, CyclesArePrintedOnceAndReported)
{
    QsbFile file;
    file.scene.objects = {InfoHelper("A", "C"),    InfoHelper("B", "A"),       InfoHelper("C", "B"),
                          InfoHelper("Tail", "B"), InfoHelper("Self", "Self"), InfoHelper("Root")};
    const std::string tree = Tree(file);
    EXPECT_EQ(tree, "scene.qsb\n"
                    "  Root  helper\n"
                    "  A  helper (its parents lead in a circle)\n"
                    "    B  helper\n"
                    "      C  helper\n"
                    "      Tail  helper\n"
                    "  Self  helper (its parents lead in a circle)\n");
}

TEST_F(TreeTest, ObjectsBelowACycleAreListedUnderIt)
{
    QsbFile file;
    file.scene.objects = {InfoHelper("Leaf", "Loop"), InfoHelper("Loop", "Loop")};
    EXPECT_EQ(Tree(file), "scene.qsb\n"
                          "  Loop  helper (its parents lead in a circle)\n"
                          "    Leaf  helper\n");
}

TEST_F(TreeTest, AMissingParentIsReported)
{
    QsbFile file;
    file.scene.objects = {InfoHelper("A", "Nobody")};
    EXPECT_THAT(Tree(file), EndsWith("  A  helper, without its parent \"Nobody\"\n"));
}

TEST_F(TreeTest, ChainOfTenThousandObjectsIsPrintedWithABoundedIndent)
{
    constexpr int kDepth = 10000;
    QsbFile file;
    for (int i = 0; i < kDepth; ++i)
        file.scene.objects.push_back(InfoHelper(
            "n" + std::to_string(i), i == 0 ? std::string() : "n" + std::to_string(i - 1)));
    const std::string tree = Tree(file);
    EXPECT_THAT(tree, AllOf(HasSubstr("\n  n0  helper\n"), HasSubstr("[9999] n9999  helper\n")));
    EXPECT_LT(tree.size(), size_t{130} * kDepth); // 2 * 41 blanks, the depth, name and kind
}

TEST_F(TreeTest, NamesWithControlBytesStayInTheirLine)
{
    QsbFile file;
    file.scene.objects = {InfoHelper("a\nb"), InfoHelper("B\xE4r")};
    EXPECT_EQ(Tree(file), "scene.qsb\n  a\\x0Ab  helper\n  B\xC3\xA4r  helper\n");
}

// ---- The check

namespace {

class CheckTest : public InfoTest {
protected:
    std::string Check(const QsbFile& file, bool isSound)
    {
        return Printed(file, [isSound](LoadedScene& loaded, Output& output) {
            EXPECT_EQ(PrintCheck(loaded, output), isSound);
        });
    }
};

} // namespace

TEST_F(CheckTest, SoundSceneSaysSo)
{
    EXPECT_EQ(Check(InfoBoat(), true), "scene.qsb: sound\n");
}

TEST_F(CheckTest, FaultsAreReportedAndCounted)
{
    QsbFile file = InfoBoat();
    file.scene.meshes[0].clip = {3, 0.5f, {0, 0, 0}, {0, 0, 0}, {0.5f, 1, 0}};
    // Vertex 1 at (1, 0, 0) is outside both; vertex 2 at (0, 1, 0) outside the sphere.
    EXPECT_EQ(Check(file, false), "scene.qsb: Hull: vertex 1 is outside the box\n"
                                  "scene.qsb: Hull: vertex 1 is outside the sphere\n"
                                  "scene.qsb: Hull: vertex 2 is outside the sphere\n"
                                  "scene.qsb: 3 faults\n");
}

TEST_F(CheckTest, CycleOfParentsIsAFault)
{
    QsbFile file;
    file.scene.objects = {InfoHelper("A", "B"), InfoHelper("B", "A")};
    EXPECT_EQ(Check(file, false), "scene.qsb: A: an ancestor is the object itself\n"
                                  "scene.qsb: 1 fault\n");
}

TEST_F(CheckTest, FaultsBeyondTheLimitAreOnlyCounted)
{
    QsbFile file;
    for (int i = 0; i < 250; ++i) {
        const std::string name = "n" + std::to_string(i);
        file.scene.objects.push_back(InfoHelper(name, name));
    }
    EXPECT_THAT(Check(file, false), EndsWith("scene.qsb: n199: the parent is the object itself\n"
                                             "scene.qsb: and 50 faults more\n"
                                             "scene.qsb: 250 faults\n"));
}

TEST_F(CheckTest, WarningsAreReportedButAreNotFaults)
{
    QsbFile file = InfoBoat();
    file.scene.meshes[0].textures[0].slots[0].file = "gone.png";
    const std::string text = Check(file, true);
    EXPECT_THAT(text, HasSubstr("scene.qsb: sound\n  Warnings    1\n"));
    EXPECT_THAT(text, HasSubstr("gone.png"));
}
