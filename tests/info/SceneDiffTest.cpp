#include "info/SceneDiff.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>

#include "tests/info/SceneDiffTesting.h"

using testing::HasSubstr;

TEST_F(SceneDiffTest, SameScenesHaveNoDifference)
{
    EXPECT_EQ(Diff(FullBoat(), FullBoat()), "");
    EXPECT_EQ(count, 0);
}

TEST_F(SceneDiffTest, ObjectsArePairedByNameAndNotByPlace)
{
    QsbFile first;
    first.scene.objects = {InfoHelper("A"), InfoHelper("B"), InfoHelper("C")};
    QsbFile second;
    second.scene.objects = {InfoHelper("C"), InfoHelper("A"), InfoHelper("D")};
    EXPECT_EQ(Diff(first, second), "objects/B: present | -\nobjects/D: - | present\n");
    EXPECT_EQ(count, 2);
}

TEST_F(SceneDiffTest, ObjectsOfTheSameNameArePairedInOrder)
{
    QsbFile first;
    first.scene.objects = {InfoHelper("A"), InfoHelper("A"), InfoHelper("A")};
    QsbFile second = first;
    second.scene.objects.pop_back();
    second.scene.objects[1].loop = 1;
    EXPECT_EQ(Diff(first, second), "objects/A#2/loop: 0 | 1\nobjects/A#3: present | -\n");
    EXPECT_EQ(Diff(second, first), "objects/A#2/loop: 1 | 0\nobjects/A#3: - | present\n");
}

TEST_F(SceneDiffTest, ADifferentOrderOfTheSameObjectsIsADifference)
{
    QsbFile first;
    first.scene.objects = {InfoHelper("A"), InfoHelper("B"), InfoHelper("C")};
    QsbFile second;
    second.scene.objects = {InfoHelper("A"), InfoHelper("C"), InfoHelper("B")};
    EXPECT_EQ(Diff(first, second), "objects/order[1].name: \"B\" | \"C\"\n"
                                   "objects/order[2].name: \"C\" | \"B\"\n");
}

TEST_F(SceneDiffTest, ToleranceIsAbsoluteAndForFloatsOnly)
{
    const QsbFile first = FullBoat();
    QsbFile second = FullBoat();
    second.scene.meshes[0].vertices[2].position[1] = 1.25f;
    EXPECT_NE(Diff(first, second, {0.2, false}), "");
    EXPECT_EQ(Diff(first, second, {0.25, false}), "") << "the difference is just the tolerance";
    second.scene.meshes[1].userTag = 0;
    second.scene.ambient = 0xFF000001;
    EXPECT_EQ(Diff(first, second, {5, false}), "scene/ambientColor: 0xFF000000 | 0xFF000001\n"
                                               "meshes/Skin/userTag: -1 | 0\n");
}

/// Files store normals in steps of 1 / 32767 and weights in steps of 1 / 65535.
TEST_F(SceneDiffTest, NumbersThatTheFormatRoundsTheSameAreEqualUnlessExact)
{
    const QsbFile first = FullBoat();
    QsbFile second = FullBoat();
    auto& vertices = second.scene.meshes[1].vertices;
    ASSERT_EQ(vertices[0].normal[2], 32767);
    ASSERT_EQ(vertices[0].weights[0], 0);
    vertices[0].normal[2] = 32766;
    vertices[0].weights[0] = 1;
    EXPECT_EQ(Diff(first, second), "");
    EXPECT_EQ(Diff(first, second, {0, false}),
              "meshes/Skin/vertices[0].normal.z: 1 | 0.9999695\n"         // 32766 / 32767
              "meshes/Skin/vertices[0].weights[0]: 0 | 1.5259022e-05\n"); // 1 / 65535
    vertices[0].normal[2] = 32765;
    vertices[0].weights[0] = 2;
    EXPECT_EQ(Diff(first, second), "meshes/Skin/vertices[0].normal.z: 1 | 0.99993896\n"
                                   "meshes/Skin/vertices[0].weights[0]: 0 | 3.0518044e-05\n");
}

TEST_F(SceneDiffTest, PositionsAreNotRounded)
{
    const QsbFile first = FullBoat();
    QsbFile second = FullBoat();
    second.scene.meshes[0].vertices[2].position[1] = 1 + 0x1p-20f;
    EXPECT_NE(Diff(first, second), "");
}

TEST_F(SceneDiffTest, NansAndEqualInfinitiesAreEqual)
{
    QsbFile first;
    QsbFile second;
    first.scene.clip.radius = second.scene.clip.radius = NAN;
    first.scene.clip.center[0] = second.scene.clip.center[0] = INFINITY;
    EXPECT_EQ(Diff(first, second), "");
    second.scene.clip.radius = 1;
    second.scene.clip.center[0] = -INFINITY;
    EXPECT_EQ(Diff(first, second, {1e30, false}), "scene/radius: nan | 1\n"
                                                  "scene/center.x: inf | -inf\n");
}

TEST_F(SceneDiffTest, LongArraysAreCutUnlessAllIsRequested)
{
    QsbFile first = InfoBoat();
    QsbMesh& mesh = first.scene.meshes[0];
    mesh.vertices.resize(60);
    for (uint16_t i = 0; i < 20; ++i)
        mesh.faces.push_back({static_cast<uint16_t>(3 * i), static_cast<uint16_t>(3 * i + 1),
                              static_cast<uint16_t>(3 * i + 2)});
    QsbFile second = first;
    for (QsbVertex& vertex : second.scene.meshes[0].vertices)
        vertex.u = 1;
    second.scene.meshes[0].userTag = 4;
    const std::string cut = Diff(first, second);
    EXPECT_EQ(count, 61);
    EXPECT_THAT(cut, HasSubstr("meshes/Hull/vertices[9].uv[0]: 0 | 1\n"
                               "meshes/Hull/vertices: 50 differences more\n"));
    EXPECT_EQ(std::count(cut.begin(), cut.end(), '\n'), 12); // the tag, ten lines, the rest
    const std::string all = Diff(first, second, {0, true});
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 61);
    EXPECT_EQ(count, 61);
}

TEST_F(SceneDiffTest, LayoutsThatDifferAreComparedByWhatBothHave)
{
    const QsbFile first = InfoBoat();
    QsbFile second = InfoBoat();
    second.scene.meshes[0].fvf = 0x12; // without texture coordinates
    EXPECT_EQ(Diff(first, second), "meshes/Hull/fvf: 0x00000112 | 0x00000012\n"
                                   "meshes/Hull/vertices[0].uv: present | -\n"
                                   "meshes/Hull/vertices[1].uv: present | -\n"
                                   "meshes/Hull/vertices[2].uv: present | -\n");
}

TEST_F(SceneDiffTest, GeometryThatTwoClonesShareIsComparedOnce)
{
    QsbFile first = InfoBoat();
    QsbMesh clone = InfoTriangle("Hull2");
    clone.cloneSource = "Hull";
    clone.vertices.clear();
    clone.faces.clear();
    first.scene.meshes.push_back(clone);
    QsbFile second = first;
    second.scene.meshes[0].vertices[0].u = 1;
    EXPECT_EQ(Diff(first, second), "meshes/Hull/vertices[0].uv[0]: 0 | 1\n");
}

TEST_F(SceneDiffTest, PathsAreOneLineWhateverNamesHold)
{
    QsbFile first;
    first.scene.objects = {InfoHelper("a\nb")};
    EXPECT_EQ(Diff(first, QsbFile()), "objects/a\\x0Ab: present | -\n");
}
