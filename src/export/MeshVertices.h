#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <windows.h>

class KRE_Mesh;

/// The vertices and faces of a mesh as glTF wants them: Y up, moved by the pivot, finite, normals of length
/// 1, four joints and weights for each vertex.
struct MeshVertices {
    std::vector<float> positions;
    std::vector<float> normals;
    std::vector<float> texCoords; ///< empty without
    std::vector<uint8_t> joints;  ///< empty without; numbers of the mesh's bones
    std::vector<float> weights;
    std::map<DWORD, std::vector<uint16_t>> faces; ///< corners by attribute
    int repairedNormals = 0;
    int repairedPositions = 0; ///< with a part that was not finite
};

/// Locks the mesh for the time of the call.
MeshVertices ReadMeshVertices(KRE_Mesh& mesh);
