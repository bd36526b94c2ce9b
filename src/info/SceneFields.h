#pragma once

#include <variant>
#include <vector>

#include "info/FieldList.h"
#include "scene/KRE_3dScene.h"

// What is listed of a scene beside the fields of its records, which `AddFields` of FieldLister.h takes
// from the lists that saving and loading use. Each operation adds to `fields`.

/// A track of a material or a texture slot and what it is called; not owned.
struct NamedTrack {
    const char* name;
    std::variant<const KRE_ColorTrack*, const KRE_FloatTrack*> track;

    int32_t KeyCount() const;
};

/// The tracks in the order of files.
std::vector<NamedTrack> TracksOf(const KRE_MaterialInfo& material);
std::vector<NamedTrack> TracksOf(const KRE_TextMatrixAni& animation);

/// How a slot of a texture moves; one that stands still where the texture has no animation.
const KRE_TextMatrixAni& AnimationOf(const KRE_Texture& texture, int32_t slot);
/// Of one slot: what its file is, then the constants of its animation.
void AddSlotFields(const KRE_Texture& texture, int32_t slot, FieldList& fields);

/// Vertices and faces of a mesh that is locked.
void AddVertexFields(KRE_Mesh& mesh, int32_t vertex, FieldList& fields);
void AddFaceFields(KRE_Mesh& mesh, int32_t face, FieldList& fields);
