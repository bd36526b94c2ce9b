#include "qsa/QSA_MeshBuilder.h"

#include <cmath>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "base/FormatText.h"

namespace {

using testing::Each;
using testing::ElementsAre;

/// Keeps warnings instead of logging them; errors throw as usual.
class Reporter : public ErrorClass {
public:
    [[gnu::format(printf, 2, 3)]] void Warning(const char* format, ...) override
    {
        char text[kMessageSize];
        va_list arguments;
        va_start(arguments, format);
        FormatTextV(text, sizeof text, format, arguments);
        va_end(arguments);
        warnings.push_back(text);
    }
    [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) override
    {
        ErrorMsg error = {};
        CopyText(error.message, sizeof error.message, format);
        throw error;
    }
    std::vector<std::string> warnings;
};

QSA_SmoothingSet Groups(std::initializer_list<int32_t> numbers)
{
    QSA_SmoothingSet set;
    for (const int32_t number : numbers)
        set.Add(number);
    return set;
}

constexpr float kX[3] = {1, 0, 0};
constexpr float kY[3] = {0, 1, 0};
constexpr float kZ[3] = {0, 0, 1};

/// Source vertices and room for `corners` built ones.
class QSA_MeshBuilderTest : public testing::Test {
protected:
    void Prepare(size_t vertices, size_t corners)
    {
        builder.vertices.resize(vertices);
        builder.capacity = corners;
    }
    uint32_t Add(uint32_t vertex, const QSA_SmoothingSet& groups, const float (&normal)[3] = kZ,
                 int32_t material = 0, const QSA_TextureVertex* tVertex = nullptr)
    {
        return builder.AddBuiltVertex(vertex, groups, normal, material, tVertex);
    }
    void AddFace(uint16_t a, uint16_t b, uint16_t c, const QSA_SmoothingSet& groups,
                 int32_t material = 0)
    {
        QSA_SourceFace& face = builder.faces.emplace_back();
        face.vertex[0] = a;
        face.vertex[1] = b;
        face.vertex[2] = c;
        face.smoothing = groups;
        face.material = material;
    }
    void AddVertex(float x, float y, float z)
    {
        QSA_SourceVertex& vertex = builder.vertices.emplace_back();
        vertex.position[0] = x;
        vertex.position[1] = y;
        vertex.position[2] = z;
    }

    Reporter reporter;
    QSA_MeshBuilder builder{reporter};
};

} // namespace

TEST(QSA_SmoothingSet, HoldsGroupsModulo256)
{
    EXPECT_TRUE(Groups({1}).Meets(Groups({257})));
    EXPECT_TRUE(Groups({-1}).Meets(Groups({255})));
    EXPECT_FALSE(Groups({0, 63, 64, 128}).Meets(Groups({1, 62, 65, 129, 192})));
    EXPECT_TRUE(Groups({0, 63, 64, 192}).Meets(Groups({192})));
    EXPECT_FALSE(Groups({}).Meets(Groups({1})));
}

TEST(QSA_SmoothingSet, NarrowKeepsCommonGroups)
{
    for (const int32_t group : {0, 63, 64, 128, 255}) {
        QSA_SmoothingSet set = Groups({0, 63, 64, 128, 255});
        set.Narrow(Groups({group, 7}));
        for (const int32_t other : {0, 7, 63, 64, 128, 255})
            EXPECT_EQ(set.Meets(Groups({other})), other == group) << other << " of " << group;
    }
}

TEST_F(QSA_MeshBuilderTest, CornersOfOneGroupJoin)
{
    Prepare(1, 3);
    EXPECT_EQ(Add(0, Groups({1}), kX), 0u);
    EXPECT_EQ(Add(0, Groups({1, 2}), kY), 0u);
    EXPECT_THAT(builder.built[0].normalSum, ElementsAre(1.0f, 1.0f, 0.0f));
    EXPECT_EQ(builder.built[0].normalCount, 2);
    EXPECT_EQ(builder.duplicateCount, 0);
}

TEST_F(QSA_MeshBuilderTest, JoiningNarrowsTheGroups)
{
    Prepare(1, 3);
    Add(0, Groups({1, 2}));
    EXPECT_EQ(Add(0, Groups({2, 3})), 0u); // {2} is left
    EXPECT_EQ(Add(0, Groups({1})), 1u);
    EXPECT_EQ(Add(0, Groups({2})), 0u);
    EXPECT_EQ(builder.duplicateCount, 1);
}

TEST_F(QSA_MeshBuilderTest, EmptySetsNeverJoin)
{
    Prepare(1, 3);
    EXPECT_EQ(Add(0, Groups({})), 0u);
    EXPECT_EQ(Add(0, Groups({})), 1u);
    EXPECT_EQ(Add(0, Groups({})), 2u);
}

TEST_F(QSA_MeshBuilderTest, FirstCopyThatMatchesTakesTheCorner)
{
    Prepare(1, 9);
    Add(0, Groups({1}));
    Add(0, Groups({2}));
    EXPECT_EQ(Add(0, Groups({1, 2})), 0u);
}

