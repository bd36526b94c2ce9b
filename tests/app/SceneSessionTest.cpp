#include "app/SceneSession.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "base/Clock.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/RecordingDevice.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

#include <gmock/gmock.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

namespace {

// 250 frames at 25 per second: it ends at 10 seconds.
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

class SceneSessionTest : public testing::Test {
protected:
    SceneSessionTest() { gGfx->drawDisabled = 1; }    // the tests check the states, not the picture
    ~SceneSessionTest() override { session.reset(); } // before the engine

    /// Loads a scene with these nodes as "scene.qsa".
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

TEST_F(SceneSessionTest, SceneWithoutMeshesShowsItsHelpers)
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

TEST_F(SceneSessionTest, SceneWithAMeshShowsNoHelpers)
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

// ---- Load

// The full chain of a 64x64 picture has seven levels.
TEST_F(SceneSessionTest, PicturesAreLoadedWithOneLevelAndBumpMapsAreNot)
{
    std::filesystem::copy(SourcePath("examples/checker.png"), "checker.png");
    std::filesystem::copy(SourcePath("examples/bumps.png"), "bumps.png");
    const KRE_3dScene& scene =
        Load("*MATERIAL_LIST { *MATERIAL 0 { *MATERIAL_NAME \"m\" "
             "*MAP_DIFFUSE { *BITMAP \"checker.png\" } *MAP_BUMP { *BITMAP \"bumps.png\" } } }\n"
             "*GEOMOBJECT { *NODE_NAME \"box\" *MESH { *MESH_NUMVERTEX 3 *MESH_NUMFACES 1 "
             "*MESH_VERTEX_LIST { *MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 1 0 0 *MESH_VERTEX 2 0 1 0 } "
             "*MESH_FACE_LIST { *MESH_FACE 0: A: 0 B: 1 C: 2 *MESH_SMOOTHING 1 *MESH_MTLID 0 } "
             "*MESH_NUMTVERTEX 3 *MESH_TVERTLIST { *MESH_TVERT 0 0 0 0 *MESH_TVERT 1 1 0 0 "
             "*MESH_TVERT 2 0 1 0 } *MESH_NUMTVFACES 1 *MESH_TFACELIST { *MESH_TFACE 0 0 1 2 } } "
             "*MATERIAL_REF 0 }\n");
    ASSERT_EQ(scene.meshes.Count(), 1);
    const KRE_Mesh& mesh = *scene.meshes.Get(0);
    ASSERT_EQ(mesh.materialCount, 1);
    const KRE_Texture& texture = mesh.textures[0];
    ASSERT_NE(texture.slotTextures[0], nullptr);
    EXPECT_EQ(texture.slotTextures[0]->GetLevelCount(), 1u);
    EXPECT_EQ(texture.slotTextures[1], nullptr) << "the bump map";
    EXPECT_EQ(mesh.mesh->GetFVF() & (D3DFVF_DIFFUSE | D3DFVF_SPECULAR), 0u);
}

// ---- View

// Helpers at (-3, 0, 0) and (3, 8, 0) span a box whose centre is (0, 4, 0) and half diagonal 5.
TEST_F(SceneSessionTest, ViewFitsTheBounds)
{
    gNearZ = gFarZ = 3.0f; // no range is given
    Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0"));
    EXPECT_FLOAT_EQ(gGfx->farZ, 25.0f);
    EXPECT_FLOAT_EQ(gGfx->nearZ, 0.25f);
    // The vertical field of view of 0.7854: cot(0.3927).
    EXPECT_NEAR(gGfx->projection._22, 1.0 / std::tan(0.3927), 1e-4);
    ShowFrame();
    ExpectNear(Eye(), 0, 4 - 2.8 * 5, 0, 1e-4, "in front of it, along y");
    // Forward is +y, up is +z.
    EXPECT_NEAR(gGfx->view._23, 1.0f, 1e-6f);
    EXPECT_NEAR(gGfx->view._32, 1.0f, 1e-6f);
}

// The angle of 0x3F490FF9 is 13176825 / 2^24 = 0.785399973392487 radians, and half of it has the
// cotangent 2.41420738268. The neighbouring floats give 2.41420758618 and 2.41420717917. Floats of
// that size are 2.384e-7 apart: a correctly rounded result is within half of that, and neither of
// the others is.
TEST_F(SceneSessionTest, FieldOfViewIsTheFloatOfTheFormat)
{
    Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0"));
    EXPECT_NEAR(gGfx->projection._22, 2.41420738268, 1.2e-7);
}

TEST_F(SceneSessionTest, NearAndFarOfTheOptionsAreTakenUnlessTheyAreEqual)
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

TEST_F(SceneSessionTest, SceneOfRadiusZeroHasNearAndFarZeroAndGoesThroughItsFrame)
{
    gNearZ = gFarZ = 3.0f;
    Load(Helper("a", "1 2 3"));
    EXPECT_EQ(gGfx->nearZ, 0.0f);
    EXPECT_EQ(gGfx->farZ, 0.0f);
    ShowFrame();
    EXPECT_EQ(gGfx->inScene, 0);
}

TEST_F(SceneSessionTest, CameraOfTheOptionsIsTakenIfTheSceneHasIt)
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

TEST_F(SceneSessionTest, SceneWithoutCamerasTakesTheFreeOne)
{
    gCameraIndex = 0;
    EXPECT_EQ(Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0")).activeCamera, -1);
    ShowFrame();
    ExpectNear(Eye(), 0, -10, 0, 1e-4, "free");
}

TEST_F(SceneSessionTest, QuirkOtherNegativeCamerasLeaveTheViewAlone)
{
    gCameraIndex = -5;
    EXPECT_EQ(Load(Camera("first", "10 0 0")).activeCamera, -5);
    gGfx->SetLookAt({1, 2, 3}, {4, 5, 6}, {0, 0, 1});
    ShowFrame();
    ExpectNear(Eye(), 1, 2, 3, 1e-5, "as it was");
}

TEST_F(SceneSessionTest, LoopGoesToTheScene)
{
    EXPECT_EQ(Load("").loop, 0);
    gLoop = 1;
    EXPECT_EQ(Load("").loop, 1);
}

// ---- Lights

TEST_F(SceneSessionTest, SceneWithoutLightsGetsTwoThatGoIntoTheFile)
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

// (0, -0.5, -1) and (-1, 1, 0), normalised.
TEST_F(SceneSessionTest, DefaultLightsAreDirectedUntilTheyAreEvaluated)
{
    const KRE_3dScene& scene = Load("");
    ASSERT_EQ(scene.lights.Count(), 2);
    ExpectNear(scene.lights.Get(0)->light.Direction, 0, -0.447214, -0.894427, 1e-6, "first");
    ExpectNear(scene.lights.Get(1)->light.Direction, -0.707107, 0.707107, 0, 1e-6, "second");
}

TEST_F(SceneSessionTest, QuirkInTheFrameDefaultLightsShineStraightDown)
{
    Load(Helper("a", "1 2 3"));
    ShowFrame();
    for (int i = 0; i < 2; ++i)
        ExpectNear(gGfx->lights[i].Direction, 0, 0, -1, 1e-6, "of its node");
}

TEST_F(SceneSessionTest, DefaultLightsAreAtTheOrigin)
{
    Load(Helper("a", "1 2 3"));
    session->Save("scene.qsb");
    KRE_3dScene saved;
    gGfx->LoadScene(saved, "scene.qsb", 1);
    ASSERT_EQ(saved.lights.Count(), 2);
    for (int32_t i = 0; i < 2; ++i) {
        for (const KRE_Light* each : {gCurrentScene->lights.Get(i), saved.lights.Get(i)}) {
            const KRE_Light& light = *each;
            ExpectNear(light.position, 0, 0, 0, 0, "of the node");
            ExpectNear(light.worldPosition, 0, 0, 0, 0, "in the world");
            ExpectNear(light.light.Position, 0, 0, 0, 0, "of the device's record");
        }
    }
}

TEST_F(SceneSessionTest, SceneWithALightGetsNoOthers)
{
    EXPECT_EQ(Load("*LIGHTOBJECT { *NODE_NAME \"sun\" }\n").lights.Count(), 1);
}

TEST_F(SceneSessionTest, ListsHaveNoSpareSlots)
{
    const KRE_3dScene& scene = Load(Helper("a", "1 2 3"));
    EXPECT_EQ(scene.objects.Capacity(), 1);
    EXPECT_EQ(scene.lights.Capacity(), 2);
}

// ---- Time

TEST_F(SceneSessionTest, StoppedClockDrawsAtTheStartTime)
{
    gStartTime = 5.0f;
    gStopTime = 1;
    Load("");
    EXPECT_EQ(DrawnTime(), 5.0);
}

TEST_F(SceneSessionTest, PausedClockDrawsAtTheStartTime)
{
    gStartTime = 5.0f;
    gSpeed = 1000.0f;
    gPaused = 1;
    Load("");
    EXPECT_EQ(DrawnTime(), 5.0);
    EXPECT_EQ(gStopTime, 0);
}

TEST_F(SceneSessionTest, TheTimeIsLimitedToTheEndWithAStoppedClockToo)
{
    gStartTime = 50.0f;
    gStopTime = 1;
    Load("");
    EXPECT_EQ(DrawnTime(), 10.0);
}

// The time between loading and drawing counts, times the speed: 20 ms at 100 are 2 seconds.
TEST_F(SceneSessionTest, RunningClockAddsWhatSavingTook)
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

TEST_F(SceneSessionTest, BeyondTheEndTheClockStopsForAllLaterFiles)
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

TEST_F(SceneSessionTest, EndThatIsReachedExactlyStopsTheClock)
{
    gSpeed = 0.0f;
    gStartTime = 10.0f;
    Load("");
    EXPECT_EQ(DrawnTime(), 10.0);
    EXPECT_EQ(gStopTime, 1);
}

TEST_F(SceneSessionTest, TimeShortOfTheEndGoesOn)
{
    gSpeed = 0.0f;
    gStartTime = std::nextafter(10.0f, 0.0f);
    Load("");
    EXPECT_EQ(DrawnTime(), gStartTime);
    EXPECT_EQ(gStopTime, 0);
}

TEST_F(SceneSessionTest, TimeBeforeTheBeginningIsTheBeginning)
{
    gStartTime = -30.0f;
    Load("");
    EXPECT_EQ(DrawnTime(), 0.0);
    EXPECT_EQ(gStopTime, 0);
}

// 25 seconds into a loop of 10 seconds.
TEST_F(SceneSessionTest, LoopIsNeitherClampedNorStopped)
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

TEST_F(SceneSessionTest, EndIsTheOneTheSceneWasLoadedWith)
{
    gStartTime = 200.0f;
    Load("").loopEnd = 4.0f;
    EXPECT_EQ(DrawnTime(), 10.0);
}

// ---- Frame

// The session reads the clock itself, but each reading is between two of the test's. The printed rate is
// one frame divided by the time, with six decimals.
TEST_F(SceneSessionTest, RateIsZeroUntilASecondHasGoneBy)
{
    const double beforeLoad = GetTimeSeconds();
    Load("");
    const double afterLoad = GetTimeSeconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(900));
    double last = 0.0; // the longest possible time of a frame of less than a second
    for (double least = 0.0; least <= 1.05;) {
        least = GetTimeSeconds() - afterLoad;
        ShowFrame();
        const double most = GetTimeSeconds() - beforeLoad;
        const double rate = std::atof(gGfx->scratch.Get());
        if (most <= 1.0) {
            EXPECT_STREQ(gGfx->scratch.Get(), "0.000000") << most;
            last = most;
        } else if (least > 1.0) {
            EXPECT_GE(rate, 1.0 / most - 1e-6);
            EXPECT_LE(rate, 1.0 / least + 1e-6);
        }
    }
    RecordProperty("last", std::to_string(last));
}

TEST_F(SceneSessionTest, FrameIsDrawnSolidInsideTheBracketAndPresented)
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

TEST_F(SceneSessionTest, FillModeIsSolidBeforeTheSceneBegins)
{
    Load(Helper("a", "1 2 3"));
    const auto recording = RecordingDevice::Wrap(gGfx->device.Get());
    gGfx->device = ComPointer<IDirect3DDevice9>::Share(recording.get());
    gGfx->SetFillMode(D3DFILL_WIREFRAME, nullptr);
    recording->ClearLines();
    ShowFrame();
    const std::string calls = recording->Joined();
    const size_t solid = calls.find("SetRenderState D3DRS_FILLMODE D3DFILL_SOLID\n");
    ASSERT_NE(solid, std::string::npos);
    EXPECT_LT(solid, calls.find("BeginScene\n"));
}

// -1 is counter-clockwise.
TEST_F(SceneSessionTest, CullingStartsCounterClockwise)
{
    gGfx->SetCullMode(1);
    Load(Helper("a", "1 2 3"));
    EXPECT_EQ(gGfx->cullMode, -1);
    DWORD culling = 0;
    gGfx->device->GetRenderState(D3DRS_CULLMODE, &culling);
    EXPECT_EQ(culling, static_cast<DWORD>(D3DCULL_CCW));
}

TEST_F(SceneSessionTest, ViewIsMirroredForTheSceneAlone)
{
    Load(Helper("a", "-3 0 0") + Helper("b", "3 8 0"));
    ShowFrame();
    EXPECT_GT(gGfx->projection._11, 0.0f);
    EXPECT_EQ(gGfx->cullMode, -1);
}

TEST_F(SceneSessionTest, SceneThatIsShownIsTheCurrentOne)
{
    gCurrentScene = nullptr;
    Load(Helper("a", "1 2 3"));
    ASSERT_NE(gCurrentScene, nullptr);
    EXPECT_EQ(gCurrentScene->objects.Count(), 1);
}
