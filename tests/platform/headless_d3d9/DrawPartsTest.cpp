// Tests of single steps of drawing.

#include "platform/headless/d3d9/Clip.h"
#include "platform/headless/d3d9/PrimitiveAssembly.h"
#include "platform/headless/d3d9/TriangleSetup.h"
#include "platform/headless/d3d9/VertexFetch.h"
#include "platform/headless/d3d9/VertexFog.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace headless;

namespace {

struct Places {
    UINT a, b, c;

    bool operator==(const Places& other) const
    {
        return a == other.a && b == other.b && c == other.c;
    }
};

Places CornersAt(D3DPRIMITIVETYPE type, UINT i)
{
    UINT places[3];
    CornersOf(type, i, places);
    return {places[0], places[1], places[2]};
}

/// A vertex at (x, y, z) with w, and one varying equal to x.
ShadedVertex VertexAt(float x, float y, float z, float w)
{
    ShadedVertex vertex = {};
    vertex.clip[0] = vertex.varying[0] = x;
    vertex.clip[1] = y;
    vertex.clip[2] = z;
    vertex.clip[3] = w;
    return vertex;
}

} // namespace

TEST(PrimitiveAssembly, CountsVerticesOfEachType)
{
    static const struct {
        D3DPRIMITIVETYPE type;
        UINT count;
        uint64_t vertices;
    } cases[] = {
        {D3DPT_POINTLIST, 5, 5},
        {D3DPT_LINELIST, 5, 10},
        {D3DPT_LINESTRIP, 5, 6},
        {D3DPT_TRIANGLELIST, 5, 15},
        {D3DPT_TRIANGLESTRIP, 5, 7},
        {D3DPT_TRIANGLEFAN, 5, 7},
        {D3DPT_TRIANGLELIST, 0xFFFFFFFF, 3ull * 0xFFFFFFFF},
    };
    for (const auto& c : cases)
        EXPECT_EQ(VertexCountOf(c.type, c.count), c.vertices) << c.type;
}

TEST(PrimitiveAssembly, TrianglesOfAStripShareAWindingAndBeginWithTheirOwnVertex)
{
    EXPECT_EQ(CornersAt(D3DPT_TRIANGLELIST, 2), (Places{6, 7, 8}));
    EXPECT_EQ(CornersAt(D3DPT_TRIANGLESTRIP, 2), (Places{2, 3, 4}));
    EXPECT_EQ(CornersAt(D3DPT_TRIANGLESTRIP, 3), (Places{3, 5, 4}));
    EXPECT_EQ(CornersAt(D3DPT_TRIANGLEFAN, 2), (Places{3, 4, 0}));
}

TEST(VertexLayout, PartsFollowOneAnother)
{
    VertexLayout layout;
    ASSERT_TRUE(MakeVertexLayout(D3DFVF_XYZB3 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL |
                                     D3DFVF_DIFFUSE | D3DFVF_TEX2 | D3DFVF_TEXCOORDSIZE3(0),
                                 layout));
    // 12 position, 8 weights, 4 indices, 12 normal, 4 diffuse, 12 and 8 texture coordinates
    EXPECT_EQ(layout.weights, 12);
    EXPECT_EQ(layout.weightCount, 2);
    EXPECT_EQ(layout.indices, 20);
    EXPECT_EQ(layout.normal, 24);
    EXPECT_EQ(layout.pointSize, -1);
    EXPECT_EQ(layout.diffuse, 36);
    EXPECT_EQ(layout.specular, -1);
    EXPECT_EQ(layout.sets[0], 40);
    EXPECT_EQ(layout.sets[1], 52);
    EXPECT_EQ(layout.sizeBytes, 60u);
}

TEST(VertexLayout, NeedsAPositionAndAtMostEightSets)
{
    VertexLayout layout;
    EXPECT_FALSE(MakeVertexLayout(D3DFVF_DIFFUSE, layout));
    EXPECT_FALSE(MakeVertexLayout(D3DFVF_XYZ | 9 << D3DFVF_TEXCOUNT_SHIFT, layout));
    EXPECT_TRUE(MakeVertexLayout(D3DFVF_XYZ | D3DFVF_TEX8, layout));
}

TEST(FetchCoordinates, AOneFollowsTheStoredNumbers)
{
    static const struct {
        DWORD format;
        float expected[4];
    } cases[] = {
        {D3DFVF_TEXCOORDSIZE1(0), {2, 1, 0, 0}},
        {D3DFVF_TEXCOORDSIZE2(0), {2, 3, 1, 0}},
        {D3DFVF_TEXCOORDSIZE3(0), {2, 3, 4, 1}},
        {D3DFVF_TEXCOORDSIZE4(0), {2, 3, 4, 5}},
    };
    const float vertex[] = {0, 0, 0, 2, 3, 4, 5};
    for (const auto& c : cases) {
        VertexLayout layout;
        ASSERT_TRUE(MakeVertexLayout(D3DFVF_XYZ | D3DFVF_TEX1 | c.format, layout));
        const VertexStream stream = {reinterpret_cast<const uint8_t*>(vertex), 28, 1};
        float found[4];
        FetchCoordinates(layout, stream, 0, 0, found);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(found[i], c.expected[i]);
        FetchCoordinates(layout, stream, 0, 1, found);
        EXPECT_EQ(found[0], 0.0f) << "a set that is not there";
        EXPECT_EQ(found[2], 1.0f);
    }
}

