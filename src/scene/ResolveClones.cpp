#include "scene/ResolveClones.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

struct NamedMesh {
    std::string_view name;
    size_t place; ///< in the drawing order
};

bool IsBefore(const NamedMesh& a, const NamedMesh& b)
{
    return a.name < b.name;
}

/// The meshes of a scene by position, and for each clone the position of its source. All names are
/// looked up before the first clone is resolved, because resolving moves the names' memory.
class CloneLinks {
public:
    static constexpr size_t kNone = SIZE_MAX;

    CloneLinks(KRE_3dScene& scene, ErrorClassSimple& reporter)
    {
        for (KRE_Mesh* mesh : scene.meshes)
            meshes.push_back(mesh);
        std::vector<NamedMesh> names;
        for (size_t i = 0; i < meshes.size(); ++i)
            names.push_back({meshes[i]->name.c_str(), i});
        std::stable_sort(names.begin(), names.end(), IsBefore);

        sources.assign(meshes.size(), kNone);
        std::vector<bool> isTold(meshes.size(), false); // by the position of the source
        for (size_t i = 0; i < meshes.size(); ++i) {
            const NamedMesh wanted = {meshes[i]->cloneSource.c_str(), 0};
            const auto [found, end] =
                std::equal_range(names.begin(), names.end(), wanted, IsBefore);
            if (wanted.name.empty() || found == end)
                continue;
            sources[i] = found->place;
            // A saved scene has its transparent meshes last, so another one may come first there.
            if (end - found > 1 && !isTold[found->place])
                reporter.Warning("%i meshes are named '%s', the source of clone '%s'",
                                 static_cast<int>(end - found), meshes[i]->cloneSource.c_str(),
                                 meshes[i]->name.c_str());
            isTold[found->place] = true;
        }
    }

    std::vector<KRE_Mesh*> meshes; ///< not owned, live in the scene
    std::vector<size_t> sources;   ///< `kNone` where there is no such mesh
};

void ResolveClone(KRE_Mesh& clone, KRE_Mesh& source)
{
    // A source without geometry leaves the clone reset, so the name is saved here as well.
    const String name = clone.name;
    const int32_t visible = clone.visible;
    const String cloneSource = clone.cloneSource;
    source.CopyGeometryTo(clone, 1, 1);
    clone.name = name;
    clone.visible = visible;
    clone.cloneSource = cloneSource;
}

} // namespace

void ResolveClones(KRE_3dScene& scene, CopyBudget& budget, ErrorClassSimple& reporter)
{
    enum class State : uint8_t { kOpen, kWaiting, kDone };
    const CloneLinks links(scene, reporter);
    std::vector<State> states(links.meshes.size(), State::kOpen);
    std::vector<size_t> waiting; // clones whose sources must be resolved first
    for (size_t i = 0; i < links.meshes.size(); ++i) {
        for (size_t at = i; states[at] != State::kDone;) {
            const KRE_Mesh& mesh = *links.meshes[at];
            if (mesh.cloneSource.IsEmpty()) {
                states[at] = State::kDone;
                break;
            }
            const size_t source = links.sources[at];
            if (source == CloneLinks::kNone || states[at] == State::kWaiting)
                reporter.Error("Clone Mesh '%s' not found", mesh.cloneSource.c_str());
            states[at] = State::kWaiting;
            waiting.push_back(at);
            at = source;
        }
        for (; !waiting.empty(); waiting.pop_back()) {
            const size_t at = waiting.back();
            KRE_Mesh& clone = *links.meshes[at];
            KRE_Mesh& source = *links.meshes[links.sources[at]];
            budget.Take(source.bones.Count() * int64_t{sizeof(KRE_BoneInfo)}, clone, reporter);
            ResolveClone(clone, source);
            states[at] = State::kDone;
        }
    }
}
