#include <algorithm>
#include <numeric>
#include <utility>

#include "import/CutMesh.h"
#include "import/MeshCorners.h"

namespace {

/// A point where more surfaces meet than this gets vertices of their own, so that the number of pairs stays
/// small.
constexpr size_t kMostSurfacesAtPoint = 8;

/// Faces that share a smooth vertex, as sets.
class Surfaces {
public:
    explicit Surfaces(const MeshCorners& mesh) : parent(mesh.smoothPoints.size())
    {
        std::iota(parent.begin(), parent.end(), 0u);
        for (const MeshCorners::Face& face : mesh.faces) {
            Join(face.corner[0].smooth, face.corner[1].smooth);
            Join(face.corner[0].smooth, face.corner[2].smooth);
        }
    }

    uint32_t Of(uint32_t smooth)
    {
        while (parent[smooth] != smooth) {
            parent[smooth] = parent[parent[smooth]];
            smooth = parent[smooth];
        }
        return smooth;
    }

private:
    void Join(uint32_t a, uint32_t b) { parent[Of(a)] = Of(b); }

    std::vector<uint32_t> parent;
};

} // namespace

void GroupFaces(MeshCorners& mesh)
{
    Surfaces surfaces(mesh);
    std::vector<std::vector<uint32_t>> smoothOf(mesh.points.size());
    for (uint32_t i = 0; i < mesh.smoothPoints.size(); ++i)
        smoothOf[mesh.smoothPoints[i]].push_back(i);

    // Which surfaces meet at a point without being one there.
    std::vector<std::pair<uint32_t, uint32_t>> neighbours; // of the first, sorted below
    for (const std::vector<uint32_t>& here : smoothOf) {
        std::vector<uint32_t> met;
        for (const uint32_t smooth : here) {
            const uint32_t surface = surfaces.Of(smooth);
            const bool isFolded = std::find(met.begin(), met.end(), surface) != met.end();
            mesh.isDoubled[smooth] = isFolded || met.size() == kMostSurfacesAtPoint;
            if (mesh.isDoubled[smooth])
                continue;
            for (const uint32_t other : met) {
                neighbours.emplace_back(surface, other);
                neighbours.emplace_back(other, surface);
            }
            met.push_back(surface);
        }
    }

    std::sort(neighbours.begin(), neighbours.end());
    neighbours.erase(std::unique(neighbours.begin(), neighbours.end()), neighbours.end());

    // The lowest free group for each surface; without one its vertices are doubled where it meets others.
    std::vector<int> groups(mesh.smoothPoints.size());
    std::vector<bool> isApart(mesh.smoothPoints.size());
    for (MeshCorners::Face& face : mesh.faces) {
        const uint32_t surface = surfaces.Of(face.corner[0].smooth);
        int& group = groups[surface];
        if (group == 0) {
            std::array<bool, kMostGroups + 2> taken = {};
            auto next = std::lower_bound(neighbours.begin(), neighbours.end(),
                                         std::pair<uint32_t, uint32_t>(surface, 0));
            for (; next != neighbours.end() && next->first == surface; ++next)
                taken[static_cast<size_t>(groups[next->second])] = true;
            group = 1;
            while (group <= kMostGroups && taken[static_cast<size_t>(group)])
                ++group;
            isApart[surface] = group > kMostGroups;
            group = std::min(group, kMostGroups);
        }
        face.group = group;
    }
    for (uint32_t i = 0; i < mesh.smoothPoints.size(); ++i) {
        if (isApart[surfaces.Of(i)] && smoothOf[mesh.smoothPoints[i]].size() > 1)
            mesh.isDoubled[i] = true;
    }
}
