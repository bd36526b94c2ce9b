#include <algorithm>
#include <cmath>
#include <limits>

#include "base/WithMemory.h"
#include "gfx/KRE_Gfx.h"
#include "render/KRE_SceneDrawing.h"
#include "scene/KRE_3dScene.h"

namespace {

constexpr float kPointSize = 2.0f; // pixels, for point drawing

KRE_FogRecord FogOf(const KRE_SceneSettings& settings)
{
    KRE_FogRecord fog;
    fog.color = settings.fogColor;
    fog.mode = settings.fogMode;
    fog.tableFlag = settings.fogPerVertex;
    fog.start = settings.fogStart;
    fog.end = settings.fogEnd;
    fog.density = settings.fogDensity;
    return fog;
}

/// The device would refuse a light of a type that it does not support.
bool IsDrawn(const KRE_Light& light)
{
    return light.lightOn && light.HasDeviceType();
}

} // namespace

int32_t KRE_SceneDrawing::DrawScene(KRE_3dScene* scene, int32_t singleStage, int32_t noMaterials)
{
    if (!scene) {
        gfx.Warning("Pointer to 3dScene is zero");
        return 0;
    }
    const bool isPlainPass = singleStage != 0 || noMaterials != 0;
    const KRE_SceneSettings& settings = scene->settings;
    const D3DXMATRIX& sceneTM = scene->worldTM;

    if (scene->activeCamera >= 0 && scene->activeCamera < scene->cameras.Count())
        gfx.SetCamera(*scene->cameras.Get(scene->activeCamera), &sceneTM);
    if (settings.mirrorView)
        gfx.MirrorScene();
    if (!isPlainPass && settings.clearBackground)
        DrawBackground(*scene);
    const bool isVisible = IsVisible(*scene, sceneTM);
    if (isVisible) {
        ++gfx.subFrameNumber;
        gfx.isDrawingScene = 1;
        if (!isPlainPass)
            SetSceneStates(*scene);
        SetPointDrawing();
        DrawMeshes(*scene, singleStage, noMaterials);
        if (!isPlainPass) {
            DrawMarkers(*scene);
            ClearSceneStates(*scene);
        }
    }
    if (settings.mirrorView)
        gfx.MirrorScene();
    gfx.isDrawingScene = 0;
    return isVisible ? 1 : 0;
}

/// QUIRK: a picture replaces clearing, with the blending that was set before. Where it has alpha,
/// the previous frame shows through it from the second file of a run on.
void KRE_SceneDrawing::DrawBackground(KRE_3dScene& scene)
{
    if (!scene.backgroundTexture.IsValid()) {
        gfx.Clear(scene.backgroundColor);
        return;
    }
    const auto left = static_cast<float>(gfx.viewport.X);
    const auto top = static_cast<float>(gfx.viewport.Y);
    const D3DCOLOR white[4] = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    gfx.SetTexture(&scene.backgroundTexture);
    gfx.DrawSpriteRect(left, top, left + static_cast<float>(gfx.viewport.Width),
                       top + static_cast<float>(gfx.viewport.Height), white);
    if (gfx.depthSurface)
        gfx.ClearZ(scene.backgroundColor);
}

/// Sets the states common to all meshes of a scene.
void KRE_SceneDrawing::SetSceneStates(KRE_3dScene& scene)
{
    const KRE_SceneSettings& settings = scene.settings;
    if (settings.useAmbient)
        gfx.SetAmbient(scene.ambientColor);
    if (settings.useFog) {
        gfx.SetFog(FogOf(settings));
        gfx.SetFogEnable(1);
    }
    if (!settings.useLights)
        return;
    int32_t index = 0; // counts lights that are off as well
    for (const KRE_Light* light : scene.lights) {
        if (IsDrawn(*light)) {
            gfx.SetLight(index, light->light);
            gfx.LightEnable(index, 1);
        }
        ++index;
    }
}

void KRE_SceneDrawing::ClearSceneStates(KRE_3dScene& scene)
{
    const KRE_SceneSettings& settings = scene.settings;
    if (settings.useFog)
        gfx.SetFogEnable(0);
    if (!settings.useLights || !settings.disableLightsAfter)
        return;
    int32_t index = 0;
    for (const KRE_Light* light : scene.lights) {
        if (IsDrawn(*light))
            gfx.LightEnable(index, 0);
        ++index;
    }
}

void KRE_SceneDrawing::SetPointDrawing()
{
    if (gfx.fillMode != D3DFILL_POINT)
        return;
    gfx.pointRecord.scaleEnable = 0;
    gfx.pointRecord.size = kPointSize;
    gfx.SetPointParameters(gfx.pointRecord, gfx.hardwareVertexProcessing);
}

