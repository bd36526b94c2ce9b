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

/// The meshes of a scene by place, and of each clone the place of its source. All names are looked
/// up before the first clone is resolved: resolving moves the names' memory.
class CloneLinks {
public:
    static constexpr size_t kNone = SIZE_MAX;

    explicit CloneLinks(KRE_3dScene& scene)
    {
        for (KRE_Mesh* mesh : scene.meshes)
            meshes.push_back(mesh);
        std::vector<NamedMesh> names;
        for (size_t i = 0; i < meshes.size(); ++i)
            names.push_back({meshes[i]->name.c_str(), i});
        std::stable_sort(names.begin(), names.end(), IsBefore);

        sources.assign(meshes.size(), kNone);
        for (size_t i = 0; i < meshes.size(); ++i) {
            const NamedMesh wanted = {meshes[i]->cloneSource.c_str(), 0};
            const auto found = std::lower_bound(names.begin(), names.end(), wanted, IsBefore);
            if (found != names.end() && found->name == wanted.name)
                sources[i] = found->place;
        }
    }

    std::vector<KRE_Mesh*> meshes; ///< not owned, live in the scene
    std::vector<size_t> sources;   ///< `kNone` where there is no such mesh
};

void ResolveClone(KRE_Mesh& clone, KRE_Mesh& source)
{
    // A source without geometry leaves the clone reset, so the name is kept here as well.
    const String name = clone.name;
    const int32_t visible = clone.visible;
    const String cloneSource = clone.cloneSource;
    source.CopyGeometryTo(clone, 1, 1);
    clone.name = name;
    clone.visible = visible;
    clone.cloneSource = cloneSource;
}

} // namespace

void ResolveClones(KRE_3dScene& scene, ErrorClassSimple& reporter)
{
    enum class State : uint8_t { kOpen, kWaiting, kDone };
    const CloneLinks links(scene);
    std::vector<State> states(links.meshes.size(), State::kOpen);
    std::vector<size_t> waiting; // clones whose sources are to be resolved first
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
            ResolveClone(*links.meshes[at], *links.meshes[links.sources[at]]);
            states[at] = State::kDone;
        }
    }
}
