#include "tests/render/SceneDrawing.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* kPoint = "DrawPrimitive D3DPT_POINTLIST 0 1";
constexpr const char* kLine = "DrawPrimitive D3DPT_LINELIST 0 1";

class KRE_SceneDrawingMarkersTest : public SceneDrawing {
protected:
    /// The vertices of a marker list, from the last marker drawn.
    static std::vector<KRE_PointVertex> Read(KRE_VertexListTemp<KRE_PointVertex>& list)
    {
        const KRE_PointVertex* first = list.LockVertices(0, list.vertexCount, D3DLOCK_READONLY);
        const std::vector<KRE_PointVertex> vertices(first, first + list.vertexCount);
        list.Unlock();
        return vertices;
    }
    static void ExpectVertex(const KRE_PointVertex& vertex, float x, float y, float z,
                             D3DCOLOR color, const char* what)
    {
        EXPECT_EQ(vertex.x, x) << what;
        EXPECT_EQ(vertex.y, y) << what;
        EXPECT_EQ(vertex.z, z) << what;
        EXPECT_EQ(vertex.diffuse, color) << what;
    }
    static void ExpectPoint(float x, float y, float z, D3DCOLOR color, const char* what = "")
    {
        ExpectVertex(Read(gGfx->pointList).at(0), x, y, z, color, what);
    }

    std::vector<std::string> DrawnPrimitives()
    {
        Calls();
        Draw();
        return CallsOf("DrawPrimitive");
    }
};

} // namespace

// ---- One marker

TEST_F(KRE_SceneDrawingMarkersTest, LineIsDrawnUnlitAndUntexturedInTheWorld)
{
    gGfx->SetWorldMatrix(Shift(1, 1, 1));
    gGfx->SetLighting(1, nullptr);
    Calls();
    gGfx->DrawLine({1, 2, 3}, {4, 5, 6}, 0x80112233);
    EXPECT_THAT(CallsButBinding(),
                ElementsAre("SetRenderState D3DRS_LIGHTING 0",
                            "SetTransform D3DTS_WORLDMATRIX(0) identity",
                            HasSubstr("SetStreamSource 0"), "SetFVF D3DFVF_XYZ|D3DFVF_DIFFUSE",
                            kLine, "SetRenderState D3DRS_LIGHTING 1"));
    const std::vector<KRE_PointVertex> ends = Read(gGfx->lineList);
    ASSERT_EQ(ends.size(), 2u);
    ExpectVertex(ends[0], 1, 2, 3, 0x80112233, "from");
    ExpectVertex(ends[1], 4, 5, 6, 0x80112233, "to");
}

TEST_F(KRE_SceneDrawingMarkersTest, PointIsDrawnUnlitAndUntexturedInTheWorld)
{
    gGfx->SetWorldMatrix(Shift(1, 1, 1));
    gGfx->SetLighting(1, nullptr);
    Calls();
    gGfx->DrawPoint({1, 2, 3}, 0x80112233);
    EXPECT_THAT(CallsButBinding(),
                ElementsAre("SetRenderState D3DRS_LIGHTING 0",
                            "SetTransform D3DTS_WORLDMATRIX(0) identity",
                            HasSubstr("SetStreamSource 0"), "SetFVF D3DFVF_XYZ|D3DFVF_DIFFUSE",
                            kPoint, "SetRenderState D3DRS_LIGHTING 1"));
    ExpectPoint(1, 2, 3, 0x80112233);
}

TEST_F(KRE_SceneDrawingMarkersTest, VerticesAreNotMappedWhileTheyAreDrawn)
{
    gGfx->DrawPoint({}, 0);
    EXPECT_EQ(gGfx->pointList.GetVertices(), nullptr);
    gGfx->DrawLine({}, {}, 0);
    EXPECT_EQ(gGfx->lineList.GetVertices(), nullptr);
}

TEST_F(KRE_SceneDrawingMarkersTest, TexturesAreUnbound)
{
    KRE_Texture texture;
    gGfx->CreateTexture(&texture, 4, 4, -1, D3DFMT_X8R8G8B8, 1);
    gGfx->SetTexture(&texture);
    gGfx->DrawPoint({}, 0);
    EXPECT_EQ(gGfx->boundTexture[0], nullptr);
    EXPECT_EQ(gGfx->currentTexture, nullptr);
}

TEST_F(KRE_SceneDrawingMarkersTest, LightingIsRestored)
{
    const D3DCOLOR grey = 0xFF808080;
    gGfx->SetLighting(0, &grey);
    gGfx->DrawPoint({}, 0);
    EXPECT_EQ(gGfx->lighting, 0);
    EXPECT_EQ(gGfx->unlitColor, grey);
    scene.settings.showObjects = kMarkersAll;
    Draw();
    EXPECT_EQ(gGfx->lighting, 0);
    EXPECT_EQ(gGfx->unlitColor, grey);
    gGfx->SetLighting(1, nullptr);
    Draw();
    EXPECT_EQ(gGfx->lighting, 1);
}

// ---- The scene's markers

TEST_F(KRE_SceneDrawingMarkersTest, LightingIsSwitchedOffOnceForAllMarkers)
{
    AddObject(Shift(0, 0, 1));
    AddObject(Shift(0, 0, 2));
    scene.settings.showObjects = kMarkersAll;
    gGfx->SetLighting(1, nullptr);
    Calls();
    Draw();
    EXPECT_TRUE(WasCalled("D3DRS_LIGHTING 0"));
    std::vector<std::string> calls = CallsButBinding();
    std::erase_if(calls, [](const std::string& line) {
        return line.find("D3DRS_LIGHTING") == std::string::npos && line != kPoint;
    });
    EXPECT_THAT(calls, ElementsAre("SetRenderState D3DRS_LIGHTING 0", kPoint, kPoint,
                                   "SetRenderState D3DRS_LIGHTING 1"));
}

