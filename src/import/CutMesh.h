#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "import/Model.h"

class NoticeList;

/// What the scene format can hold in one mesh.
inline constexpr size_t kMostPieceVertices = 65534; ///< also texture vertices and built vertices
inline constexpr size_t kMostVertexCopies = 127;
inline constexpr size_t kMostPieceBones = 254;
inline constexpr int kMostGroups = 32;

/// A mesh of the scene format: vertices that corners share, smoothing groups, texture faces.
struct MeshPiece {
    struct Face {
        std::array<uint32_t, 3> vertex;
        std::array<uint32_t, 3> texture;
        int group;    ///< 1 to `kMostGroups`
        int material; ///< place in the mesh's list of materials
    };

    std::vector<ModelPoint> vertices;
    std::vector<std::array<float, 2>> texCoords; ///< v downward; empty without
    std::vector<Face> faces;
    std::vector<std::vector<ModelWeight>> weights; ///< by vertex; empty without a skin
};

struct CutResult {
    std::vector<MeshPiece> pieces; ///< none for a mesh without a face
    std::vector<int> materials;    ///< of the model, in the order of their first use; -1 for none
};

/// Cuts a mesh into pieces that the scene format can hold. Corners with the same position, and the same
/// normal where they meet, share a vertex; faces that meet with different normals get different smoothing
/// groups. Where groups are not enough, vertices are doubled. Weights are those that the converter keeps:
/// at most four for each vertex, from 0.1 on, with the sum 1.
CutResult CutMesh(const ModelMesh& mesh, bool skinned, NoticeList& notices);
