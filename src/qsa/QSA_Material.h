#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <d3dx9.h>

#include "base/String.h"
#include "gfx/KRE_Texture.h"
#include "scene/KRE_MaterialInfo.h"

/// The animated values of a map, in the order of the text.
enum QSA_MapTrack : size_t {
    kMapOffsetV,
    kMapOffsetU,
    kMapTileV,
    kMapTileU,
    kMapAngleW,
    kMapTracks
};

/// Keys and constants of the five values of a map. Times in ticks.
struct QSA_MapAnimation {
    std::vector<KRE_FloatKey> keys[kMapTracks];
    float constants[kMapTracks] = {0.0f, 0.0f, 1.0f, 1.0f, 0.0f};
};

/// A map of a material as the text describes it.
struct QSA_Map {
    String bitmap; ///< as in the text; empty: the material has no such map
    float amount = 1.0f;
    QSA_MapAnimation animation;
    D3DXMATRIX matrix; ///< transform of the map's coordinates at rest, which are (u, v, 1)
    float startFrame = 0.0f;
    float playbackRate = 1.0f;
    int32_t endCondition = kSequenceLoop; ///< a KRE_SequenceMode

    QSA_Map() { D3DXMatrixIdentity(&matrix); }
};

/// The kinds of maps that a material can have.
enum QSA_MapKind : size_t { kMapDiffuse, kMapReflect, kMapBump, kMapKinds };

/// A material of the text, and the render material made from it. Maps and texture are allocated
/// only where needed: most materials have few, and a scene can have very many materials.
struct QSA_Material {
    String name;
    bool texturesLoaded = false;
    std::unique_ptr<QSA_Map> maps[kMapKinds]; ///< owned; null for none
    int32_t subMaterialCount = 0;             ///< as announced by the text
    std::vector<QSA_Material*> subMaterials;  ///< not owned, live in the same list
    D3DCOLORVALUE diffuse = {1, 1, 1, 1};
    D3DCOLORVALUE ambient = {1, 1, 1, 1};
    D3DCOLORVALUE specular = {1, 1, 1, 1};
    D3DCOLORVALUE selfIllum = {0, 0, 0, 1};
    float shineStrength = 0.0f;
    float shine = 0.0f;
    bool hasDiffuse = false; ///< of its own or of a submaterial; set when finished
    bool hasReflect = false;
    bool hasBump = false;
    KRE_MaterialInfo render; ///< what meshes are drawn with; tracks are in ticks until finished
    std::unique_ptr<KRE_Texture> texture; ///< owned; created when the maps are loaded

    bool HasMap(QSA_MapKind kind) const { return maps[kind] && !maps[kind]->bitmap.IsEmpty(); }
};
