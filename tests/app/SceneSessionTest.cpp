#include "app/SceneSession.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

namespace {

// 250 frames of 25 a second: it ends at 10 seconds.
const std::string kHead =
    "*3DSMAX_QSAEXPORT 200\n*SCENE { *SCENE_FIRSTFRAME 0 *SCENE_LASTFRAME 250 "
    "*SCENE_FRAMESPEED 25 *SCENE_TICKSPERFRAME 192 }\n";

std::string Helper(const char* name, const char* place)
{
    return std::string("*HELPEROBJECT { *NODE_NAME \"") + name + "\" *NODE_TM { *TM_POS " + place +
           " } }\n";
}

/// A camera at a place, with a target at the origin.
std::string Camera(const char* name, const char* place)
{
    return std::string("*TARGETOBJECT { *NODE_NAME \"") + name + ".Target\" }\n*CAMERAOBJECT { " +
           "*NODE_NAME \"" + name + "\" *TARGET_NODE \"" + name +
           ".Target\" *CAMERA_SETTINGS { *CAMERA_FOV 0.5 } *NODE_TM { *TM_POS " + place + " } }\n";
}

class Session : public testing::Test {
protected:
    Session() { gGfx->drawDisabled = 1; }    // the states are looked at, not the picture
    ~Session() override { session.reset(); } // before the engine

    /// Loads a scene of these nodes as "scene.qsa".
    KRE_3dScene& Load(const std::string& nodes)
    {
        scratch.Write("scene.qsa", kHead + nodes);
        session = std::make_unique<SceneSession>();
        session->Load("scene.qsa");
        return *gCurrentScene;
    }
    void ShowFrame() { session->ShowFrame(banner); }
    /// The time at which the scene was drawn, in seconds.
    double DrawnTime()
    {
        ShowFrame();
        return gCurrentScene->lastTime;
    }
    static D3DXVECTOR3 Eye()
    {
        D3DXVECTOR3 eye;
        gGfx->GetViewPosition(eye);
        return eye;
    }
    static void ExpectNear(const D3DVECTOR& actual, double x, double y, double z, double tolerance,
                           const char* what)
    {
        EXPECT_NEAR(actual.x, x, tolerance) << what;
        EXPECT_NEAR(actual.y, y, tolerance) << what;
        EXPECT_NEAR(actual.z, z, tolerance) << what;
    }

    const ScratchDirectory scratch;
    const WindowFlags flags;
    const ScratchEngine engine{""};
    std::unique_ptr<SceneSession> session;
    char banner[kBannerSize] = "%f";
};

} // namespace

// ---- Settings

TEST_F(Session, SceneWithoutMeshesShowsItsHelpers)
{
    const KRE_3dScene& scene = Load(Helper("a", "1 2 3"));
    EXPECT_EQ(scene.settings.showObjects, kMarkersAll);
    EXPECT_EQ(scene.settings.showHierarchy, 1);
    EXPECT_EQ(scene.settings.clearBackground, 1);
    EXPECT_EQ(scene.settings.mirrorView, 1);
    session->Save("scene.qsb");
    ShowFrame();
    const auto* point = gGfx->pointList.LockVertices(0, 1, D3DLOCK_READONLY);
    EXPECT_EQ(point->diffuse, 0xFF01FF9Bu) << "the helper was drawn";
    gGfx->pointList.Unlock();
    EXPECT_TRUE(scratch.Has("scene.qsb"));
}

