#include "export/ExportMeshes.h"

#include <cstring>

#include "export/MeshVertices.h"
#include "info/NameText.h"

using nlohmann::json;

int ExportMeshes::MeshOf(KRE_Mesh& mesh)
{
    if (!mesh.mesh || mesh.vertexCount <= 0 || mesh.faceCount <= 0)
        return -1;
    const Geometry& geometry = GeometryOf(mesh);
    json primitives = json::array();
    for (const auto& [attribute, indices] : geometry.faces) {
        json primitive = {{"attributes", geometry.attributes}, {"indices", indices}};
        const int material = MaterialOf(mesh, attribute, geometry.hasTexCoords);
        if (material >= 0)
            primitive["material"] = material;
        primitives.push_back(std::move(primitive));
    }
    const std::string key = primitives.dump();
    const auto found = meshes.find(key);
    if (found != meshes.end())
        return found->second;
    return meshes[key] = writer.Append("meshes", {{"name", Utf8Name(mesh.name.c_str())},
                                                  {"primitives", std::move(primitives)}});
}

/// Faces whose attribute has no material are drawn with a default one, or not at all by a mesh that has
/// others; glTF has no such rule, so they get the default.
int ExportMeshes::MaterialOf(const KRE_Mesh& mesh, DWORD attribute, bool hasTexCoords)
{
    if (attribute >= static_cast<DWORD>(mesh.materialCount))
        return -1;
    const auto i = static_cast<int32_t>(attribute);
    const std::string number = mesh.materialCount > 1 ? " " + std::to_string(i) : "";
    return materials.MaterialOf(mesh.materials[i], mesh.textures[i],
                                Utf8Name(mesh.name.c_str()) + number, hasTexCoords);
}

const ExportMeshes::Geometry& ExportMeshes::GeometryOf(KRE_Mesh& mesh)
{
    const ID3DXMesh* device = mesh.mesh.Get();
    std::string key(reinterpret_cast<const char*>(&device), sizeof device);
    key.append(reinterpret_cast<const char*>(&mesh.pivotTM), sizeof mesh.pivotTM);
    const auto found = geometries.find(key);
    return found != geometries.end() ? found->second : geometries[key] = Add(mesh);
}

ExportMeshes::Geometry ExportMeshes::Add(KRE_Mesh& mesh)
{
    const MeshVertices vertices = ReadMeshVertices(mesh);
    notices.Add("normals without a length were replaced", vertices.repairedNormals);
    notices.Add("positions that are not finite were moved to the origin",
                vertices.repairedPositions);
    Geometry added;
    json& list = added.attributes;
    list["POSITION"] = writer.AddFloats(vertices.positions, "VEC3", 3, true, kGltfVertices);
    list["NORMAL"] = writer.AddFloats(vertices.normals, "VEC3", 3, false, kGltfVertices);
    added.hasTexCoords = !vertices.texCoords.empty();
    if (added.hasTexCoords)
        list["TEXCOORD_0"] = writer.AddFloats(vertices.texCoords, "VEC2", 2, false, kGltfVertices);
    if (!vertices.joints.empty()) {
        list["JOINTS_0"] = writer.AddBytes4(vertices.joints, kGltfVertices);
        list["WEIGHTS_0"] = writer.AddFloats(vertices.weights, "VEC4", 4, false, kGltfVertices);
    }
    for (const auto& [attribute, corners] : vertices.faces)
        added.faces.emplace_back(attribute, writer.AddShorts(corners, kGltfIndices));
    return added;
}
