#include "import/ModelPose.h"
#include "import/ScenePlanner.h"

/// Cuts all meshes that are used before a node points to one of their pieces.
void ScenePlanner::CutMeshes()
{
    for (const ModelNode& node : model.nodes) {
        if (node.isHidden)
            hiddenMeshes.insert(node.mesh);
        const std::pair<int, bool> key = {node.mesh, node.skin >= 0};
        if (node.mesh < 0 || cuts.count(key))
            continue;
        cuts[key] = scene.meshes.size();
        const ModelMesh& mesh = model.meshes[static_cast<size_t>(node.mesh)];
        scene.meshes.push_back(CutMesh(mesh, key.second, notices));
        const size_t count = scene.meshes.back().pieces.size();
        if (count > 1)
            notices.Add("mesh '" + HarmlessText(mesh.name, 60) + "' was cut into " +
                        std::to_string(count) + " pieces");
        for (MeshPiece& piece : scene.meshes.back().pieces) {
            for (ModelPoint& point : piece.vertices)
                point = space.Point(point);
        }
    }
}

const CutResult& ScenePlanner::PiecesOf(int mesh, bool skinned)
{
    return scene.meshes[cuts.at({mesh, skinned})];
}

int ScenePlanner::MaterialOf(const CutResult& cut)
{
    if (cut.materials.size() == 1 && cut.materials[0] < 0)
        return -1;
    const auto [place, isNew] =
        materials.emplace(cut.materials, static_cast<int>(scene.materials.size()));
    if (isNew)
        scene.materials.push_back(cut.materials);
    return place->second;
}

/// The first piece takes the node's place, the others hang below it. Later users of the mesh are clones.
void ScenePlanner::AddMesh(QsaNode base, int mesh)
{
    const CutResult& cut = PiecesOf(mesh, false);
    const bool isHidden = hiddenMeshes.count(mesh) > 0;
    base.isVisible = !isHidden;
    if (cut.pieces.empty()) {
        scene.nodes.push_back(std::move(base));
        return;
    }
    std::vector<std::string>& written = sources[mesh];
    const bool isClone = !written.empty();
    const std::string parent = base.name;
    for (size_t i = 0; i < cut.pieces.size(); ++i) {
        QsaNode made;
        if (i == 0) {
            made = std::move(base);
        } else {
            made.name = names.Take(parent + " piece " + std::to_string(i + 1), "Mesh");
            made.parent = parent;
            made.isVisible = !isHidden;
        }
        made.kind = isClone ? QsaKind::kClone : QsaKind::kMesh;
        made.piece = &cut.pieces[i];
        made.material = MaterialOf(cut);
        if (isClone)
            made.source = written[i];
        else
            written.push_back(made.name);
        scene.nodes.push_back(std::move(made));
    }
}

/// A skinned mesh stands in the world, whatever its node.
void ScenePlanner::AddSkinned(const ModelNode& node)
{
    const CutResult& cut = PiecesOf(node.mesh, true);
    const size_t number = static_cast<size_t>(&node - model.nodes.data());
    const bool isTaken = !node.children.empty() || node.isBone || node.camera >= 0;
    const std::string base = isTaken ? inner[number] + " skin" : inner[number];
    for (size_t i = 0; i < cut.pieces.size(); ++i) {
        QsaNode made;
        const std::string name = i == 0 ? base : base + " piece " + std::to_string(i + 1);
        made.name = i == 0 && !isTaken ? name : names.Take(name, "Mesh");
        made.kind = QsaKind::kMesh;
        made.piece = &cut.pieces[i];
        made.material = MaterialOf(cut);
        SetBones(made, model.skins[static_cast<size_t>(node.skin)]);
        scene.nodes.push_back(std::move(made));
    }
}

void ScenePlanner::SetBones(QsaNode& made, const ModelSkin& skin)
{
    std::vector<bool> isUsed(skin.joints.size());
    for (const std::vector<ModelWeight>& weights : made.piece->weights) {
        for (const ModelWeight& weight : weights) {
            if (weight.joint < isUsed.size())
                isUsed[weight.joint] = true;
            else
                notices.Add("weights of joints that do not exist are left out");
        }
    }
    for (size_t i = 0; i < skin.joints.size(); ++i) {
        if (!isUsed[i])
            continue;
        const int joint = skin.joints[i];
        made.bones.push_back({inner[static_cast<size_t>(joint)], static_cast<uint32_t>(i),
                              space.Matrix(skin.binds[i])});
        const ModelMatrix world = Product(skin.binds[i], restWorlds[static_cast<size_t>(joint)]);
        made.mirrorsBind = made.mirrorsBind || DeterminantOf(world) < 0;
    }
}
