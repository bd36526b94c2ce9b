#include "tests/gfx/EngineTest.h"
#include "tests/gfx/StubMesh.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class Drawing : public EngineTest {
protected:
    Drawing()
    {
        Start();
        gfx.CreateVertexList(&list, 7, -1, 1);
        Calls();
    }

    std::string NameOfBuffer() { return recorder->NameOfObject("vertexbuffer", list.buffer.Get()); }
    std::string DrawError(int32_t count)
    {
        return RaisedBy([&] { gfx.DrawTriangleList(list, nullptr, count); });
    }

    KRE_VertexListTemp<KRE_PointVertex> list; // triangles, 16 bytes per vertex
};

class MeshDrawing : public EngineTest {
protected:
    MeshDrawing()
    {
        Start();
        mesh.Make(gfx.device.Get());
        info.SetFVFInfo(KRE_VertexPosTex::kFvf);
        info.processing = 1;
        Calls();
    }

    std::string DrawError(DWORD firstFace, DWORD faces)
    {
        return RaisedBy([&] { gfx.DrawMesh(mesh, info, firstFace, faces); });
    }

    StubMesh mesh;
    VertexInfo info;
};

} // namespace

// ---- Lists

TEST_F(Drawing, SevenVerticesAreTwoTriangles)
{
    EXPECT_EQ(list.primitiveCount, 2);
    gfx.DrawTriangleList(list);
    EXPECT_THAT(Calls(), ElementsAre("SetTransform D3DTS_WORLDMATRIX(0) identity",
                                     "SetStreamSource 0 " + NameOfBuffer() + " 0 16",
                                     "SetFVF D3DFVF_XYZ|D3DFVF_DIFFUSE",
                                     "DrawPrimitive D3DPT_TRIANGLELIST 0 2"));
}

TEST_F(Drawing, CountDrawsTheFirstPrimitives)
{
    gfx.DrawTriangleList(list, nullptr, 1);
    EXPECT_THAT(CallsOf("DrawPrimitive"), ElementsAre("DrawPrimitive D3DPT_TRIANGLELIST 0 1"));
}

TEST_F(Drawing, OtherPrimitivesUseTheListsType)
{
    list.SetPrimitiveType(D3DPT_TRIANGLESTRIP);
    gfx.DrawTriangleList(list);
    EXPECT_THAT(CallsOf("DrawPrimitive"), ElementsAre("DrawPrimitive D3DPT_TRIANGLESTRIP 0 5"));
}

