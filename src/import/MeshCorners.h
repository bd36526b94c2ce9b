#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "import/Model.h"

/// The triangles of a mesh with welded positions, and for each corner the vertex of a smooth surface: corners
/// at one position share one if their normals agree.
struct MeshCorners {
    struct Corner {
        uint32_t point;  ///< in `points`
        uint32_t smooth; ///< number of the smooth vertex, counted over the whole mesh
        uint32_t uv;     ///< in `texCoords`
    };
    struct Face {
        std::array<Corner, 3> corner;
        int material; ///< place in `materials`
        int group = 0;
    };

    std::vector<ModelPoint> points;
    std::vector<std::vector<ModelWeight>> weights; ///< by point; empty without a skin
    std::vector<std::array<float, 2>> texCoords;
    std::vector<Face> faces;
    std::vector<int> materials;
    std::vector<ModelPoint> smoothNormals; ///< by smooth vertex
    std::vector<uint32_t> smoothPoints;    ///< the point of each smooth vertex
    std::vector<bool> isDoubled;           ///< whether a smooth vertex needs a vertex of its own
    int64_t flatFaces = 0;                 ///< faces without an area, which are left out
    bool hasTexCoords = false;
};

MeshCorners WeldMesh(const ModelMesh& mesh, bool skinned);

/// Gives each face a smoothing group: faces that share a smooth vertex have the same one, faces that share
/// a point only have different ones. What 32 groups cannot tell apart is doubled.
void GroupFaces(MeshCorners& mesh);

/// How many corners have a normal that the scene's own computation does not give, within five degrees.
int64_t CountFreeNormals(const MeshCorners& mesh);