TEST(FetchVertex, IndicesInAColourGoByItsChannels)
{
    VertexLayout layout;
    ASSERT_TRUE(MakeVertexLayout(D3DFVF_XYZB1 | D3DFVF_LASTBETA_D3DCOLOR, layout));
    uint8_t bytes[16] = {};
    const D3DCOLOR indices = 0x04010203; // alpha 4, red 1, green 2, blue 3
    std::memcpy(bytes + 12, &indices, 4);
    SourceVertex vertex;
    FetchVertex(layout, {bytes, 16, 1}, 0, vertex);
    for (uint8_t i = 0; i < 4; ++i)
        EXPECT_EQ(vertex.indices[i], i + 1);
}

/// A line from z = -1 to z = 3 with w = 2 crosses the near plane after a quarter and the far plane,
/// z = 2, after three quarters. x runs from 0 to 8.
TEST(Clip, LinesAreCutAtTheirPlanes)
{
    ClipRules rules;
    rules.clipsDepth = true;
    rules.guardX = rules.guardY = 100.0f;
    rules.varyingCount = 4;
    ShadedVertex a = VertexAt(0, 0, -1, 2), b = VertexAt(8, 0, 3, 2);
    ASSERT_TRUE(ClipLine(rules, ClipCode(rules, a) | ClipCode(rules, b), a, b));
    EXPECT_EQ(a.clip[0], 2.0f);
    EXPECT_EQ(a.varying[0], 2.0f);
    EXPECT_EQ(b.clip[0], 6.0f);
    EXPECT_EQ(b.clip[2], 2.0f);
}

TEST(Clip, ATriangleGainsACornerAtEachPlaneItCrosses)
{
    ClipRules rules;
    rules.clipsDepth = true;
    rules.guardX = rules.guardY = 100.0f;
    rules.varyingCount = 4;
    static const struct {
        const char* what;
        float z[3];
        int corners;
    } cases[] = {
        {"one corner outside", {-1, 1, 1}, 4},
        {"two corners outside", {-1, -1, 1}, 3},
        {"one outside of each plane", {-1, 1, 3}, 5},
        {"all outside", {-1, -2, -3}, 0},
    };
    for (const auto& c : cases) {
        ShadedVertex corners[kMaxClippedCorners];
        DWORD codes = 0;
        for (int i = 0; i < 3; ++i) {
            corners[i] = VertexAt(i == 1 ? 1.0f : 0.0f, i == 2 ? 1.0f : 0.0f, c.z[i], 2);
            codes |= ClipCode(rules, corners[i]);
        }
        EXPECT_EQ(ClipPolygon(rules, codes, corners, 3), c.corners) << c.what;
    }
}

/// From (1, 1) over (5, 1) to (1, 5) in pixels: row y spans 1 <= x < 6 - y.
TEST(TriangleRows, GiveTheRunOfEachRow)
{
    const auto corner = [](int x, int y) { return Corner{x * 256, y * 256, 0, 1, nullptr}; };
    TriangleRows rows(corner(1, 1), corner(5, 1), corner(1, 5), {0, 0, 100, 100});
    int y = 0, left = 0, right = 0;
    for (int row = 1; row < 5; ++row) {
        ASSERT_TRUE(rows.Next(y, left, right));
        EXPECT_EQ(y, row);
        EXPECT_EQ(left, 1);
        EXPECT_EQ(right, 6 - row);
    }
    EXPECT_FALSE(rows.Next(y, left, right));
}

/// The sides of a thin triangle, stepped from row to row, compared with each row computed on its
/// own: a centre is inside if it is on or right of the left side and left of the right side.
TEST(TriangleRows, SteppingNeverDrifts)
{
    const Corner top = {1000, -3000, 0, 1, nullptr};
    const Corner right = {30011, 500007, 0, 1, nullptr};
    const Corner left = {-20009, 500007, 0, 1, nullptr};
    TriangleRows rows(top, right, left, {-200, -200, 2000, 2000});
    int y = 0, from = 0, to = 0;
    int count = 0;
    while (rows.Next(y, from, to)) {
        const auto side = [y](const Corner& a, const Corner& b, int x) {
            return (int64_t{b.x} - a.x) * (int64_t{y} * 256 - a.y) -
                   (int64_t{b.y} - a.y) * (int64_t{x} * 256 - a.x);
        };
        for (int x = from - 2; x < to + 2; ++x) {
            const bool isInside = side(left, top, x) >= 0 && side(top, right, x) > 0;
            ASSERT_EQ(x >= from && x < to, isInside) << x << ", " << y;
        }
        ++count;
    }
    EXPECT_EQ(count, 1965) << "rows -11 to 1953";
}

/// exp(-2 * 0.5) = 0.36788; exp(-(2 * 0.5)^2) is the same; at distance 4 it is exp(-4) = 0.018316.
TEST(FogCurve, FollowsItsFormula)
{
    FogCurve curve;
    curve.start = 1.0f;
    curve.end = 5.0f;
    curve.density = 0.5f;
    curve.mode = D3DFOG_LINEAR;
    EXPECT_EQ(curve.Factor(1.0f), 1.0f);
    EXPECT_EQ(curve.Factor(2.0f), 0.75f);
    EXPECT_EQ(curve.Factor(7.0f), 0.0f);
    curve.mode = D3DFOG_EXP;
    EXPECT_FLOAT_EQ(curve.Factor(2.0f), 0.36787944f);
    curve.mode = D3DFOG_EXP2;
    EXPECT_FLOAT_EQ(curve.Factor(2.0f), 0.36787944f);
    EXPECT_FLOAT_EQ(curve.Factor(4.0f), 0.01831564f);
}
