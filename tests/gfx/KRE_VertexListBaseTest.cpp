#include "gfx/KRE_VertexListTemp.h"

#include "tests/gfx/EngineTest.h"

namespace {

class VertexList : public EngineTest {
protected:
    VertexList() { Start(); }

    KRE_VertexListTemp<KRE_LVertex> list;
};

/// A plain list; only operations that touch no vertex are tested on it.
using PlainList = KRE_VertexListTemp<KRE_VertexPosTex>;

} // namespace

TEST(VertexListCounts, PrimitivesFollowTypeAndVertices)
{
    static const struct {
        int32_t type, vertices, expected;
    } cases[] = {
        {D3DPT_POINTLIST, 7, 7},    {D3DPT_LINELIST, 7, 3},      {D3DPT_LINESTRIP, 7, 6},
        {D3DPT_TRIANGLELIST, 7, 2}, {D3DPT_TRIANGLESTRIP, 7, 5}, {D3DPT_TRIANGLEFAN, 7, 5},
        {D3DPT_LINESTRIP, 0, 0},    {D3DPT_TRIANGLESTRIP, 1, 0}, {D3DPT_TRIANGLEFAN, 0, 0},
    };
    for (const auto& c : cases) {
        PlainList list;
        list.vertexCount = c.vertices;
        list.SetPrimitiveType(c.type);
        EXPECT_EQ(list.primitiveCount, c.expected) << c.type << " of " << c.vertices;
        EXPECT_EQ(list.primitiveType, c.type);
    }
}

TEST(VertexListCounts, NewListHasNoVerticesAndNoneAreLocked)
{
    PlainList list;
    EXPECT_EQ(list.vertexCount, 0);
    EXPECT_EQ(list.primitiveCount, 0);
    EXPECT_EQ(list.primitiveType, D3DPT_TRIANGLELIST);
    EXPECT_EQ(list.isPointSprite, 0);
    EXPECT_FALSE(list.IsLocked());
    EXPECT_EQ(list.lockedVertices, nullptr);
    EXPECT_EQ(list.lockedCount, 0);
    EXPECT_EQ(list.GetPosition(0), nullptr);
}

TEST(VertexListCounts, OtherTypesAreErrors)
{
    const ScratchDirectory scratch;
    PlainList list;
    for (int32_t type : {0, 7, -1})
        EXPECT_EQ(RaisedBy([&] { list.SetPrimitiveType(type); }),
                  "Invalid PointList mode selected! (" + std::to_string(type) + ")");
    EXPECT_EQ(list.primitiveType, D3DPT_TRIANGLELIST);
}

TEST_F(VertexList, LayoutFillsTheFormat)
{
    EXPECT_EQ(list.info.fvf, 0x1C2u);
    EXPECT_EQ(list.info.stride, 28);
}

TEST_F(VertexList, LockedRangeIsReadAndWritten)
{
    gfx.CreateVertexList(&list, 6, -1, 1);
    EXPECT_FALSE(list.IsLocked());
    KRE_LVertex* vertices = list.LockVertices(2, 3, 0);
    EXPECT_TRUE(list.IsLocked());
    EXPECT_EQ(list.lockedVertices, vertices);
    vertices[1] = {1.0f, 2.0f, 3.0f, 0x11111111, 0x22222222, 0.25f, 0.75f};
    EXPECT_EQ(list.GetPosition(1)->y, 2.0f);
    EXPECT_EQ(*list.GetDiffuse(1), 0x11111111u);
    EXPECT_EQ(*list.GetSpecular(1), 0x22222222u);
    EXPECT_EQ(list.GetTexCoord(1)[1], 0.75f);
    EXPECT_EQ(list.GetPosition(3), nullptr) << "behind the locked range";
    EXPECT_EQ(list.GetPosition(-1), nullptr);
    list.Unlock();
    EXPECT_FALSE(list.IsLocked());
    EXPECT_EQ(list.GetPosition(0), nullptr);

    vertices = list.LockVertices(0, 0, D3DLOCK_READONLY);
    EXPECT_EQ(vertices[3].tu, 0.25f) << "2 + 1";
    EXPECT_NE(list.GetPosition(5), nullptr) << "0 and 0 map all";
    list.Unlock();
}

TEST_F(VertexList, ElementsThatTheFormatLacksAreNull)
{
    gfx.posTexList.Lock(0, 4, 0);
    EXPECT_EQ(gfx.posTexList.GetDiffuse(0), nullptr);
    EXPECT_EQ(gfx.posTexList.GetSpecular(0), nullptr);
    EXPECT_NE(gfx.posTexList.GetTexCoord(0), nullptr);
    gfx.posTexList.Unlock();
    gfx.pointList.Lock(0, 1, 0);
    EXPECT_EQ(gfx.pointList.GetTexCoord(0), nullptr);
    EXPECT_NE(gfx.pointList.GetDiffuse(0), nullptr);
    gfx.pointList.Unlock();
}

TEST_F(VertexList, RangesOutsideTheListAreErrors)
{
    gfx.CreateVertexList(&list, 6, -1, 1);
    static const struct {
        int32_t first, count;
    } cases[] = {{0, 7}, {6, 1}, {-1, 2}, {0, -1}, {2147483647, 2147483647}};
    for (const auto& c : cases)
        EXPECT_EQ(RaisedBy([&] { list.Lock(c.first, c.count, 0); }),
                  "Lock failed: D3DERR_INVALIDCALL")
            << c.first << " " << c.count;
    EXPECT_FALSE(list.IsLocked());
}

TEST_F(VertexList, ListWithoutBufferCanNotBeLocked)
{
    EXPECT_EQ(RaisedBy([&] { list.Lock(0, 0, 0); }), "Lock failed: D3DERR_INVALIDCALL");
    EXPECT_EQ(RaisedBy([&] { list.Unlock(); }), "Unlock failed: D3DERR_INVALIDCALL");
}

TEST_F(VertexList, FreeKeepsFormatAndType)
{
    gfx.CreateVertexList(&list, 6, -1, 1);
    list.SetPrimitiveType(D3DPT_LINELIST);
    list.Free();
    EXPECT_FALSE(list.buffer);
    EXPECT_EQ(list.vertexCount, 0);
    EXPECT_EQ(list.primitiveCount, 0);
    EXPECT_EQ(list.primitiveType, D3DPT_LINELIST);
    EXPECT_EQ(list.info.stride, 28);
}
