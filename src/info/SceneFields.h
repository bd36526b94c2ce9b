#pragma once

#include <variant>
#include <vector>

#include "info/FieldList.h"
#include "scene/KRE_3dScene.h"

// What is listed for a scene besides the fields of its records, which `AddFields` of FieldLister.h
// takes from the lists that saving and loading use. Each operation adds to `fields`.

/// A track of a material or a texture slot, and its name; not owned.
struct NamedTrack {
    const char* name;
    std::variant<const KRE_ColorTrack*, const KRE_FloatTrack*> track;

    int32_t KeyCount() const;
};

/// The tracks in file order.
std::vector<NamedTrack> TracksOf(const KRE_MaterialInfo& material);
std::vector<NamedTrack> TracksOf(const KRE_TextMatrixAni& animation);

/// How a slot of a texture moves; a constant animation if the texture has none.
const KRE_TextMatrixAni& AnimationOf(const KRE_Texture& texture, int32_t slot);
/// For one slot: its file's type, then the constants of its animation.
void AddSlotFields(const KRE_Texture& texture, int32_t slot, FieldList& fields);

/// Vertices and faces of a locked mesh.
void AddVertexFields(KRE_Mesh& mesh, int32_t vertex, FieldList& fields);
void AddFaceFields(KRE_Mesh& mesh, int32_t face, FieldList& fields);