TEST_F(QSA_MeshBuilderTest, MaterialsNeverShareAVertex)
{
    Prepare(1, 3);
    EXPECT_EQ(Add(0, Groups({1}), kZ, 0), 0u);
    EXPECT_EQ(Add(0, Groups({1}), kZ, 1), 1u);
    EXPECT_EQ(Add(0, Groups({1}), kZ, 0), 0u);
}

TEST_F(QSA_MeshBuilderTest, TextureCoordinatesAreComparedWithoutTolerance)
{
    Prepare(1, 9);
    const QSA_TextureVertex a = {0.5f, 0.25f, 0.0f};
    const QSA_TextureVertex next = {std::nextafter(0.5f, 1.0f), 0.25f, 0.0f};
    const QSA_TextureVertex otherW = {0.5f, 0.25f, 9.0f};
    const uint32_t first = Add(0, Groups({1}), kZ, 0, &a);
    builder.built[first].texCoord[0] = a.u;
    builder.built[first].texCoord[1] = a.v;
    EXPECT_NE(Add(0, Groups({1}), kZ, 0, &next), first);
    EXPECT_EQ(Add(0, Groups({1}), kZ, 0, &otherW), first); // only u and v are compared
    EXPECT_EQ(Add(0, Groups({1}), kZ, 0, nullptr), first); // without coordinates only groups count
}

TEST_F(QSA_MeshBuilderTest, HundredAndTwentyNinthCopyGoesToTheFirstWithAWarning)
{
    Prepare(8, 200);
    for (uint32_t i = 0; i < 128; ++i)
        EXPECT_EQ(Add(7, Groups({static_cast<int32_t>(i)})), i);
    EXPECT_TRUE(reporter.warnings.empty());
    EXPECT_EQ(Add(7, Groups({200}), kX), 0u);
    EXPECT_THAT(reporter.warnings, ElementsAre("Too many smoothing groups on vertex 7!"));
    EXPECT_EQ(builder.built.size(), 128u);
    EXPECT_THAT(builder.built[0].normalSum, ElementsAre(1.0f, 0.0f, 1.0f));
    // The intersection tried last was empty, and the first copy took it over.
    EXPECT_THAT(builder.built[0].smoothing.bits, Each(0u));
}

TEST_F(QSA_MeshBuilderTest, FullVertexBufferIsAnError)
{
    Prepare(4, 2);
    Add(0, Groups({}));
    Add(0, Groups({}));
    try {
        Add(1, Groups({}));
        ADD_FAILURE() << "no error";
    } catch (const ErrorMsg& error) {
        EXPECT_STREQ(error.message, "Vertex buffer too small!");
    }
}

TEST_F(QSA_MeshBuilderTest, NormalsAreSharedWithTheSumsFromBefore)
{
    // Copy 0 meets 1 and 2, which do not meet each other: x adds y + z, y and z add x only.
    Prepare(1, 3);
    Add(0, Groups({1, 2}), kX, 0);
    Add(0, Groups({1}), kY, 1); // different materials keep them separate
    Add(0, Groups({2}), kZ, 2);
    builder.ShareNormals();
    EXPECT_THAT(builder.built[0].normalSum, ElementsAre(1.0f, 1.0f, 1.0f));
    EXPECT_THAT(builder.built[1].normalSum, ElementsAre(1.0f, 1.0f, 0.0f));
    EXPECT_THAT(builder.built[2].normalSum, ElementsAre(1.0f, 0.0f, 1.0f));
    EXPECT_EQ(builder.built[0].normalCount, 3);
    EXPECT_EQ(builder.built[1].normalCount, 2);
    EXPECT_EQ(builder.built[2].normalCount, 2);
}

TEST_F(QSA_MeshBuilderTest, CornerNormalIsWeightedByItsAngle)
{
    // A right triangle with legs of 1: angles of a quarter turn and twice an eighth of a turn.
    AddVertex(0, 0, 0);
    AddVertex(1, 0, 0);
    AddVertex(0, 1, 0);
    AddFace(0, 1, 2, Groups({1}));
    builder.Build("m", 0);
    const double kPi = 3.14159265358979;
    EXPECT_NEAR(builder.built[0].normalSum[2], kPi / 2, 1e-6);
    EXPECT_NEAR(builder.built[1].normalSum[2], kPi / 4, 1e-6);
    EXPECT_NEAR(builder.built[2].normalSum[2], kPi / 4, 1e-6);
    EXPECT_EQ(builder.attributeCount, 1);
}

TEST_F(QSA_MeshBuilderTest, NormalFollowsTheOrderOfTheCorners)
{
    AddVertex(0, 0, 0);
    AddVertex(1, 0, 0);
    AddVertex(0, 1, 0);
    AddFace(0, 2, 1, Groups({1})); // y x x is -z
    builder.Build("m", 0);
    EXPECT_LT(builder.built[0].normalSum[2], 0.0f);
}

