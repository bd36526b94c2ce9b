#include "app/SceneSession.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "base/Clock.h"
#include "gfx/KRE_Gfx.h"

#include <algorithm>

namespace {

constexpr uint32_t kLoadFlags = 1;                        // one mip level: a texture is seen once
constexpr float kFieldOfView = 0.7854f;                   // radians
constexpr float kUnlimitedRange = 1.8446600037686313e19f; // its square still fits a float

} // namespace

KRE_3dScene* gCurrentScene;

void SceneSession::Load(const char* fileName)
{
    gGfx->LoadScene(scene, fileName, kLoadFlags);
    objectsInFile =
        scene.meshes.Count() + scene.cameras.Count() + scene.objects.Count() + scene.lights.Count();
    SetWindowTextA(gMainWindow, fileName);
    PrepareSettings();
    gGfx->SetZEnable(gWBuffer ? D3DZB_USEW : D3DZB_TRUE);
    PrepareView();
    ChooseCamera();
    scene.SetLoop(gLoop);
    gGfx->SetCullMode(-1);
    if (scene.lights.Count() == 0)
        AddDefaultLights();
    gCurrentScene = &scene;
    t0 = GetTimeSeconds();
    startTime = gStartTime;
    scene.TrimLists();
}

void SceneSession::Save(const char* targetName)
{
    gGfx->SaveScene(scene, targetName);
}

void SceneSession::PrepareSettings()
{
    if (scene.meshes.Count() == 0) {
        // A scene without geometry still has something to show.
        scene.settings.showObjects = kMarkersAll;
        scene.settings.showHierarchy = 1;
    }
    scene.settings.clearBackground = 1;
    scene.settings.mirrorView = 1;
}

/// Near, far and a position from which the whole scene is visible.
void SceneSession::PrepareView()
{
    D3DXVECTOR3 center;
    const float radius = scene.GetSphere(center);
    float nearZ = gNearZ;
    float farZ = gFarZ;
    if (gNearZ == gFarZ) {
        farZ = static_cast<float>(5.0 * radius);
        nearZ = static_cast<float>(radius / 20.0);
    }
    gGfx->SetProjection(nearZ, farZ, kFieldOfView, -1.0f);

    sceneEnd = scene.loopEnd;
    camera.SetPosition(center.x, static_cast<float>(center.y - 2.8 * radius), center.z);
    camera.SetDirection(0.0f, 1.0f, 0.0f);
    camera.SetUp(0.0f, 0.0f, 1.0f);
}

void SceneSession::ChooseCamera()
{
    cameraIndex = gCameraIndex < scene.cameras.Count() ? gCameraIndex : -1;
    scene.SetCamera(cameraIndex);
}

/// QUIRK: the directions go into the file, but like those of all lights they are taken from the
/// node at each evaluation, so that in the frame both lights shine straight down.
void SceneSession::AddDefaultLights()
{
    light.SetDirectional(2.0f, 2.0f, 2.0f, 0.0f, 0.6f, 0.6f, 0.6f, 0.0f, 0.3f, 0.3f, 0.3f, 0.0f,
                         kUnlimitedRange);
    light.SetPosition(0.0f, 0.0f, 0.0f);
    light.SetDirection(0.0f, -0.5f, -1.0f);
    scene.AddLight(light);
    light.SetDirection(-1.0f, 1.0f, 0.0f);
    scene.AddLight(light);
}

/// The time in the scene, in seconds. QUIRK: reaching the end stops the clock for all later files.
double SceneSession::FrameTime(double now) const
{
    double time = startTime;
    if (!gStopTime && !gPaused)
        time = (now - t0) * gSpeed + startTime;
    if (gLoop)
        return time;
    if (sceneEnd <= time) {
        time = sceneEnd;
        gStopTime = 1;
    }
    return std::max(time, 0.0);
}

/// One frame since the scene was ready. QUIRK: the rate is 0 until a second has passed.
double SceneSession::FramesPerSecond(double now) const
{
    const double elapsed = now - t0;
    return elapsed > 1.0 ? static_cast<float>(1.0 / elapsed) : 0.0;
}

void SceneSession::DrawFrame(const char (&banner)[kBannerSize])
{
    const double now = GetTimeSeconds();
    scene.Update(FrameTime(now), 1);
    if (cameraIndex == -1)
        gGfx->SetCamera(camera, nullptr);
    gGfx->SetFillMode(D3DFILL_SOLID, nullptr);
    gGfx->BeginScene();
    gGfx->DrawScene(&scene, 0, 0);
    DrawBanner(banner, FramesPerSecond(now));
    gGfx->EndScene();
}

void SceneSession::ShowFrame(const char (&banner)[kBannerSize])
{
    DrawFrame(banner);
    gGfx->ShowFrame();
}
