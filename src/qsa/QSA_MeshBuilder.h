#pragma once

#include <cstdint>
#include <vector>

#include "base/ErrorClass.h"
#include "qsa/QSA_FaceAngles.h"
#include "qsa/QSA_SmoothingSet.h"

inline constexpr int32_t kMaxSmoothingGroups = 8; ///< of one face
inline constexpr int32_t kMaxVertexCopies = 128;  ///< built vertices made from one source vertex
inline constexpr int32_t kMaxVertexWeights = 4;
inline constexpr uint32_t kNoVertex = UINT32_MAX;

struct QSA_SourceVertex {
    float position[3] = {};
    uint32_t firstCopy = kNoVertex; ///< the built vertices made from this one, in order
    uint32_t lastCopy = kNoVertex;
    uint32_t copyCount = 0;
};

/// Bone weights of a source vertex; kept apart because most meshes have none.
struct QSA_VertexWeights {
    float weight[kMaxVertexWeights] = {};
    uint8_t bone[kMaxVertexWeights] = {};
    uint8_t weightCount = 0;
};

struct QSA_SourceFace {
    uint16_t vertex[3] = {};
    int32_t material = 0; ///< as in the file, later the reduced material id
    QSA_SmoothingSet smoothing;
    uint32_t built[3] = {}; ///< built vertex of each corner
    int32_t attribute = 0;  ///< attribute id in the mesh, -1 for a dropped face
};

struct QSA_TextureVertex {
    float u = 0.0f;
    float v = 0.0f; ///< flipped: 1 minus the file's value
    float w = 0.0f;
};

struct QSA_TextureFace {
    uint16_t vertex[3] = {};
};

struct QSA_BuiltVertex {
    uint32_t source = 0;           ///< its source vertex: position, weights and bones
    uint32_t nextCopy = kNoVertex; ///< of the same source vertex
    QSA_SmoothingSet smoothing;    ///< narrowed as corners join
    int32_t material = 0;          ///< reduced material id
    float texCoord[2] = {};
    float normalSum[3] = {}; ///< sum of angle-weighted face normals
    uint16_t normalCount = 0;
    /// QUIRK: counts corners modulo 256; a vertex of exactly 256 corners is written without texture
    /// coordinates. Files that were converted before hold such vertices.
    uint8_t texCoordSet = 0;
};

/// Turns the exporter's lists of positions, texture vertices, and faces with smoothing groups and
/// materials into vertices with exactly one position, normal, texture coordinate and material each.
/// The lists are filled by the caller; they keep their memory from mesh to mesh.
class QSA_MeshBuilder {
public:
    /// Reports go through `reporter`, which must outlive the builder.
    explicit QSA_MeshBuilder(ErrorClass& reporter) : report(reporter) {}

    /// Discards the last mesh; the lists keep their memory.
    void Clear();

    /// Builds `built`, `subMaterialMap`, and the faces' `material`, `attribute` and `built`.
    /// Degenerate faces are dropped with a `Warning`. All corners must lie inside their arrays.
    /// `subMaterials` is the number of submaterials of the mesh's material, 0 for none.
    void Build(const char* meshName, int32_t subMaterials);

    /// Returns the built vertex of a corner: a copy of `sourceVertex` with the same material and
    /// texture coordinate whose smoothing groups meet `smoothing`, or a new one. `tVertex` may be
    /// null.
    uint32_t AddBuiltVertex(uint32_t sourceVertex, const QSA_SmoothingSet& smoothing,
                            const float (&normal)[3], int32_t material,
                            const QSA_TextureVertex* tVertex);
    /// Adds up the normals of copies of one source vertex whose smoothing groups meet.
    void ShareNormals();

    std::vector<QSA_SourceVertex> vertices;
    std::vector<QSA_VertexWeights> weights; ///< one for each vertex, or empty
    std::vector<QSA_SourceFace> faces;
    std::vector<QSA_TextureVertex> tVertices;
    std::vector<QSA_TextureFace> tFaces;
    bool hasTextureFaces = false; ///< the mesh had a list of texture faces

    std::vector<QSA_BuiltVertex> built;
    size_t capacity = 0;                 ///< most built vertices; three per face
    std::vector<int32_t> subMaterialMap; ///< attribute of each submaterial, or -1
    int32_t attributeCount = 0;
    int32_t duplicateCount = 0;
    int32_t invalidFaceCount = 0;

private:
    void BuildFace(size_t index, const QSA_FaceAngles& angles, size_t place, const char* meshName,
                   int32_t subMaterials);
    uint32_t AddCopy(uint32_t sourceVertex, const QSA_SmoothingSet& smoothing,
                     const float (&normal)[3], int32_t material);
    int32_t AttributeOf(int32_t subMaterial, int32_t subMaterials);
    void ShareNormalsOf(const QSA_SourceVertex& vertex);

    ErrorClass& report; ///< not owned, the loader
};