TEST_F(Session, SceneWithAMeshShowsNoHelpers)
{
    const KRE_3dScene& scene = Load(
        "*GEOMOBJECT { *NODE_NAME \"box\" *MESH { *MESH_NUMVERTEX 3 *MESH_NUMFACES 1 "
        "*MESH_VERTEX_LIST { *MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 1 0 0 *MESH_VERTEX 2 0 1 0 } "
        "*MESH_FACE_LIST { *MESH_FACE 0: A: 0 B: 1 C: 2 *MESH_SMOOTHING 1 *MESH_MTLID 0 } } }\n");
    ASSERT_EQ(scene.meshes.Count(), 1);
    EXPECT_EQ(scene.settings.showObjects, kMarkersNone);
    EXPECT_EQ(scene.settings.showHierarchy, 0);
    EXPECT_EQ(scene.settings.clearBackground, 1);
    EXPECT_EQ(scene.settings.mirrorView, 1);
}

// ---- View

// Helpers at (-3, 0, 0) and (3, 8, 0) span a box whose centre is (0, 4, 0) and half diagonal 5.
TEST_F(Session, ViewFitsTheBounds)
{
    gNearZ = gFarZ = 3.0f; // no range of their own
    Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0"));
    EXPECT_FLOAT_EQ(gGfx->farZ, 25.0f);
    EXPECT_FLOAT_EQ(gGfx->nearZ, 0.25f);
    // The vertical field of view of 0.7854: cot(0.3927).
    EXPECT_NEAR(gGfx->projection._22, 1.0 / std::tan(0.3927), 1e-4);
    ShowFrame();
    ExpectNear(Eye(), 0, 4 - 2.8 * 5, 0, 1e-4, "in front of it, along y");
    // Ahead is +y, up is +z.
    EXPECT_NEAR(gGfx->view._23, 1.0f, 1e-6f);
    EXPECT_NEAR(gGfx->view._32, 1.0f, 1e-6f);
}

TEST_F(Session, FieldOfViewIsTheFloatOfTheFormat)
{
    EXPECT_EQ(std::bit_cast<uint32_t>(0.7854f), 0x3F490FF9u);
}

TEST_F(Session, NearAndFarOfTheOptionsAreTakenUnlessTheyAreEqual)
{
    gNearZ = 2.0f;
    gFarZ = 77.0f;
    Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0"));
    EXPECT_EQ(gGfx->nearZ, 2.0f);
    EXPECT_EQ(gGfx->farZ, 77.0f);
    gNearZ = gFarZ = 3.0f;
    Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0"));
    EXPECT_FLOAT_EQ(gGfx->nearZ, 0.25f);
    EXPECT_FLOAT_EQ(gGfx->farZ, 25.0f);
}

TEST_F(Session, SceneOfRadiusZeroHasNearAndFarZeroAndGoesThroughItsFrame)
{
    gNearZ = gFarZ = 3.0f;
    Load(Helper("a", "1 2 3"));
    EXPECT_EQ(gGfx->nearZ, 0.0f);
    EXPECT_EQ(gGfx->farZ, 0.0f);
    ShowFrame();
    EXPECT_EQ(gGfx->inScene, 0);
}

TEST_F(Session, CameraOfTheOptionsIsTakenIfTheSceneHasIt)
{
    const std::string two = Camera("first", "10 0 0") + Camera("second", "20 0 0");
    static const struct {
        const char* what;
        int option;
        int32_t active;
        bool isFree;
        float x;
    } cases[] = {
        {"beyond them", 99, -1, true, 0},
        {"the second", 1, 1, false, 20},
        {"the first", 0, 0, false, 10},
        {"none", -1, -1, true, 0},
    };
    for (const auto& c : cases) {
        gCameraIndex = c.option;
        EXPECT_EQ(Load(two).activeCamera, c.active) << c.what;
        ShowFrame();
        if (!c.isFree)
            ExpectNear(Eye(), c.x, 0, 0, 1e-4, c.what);
        else
            EXPECT_LT(Eye().y, -1.0f) << c.what << ": in front of the scene";
    }
}

