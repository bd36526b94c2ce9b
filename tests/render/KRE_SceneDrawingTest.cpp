#include "tests/render/SceneDrawing.h"

#include <cmath>
#include <limits>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class SceneDraw : public SceneDrawing {
protected:
    /// Bounds behind the eye.
    void HideScene()
    {
        scene.clipMode = 1;
        scene.center = {0, 0, -100};
        scene.radius = 1.0f;
    }

    DWORD StateOf(D3DRENDERSTATETYPE state)
    {
        DWORD value = 0;
        gGfx->device->GetRenderState(state, &value);
        return value;
    }
};

class SortedDraw : public SceneDrawing {
protected:
    void SetTransparentFrom(int32_t first) { scene.opaqueMeshCount = first; }

    std::vector<std::string> Order()
    {
        Calls();
        Draw();
        std::vector<std::string> names;
        for (const std::string& mesh : Drawn())
            names.push_back(mesh.substr(0, mesh.find(' ')));
        return names;
    }
};

} // namespace

// ---- The frame as a whole

TEST_F(SceneDraw, NullSceneIsAWarningAndReturnsZero)
{
    EXPECT_EQ(gGfx->DrawScene(nullptr, 0, 0), 0);
    EXPECT_EQ(LastWarning(), "Pointer to 3dScene is zero");
    EXPECT_THAT(Calls(), IsEmpty());
}

// Camera, mirror, background, states for all meshes, the meshes, markers, and the states restored.
TEST_F(SceneDraw, FrameSendsItsStepsInOrder)
{
    AddMesh("box");
    AddLight(0.5f);
    AddObject(Shift(1, 2, 3));
    KRE_SceneSettings& settings = scene.settings;
    settings.clearBackground = settings.mirrorView = settings.useAmbient = settings.useFog = 1;
    settings.showObjects = kMarkersAll;
    scene.backgroundColor = 0xFF102030;
    scene.ambientColor = 0xFF405060;
    settings.fogColor = 0xFF708090;
    scene.activeCamera = 0;
    scene.cameras.Add();
    gGfx->ResetStateCache();
    gGfx->SetCullMode(-1);
    gGfx->SetLighting(1, nullptr);
    Calls();
    EXPECT_EQ(Draw(), 1);
    EXPECT_THAT(
        CallsButBinding(),
        ElementsAre(
            HasSubstr("SetTransform D3DTS_PROJECTION"), HasSubstr("SetTransform D3DTS_VIEW"),
            HasSubstr("SetTransform D3DTS_PROJECTION"), "SetRenderState D3DRS_CULLMODE D3DCULL_CW",
            "Clear 0 rects D3DCLEAR_TARGET|D3DCLEAR_ZBUFFER 0xFF102030 1 0",
            "SetRenderState D3DRS_AMBIENT 0xFF405060", "SetRenderState D3DRS_FOGCOLOR 0xFF708090",
            HasSubstr("D3DRS_FOGVERTEXMODE"), HasSubstr("D3DRS_RANGEFOGENABLE"),
            HasSubstr("D3DRS_FOGDENSITY"), "SetRenderState D3DRS_FOGENABLE 1",
            HasSubstr("SetLight 0"), "LightEnable 0 1", HasSubstr("D3DRS_VERTEXBLEND"),
            HasSubstr("SetSoftwareVertexProcessing 0"), HasSubstr("D3DRS_NORMALIZENORMALS"),
            HasSubstr("D3DTS_WORLDMATRIX(0)"), HasSubstr("SetMaterial"), "Mesh::DrawSubset box 0",
            HasSubstr("D3DRS_ZWRITEENABLE 1"), "SetRenderState D3DRS_LIGHTING 0",
            HasSubstr("D3DTS_WORLDMATRIX(0)"), HasSubstr("SetStreamSource"),
            "SetFVF D3DFVF_XYZ|D3DFVF_DIFFUSE", "DrawPrimitive D3DPT_POINTLIST 0 1",
            "SetRenderState D3DRS_LIGHTING 1", "SetRenderState D3DRS_FOGENABLE 0",
            "LightEnable 0 0", HasSubstr("SetTransform D3DTS_PROJECTION"),
            "SetRenderState D3DRS_CULLMODE D3DCULL_CCW"));
}