void KRE_SceneDrawing::DrawMeshes(KRE_3dScene& scene, int32_t singleStage, int32_t noMaterials)
{
    const bool isPlainPass = singleStage != 0 || noMaterials != 0;
    if (!scene.settings.sortTransparent || isPlainPass) {
        for (KRE_Mesh* mesh : scene.meshes)
            DrawMesh(mesh, &scene.worldTM, &scene.overrideMaterial, singleStage, noMaterials);
        return;
    }
    const int32_t first = scene.settings.drawTransparentOnly
                              ? std::clamp(scene.opaqueMeshCount, int32_t{0}, scene.meshes.Count())
                              : 0;
    SortMeshes(scene, first);
    for (int32_t i = 0; i < first; ++i)
        DrawMesh(scene.meshes.Get(i), &scene.worldTM, &scene.overrideMaterial, 0, 0);
    for (auto entry = sortedMeshes.rbegin(); entry != sortedMeshes.rend(); ++entry)
        DrawMesh(scene.meshes.Get(entry->index), &scene.worldTM, &scene.overrideMaterial, 0, 0);
}

/// Lists the visible meshes from `first` on by the depth of their origins, nearest first. Equal
/// depths keep the scene's order, so that a frame is the same on each run: of such meshes, as of
/// all sorted ones, the last is drawn first.
void KRE_SceneDrawing::SortMeshes(KRE_3dScene& scene, int32_t first)
{
    sortedMeshes.clear();
    for (int32_t i = first; i < scene.meshes.Count(); ++i) {
        const KRE_Mesh& mesh = *scene.meshes.Get(i);
        if (!mesh.visible)
            continue;
        const float depth = (mesh.worldTM * scene.worldTM * gfx.view)._43;
        sortedMeshes.push_back({i, std::isnan(depth) ? std::numeric_limits<float>::max() : depth});
    }
    std::sort(sortedMeshes.begin(), sortedMeshes.end(),
              [](const SortedMesh& a, const SortedMesh& b) {
                  return a.depth < b.depth || (a.depth == b.depth && a.index < b.index);
              });
}

// ---- The operations of KRE_Gfx

static void DeleteDrawing(KRE_SceneDrawing* drawing)
{
    delete drawing;
}

/// Raises the `Error` of a frame that runs out of memory. It names the scene, which is called like
/// its file, or the mesh.
static void ReportNoFrame(const KRE_Gfx& gfx, const KRE_3dObject* object)
{
    static constexpr const char* kText = "Not enough memory for the frame";
    if (object)
        object->Error(kText);
    gfx.Error(kText);
}

KRE_SceneDrawing& KRE_Gfx::SceneDrawing()
{
    if (!sceneDrawing)
        sceneDrawing = {new KRE_SceneDrawing(*this), DeleteDrawing};
    return *sceneDrawing;
}

int32_t KRE_Gfx::DrawScene(KRE_3dScene* scene, int32_t singleStage, int32_t noMaterials)
{
    int32_t drawn = 0;
    WithMemory([&] { drawn = SceneDrawing().DrawScene(scene, singleStage, noMaterials); },
               [&] { ReportNoFrame(*this, scene); });
    return drawn;
}

int32_t KRE_Gfx::DrawMesh(KRE_Mesh* mesh, const D3DXMATRIX* parentTM,
                          const KRE_MaterialInfo* overrideMaterial, int32_t singleStage,
                          int32_t noMaterials)
{
    int32_t drawn = 0;
    const auto draw = [&] {
        drawn = SceneDrawing().DrawMesh(mesh, parentTM, overrideMaterial, singleStage, noMaterials);
    };
    WithMemory(draw, [&] { ReportNoFrame(*this, mesh); });
    return drawn;
}

int32_t KRE_Gfx::DrawSubset(KRE_Mesh& mesh, int32_t subset)
{
    return SceneDrawing().DrawSubset(mesh, subset);
}

bool KRE_Gfx::IsVisible(const KRE_ClipObject& clip, const D3DXMATRIX& matrix)
{
    return SceneDrawing().IsVisible(clip, matrix);
}

void KRE_Gfx::DrawLine(const D3DXVECTOR3& a, const D3DXVECTOR3& b, D3DCOLOR color)
{
    SceneDrawing().DrawLine(a, b, color);
}

void KRE_Gfx::DrawPoint(const D3DXVECTOR3& p, D3DCOLOR color)
{
    SceneDrawing().DrawPoint(p, color);
}
