#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <d3dx9.h>

#include "base/String.h"
#include "gfx/KRE_Texture.h"
#include "scene/KRE_MaterialInfo.h"

/// The animated numbers of a map, in the order in which the text names them.
enum QSA_MapTrack : size_t {
    kMapOffsetV,
    kMapOffsetU,
    kMapTileV,
    kMapTileU,
    kMapAngleW,
    kMapTracks
};

/// Keys and constants of the five numbers of a map. Times in ticks.
struct QSA_MapAnimation {
    std::vector<KRE_FloatKey> keys[kMapTracks];
    float constants[kMapTracks] = {0.0f, 0.0f, 1.0f, 1.0f, 0.0f};
};

/// A map of a material as the text describes it.
struct QSA_Map {
    String bitmap; ///< as in the text; empty: the material has no such map
    float amount = 1.0f;
    QSA_MapAnimation animation;
    D3DXMATRIX matrix; ///< of the map's coordinates at rest, which are carried as (u, v, 1)
    float startFrame = 0.0f;
    float playbackRate = 1.0f;
    int32_t endCondition = kSequenceLoop; ///< a KRE_SequenceMode

    QSA_Map() { D3DXMatrixIdentity(&matrix); }
};

/// The kinds of maps that a material may have.
enum QSA_MapKind : size_t { kMapDiffuse, kMapReflect, kMapBump, kMapKinds };

/// A material of the text, and what it becomes. Maps and texture are made where there are any: most
/// materials have few, and a scene may hold very many.
struct QSA_Material {
    String name;
    bool texturesLoaded = false;
    std::unique_ptr<QSA_Map> maps[kMapKinds]; ///< owned; null for none
    int32_t subMaterialCount = 0;             ///< as announced
    std::vector<QSA_Material*> subMaterials;  ///< not owned, live in the same list
    D3DCOLORVALUE diffuse = {1, 1, 1, 1};
    D3DCOLORVALUE ambient = {1, 1, 1, 1};
    D3DCOLORVALUE specular = {1, 1, 1, 1};
    D3DCOLORVALUE selfIllum = {0, 0, 0, 1};
    float shineStrength = 0.0f;
    float shine = 0.0f;
    bool hasDiffuse = false; ///< a map of its own or of a submaterial; set by the finishing step
    bool hasReflect = false;
    bool hasBump = false;
    KRE_MaterialInfo render;              ///< what meshes get; tracks in ticks until it is finished
    std::unique_ptr<KRE_Texture> texture; ///< owned; made when the maps are loaded

    bool HasMap(QSA_MapKind kind) const { return maps[kind] && !maps[kind]->bitmap.IsEmpty(); }
};
