#pragma once

#include <cstdlib>
#include <set>
#include <string>

#include "base/Ascii.h"
#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/PlanScene.h"
#include "import/WriteQsa.h"

inline void Insist(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

/// A piece of a mesh keeps the limits of the scene format.
inline void CheckPiece(const MeshPiece& piece, size_t materials)
{
    Insist(!piece.faces.empty() && piece.vertices.size() <= kMostPieceVertices &&
           piece.texCoords.size() <= kMostPieceVertices);
    Insist(piece.weights.empty() || piece.weights.size() == piece.vertices.size());
    std::set<uint32_t> bones;
    for (const std::vector<ModelWeight>& weights : piece.weights) {
        Insist(weights.size() <= 4);
        for (const ModelWeight& weight : weights)
            bones.insert(weight.joint);
    }
    Insist(bones.size() <= kMostPieceBones);
    for (const MeshPiece::Face& face : piece.faces) {
        Insist(face.group >= 1 && face.group <= kMostGroups && face.material >= 0 &&
               static_cast<size_t>(face.material) < materials);
        for (size_t c = 0; c < 3; ++c) {
            Insist(face.vertex[c] < piece.vertices.size());
            Insist(piece.texCoords.empty() || face.texture[c] < piece.texCoords.size());
        }
    }
}

/// Plans and writes a scene from a model; each node has a name of its own, and the text is plain ASCII.
inline void UseModel(const Model& model)
{
    NoticeList notices;
    QsaScene scene;
    PlanOptions options;
    options.mostLooks = 300; // nothing else that a small model may ask for costs as much
    try {
        PlanScene(model, options, notices, scene);
    } catch (const ModelFault&) {
        return;
    }
    for (const CutResult& cut : scene.meshes) {
        for (const MeshPiece& piece : cut.pieces)
            CheckPiece(piece, cut.materials.size());
    }
    std::set<std::string> names = {"bounds"};
    for (const QsaNode& node : scene.nodes) {
        std::string name = node.name;
        for (char& byte : name)
            byte = ToLowerAscii(byte);
        Insist(!name.empty() && names.insert(name).second);
    }
    const std::vector<std::string> pictures(model.images.size(), "picture.png");
    for (const char byte : WriteQsa(scene, model, pictures))
        Insist((byte >= ' ' && byte <= '~') || byte == '\n' || byte == '\t');
}