TEST_F(KRE_SceneDrawingMarkersTest, WithoutMarkersLightingStays)
{
    AddObject(Shift(0, 0, 1)).parent = &scene;
    AddLight();
    gGfx->SetLighting(1, nullptr);
    Calls();
    Draw();
    EXPECT_FALSE(WasCalled("D3DRS_LIGHTING"));
    EXPECT_THAT(CallsOf("DrawPrimitive"), IsEmpty());
}

// The child's own position is (1, 0, 0), its parent's (0, 2, 0); the scene moves both by (0, 0, 3).
TEST_F(KRE_SceneDrawingMarkersTest, HierarchyIsALineFromEachObjectToItsParent)
{
    KRE_3dObject parent;
    parent.worldTM = Shift(0, 2, 0);
    scene.worldTM = Shift(0, 0, 3);
    scene.settings.showHierarchy = 1;
    static const struct {
        const char* what;
        KRE_3dObject& (*add)(KRE_3dScene& scene);
    } cases[] = {
        {"mesh", [](KRE_3dScene& s) -> KRE_3dObject& { return *s.meshes.GetSlot(s.meshes.Add()); }},
        {"object",
         [](KRE_3dScene& s) -> KRE_3dObject& { return *s.objects.GetSlot(s.objects.Add()); }},
        {"light",
         [](KRE_3dScene& s) -> KRE_3dObject& { return *s.lights.GetSlot(s.lights.Add()); }},
    };
    for (const auto& c : cases) {
        KRE_3dObject& child = c.add(scene);
        child.worldTM = Shift(1, 0, 0);
        EXPECT_THAT(DrawnPrimitives(), IsEmpty()) << c.what << " without a parent";
        child.parent = &parent;
        EXPECT_THAT(DrawnPrimitives(), ElementsAre(kLine)) << c.what;
        const std::vector<KRE_PointVertex> ends = Read(gGfx->lineList);
        ExpectVertex(ends[0], 1, 0, 3, 0xFFFF0A96, c.what);
        ExpectVertex(ends[1], 0, 2, 3, 0xFFFF0A96, c.what);
        child.parent = nullptr;
    }
}

TEST_F(KRE_SceneDrawingMarkersTest, CamerasHaveNoLine)
{
    scene.settings.showHierarchy = 1;
    scene.cameras.GetSlot(scene.cameras.Add())->parent = &AddObject(Shift(0, 0, 1));
    EXPECT_THAT(DrawnPrimitives(), IsEmpty());
}

TEST_F(KRE_SceneDrawingMarkersTest, AllObjectsArePointsWhereTheSceneHasThem)
{
    AddObject(Shift(7, 7, 7));
    AddObject(Shift(1, 2, 3));
    scene.worldTM = Shift(10, 20, 30);
    scene.settings.showObjects = kMarkersAll;
    EXPECT_THAT(DrawnPrimitives(), ElementsAre(kPoint, kPoint));
    ExpectPoint(11, 22, 33, 0xFF01FF9B);
}

TEST_F(KRE_SceneDrawingMarkersTest, OneObjectIsAPointOfAnotherColor)
{
    AddObject(Shift(1, 2, 3));
    AddObject(Shift(7, 7, 7));
    scene.settings.showObjects = 0;
    EXPECT_THAT(DrawnPrimitives(), ElementsAre(kPoint));
    ExpectPoint(1, 2, 3, 0xFFFF3737);
}

TEST_F(KRE_SceneDrawingMarkersTest, MissingObjectOrLightDrawsNothing)
{
    AddObject(Shift(1, 2, 3));
    AddLight();
    for (const int32_t index : {1, 1000, INT32_MAX, -3, INT32_MIN}) {
        scene.settings.showObjects = scene.settings.showLights = index;
        EXPECT_THAT(DrawnPrimitives(), IsEmpty()) << index;
    }
}

TEST_F(KRE_SceneDrawingMarkersTest, LightsArePointsWithTheColorOfTheirSwitch)
{
    KRE_Light& light = AddLight();
    light.worldTM = Shift(1, 2, 3);
    scene.settings.showLights = kMarkersAll;
    EXPECT_THAT(DrawnPrimitives(), ElementsAre(kPoint));
    ExpectPoint(1, 2, 3, 0xFFE6E61E, "on");
    light.lightOn = 0;
    Draw();
    ExpectPoint(1, 2, 3, 0xFF82821E, "off");
}

TEST_F(KRE_SceneDrawingMarkersTest, OneLightHasTheSameColors)
{
    AddLight().worldTM = Shift(7, 7, 7);
    KRE_Light& light = AddLight();
    light.worldTM = Shift(1, 2, 3);
    scene.settings.showLights = 1;
    EXPECT_THAT(DrawnPrimitives(), ElementsAre(kPoint));
    ExpectPoint(1, 2, 3, 0xFFE6E61E, "on");
    light.lightOn = 0;
    Draw();
    ExpectPoint(1, 2, 3, 0xFF82821E, "off");
}

TEST_F(KRE_SceneDrawingMarkersTest, QuirkLightsAreNotMovedWithTheScene)
{
    AddLight().worldTM = Shift(1, 2, 3);
    scene.worldTM = Shift(10, 20, 30);
    scene.settings.showLights = kMarkersAll;
    Draw();
    ExpectPoint(1, 2, 3, 0xFFE6E61E);
}
