#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "export/ExportMeshes.h"
#include "export/GltfTracks.h"

class KRE_3dScene;
class KRE_Camera;
class KRE_Light;
class KRE_Target3dObject;

/// The nodes of a scene in a glTF document, with cameras, lights, skins and the animation.
class SceneNodes {
public:
    SceneNodes(GltfWriter& writerIn, ExportMeshes& meshesIn, KRE_3dScene& sceneIn,
               NoticeList& noticesIn)
        : writer(writerIn),
          meshes(meshesIn),
          scene(sceneIn),
          notices(noticesIn)
    {}

    /// Adds everything and returns the numbers of the root nodes.
    std::vector<int> Add();

private:
    void CollectObjects();
    void AddNode(KRE_3dObject& object);
    void AddTree();
    KRE_3dObject* ParentOf(const KRE_3dObject& object) const;
    NodeAxes AxesOf(const KRE_3dObject& object) const;
    void PlaceNode(nlohmann::json& node, const KRE_3dObject& object, NodeAxes axes);
    void AddMesh(KRE_Mesh& mesh);
    void AddSkinned(KRE_Mesh& mesh, int glTFMesh);
    int JointOf(KRE_Mesh& mesh, int32_t bone, std::set<int>& taken);
    void AddViews();
    int ViewNode(const KRE_Target3dObject& object);
    void AddCamera(KRE_Camera& camera);
    void AddLight(KRE_Light& light);
    std::vector<int> Roots();

    // The animation: SceneAnimation.cpp.
    void AddAnimation();
    void AddTargetPose(KRE_Target3dObject& object, int node);
    std::vector<float> MarksOf(KRE_Target3dObject& object);
    void AddChannel(int node, const char* path, const GltfTrack& track, int width);

    GltfWriter& writer;
    ExportMeshes& meshes;
    KRE_3dScene& scene;
    NoticeList& notices;
    std::vector<KRE_3dObject*> objects; ///< all, not owned, live in the scene
    std::map<const KRE_3dObject*, int> nodes;
    std::map<const KRE_3dObject*, KRE_3dObject*> parents; ///< without cycles
    std::set<const KRE_3dObject*> withChildren;
    std::set<const KRE_3dObject*> views;                      ///< cameras and lights
    std::vector<int> skinned;                                 ///< nodes that must be roots
    std::vector<std::pair<KRE_Target3dObject*, int>> looking; ///< at a target, with their nodes
    nlohmann::json channels = nlohmann::json::array();
    nlohmann::json samplers = nlohmann::json::array();
    std::map<std::vector<float>, int> timeAccessors;
};