TEST_F(Drawing, CountZeroDrawsNothing)
{
    gfx.DrawTriangleList(list, nullptr, 0);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(Drawing, CountMinusOneOfAnEmptyListDrawsNothingAndIsNotAnError)
{
    KRE_VertexListTemp<KRE_PointVertex> empty;
    gfx.DrawTriangleList(empty, nullptr, -1);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(Drawing, CountOneAboveThePrimitivesIsAnErrorWithThatNumber)
{
    EXPECT_EQ(DrawError(3), "Number of elements in DrawTriangleList too high! (3)");
    EXPECT_EQ(DrawError(-2), "Number of elements in DrawTriangleList too high! (-2)");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(Drawing, ListsTransformIsWorldMatrixZero)
{
    const D3DXMATRIX shift(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 3, 4, 1);
    gfx.DrawTriangleList(list, &shift);
    EXPECT_THAT(CallsOf("SetTransform"), ElementsAre("SetTransform D3DTS_WORLDMATRIX(0) "
                                                     "[1 0 0 0 0 1 0 0 0 0 1 0 2 3 4 1]"));
    EXPECT_EQ(gfx.world[0], shift);
}

TEST_F(Drawing, ProcessingOfTheListSelectsVertexProcessing)
{
    list.info.processing = 0;
    gfx.DrawTriangleList(list);
    EXPECT_THAT(CallsOf("SetSoftwareVertexProcessing"),
                ElementsAre("SetSoftwareVertexProcessing 1"));
    Calls();
    for (const int32_t processing : {1, 2}) {
        list.info.processing = processing;
        gfx.DrawTriangleList(list);
    }
    EXPECT_THAT(CallsOf("SetSoftwareVertexProcessing"),
                ElementsAre("SetSoftwareVertexProcessing 0"));
}

TEST_F(Drawing, PointSpritesBringTheirParameters)
{
    list.isPointSprite = 1;
    list.points.spriteEnable = 1;
    list.points.size = 12.0f;
    gfx.DrawTriangleList(list);
    EXPECT_THAT(Calls(), testing::IsSupersetOf({"SetRenderState D3DRS_POINTSPRITEENABLE 1",
                                                "SetRenderState D3DRS_POINTSIZE 12"}));
    list.points.size = 13.0f;
    list.isPointSprite = 0;
    gfx.DrawTriangleList(list);
    EXPECT_THAT(Calls(), Not(Contains(HasSubstr("POINTSIZE"))));
}

TEST_F(Drawing, PointSpritesInSoftwareMayBeLarger)
{
    gfx.caps.MaxPointSize = 16.0f;
    list.isPointSprite = 1;
    list.points.scaleEnable = 1;
    list.info.processing = 0;
    gfx.DrawTriangleList(list);
    EXPECT_EQ(list.points.sizeMax, 64.0f);
    list.info.processing = 1;
    gfx.DrawTriangleList(list);
    EXPECT_EQ(list.points.sizeMax, 16.0f);
}

TEST_F(Drawing, DisabledDrawingStillSetsStates)
{
    gfx.drawDisabled = 1;
    gfx.DrawTriangleList(list);
    EXPECT_THAT(Calls(), ElementsAre(HasSubstr("SetTransform"), HasSubstr("SetStreamSource"),
                                     HasSubstr("SetFVF")));
}

TEST_F(Drawing, FailuresAreErrors)
{
    static const struct {
        const char* call;
        const char* message;
    } cases[] = {
        {"SetTransform", "SetTransform failed: D3DERR_INVALIDCALL"},
        {"SetStreamSource", "SetStreamSource in DrawVertexList failed: D3DERR_INVALIDCALL"},
        {"SetFVF", "Failed to set flexible vertex format: D3DERR_INVALIDCALL"},
        {"DrawPrimitive", "DrawPrimitive in DrawTriangleList failed: D3DERR_INVALIDCALL"},
    };
    for (const auto& c : cases) {
        FailNext(c.call);
        EXPECT_EQ(DrawError(-1), c.message);
    }
}

// ---- Meshes

TEST_F(MeshDrawing, DrawsFacesFromTheFirstOne)
{
    gfx.DrawMesh(mesh, info, 0, 10);
    const std::string vertices = recorder->NameOfObject("vertexbuffer", mesh.vertices.Get());
    const std::string indices = recorder->NameOfObject("indexbuffer", mesh.indices.Get());
    EXPECT_THAT(Calls(), ElementsAre("SetIndices " + indices, "SetFVF D3DFVF_XYZ|D3DFVF_TEX1",
                                     "SetStreamSource 0 " + vertices + " 0 20",
                                     "DrawIndexedPrimitive D3DPT_TRIANGLELIST 0 0 6 0 10"));
}

TEST_F(MeshDrawing, SubsetStartsThreeIndicesAFaceLater)
{
    gfx.DrawMesh(mesh, info, 4, 6);
    EXPECT_THAT(CallsOf("DrawIndexedPrimitive"),
                ElementsAre("DrawIndexedPrimitive D3DPT_TRIANGLELIST 0 0 6 12 6"));
}

TEST_F(MeshDrawing, NoFacesDrawNothing)
{
    gfx.DrawMesh(mesh, info, 0, 0);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(MeshDrawing, FacesThatTheMeshLacksAreAnError)
{
    static const struct {
        const char* what;
        DWORD firstFace, faces;
    } cases[] = {
        {"one too many", 0, 11},
        {"one too late", 5, 6},
        {"behind the end", 11, 1},
        {"sum that overflows", 5, 0xFFFFFFFF},
    };
    for (const auto& c : cases)
        EXPECT_EQ(DrawError(c.firstFace, c.faces),
                  "DrawIndexedPrimitive failed: D3DERR_INVALIDCALL")
            << c.what;
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(MeshDrawing, SoftwareMeshIsProcessedInSoftware)
{
    info.processing = 0;
    gfx.DrawMesh(mesh, info, 0, 10);
    EXPECT_THAT(Calls(), Contains("SetSoftwareVertexProcessing 1"));
}

TEST_F(MeshDrawing, DisabledDrawingStillSetsStates)
{
    gfx.drawDisabled = 1;
    gfx.DrawMesh(mesh, info, 0, 10);
    EXPECT_THAT(Calls(), ElementsAre(HasSubstr("SetIndices"), HasSubstr("SetFVF"),
                                     HasSubstr("SetStreamSource")));
}

TEST_F(MeshDrawing, FailuresAreErrors)
{
    static const struct {
        const char* call;
        const char* message;
    } cases[] = {
        {"SetIndices", "SetIndices failed: D3DERR_INVALIDCALL"},
        {"SetFVF", "Failed to set flexible vertex format: D3DERR_INVALIDCALL"},
        {"SetStreamSource", "SetStreamSource failed: D3DERR_INVALIDCALL"},
        {"DrawIndexedPrimitive", "DrawIndexedPrimitive failed: D3DERR_INVALIDCALL"},
    };
    for (const auto& c : cases) {
        FailNext(c.call);
        EXPECT_EQ(DrawError(0, 10), c.message);
    }
    mesh.indexBufferResult = E_OUTOFMEMORY;
    EXPECT_EQ(DrawError(0, 10), "GetIndexBuffer failed: E_OUTOFMEMORY");
    mesh.vertexBufferResult = E_OUTOFMEMORY;
    EXPECT_EQ(DrawError(0, 10), "GetVertexBuffer failed: E_OUTOFMEMORY");
}

TEST_F(MeshDrawing, BuffersAreReleased)
{
    gfx.DrawMesh(mesh, info, 0, 10);
    FailNext("SetIndices");
    DrawError(0, 10);
    mesh.vertices->AddRef();
    EXPECT_EQ(mesh.vertices->Release(), 1u);
    mesh.indices->AddRef();
    EXPECT_EQ(mesh.indices->Release(), 1u);
}
