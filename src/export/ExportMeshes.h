#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "export/ExportMaterials.h"
#include "scene/KRE_Mesh.h"

/// The meshes of a scene in a glTF document. Geometry that clones share is written once, and clones with
/// the same materials are instances of one glTF mesh.
class ExportMeshes {
public:
    ExportMeshes(GltfWriter& writerIn, ExportMaterials& materialsIn, NoticeList& noticesIn)
        : writer(writerIn),
          materials(materialsIn),
          notices(noticesIn)
    {}

    /// The number of the glTF mesh; -1 if the mesh has no faces.
    int MeshOf(KRE_Mesh& mesh);

private:
    /// The accessors of one geometry; -1 for none.
    struct Geometry {
        nlohmann::json attributes = nlohmann::json::object();
        std::vector<std::pair<DWORD, int>> faces; ///< the indices of each attribute's faces
        bool hasTexCoords = false;
    };

    const Geometry& GeometryOf(KRE_Mesh& mesh);
    Geometry Add(KRE_Mesh& mesh);
    int MaterialOf(const KRE_Mesh& mesh, DWORD attribute, bool hasTexCoords);

    GltfWriter& writer;
    ExportMaterials& materials;
    NoticeList& notices;
    std::map<std::string, Geometry> geometries; ///< by device mesh and pivot
    std::map<std::string, int> meshes;          ///< by the text of their primitives
};
