// Points and lines that show where the objects of a scene are.

#include "gfx/KRE_Gfx.h"
#include "render/KRE_SceneDrawing.h"
#include "scene/KRE_3dScene.h"

namespace {

constexpr D3DCOLOR kLinkColor = 0xFFFF0A96;
constexpr D3DCOLOR kObjectColor = 0xFF01FF9B;
constexpr D3DCOLOR kChosenObjectColor = 0xFFFF3737;
constexpr D3DCOLOR kLitLightColor = 0xFFE6E61E;
constexpr D3DCOLOR kDarkLightColor = 0xFF82821E;

D3DXVECTOR3 TranslationRow(const D3DXMATRIX& matrix)
{
    return {matrix._41, matrix._42, matrix._43};
}

D3DXVECTOR3 PlaceOf(const KRE_3dObject& object, const D3DXMATRIX& sceneTM)
{
    return TranslationRow(object.worldTM * sceneTM);
}

void DrawLightMarker(KRE_SceneDrawing& drawing, const KRE_Light& light)
{
    D3DXVECTOR3 place;
    light.GetWorldPosition(place);
    drawing.DrawPoint(place, light.lightOn ? kLitLightColor : kDarkLightColor);
}

} // namespace

template <class FillList>
void KRE_SceneDrawing::DrawMarkerList(KRE_VertexListTemp<KRE_PointVertex>& list,
                                      const FillList& fill)
{
    const int32_t oldLighting = gfx.lighting;
    const D3DCOLOR oldColor = gfx.unlitColor;
    fill(list.LockVertices(0, list.vertexCount, 0));
    list.Unlock();
    gfx.SetTexture(nullptr);
    gfx.SetLighting(0, nullptr);
    gfx.DrawTriangleList(list);
    gfx.SetLighting(oldLighting, &oldColor);
}

void KRE_SceneDrawing::DrawLine(const D3DXVECTOR3& a, const D3DXVECTOR3& b, D3DCOLOR color)
{
    DrawMarkerList(gfx.lineList, [&](KRE_PointVertex* vertices) {
        vertices[0] = {a.x, a.y, a.z, color};
        vertices[1] = {b.x, b.y, b.z, color};
    });
}

void KRE_SceneDrawing::DrawPoint(const D3DXVECTOR3& p, D3DCOLOR color)
{
    DrawMarkerList(gfx.pointList, [&](KRE_PointVertex* vertices) {
        vertices[0] = {p.x, p.y, p.z, color};
    });
}

void KRE_SceneDrawing::DrawMarkers(KRE_3dScene& scene)
{
    const KRE_SceneSettings& settings = scene.settings;
    const bool drawsAny = settings.showHierarchy || settings.showObjects > kMarkersNone ||
                          settings.showLights > kMarkersNone;
    if (!drawsAny)
        return;
    const int32_t oldLighting = gfx.lighting;
    const D3DCOLOR oldColor = gfx.unlitColor;
    gfx.SetLighting(0, nullptr);
    if (settings.showHierarchy)
        DrawHierarchy(scene);
    DrawObjectMarkers(scene);
    DrawLightMarkers(scene);
    gfx.SetLighting(oldLighting, &oldColor);
}

void KRE_SceneDrawing::DrawHierarchy(KRE_3dScene& scene)
{
    const auto drawLink = [&](const KRE_3dObject& object) {
        if (object.parent)
            DrawLine(PlaceOf(object, scene.worldTM), PlaceOf(*object.parent, scene.worldTM),
                     kLinkColor);
    };
    for (const KRE_Mesh* mesh : scene.meshes)
        drawLink(*mesh);
    for (const KRE_3dObject* object : scene.objects)
        drawLink(*object);
    for (const KRE_Light* light : scene.lights)
        drawLink(*light);
}

void KRE_SceneDrawing::DrawObjectMarkers(KRE_3dScene& scene)
{
    const int32_t choice = scene.settings.showObjects;
    if (choice == kMarkersAll) {
        for (const KRE_3dObject* object : scene.objects)
            DrawPoint(PlaceOf(*object, scene.worldTM), kObjectColor);
    } else if (choice >= 0 && choice < scene.objects.Count()) {
        DrawPoint(PlaceOf(*scene.objects.Get(choice), scene.worldTM), kChosenObjectColor);
    }
}

/// QUIRK: the markers do not follow when the scene as a whole is moved.
void KRE_SceneDrawing::DrawLightMarkers(KRE_3dScene& scene)
{
    const int32_t choice = scene.settings.showLights;
    if (choice == kMarkersAll) {
        for (const KRE_Light* light : scene.lights)
            DrawLightMarker(*this, *light);
    } else if (choice >= 0 && choice < scene.lights.Count()) {
        DrawLightMarker(*this, *scene.lights.Get(choice));
    }
}
