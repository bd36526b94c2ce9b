#include "render/KRE_VertexList.h"

#include "tests/render/SceneDrawing.h"

using testing::Contains;
using testing::IsEmpty;

namespace {

class KRE_VertexListTest : public SceneDrawing {
protected:
    KRE_VertexListTest()
    {
        list.SetFVFInfo(KRE_PointVertex::kFvf);
        gGfx->CreateVertexList(&list, 7, -1, 1);
        Calls();
    }

    KRE_VertexList list;
};

} // namespace

TEST_F(KRE_VertexListTest, IsDrawnAtItsPlace)
{
    list.worldTM = Shift(1, 2, 3);
    gGfx->DrawTriangleList(list);
    const std::vector<std::string> calls = Calls();
    EXPECT_THAT(calls,
                Contains("SetTransform D3DTS_WORLDMATRIX(0) [1 0 0 0 0 1 0 0 0 0 1 0 1 2 3 1]"));
    EXPECT_THAT(calls, Contains("DrawPrimitive D3DPT_TRIANGLELIST 0 2"));
}

TEST_F(KRE_VertexListTest, IsAnObjectThatIsEvaluated)
{
    list.KRE_3dObject::SetPosition(4, 5, 6, 0);
    list.Evaluate(0.0, 1, 0);
    gGfx->DrawTriangleList(list, 1);
    EXPECT_EQ(gGfx->world[0]._42, 5.0f);
}

TEST_F(KRE_VertexListTest, CountIsCheckedAsForOtherLists)
{
    gGfx->DrawTriangleList(list, 0);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(RaisedBy([&] { gGfx->DrawTriangleList(list, 3); }),
              "Number of elements in DrawTriangleList too high! (3)");
    KRE_VertexList empty;
    gGfx->DrawTriangleList(empty, -1);
    EXPECT_THAT(Calls(), IsEmpty());
}
