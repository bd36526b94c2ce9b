// The hierarchy. A file decides how deep it is and whether it is a tree at all: it is walked by
// loops, and every object is printed once.

#include <algorithm>
#include <map>
#include <vector>

#include "info/NameText.h"
#include "info/Report.h"
#include "info/SceneFacts.h"

namespace {

/// Deeper objects are not indented further, or a chain of objects would print more blanks than
/// text.
constexpr size_t kMostIndent = 40;

struct TreeNode {
    const KRE_3dObject* object;
    std::string details;
    std::vector<size_t> children;
    size_t parent = SIZE_MAX;
    size_t walk = 0; ///< number of the last upward walk that visited this; counted from 1
    bool isPrinted = false;
};

std::string KeysText(const KRE_3dObject& object)
{
    const int64_t keys =
        int64_t{object.posKeyCount} + object.rotKeyCount + int64_t{object.scaleKeyCount};
    return keys > 0 ? ", " + CountOf(keys, "key", "keys") : "";
}

std::string MeshText(const KRE_Mesh& mesh)
{
    std::string text = CountOf(mesh.vertexCount, "vertex", "vertices") + ", " +
                       CountOf(mesh.faceCount, "face", "faces") + ", " +
                       CountOf(mesh.materialCount, "material", "materials");
    if (!mesh.cloneSource.IsEmpty())
        text += ", clone of " + QuotedName(mesh.cloneSource.c_str());
    if (mesh.bones.Count() > 1) // the first one is for the mesh itself
        text += ", " + CountOf(mesh.bones.Count() - 1, "bone", "bones");
    if (!mesh.visible)
        text += ", hidden";
    return text;
}

std::string TargetText(const KRE_Target3dObject& node)
{
    return node.targetName.IsEmpty() ? "" : "looks at " + QuotedName(node.targetName.c_str());
}

std::string LightText(const KRE_Light& light)
{
    static constexpr const char* kTypes[] = {"point", "spot", "directional"};
    const auto type = int64_t{light.TypeNumber()};
    std::string text = type >= 1 && type <= 3 ? kTypes[type - 1] : "type " + std::to_string(type);
    return light.lightOn ? text : text + ", off";
}

class Tree {
public:
    explicit Tree(KRE_3dScene& scene)
    {
        for (const KRE_Mesh* mesh : scene.meshes)
            Add(*mesh, MeshText(*mesh));
        for (const KRE_3dObject* object : scene.objects)
            Add(*object, "");
        for (const KRE_Camera* camera : scene.cameras)
            Add(*camera, TargetText(*camera));
        for (const KRE_Light* light : scene.lights)
            Add(*light, LightText(*light));
        for (size_t i = 0; i < nodes.size(); ++i) {
            const auto parent = places.find(nodes[i].object->parent);
            if (parent == places.end())
                continue;
            nodes[i].parent = parent->second;
            nodes[parent->second].children.push_back(i);
        }
    }

    void Print(Output& output)
    {
        for (size_t i = 0; i < nodes.size(); ++i) {
            if (nodes[i].parent == SIZE_MAX)
                PrintFrom(i, "", output);
        }
        // Whatever no root leads to hangs on a cycle of parents.
        for (size_t i = 0; i < nodes.size(); ++i) {
            if (!nodes[i].isPrinted)
                PrintFrom(CircleAbove(i), " (its parents lead in a circle)", output);
        }
    }

private:
    void Add(const KRE_3dObject& object, const std::string& details)
    {
        places.emplace(&object, nodes.size());
        nodes.push_back({&object, details, {}});
    }

    /// Returns a member of the cycle that a node's parents lead to.
    size_t CircleAbove(size_t node)
    {
        for (size_t start = node + 1; nodes[node].walk != start; node = nodes[node].parent)
            nodes[node].walk = start;
        return node;
    }

    void PrintFrom(size_t root, const std::string& note, Output& output)
    {
        struct Step {
            size_t node, depth;
        };
        std::vector<Step> waiting = {{root, 0}};
        while (!waiting.empty()) {
            const Step step = waiting.back();
            waiting.pop_back();
            TreeNode& node = nodes[step.node];
            if (node.isPrinted)
                continue;
            node.isPrinted = true;
            PrintLine(node, step.depth, step.node == root ? note : "", output);
            for (auto child = node.children.rbegin(); child != node.children.rend(); ++child)
                waiting.push_back({*child, step.depth + 1});
        }
    }

    static void PrintLine(const TreeNode& node, size_t depth, const std::string& note,
                          Output& output)
    {
        const KRE_3dObject& object = *node.object;
        const bool isParentLost = !object.parent && !object.parentName.IsEmpty();
        std::string line(2 * std::min(depth, kMostIndent) + 2, ' ');
        if (depth > kMostIndent)
            line += "[" + std::to_string(depth) + "] ";
        line += ShownName(object.name.c_str()) + "  " + KindName(object);
        if (!node.details.empty())
            line += ", " + node.details;
        line += KeysText(object);
        if (isParentLost)
            line += ", without its parent " + QuotedName(object.parentName.c_str());
        output.Line({line, note});
    }

    std::vector<TreeNode> nodes;
    std::map<const KRE_3dObject*, size_t> places;
};

} // namespace

void PrintTree(LoadedScene& loaded, Output& output)
{
    output.Line({ShownName(loaded.path)});
    Tree(loaded.scene).Print(output);
}
