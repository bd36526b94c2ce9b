#include "import/CutMesh.h"

#include <set>
#include <unordered_map>
#include <unordered_set>

#include "gltf/NoticeList.h"
#include "import/MeshCorners.h"

namespace {

/// Fills one piece after the other with the faces of a mesh, in their order.
class PieceMaker {
public:
    explicit PieceMaker(const MeshCorners& meshIn) : mesh(meshIn) {}

    std::vector<MeshPiece> Cut()
    {
        for (const MeshCorners::Face& face : mesh.faces) {
            if (pieces.empty() || !HasRoomFor(face))
                Begin();
            Add(face);
        }
        return std::move(pieces);
    }

private:
    void Begin()
    {
        pieces.emplace_back();
        vertices.clear();
        copies.clear();
        texCoords.clear();
        built.clear();
        bones.clear();
    }

    bool HasRoomFor(const MeshCorners::Face& face) const
    {
        const MeshPiece& piece = pieces.back();
        if (piece.vertices.size() + 3 > kMostPieceVertices ||
            piece.texCoords.size() + 3 > kMostPieceVertices ||
            built.size() + 3 > kMostPieceVertices)
            return false;
        if (mesh.weights.empty())
            return true;
        std::set<uint32_t> added;
        for (const MeshCorners::Corner& corner : face.corner) {
            for (const ModelWeight& weight : mesh.weights[corner.point]) {
                if (!bones.count(weight.joint))
                    added.insert(weight.joint);
            }
        }
        return bones.size() + added.size() <= kMostPieceBones;
    }

    void Add(const MeshCorners::Face& face)
    {
        MeshPiece::Face made;
        made.group = face.group;
        made.material = face.material;
        for (size_t c = 0; c < 3; ++c) {
            const MeshCorners::Corner& corner = face.corner[c];
            made.texture[c] = TexCoordOf(corner);
            made.vertex[c] = VertexOf(corner, made.texture[c], face);
        }
        pieces.back().faces.push_back(made);
    }

    uint32_t TexCoordOf(const MeshCorners::Corner& corner)
    {
        if (!mesh.hasTexCoords)
            return 0;
        MeshPiece& piece = pieces.back();
        const auto [place, isNew] =
            texCoords.emplace(corner.uv, static_cast<uint32_t>(piece.texCoords.size()));
        if (isNew)
            piece.texCoords.push_back(mesh.texCoords[corner.uv]);
        return place->second;
    }

    /// A vertex that the converter would copy too often is written a second time.
    uint32_t VertexOf(const MeshCorners::Corner& corner, uint32_t texture,
                      const MeshCorners::Face& face)
    {
        const bool isApart = mesh.isDoubled[corner.smooth];
        const uint64_t key = isApart ? uint64_t{1} << 32 | corner.smooth : corner.point;
        const auto place = vertices.find(key);
        uint32_t vertex = place != vertices.end() ? place->second : AddVertex(key, corner);
        if (CountBuilt(vertex, texture, face))
            return vertex;
        vertex = AddVertex(key, corner);
        CountBuilt(vertex, texture, face);
        return vertex;
    }

    uint32_t AddVertex(uint64_t key, const MeshCorners::Corner& corner)
    {
        MeshPiece& piece = pieces.back();
        const auto added = static_cast<uint32_t>(piece.vertices.size());
        piece.vertices.push_back(mesh.points[corner.point]);
        if (!mesh.weights.empty()) {
            piece.weights.push_back(mesh.weights[corner.point]);
            for (const ModelWeight& weight : piece.weights.back())
                bones.insert(weight.joint);
        }
        copies.push_back(0);
        vertices[key] = added;
        return added;
    }

    /// Counts the vertex that the converter builds; false if there is no room for one more copy.
    bool CountBuilt(uint32_t vertex, uint32_t texture, const MeshCorners::Face& face)
    {
        const uint64_t key = uint64_t{vertex} | uint64_t{texture} << 16 |
                             static_cast<uint64_t>(face.group) << 32 |
                             static_cast<uint64_t>(face.material) << 38;
        if (built.count(key))
            return true;
        if (copies[vertex] >= kMostVertexCopies)
            return false;
        ++copies[vertex];
        built.insert(key);
        return true;
    }

    const MeshCorners& mesh;
    std::vector<MeshPiece> pieces;
    std::unordered_map<uint64_t, uint32_t> vertices; ///< by point, or by smooth vertex
    std::vector<size_t> copies;                      ///< by vertex
    std::unordered_map<uint32_t, uint32_t> texCoords;
    std::unordered_set<uint64_t> built;
    std::set<uint32_t> bones;
};

} // namespace

CutResult CutMesh(const ModelMesh& mesh, bool skinned, NoticeList& notices)
{
    MeshCorners corners = WeldMesh(mesh, skinned);
    notices.Add("faces without an area are left out", corners.flatFaces);
    notices.Add("corners have normals of their own, which are computed anew",
                CountFreeNormals(corners));
    GroupFaces(corners);
    CutResult result;
    result.materials = corners.materials;
    result.pieces = PieceMaker(corners).Cut();
    return result;
}