TEST_F(QSA_MeshBuilderTest, AnglesOfANeedleAreClamped)
{
    // Rounding takes the dot product of unit vectors along such an edge beyond 1.
    AddVertex(0, 0, 0);
    AddVertex(3.3333333f, 1.1111111f, 7.7777777f);
    AddVertex(3.3333335f, 1.1111112f, 7.7777782f);
    for (uint16_t i = 0; i < 100; ++i) {
        AddVertex(0, 0, 0);
        AddVertex(1.0f + 0.01f * i, 0.7f, 0.3f);
        AddVertex((1.0f + 0.01f * i) * 1.000001f, 0.7f, 0.3f);
        AddFace(static_cast<uint16_t>(3 + i * 3), static_cast<uint16_t>(4 + i * 3),
                static_cast<uint16_t>(5 + i * 3), Groups({1}));
    }
    AddFace(0, 1, 2, Groups({1}));
    builder.Build("needles", 0);
    for (const QSA_BuiltVertex& vertex : builder.built)
        EXPECT_TRUE(std::isfinite(vertex.normalSum[0]));
}

TEST_F(QSA_MeshBuilderTest, DegenerateFaceIsDroppedAndAddsNoVertex)
{
    for (int i = 0; i < 3; ++i)
        AddVertex(static_cast<float>(i), 0, 0); // on one line
    AddVertex(0, 1, 0);
    AddFace(0, 1, 2, Groups({1}));
    AddFace(0, 1, 3, Groups({1}));
    builder.Build("m", 0);
    EXPECT_THAT(reporter.warnings, ElementsAre("Invalid face 0 in mesh 'm'"));
    EXPECT_EQ(builder.invalidFaceCount, 1);
    EXPECT_EQ(builder.faces[0].attribute, -1);
    EXPECT_EQ(builder.built.size(), 3u);
}

TEST_F(QSA_MeshBuilderTest, AttributesAreNumberedInOrderOfFirstUse)
{
    AddVertex(0, 0, 0);
    AddVertex(1, 0, 0);
    AddVertex(0, 1, 0);
    // Of 3 submaterials: 5 is 2, 0 is 0, -1 is 2, -3 is 0.
    for (const int32_t material : {5, 0, -1, -3})
        AddFace(0, 1, 2, Groups({1}), material);
    builder.Build("m", 3);
    std::vector<int32_t> attributes;
    for (const QSA_SourceFace& face : builder.faces)
        attributes.push_back(face.attribute);
    EXPECT_THAT(attributes, ElementsAre(0, 1, 0, 1));
    EXPECT_THAT(builder.subMaterialMap, ElementsAre(1, -1, 0));
    EXPECT_EQ(builder.attributeCount, 2);
}

TEST_F(QSA_MeshBuilderTest, WithoutSubmaterialsAllFacesAreOfOneMaterial)
{
    AddVertex(0, 0, 0);
    AddVertex(1, 0, 0);
    AddVertex(0, 1, 0);
    AddFace(0, 1, 2, Groups({1}), 7);
    AddFace(0, 1, 2, Groups({1}), 9);
    builder.Build("m", 0);
    EXPECT_EQ(builder.built.size(), 3u); // the ids do not keep the corners apart
    EXPECT_TRUE(builder.subMaterialMap.empty());
    EXPECT_EQ(builder.attributeCount, 1);
}

TEST_F(QSA_MeshBuilderTest, QuirkTextureCornersAreCountedModulo256)
{
    AddVertex(0, 0, 0);
    AddVertex(1, 0, 0);
    AddVertex(0, 1, 0);
    builder.tVertices = {{0.5f, 0.5f, 0.0f}};
    builder.hasTextureFaces = true;
    for (int i = 0; i < 256; ++i) {
        AddFace(0, 1, 2, Groups({1}));
        builder.tFaces.emplace_back();
    }
    builder.Build("m", 0);
    EXPECT_EQ(builder.built[0].texCoordSet, 0);
    EXPECT_EQ(builder.built[0].normalCount, 256);
}

TEST_F(QSA_MeshBuilderTest, NotFinitePositionsEndInAMesh)
{
    AddVertex(INFINITY, 0, 0);
    AddVertex(NAN, 0, 0);
    AddVertex(0, 1e38f, -1e38f);
    AddFace(0, 1, 2, Groups({1}));
    builder.Build("m", 0);
    EXPECT_EQ(builder.built.size(), 3u);
}

TEST_F(QSA_MeshBuilderTest, ClearForgetsTheMesh)
{
    AddVertex(0, 0, 0);
    AddVertex(1, 0, 0);
    AddVertex(0, 1, 0);
    AddFace(0, 1, 2, Groups({}));
    AddFace(0, 1, 2, Groups({}));
    AddFace(0, 0, 0, Groups({}));
    builder.Build("m", 2);
    EXPECT_EQ(builder.duplicateCount, 3);
    EXPECT_EQ(builder.invalidFaceCount, 1);
    builder.Clear();
    EXPECT_TRUE(builder.vertices.empty());
    EXPECT_TRUE(builder.faces.empty());
    EXPECT_TRUE(builder.built.empty());
    EXPECT_EQ(builder.capacity, 0u);
    EXPECT_TRUE(builder.subMaterialMap.empty());
    EXPECT_EQ(builder.attributeCount, 0);
    EXPECT_EQ(builder.duplicateCount, 0);
    EXPECT_EQ(builder.invalidFaceCount, 0);
}
