#pragma once

#include "info/FieldList.h"
#include "qsa/QSA_SceneHeader.h"
#include "scene/KRE_3dScene.h"

// What files store of each record, but for lists of further records, of which there is the count.
// These are the one list of fields for all that qsbinfo tells. Counts and other whole numbers keep
// the names that they have in the scene's classes. Each operation adds to `fields`.

void AddHeaderFields(const QSA_SceneHeader& header, FieldList& fields);
/// Of the scene itself: its node, its bounds and colours.
void AddSceneFields(const KRE_3dScene& scene, FieldList& fields);
void AddSettingsFields(const KRE_SceneSettings& settings, FieldList& fields);

/// Of any object, without its name.
void AddNodeFields(const KRE_3dObject& node, FieldList& fields);
void AddMeshFields(const KRE_Mesh& mesh, FieldList& fields);
void AddCameraFields(const KRE_Camera& camera, FieldList& fields);
void AddLightFields(const KRE_Light& light, FieldList& fields);
void AddBoneFields(const KRE_BoneInfo& bone, FieldList& fields);

void AddKeyFields(const KRE_PosKeyData& key, FieldList& fields);
void AddKeyFields(const KRE_ScaleKeyData& key, FieldList& fields);
void AddKeyFields(const KRE_RotKeyData& key, FieldList& fields);

void AddMaterialFields(const KRE_MaterialInfo& material, FieldList& fields);
void AddTrackFields(const KRE_ColorTrack& track, FieldList& fields);
void AddTrackFields(const KRE_FloatTrack& track, FieldList& fields);
void AddKeyFields(const KRE_ColorKey& key, FieldList& fields);
void AddKeyFields(const KRE_FloatKey& key, FieldList& fields);

/// The tracks of a material and what they are called.
struct NamedColorTrack {
    const char* name;
    KRE_ColorTrack KRE_MaterialInfo::*track;
};
inline constexpr NamedColorTrack kColorTracks[] = {
    {"diffuseTrack", &KRE_MaterialInfo::diffuseTrack},
    {"ambientTrack", &KRE_MaterialInfo::ambientTrack},
    {"specularTrack", &KRE_MaterialInfo::specularTrack},
    {"selfIllumTrack", &KRE_MaterialInfo::selfIllumTrack},
};

/// Of a texture's sequence and its load.
void AddTextureFields(const KRE_Texture& texture, FieldList& fields);
/// Of one slot, without its tracks.
void AddSlotFields(const KRE_Texture& texture, int32_t slot, FieldList& fields);
/// The tracks of a slot, in the order of `KRE_TextMatrixAni::Track`.
inline constexpr const char* kSlotTracks[KRE_TextMatrixAni::kTrackCount] = {
    "offsetU", "offsetV", "tileU", "tileV", "angle"};
/// A track of a slot; one that stands still where the texture has no animation.
const KRE_FloatTrack& SlotTrack(const KRE_Texture& texture, int32_t slot, int32_t track);

/// Vertices and faces of a mesh that is locked.
void AddVertexFields(KRE_Mesh& mesh, int32_t vertex, FieldList& fields);
void AddFaceFields(KRE_Mesh& mesh, int32_t face, FieldList& fields);