TEST_F(SceneDraw, CountersGoUpWithEachSceneThatIsShown)
{
    Draw();
    Draw(1, 0);
    EXPECT_EQ(gGfx->subFrameNumber, 2);
    HideScene();
    Draw();
    gGfx->DrawScene(nullptr, 0, 0);
    EXPECT_EQ(gGfx->subFrameNumber, 2);
    EXPECT_EQ(gGfx->frameNumber, 0);
    gGfx->ShowFrame();
    gGfx->ShowFrame();
    EXPECT_EQ(gGfx->frameNumber, 2);
}

TEST_F(SceneDraw, EngineKnowsThatItDrawsAScene)
{
    int32_t inside = 0;
    DeviceMesh(AddMesh("box")).onDraw = [&] { inside = gGfx->isDrawingScene; };
    Draw();
    EXPECT_EQ(inside, 1);
    EXPECT_EQ(gGfx->isDrawingScene, 0);
}

// ---- View

TEST_F(SceneDraw, WithoutACameraTheViewIsWhateverTheEngineHas)
{
    gGfx->SetLookAt({1, 2, 3}, {4, 5, 6}, {0, 0, 1});
    Calls();
    const D3DXMATRIX before = gGfx->view;
    scene.cameras.Add();
    for (const int32_t none : {-1, -7}) {
        scene.activeCamera = none;
        Draw();
    }
    EXPECT_EQ(gGfx->view, before);
    EXPECT_FALSE(WasCalled("D3DTS_VIEW"));
}

TEST_F(SceneDraw, ActiveCameraLooksThroughTheScenesOwnMatrix)
{
    for (const float x : {1.0f, 2.0f}) {
        KRE_Camera& camera = *scene.cameras.GetSlot(scene.cameras.Add());
        camera.SetPosition(x, 0, 0);
        camera.fov = x;
    }
    scene.activeCamera = 1;
    scene.worldTM = Shift(0, 0, 50);
    Draw();
    D3DXVECTOR3 eye;
    gGfx->GetViewPosition(eye);
    EXPECT_NEAR(eye.x, 2.0f, 1e-5f);
    EXPECT_NEAR(eye.z, 50.0f, 1e-4f);
    // cot(fov / 2) with a field of view of 2
    EXPECT_NEAR(gGfx->projection._22, 1.0f / std::tan(1.0f), 1e-5f);
}

TEST_F(SceneDraw, MissingCameraIsIgnored)
{
    scene.cameras.Add();
    for (const int32_t outside : {1, INT32_MAX}) {
        scene.activeCamera = outside;
        EXPECT_EQ(Draw(), 1);
    }
    EXPECT_FALSE(WasCalled("D3DTS_VIEW"));
}

TEST_F(SceneDraw, MirroredViewFlipsXAndFacesOnlyForTheFrame)
{
    scene.settings.mirrorView = 1;
    const D3DXMATRIX before = gGfx->projection;
    D3DXMATRIX inside;
    int32_t cullInside = 0;
    DeviceMesh(AddMesh("box")).onDraw = [&] {
        inside = gGfx->projection;
        cullInside = gGfx->cullMode;
    };
    Draw();
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            EXPECT_EQ(inside.m[row][column],
                      column == 0 ? -before.m[row][column] : before.m[row][column]);
    }
    EXPECT_EQ(cullInside, 1);
    EXPECT_EQ(gGfx->projection, before);
    EXPECT_EQ(gGfx->cullMode, -1);
}

// ---- Outside the view

