#pragma once

#include <map>

#include "gltf/GltfFile.h"
#include "gltf/NoticeList.h"
#include "import/Model.h"

/// Builds a model from a glTF document, one list after the other.
class GltfReader {
public:
    GltfReader(GltfFile& fileIn, NoticeList& noticesIn) : file(fileIn), notices(noticesIn) {}

    Model Read(const std::string& path, const std::string& animation);

private:
    // ReadGltfMaterials.cpp
    void ReadImages(const std::string& folder);
    void ReadMaterials();
    void ReadMap(const nlohmann::json& material, ModelMaterial& made);
    void ReadTextureTransform(const nlohmann::json& info, ModelMap& map);

    // ReadGltfExtras.cpp
    void ReadMaterialExtras(const nlohmann::json& material, ModelMaterial& made);
    void ReadExtraMaps(const nlohmann::json& extras, ModelMaterial& made);

    // ReadGltfMeshes.cpp
    void ReadMeshes();
    void ReadPrimitive(const nlohmann::json& primitive, ModelMesh& mesh);
    std::vector<uint32_t> KeepUsed(std::vector<uint32_t>& corners, size_t vertexCount);
    const GltfValues& Attribute(const nlohmann::json& attributes, const std::string& key,
                                size_t width, size_t vertexCount);
    void ReadVertices(const nlohmann::json& attributes, const GltfValues& points,
                      const std::vector<uint32_t>& used, ModelPrimitive& made);
    void ReadWeights(const nlohmann::json& attributes, size_t vertexCount,
                     const std::vector<uint32_t>& used, ModelPrimitive& made);
    std::vector<uint32_t> ReadCorners(const nlohmann::json& primitive, size_t vertexCount);
    void CountLosses(const nlohmann::json& primitive);
    void CountCorners(size_t count);

    // ReadGltfNodes.cpp
    void ReadNodes();
    void ReadNode(const nlohmann::json& node, ModelNode& made);
    void ReadMatrix(const nlohmann::json& node, ModelNode& made);
    void LinkNodes(const nlohmann::json& nodes);
    int RootOf(int number) const;
    void KeepScene();
    void ReadSkins();
    void ReadCameras();
    void ReadLights();
    void CountSkinnedNodes();
    void ReadSceneExtras();

    // ReadGltfAnimation.cpp
    void ReadAnimation(const std::string& wanted);
    void ReadChannel(const nlohmann::json& animation, const nlohmann::json& channel);
    ModelTrack ReadTrack(const nlohmann::json& sampler, size_t width);

    GltfFile& file;
    NoticeList& notices;
    Model model;
    size_t cornerCount = 0;
    size_t keyCount = 0;
    size_t imageBytes = 0;
    std::vector<uint32_t> places; ///< by vertex; of no one between two primitives
};

/// Splits a matrix into rotation, scale and position; `sheared` tells whether they do not make it up again.
void SplitMatrix(const ModelMatrix& matrix, ModelVector& position, ModelQuaternion& rotation,
                 ModelVector& scale, bool& sheared);
