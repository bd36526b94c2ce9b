// The vertices and faces of meshes, as they are in memory.

#include "info/SceneFields.h"

/// Adds coordinates, texture coordinates, weights and bones, as far as the layout has them.
void AddVertexFields(KRE_Mesh& mesh, int32_t vertex, FieldList& fields)
{
    constexpr int32_t kNone = VertexInfo::kNoOffset;
    constexpr int32_t kUVBytes = 8; // a format may have fewer
    fields.Vector("position", *mesh.Position(vertex));
    if (mesh.normalOffset != kNone) {
        fields.Vector("normal", *mesh.Normal(vertex));
        fields.CutTo(1.0 / 32767);
    }
    if (mesh.textureOffset != kNone && mesh.textureOffset + kUVBytes <= mesh.stride)
        fields.Reals("uv", mesh.TexCoord(vertex), 2);
    // The last weight follows from the others and is not stored.
    if (mesh.weightOffset != kNone && mesh.blendCount > 1) {
        fields.Reals("weights", mesh.Weights(vertex), mesh.blendCount - 1);
        fields.CutTo(1.0 / 65535);
    }
    if (mesh.matrixIndexOffset != kNone)
        fields.Wholes("bones", mesh.BlendIndices(vertex), 4);
}

void AddFaceFields(KRE_Mesh& mesh, int32_t face, FieldList& fields)
{
    fields.Wholes("vertices", mesh.Face(face), 3);
    fields.Whole("attribute", *mesh.Attribute(face));
}
