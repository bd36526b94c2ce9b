#pragma once

#include <map>
#include <set>

#include "gltf/NoticeList.h"
#include "import/NodeKeys.h"
#include "import/PlanScene.h"
#include "import/SceneNames.h"

/// Turns the nodes of a model into those of a scene, one after the other, parents first.
class ScenePlanner {
public:
    ScenePlanner(const Model& modelIn, const SceneSpace& spaceIn, NoticeList& noticesIn,
                 QsaScene& sceneIn, size_t mostLooks)
        : model(modelIn),
          space(spaceIn),
          notices(noticesIn),
          scene(sceneIn)
    {
        sampling.framesPerSecond = sceneIn.framesPerSecond;
        sampling.left = mostLooks;
    }

    void Plan();

private:
    void PlanNode(int number);
    /// The scene's node for a model's, without its contents; mirrored ones get a second node.
    QsaNode PlaceNode(const ModelNode& node, const std::string& parent, int& mirrored,
                      ModelQuaternion& before);
    void SetContents(QsaNode& made, const ModelNode& node);
    std::string ParentName(const ModelNode& node) const;
    void FoldSigns(const ModelNode& node, int& mirrored, ModelQuaternion& before);

    // Meshes: PlanMeshes.cpp
    void CutMeshes();
    const CutResult& PiecesOf(int mesh, bool skinned);
    void AddMesh(QsaNode base, int mesh);
    void AddSkinned(const ModelNode& node);
    void SetBones(QsaNode& made, const ModelSkin& skin);
    int MaterialOf(const CutResult& cut);

    // Cameras and lights: PlanViews.cpp
    void PlanLights();
    void AddCamera(int number, const std::string& name);
    void AddLight(const ModelNode& node, QsaNode made);
    bool IsBare(const ModelNode& node) const;

    const Model& model;
    SceneSpace space;
    Sampling sampling;
    NoticeList& notices;
    QsaScene& scene;
    SceneNames names;
    std::vector<ModelMatrix> restWorlds; ///< by node, at second 0
    std::vector<std::string> inner;      ///< by node: the name that its children and skins use
    std::map<std::pair<int, bool>, size_t> cuts;
    std::set<int> hiddenMeshes;
    std::map<int, std::vector<std::string>> sources; ///< by mesh: the names of its written pieces
    std::map<std::vector<int>, int> materials;
    std::vector<double> strengths; ///< by light of the model
    std::map<int, bool> isLit;     ///< by node: its light is among the brightest
};