TEST_F(SceneDraw, SceneOutsideTheViewReturnsZeroAndRestoresTheView)
{
    AddMesh("box");
    AddLight();
    HideScene();
    scene.settings.mirrorView = scene.settings.clearBackground = scene.settings.useAmbient = 1;
    const D3DXMATRIX before = gGfx->projection;
    EXPECT_EQ(Draw(), 0);
    EXPECT_EQ(gGfx->projection, before);
    EXPECT_EQ(gGfx->cullMode, -1);
    EXPECT_TRUE(WasCalled("Clear")) << "the background is there all the same";
    EXPECT_FALSE(WasCalled("Light"));
    EXPECT_FALSE(WasCalled("D3DRS_AMBIENT"));
    EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(SceneDraw, SceneWithClipModeZeroIsAlwaysDrawn)
{
    AddMesh("box");
    HideScene();
    scene.clipMode = 0;
    EXPECT_EQ(Draw(), 1);
    EXPECT_THAT(Drawn(), ElementsAre("box 0"));
}

TEST_F(SceneDraw, BoundsAreTransformedByTheScenesMatrix)
{
    HideScene();
    scene.worldTM = Shift(0, 0, 200);
    EXPECT_EQ(Draw(), 1);
}

// ---- Plain passes

TEST_F(SceneDraw, AnyFlagMakesAPlainPass)
{
    AddMesh("near", 1, 5.0f);
    AddMesh("far", 1, 50.0f);
    AddLight();
    AddObject(Shift(0, 0, 1));
    KRE_SceneSettings& settings = scene.settings;
    settings.clearBackground = settings.useAmbient = settings.useFog = settings.mirrorView = 1;
    settings.showHierarchy = 1;
    settings.showObjects = settings.showLights = kMarkersAll;
    static const struct {
        int32_t singleStage, noMaterials;
        bool hasMaterials;
    } cases[] = {{1, 0, true}, {0, 1, false}, {-1, 5, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(Draw(c.singleStage, c.noMaterials), 1);
        EXPECT_EQ(WasCalled("SetMaterial"), c.hasMaterials);
        for (const char* absent : {"Clear", "AMBIENT", "FOG", "Light", "LIGHTING", "DrawPrimitive"})
            EXPECT_FALSE(WasCalled(absent)) << absent;
        EXPECT_TRUE(WasCalled("D3DRS_CULLMODE D3DCULL_CW")) << "the mirror stays";
        EXPECT_THAT(Drawn(), ElementsAre("near 0", "far 0")) << "not sorted";
    }
}

// ---- Background

TEST_F(SceneDraw, NothingIsClearedUnlessTheSceneSaysSo)
{
    Draw();
    EXPECT_FALSE(WasCalled("Clear"));
}

TEST_F(SceneDraw, PictureIsDrawnOverTheWholeScreenAndOnlyTheDepthBufferIsCleared)
{
    scene.settings.clearBackground = 1;
    gGfx->CreateTexture(&scene.backgroundTexture, 4, 4, -1, D3DFMT_X8R8G8B8, 1);
    Calls();
    Draw();
    const std::vector<std::string> calls = Calls();
    EXPECT_THAT(calls, Contains("DrawPrimitive D3DPT_TRIANGLESTRIP 0 2"));
    EXPECT_THAT(calls, Contains("Clear 0 rects D3DCLEAR_ZBUFFER 0xFF000000 1 0"));
    EXPECT_THAT(calls, Contains(StartsWith("SetTexture 0 texture#")));

    void* bytes = nullptr;
    scene.backgroundTexture.quad->Lock(0, 0, &bytes, 0);
    const auto* corners = static_cast<const KRE_TLVertex*>(bytes);
    // Bottom left and top right of a screen of 64 by 64, up to the quarter of a pixel of sprites.
    EXPECT_NEAR(corners[0].x, 0.0f, 0.3f);
    EXPECT_NEAR(corners[0].y, 64.0f, 0.3f);
    EXPECT_NEAR(corners[3].x, 64.0f, 0.3f);
    EXPECT_NEAR(corners[3].y, 0.0f, 0.3f);
    EXPECT_EQ(corners[0].diffuse, 0xFFFFFFFFu);
    scene.backgroundTexture.quad->Unlock();
}

TEST_F(SceneDraw, PictureCoversTheViewportWhereverItIs)
{
    scene.settings.clearBackground = 1;
    gGfx->CreateTexture(&scene.backgroundTexture, 4, 4, -1, D3DFMT_X8R8G8B8, 1);
    gGfx->SetViewport(10, 20, 40, 60, 0.0f, 1.0f);
    Draw();
    void* bytes = nullptr;
    scene.backgroundTexture.quad->Lock(0, 0, &bytes, 0);
    const auto* corners = static_cast<const KRE_TLVertex*>(bytes);
    EXPECT_NEAR(corners[0].x, 10.0f, 0.3f);
    EXPECT_NEAR(corners[0].y, 60.0f, 0.3f);
    EXPECT_NEAR(corners[3].x, 40.0f, 0.3f);
    EXPECT_NEAR(corners[3].y, 20.0f, 0.3f);
    scene.backgroundTexture.quad->Unlock();
}

TEST_F(SceneDraw, PictureIsDrawnWithoutADepthBufferToo)
{
    scene.settings.clearBackground = 1;
    gGfx->CreateTexture(&scene.backgroundTexture, 4, 4, -1, D3DFMT_X8R8G8B8, 1);
    gGfx->depthSurface.Free();
    EXPECT_EQ(Draw(), 1);
    EXPECT_FALSE(WasCalled("Clear"));
}

TEST_F(SceneDraw, FailureToClearIsAnError)
{
    scene.settings.clearBackground = 1;
    recorder->FailNext("Clear", D3DERR_INVALIDCALL);
    EXPECT_EQ(RaisedBy([&] { Draw(); }), "Clear failed!");
}

// ---- Ambient, fog, lights

TEST_F(SceneDraw, FogGoesFromTheSettingsToTheDevice)
{
    scene.settings.useFog = 1;
    scene.settings.fogColor = 0xFF112233;
    scene.settings.fogMode = D3DFOG_LINEAR;
    scene.settings.fogPerVertex = 0;
    scene.settings.fogStart = 5.0f;
    scene.settings.fogEnd = 50.0f;
    Draw();
    EXPECT_TRUE(WasCalled("D3DRS_FOGCOLOR 0xFF112233"));
    EXPECT_TRUE(WasCalled("D3DRS_FOGTABLEMODE D3DFOG_LINEAR"));
    EXPECT_TRUE(WasCalled("D3DRS_FOGSTART 5"));
    EXPECT_TRUE(WasCalled("D3DRS_FOGEND 50"));
    EXPECT_EQ(gGfx->fogEnable, 0) << "off again after the meshes";
}

TEST_F(SceneDraw, FogByDensityTakesTheDensityOfTheSettings)
{
    scene.settings.useFog = 1;
    scene.settings.fogMode = D3DFOG_EXP2;
    scene.settings.fogDensity = 0.25f;
    Draw();
    EXPECT_TRUE(WasCalled("D3DRS_FOGVERTEXMODE D3DFOG_EXP2"));
    EXPECT_TRUE(WasCalled("D3DRS_FOGDENSITY 0.25"));
    EXPECT_FALSE(WasCalled("D3DRS_FOGSTART"));
}

TEST_F(SceneDraw, LightsThatAreOffAreSkippedButCount)
{
    AddLight(0.25f);
    AddLight(0.5f).lightOn = 0;
    AddLight(0.75f);
    Draw();
    EXPECT_THAT(CallsOf("SetLight"), ElementsAre(HasSubstr("SetLight 0 D3DLIGHT_DIRECTIONAL "
                                                           "diffuse[0.25 "),
                                                 HasSubstr("SetLight 2 D3DLIGHT_DIRECTIONAL "
                                                           "diffuse[0.75 ")));
    EXPECT_THAT(CallsOf("LightEnable"), ElementsAre("LightEnable 0 1", "LightEnable 2 1",
                                                    "LightEnable 0 0", "LightEnable 2 0"));
}

// The device's light types are 1 to 3.
TEST_F(SceneDraw, LightsOfTypesUnknownToTheDeviceAreSkippedButCount)
{
    for (const DWORD type : {0u, 1u, 4u, 3u, 7u, 0x7FFFFFFFu, 2u})
        AddLight().light.Type = static_cast<D3DLIGHTTYPE>(type);
    std::string enabled; // from which effects take their lights
    DeviceMesh(AddMesh("box")).onDraw = [&] {
        for (const int32_t on : gGfx->cache.lightEnable)
            enabled += on == 1 ? '1' : '-';
    };
    EXPECT_EQ(Draw(), 1);
    EXPECT_THAT(CallsOf("SetLight"), ElementsAre(HasSubstr("SetLight 1 D3DLIGHT_POINT"),
                                                 HasSubstr("SetLight 3 D3DLIGHT_DIRECTIONAL"),
                                                 HasSubstr("SetLight 6 D3DLIGHT_SPOT")));
    EXPECT_THAT(CallsOf("LightEnable"),
                ElementsAre("LightEnable 1 1", "LightEnable 3 1", "LightEnable 6 1",
                            "LightEnable 1 0", "LightEnable 3 0", "LightEnable 6 0"));
    EXPECT_EQ(enabled, "-1-1--1--");
}

TEST_F(SceneDraw, LightWithoutATypeAfterTheNinthDoesNoHarm)
{
    for (int i = 0; i < 9; ++i)
        AddLight();
    KRE_Light& tenth = AddLight();
    tenth.light.Type = static_cast<D3DLIGHTTYPE>(0);
    EXPECT_EQ(Draw(), 1);
    EXPECT_EQ(CallsOf("SetLight").size(), 9u);
    tenth.light.Type = D3DLIGHT_POINT;
    EXPECT_EQ(RaisedBy([&] { Draw(); }), "Light index >8");
}

TEST_F(SceneDraw, LightsAreNotUsedWithoutTheSetting)
{
    AddLight();
    scene.settings.useLights = 0;
    Draw();
    EXPECT_FALSE(WasCalled("Light"));
}

TEST_F(SceneDraw, LightsStayOnIfTheSceneSaysSo)
{
    AddLight();
    scene.settings.disableLightsAfter = 0;
    Draw();
    EXPECT_THAT(CallsOf("LightEnable"), ElementsAre("LightEnable 0 1"));
}

TEST_F(SceneDraw, AtMostNineLightsMayBeOn)
{
    for (int i = 0; i < 9; ++i)
        AddLight();
    EXPECT_EQ(Draw(), 1);
    EXPECT_EQ(CallsOf("SetLight").size(), 9u);
    KRE_Light& tenth = AddLight();
    EXPECT_EQ(RaisedBy([&] { Draw(); }), "Light index >8");
    tenth.lightOn = 0;
    EXPECT_EQ(Draw(), 1);
}

// ---- Point drawing

TEST_F(SceneDraw, PointsAreTwoPixelsAtAnyDistance)
{
    gGfx->pointRecord.scaleEnable = 1;
    gGfx->pointRecord.size = 9.0f;
    gGfx->SetFillMode(D3DFILL_POINT, nullptr);
    Draw();
    EXPECT_EQ(StateOf(D3DRS_POINTSCALEENABLE), 0u);
    EXPECT_EQ(StateOf(D3DRS_POINTSIZE), 0x40000000u); // 2.0f
    EXPECT_EQ(gGfx->fillMode, D3DFILL_POINT);
}

TEST_F(SceneDraw, OtherFillModesLeavePointsAlone)
{
    for (const D3DFILLMODE mode : {D3DFILL_WIREFRAME, D3DFILL_SOLID}) {
        gGfx->SetFillMode(mode, nullptr);
        Calls();
        Draw();
        EXPECT_FALSE(WasCalled("D3DRS_POINT"));
    }
}

// ---- Meshes in their order

TEST_F(SortedDraw, FarthestOriginComesFirst)
{
    AddMesh("near", 1, 5.0f);
    AddMesh("far", 1, 500.0f);
    AddMesh("behind", 1, -5.0f);
    AddMesh("middle", 1, 50.0f);
    EXPECT_THAT(Order(), ElementsAre("far", "middle", "near", "behind"));
}

TEST_F(SortedDraw, DepthIsThatInTheViewOfTheMovedScene)
{
    AddMesh("left", 1, 0.0f).worldTM = Shift(-10, 0, 0);
    AddMesh("right", 1, 0.0f).worldTM = Shift(10, 0, 0);
    gGfx->SetLookAt({-100, 0, 0}, {0, 0, 0}, {0, 1, 0});
    EXPECT_THAT(Order(), ElementsAre("right", "left"));
    scene.worldTM = Scale(-1, 1, 1);
    EXPECT_THAT(Order(), ElementsAre("left", "right"));
}

TEST_F(SortedDraw, PivotDoesNotAffectTheDepth)
{
    AddMesh("near", 1, 5.0f).pivotTM = Shift(0, 0, 1000);
    AddMesh("far", 1, 50.0f);
    EXPECT_THAT(Order(), ElementsAre("far", "near"));
}

TEST_F(SortedDraw, OpaqueMeshesComeFirstInTheScenesOrder)
{
    AddMesh("wall", 1, 5.0f);
    AddMesh("floor", 1, 50.0f);
    AddMesh("near glass", 1, 7.0f);
    AddMesh("far glass", 1, 70.0f);
    SetTransparentFrom(2);
    EXPECT_THAT(Order(), ElementsAre("wall", "floor", "far", "near"));
}

TEST_F(SortedDraw, WithoutTheLimitToTransparentOnesAllVisibleMeshesAreSorted)
{
    AddMesh("wall", 1, 5.0f);
    AddMesh("floor", 1, 50.0f);
    AddMesh("glass", 1, 7.0f);
    SetTransparentFrom(2);
    scene.settings.drawTransparentOnly = 0;
    EXPECT_THAT(Order(), ElementsAre("floor", "glass", "wall"));
}

TEST_F(SortedDraw, HiddenMeshesAreSkipped)
{
    AddMesh("hidden wall", 1, 5.0f).visible = 0;
    AddMesh("wall", 1, 5.0f);
    AddMesh("hidden glass", 1, 7.0f).visible = 0;
    AddMesh("glass", 1, 7.0f);
    SetTransparentFrom(2);
    EXPECT_THAT(Order(), ElementsAre("wall", "glass"));
}

TEST_F(SortedDraw, WithoutSortingTheScenesOrderHolds)
{
    AddMesh("a", 1, 5.0f);
    AddMesh("b", 1, 500.0f);
    AddMesh("c", 1, 50.0f);
    scene.settings.sortTransparent = 0;
    EXPECT_THAT(Order(), ElementsAre("a", "b", "c"));
}

TEST_F(SortedDraw, EqualDepthsHaveOneOrderHoweverManyThereAre)
{
    for (int i = 0; i < 100; ++i)
        AddMesh(std::to_string(i).c_str(), 1, i % 2 ? 10.0f : 20.0f);
    std::vector<std::string> expected;
    for (const int odd : {0, 1}) { // the far ones have even numbers; the last one comes first
        for (int i = 98 + odd; i >= 0; i -= 2)
            expected.push_back(std::to_string(i));
    }
    EXPECT_EQ(Order(), expected);
}

TEST_F(SortedDraw, DepthThatIsNotANumberCountsAsTheFarthest)
{
    AddMesh("near", 1, 5.0f);
    AddMesh("lost", 1, std::numeric_limits<float>::quiet_NaN());
    AddMesh("far", 1, 50.0f);
    EXPECT_THAT(Order(), ElementsAre("lost", "far", "near"));
}

TEST_F(SortedDraw, CountOfOpaqueMeshesIsClampedToTheMeshes)
{
    AddMesh("near", 1, 5.0f);
    AddMesh("far", 1, 50.0f);
    SetTransparentFrom(INT32_MAX);
    EXPECT_THAT(Order(), ElementsAre("near", "far"));
    SetTransparentFrom(INT32_MIN);
    EXPECT_THAT(Order(), ElementsAre("far", "near"));
}

TEST_F(SortedDraw, EmptySceneIsDrawn)
{
    EXPECT_THAT(Order(), IsEmpty());
}

TEST_F(SortedDraw, OverrideMaterialAppliesToAllMeshes)
{
    AddMesh("sorted", 1, 5.0f);
    AddMesh("opaque", 1, 5.0f);
    SetTransparentFrom(1);
    scene.overrideMaterial.diffuse = {0.5f, 1, 1, 1};
    for (const int32_t sorts : {1, 0}) {
        scene.settings.sortTransparent = sorts;
        Draw();
        EXPECT_THAT(CallsOf("SetMaterial"),
                    ElementsAre(HasSubstr("diffuse[0.5 1 1 1]"), HasSubstr("diffuse[0.5 1 1 1]")));
        Calls();
    }
}

TEST_F(SortedDraw, MeshesAreTransformedByTheScenesMatrix)
{
    AddMesh("box", 1, 5.0f);
    scene.worldTM = Shift(0, 0, 2);
    Draw();
    EXPECT_EQ(gGfx->world[0]._43, 7.0f);
}