TEST_F(Session, SceneWithoutCamerasTakesTheFreeOne)
{
    gCameraIndex = 0;
    EXPECT_EQ(Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0")).activeCamera, -1);
    ShowFrame();
    ExpectNear(Eye(), 0, -10, 0, 1e-4, "free");
}

TEST_F(Session, QuirkOtherNegativeCamerasLeaveTheViewAlone)
{
    gCameraIndex = -5;
    EXPECT_EQ(Load(Camera("first", "10 0 0")).activeCamera, -5);
    gGfx->SetLookAt({1, 2, 3}, {4, 5, 6}, {0, 0, 1});
    ShowFrame();
    ExpectNear(Eye(), 1, 2, 3, 1e-5, "as it was");
}

TEST_F(Session, LoopGoesToTheScene)
{
    EXPECT_EQ(Load("").loop, 0);
    gLoop = 1;
    EXPECT_EQ(Load("").loop, 1);
}

// ---- Lights

TEST_F(Session, SceneWithoutLightsGetsTwoThatGoIntoTheFile)
{
    Load(Helper("a", "1 2 3"));
    session->Save("scene.qsb");
    KRE_3dScene saved;
    gGfx->LoadScene(saved, "scene.qsb", 1);
    ASSERT_EQ(saved.lights.Count(), 2);
    for (int32_t i = 0; i < 2; ++i) {
        const D3DLIGHT9& light = saved.lights.Get(i)->light;
        EXPECT_EQ(light.Type, D3DLIGHT_DIRECTIONAL);
        for (const float part : {light.Diffuse.r, light.Diffuse.g, light.Diffuse.b})
            EXPECT_EQ(part, 2.0f);
        for (const float part : {light.Specular.r, light.Specular.g, light.Specular.b})
            EXPECT_EQ(part, 0.6f);
        for (const float part : {light.Ambient.r, light.Ambient.g, light.Ambient.b})
            EXPECT_EQ(part, 0.3f);
        for (const float alpha : {light.Diffuse.a, light.Specular.a, light.Ambient.a})
            EXPECT_EQ(alpha, 0.0f);
        EXPECT_EQ(std::bit_cast<uint32_t>(light.Range), 0x5F7FFF7Du);
        EXPECT_EQ(saved.lights.Get(i)->lightOn, 1);
    }
}

// (0, -0.5, -1) and (-1, 1, 0) at length 1.
TEST_F(Session, DefaultLightsAreDirectedUntilTheyAreEvaluated)
{
    const KRE_3dScene& scene = Load("");
    ASSERT_EQ(scene.lights.Count(), 2);
    ExpectNear(scene.lights.Get(0)->light.Direction, 0, -0.447214, -0.894427, 1e-6, "first");
    ExpectNear(scene.lights.Get(1)->light.Direction, -0.707107, 0.707107, 0, 1e-6, "second");
}

TEST_F(Session, QuirkInTheFrameDefaultLightsShineStraightDown)
{
    Load(Helper("a", "1 2 3"));
    ShowFrame();
    for (int i = 0; i < 2; ++i)
        ExpectNear(gGfx->lights[i].Direction, 0, 0, -1, 1e-6, "of its node");
}

TEST_F(Session, SceneWithALightGetsNoOthers)
{
    EXPECT_EQ(Load("*LIGHTOBJECT { *NODE_NAME \"sun\" }\n").lights.Count(), 1);
}

TEST_F(Session, ListsHaveNoSpareSlots)
{
    const KRE_3dScene& scene = Load(Helper("a", "1 2 3"));
    EXPECT_EQ(scene.objects.Capacity(), 1);
    EXPECT_EQ(scene.lights.Capacity(), 2);
}

// ---- Time

TEST_F(Session, StoppedClockDrawsAtTheStartTime)
{
    gStartTime = 5.0f;
    gStopTime = 1;
    Load("");
    EXPECT_EQ(DrawnTime(), 5.0);
}

TEST_F(Session, PausedClockDrawsAtTheStartTime)
{
    gStartTime = 5.0f;
    gSpeed = 1000.0f;
    gPaused = 1;
    Load("");
    EXPECT_EQ(DrawnTime(), 5.0);
    EXPECT_EQ(gStopTime, 0);
}

TEST_F(Session, EndIsHeldWhenTheClockIsStoppedToo)
{
    gStartTime = 50.0f;
    gStopTime = 1;
    Load("");
    EXPECT_EQ(DrawnTime(), 10.0);
}

// What goes by between loading and drawing counts, times the speed: 20 ms at 100 are 2 seconds.
TEST_F(Session, RunningClockAddsWhatSavingTook)
{
    gStartTime = 5.0f;
    gSpeed = 100.0f;
    gLoop = 0;
    Load("");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const double time = DrawnTime();
    EXPECT_GE(time, 6.9);
    EXPECT_LE(time, 10.0);
}

TEST_F(Session, BeyondTheEndTheClockStopsForAllLaterFiles)
{
    gStartTime = 200.0f;
    Load("");
    EXPECT_EQ(gStopTime, 0);
    EXPECT_EQ(DrawnTime(), 10.0);
    EXPECT_EQ(gStopTime, 1);

    gStartTime = 3.0f;
    gSpeed = 1000.0f;
    Load("");
    EXPECT_EQ(DrawnTime(), 3.0);
}

TEST_F(Session, TimeBeforeTheBeginningIsTheBeginning)
{
    gStartTime = -30.0f;
    Load("");
    EXPECT_EQ(DrawnTime(), 0.0);
    EXPECT_EQ(gStopTime, 0);
}

// 25 seconds into a loop of 10.
TEST_F(Session, LoopIsNeitherClampedNorStopped)
{
    gLoop = 1;
    gStartTime = 25.0f;
    gSpeed = 0.0f;
    Load("");
    EXPECT_NEAR(DrawnTime(), 5.0, 1e-5);
    EXPECT_EQ(gStopTime, 0);
    gStartTime = -3.0f;
    Load("");
    EXPECT_NEAR(DrawnTime(), 7.0, 1e-5);
}

TEST_F(Session, EndIsThatOfTheSceneAsLoaded)
{
    gStartTime = 200.0f;
    Load("").loopEnd = 4.0f;
    EXPECT_EQ(DrawnTime(), 10.0);
}

// ---- Frame

TEST_F(Session, RateIsZeroUntilASecondHasGoneBy)
{
    Load("");
    ShowFrame();
    EXPECT_STREQ(gGfx->scratch.Get(), "0.000000");
    std::this_thread::sleep_for(std::chrono::milliseconds(1050));
    ShowFrame();
    const double rate = std::atof(gGfx->scratch.Get());
    EXPECT_LT(rate, 1.0);
    EXPECT_GT(rate, 0.05);
}

TEST_F(Session, FrameIsDrawnSolidInsideTheBracketAndPresented)
{
    Load(Helper("a", "1 2 3"));
    gGfx->SetFillMode(D3DFILL_WIREFRAME, nullptr);
    ShowFrame();
    EXPECT_EQ(gGfx->fillMode, D3DFILL_SOLID);
    EXPECT_EQ(gGfx->inScene, 0);
    EXPECT_EQ(gGfx->frameNumber, 1);
    EXPECT_EQ(gGfx->subFrameNumber, 1);
    EXPECT_EQ(gGfx->frameCount, 1);
}

TEST_F(Session, ViewIsMirroredForTheSceneAlone)
{
    Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0"));
    ShowFrame();
    EXPECT_GT(gGfx->projection._11, 0.0f);
    EXPECT_EQ(gGfx->cullMode, -1);
}

TEST_F(Session, SceneThatIsShownIsTheCurrentOne)
{
    gCurrentScene = nullptr;
    Load(Helper("a", "1 2 3"));
    ASSERT_NE(gCurrentScene, nullptr);
    EXPECT_EQ(gCurrentScene->objects.Count(), 1);
}
