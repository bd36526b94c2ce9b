#include <algorithm>
#include <cmath>
#include <limits>

#include "gfx/KRE_Gfx.h"
#include "scene/KRE_3dScene.h"

namespace {

constexpr float kPointSize = 2.0f; // pixels, of drawing in points

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

/// The device would refuse a light of a type that it does not have.
bool IsDrawn(const KRE_Light& light)
{
    return light.lightOn && light.HasDeviceType();
}

} // namespace

int32_t KRE_Gfx::DrawScene(KRE_3dScene* scene, int32_t singleStage, int32_t noMaterials)
{
    if (!scene) {
        Warning("Pointer to 3dScene is zero");
        return 0;
    }
    const bool isPlainPass = singleStage != 0 || noMaterials != 0;
    const KRE_SceneSettings& settings = scene->settings;
    const D3DXMATRIX& sceneTM = scene->worldTM;

    if (scene->activeCamera >= 0 && scene->activeCamera < scene->cameras.Count())
        SetCamera(*scene->cameras.Get(scene->activeCamera), &sceneTM);
    if (settings.mirrorView)
        MirrorScene();
    if (!isPlainPass && settings.clearBackground)
        DrawBackground(*scene);
    const bool isVisible = IsVisible(*scene, sceneTM);
    if (isVisible) {
        ++subFrameNumber;
        isDrawingScene = 1;
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
        MirrorScene();
    isDrawingScene = 0;
    return isVisible ? 1 : 0;
}

/// QUIRK: a picture stands in for clearing, with the blending that was set before. Where it has alpha, the
/// frame before shows through it from the second file of a run on.
void KRE_Gfx::DrawBackground(KRE_3dScene& scene)
{
    if (!scene.backgroundTexture.IsValid()) {
        Clear(scene.backgroundColor);
        return;
    }
    const auto left = static_cast<float>(viewport.X);
    const auto top = static_cast<float>(viewport.Y);
    const D3DCOLOR white[4] = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    SetTexture(&scene.backgroundTexture);
    DrawSpriteRect(left, top, left + static_cast<float>(viewport.Width),
                   top + static_cast<float>(viewport.Height), white);
    if (depthSurface)
        ClearZ(scene.backgroundColor);
}

/// What holds for all meshes of a scene.
void KRE_Gfx::SetSceneStates(KRE_3dScene& scene)
{
    const KRE_SceneSettings& settings = scene.settings;
    if (settings.useAmbient)
        SetAmbient(scene.ambientColor);
    if (settings.useFog) {
        SetFog(FogOf(settings));
        SetFogEnable(1);
    }
    if (!settings.useLights)
        return;
    int32_t index = 0; // counts dark lights as well
    for (const KRE_Light* light : scene.lights) {
        if (IsDrawn(*light)) {
            SetLight(index, light->light);
            LightEnable(index, 1);
        }
        ++index;
    }
}

void KRE_Gfx::ClearSceneStates(KRE_3dScene& scene)
{
    const KRE_SceneSettings& settings = scene.settings;
    if (settings.useFog)
        SetFogEnable(0);
    if (!settings.useLights || !settings.disableLightsAfter)
        return;
    int32_t index = 0;
    for (const KRE_Light* light : scene.lights) {
        if (IsDrawn(*light))
            LightEnable(index, 0);
        ++index;
    }
}

void KRE_Gfx::SetPointDrawing()
{
    if (fillMode != D3DFILL_POINT)
        return;
    pointRecord.scaleEnable = 0;
    pointRecord.size = kPointSize;
    SetPointParameters(pointRecord, hardwareVertexProcessing);
}

void KRE_Gfx::DrawMeshes(KRE_3dScene& scene, int32_t singleStage, int32_t noMaterials)
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

/// Lists the visible meshes from `first` on by the depth of their origins, the nearest one first.
/// Equal depths go by the scene's order, so that a frame is the same on each run: of such meshes,
/// as of all that are sorted, the last one is drawn first.
void KRE_Gfx::SortMeshes(KRE_3dScene& scene, int32_t first)
{
    sortedMeshes.clear();
    for (int32_t i = first; i < scene.meshes.Count(); ++i) {
        const KRE_Mesh& mesh = *scene.meshes.Get(i);
        if (!mesh.visible)
            continue;
        const float depth = (mesh.worldTM * scene.worldTM * view)._43;
        sortedMeshes.push_back({i, std::isnan(depth) ? std::numeric_limits<float>::max() : depth});
    }
    std::sort(sortedMeshes.begin(), sortedMeshes.end(),
              [](const SortedMesh& a, const SortedMesh& b) {
                  return a.depth < b.depth || (a.depth == b.depth && a.index < b.index);
              });
}
