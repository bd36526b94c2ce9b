#include "import/MeshCorners.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <unordered_map>

#include "import/WeightRules.h"

namespace {

constexpr double kSameNormal = 0.9995; // cosine of less than two degrees

ModelPoint Minus(const ModelPoint& a, const ModelPoint& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double Dot(const ModelPoint& a, const ModelPoint& b)
{
    return double{a[0]} * b[0] + double{a[1]} * b[1] + double{a[2]} * b[2];
}

/// The direction, or 0, 0, 0 if there is none.
ModelPoint Direction(const std::array<double, 3>& v)
{
    const double length = std::hypot(v[0], v[1], v[2]);
    if (!(length > 1e-30) || !std::isfinite(length))
        return {0, 0, 0};
    return {static_cast<float>(v[0] / length), static_cast<float>(v[1] / length),
            static_cast<float>(v[2] / length)};
}

std::array<double, 3> Cross(const ModelPoint& a, const ModelPoint& b)
{
    return {double{a[1]} * b[2] - double{a[2]} * b[1], double{a[2]} * b[0] - double{a[0]} * b[2],
            double{a[0]} * b[1] - double{a[1]} * b[0]};
}

template <class T>
void AddBytes(std::string& key, const T* values, size_t count)
{
    key.append(reinterpret_cast<const char*>(values), count * sizeof *values);
}

/// Welds positions, texture coordinates and normals of all primitives.
class Welder {
public:
    Welder(const ModelMesh& meshIn, bool skinnedIn) : mesh(meshIn), skinned(skinnedIn) {}

    MeshCorners Weld()
    {
        for (const ModelPrimitive& primitive : mesh.primitives)
            made.hasTexCoords = made.hasTexCoords || !primitive.texCoords.empty();
        for (const ModelPrimitive& primitive : mesh.primitives)
            Add(primitive);
        made.isDoubled.resize(made.smoothPoints.size());
        return std::move(made);
    }

private:
    void Add(const ModelPrimitive& primitive)
    {
        const int material = PlaceOf(primitive.material);
        std::vector<uint32_t> points(primitive.positions.size(), UINT32_MAX);
        std::vector<uint32_t> uvs(primitive.positions.size(), UINT32_MAX);
        for (size_t i = 0; i + 2 < primitive.corners.size(); i += 3) {
            const ModelPoint flat = FaceNormal(primitive, i);
            if (flat == ModelPoint{0, 0, 0}) {
                ++made.flatFaces;
                continue;
            }
            MeshCorners::Face& face = made.faces.emplace_back();
            face.material = material;
            for (size_t c = 0; c < 3; ++c) {
                const uint32_t vertex = primitive.corners[i + c];
                uint32_t& point = points[vertex];
                uint32_t& uv = uvs[vertex];
                point = point == UINT32_MAX ? PointOf(primitive, vertex) : point;
                uv = uv == UINT32_MAX ? TexCoordOf(primitive, vertex) : uv;
                face.corner[c] = {point, SmoothOf(point, NormalOf(primitive, vertex, flat)), uv};
            }
        }
    }

    int PlaceOf(int material)
    {
        const auto found = std::find(made.materials.begin(), made.materials.end(), material);
        if (found == made.materials.end())
            made.materials.push_back(material);
        return static_cast<int>(std::find(made.materials.begin(), made.materials.end(), material) -
                                made.materials.begin());
    }

    static ModelPoint FaceNormal(const ModelPrimitive& primitive, size_t first)
    {
        const ModelPoint& a = primitive.positions[primitive.corners[first]];
        const ModelPoint& b = primitive.positions[primitive.corners[first + 1]];
        const ModelPoint& c = primitive.positions[primitive.corners[first + 2]];
        return Direction(Cross(Minus(b, a), Minus(c, a)));
    }

    static ModelPoint NormalOf(const ModelPrimitive& primitive, uint32_t vertex,
                               const ModelPoint& flat)
    {
        if (primitive.normals.empty())
            return flat;
        const ModelPoint& n = primitive.normals[vertex];
        const ModelPoint unit = Direction({n[0], n[1], n[2]});
        return unit == ModelPoint{0, 0, 0} ? flat : unit;
    }

    uint32_t PointOf(const ModelPrimitive& primitive, uint32_t vertex)
    {
        std::string key;
        AddBytes(key, primitive.positions[vertex].data(), 3);
        std::vector<ModelWeight> kept;
        if (skinned && !primitive.weights.empty()) {
            kept = KeptWeights(primitive.weights[vertex]);
            for (const ModelWeight& weight : kept) {
                AddBytes(key, &weight.joint, 1);
                AddBytes(key, &weight.weight, 1);
            }
        }
        const auto [place, isNew] =
            pointKeys.emplace(std::move(key), static_cast<uint32_t>(made.points.size()));
        if (isNew) {
            made.points.push_back(primitive.positions[vertex]);
            if (skinned)
                made.weights.push_back(std::move(kept));
            firstSmooth.push_back(UINT32_MAX);
        }
        return place->second;
    }

    uint32_t TexCoordOf(const ModelPrimitive& primitive, uint32_t vertex)
    {
        if (!made.hasTexCoords)
            return 0;
        const std::array<float, 2> uv =
            primitive.texCoords.empty() ? std::array<float, 2>{0, 0} : primitive.texCoords[vertex];
        uint64_t key;
        static_assert(sizeof key == sizeof uv);
        std::memcpy(&key, uv.data(), sizeof key);
        const auto [place, isNew] =
            uvKeys.emplace(key, static_cast<uint32_t>(made.texCoords.size()));
        if (isNew)
            made.texCoords.push_back(uv);
        return place->second;
    }

    /// The smooth vertices of a point are a chain; one that agrees is taken.
    uint32_t SmoothOf(uint32_t point, const ModelPoint& normal)
    {
        uint32_t length = 0;
        for (uint32_t at = firstSmooth[point]; at != UINT32_MAX; at = nextSmooth[at]) {
            if (Dot(made.smoothNormals[at], normal) > kSameNormal)
                return at;
            if (++length == kLongestChain)
                return at;
        }
        const auto added = static_cast<uint32_t>(made.smoothPoints.size());
        made.smoothPoints.push_back(point);
        made.smoothNormals.push_back(normal);
        nextSmooth.push_back(firstSmooth[point]);
        firstSmooth[point] = added;
        return added;
    }

    /// A point with more normals than a sphere has directions to tell apart is damage.
    static constexpr uint32_t kLongestChain = 512;

    const ModelMesh& mesh;
    bool skinned;
    MeshCorners made;
    std::unordered_map<std::string, uint32_t> pointKeys;
    std::unordered_map<uint64_t, uint32_t> uvKeys;
    std::vector<uint32_t> firstSmooth; ///< by point
    std::vector<uint32_t> nextSmooth;  ///< by smooth vertex
};

double AngleAt(const ModelPoint& at, const ModelPoint& a, const ModelPoint& b)
{
    const ModelPoint first = Minus(a, at);
    const ModelPoint second = Minus(b, at);
    const double lengths = std::sqrt(Dot(first, first) * Dot(second, second));
    return lengths > 0 ? std::acos(std::clamp(Dot(first, second) / lengths, -1.0, 1.0)) : 0;
}

} // namespace

MeshCorners WeldMesh(const ModelMesh& mesh, bool skinned)
{
    return Welder(mesh, skinned).Weld();
}

/// The scene's normals: those of the faces at a smooth vertex, weighted by their angles.
int64_t CountFreeNormals(const MeshCorners& mesh)
{
    constexpr double kFiveDegrees = 0.9962;
    std::vector<std::array<double, 3>> sums(mesh.smoothPoints.size());
    std::vector<int64_t> uses(mesh.smoothPoints.size());
    for (const MeshCorners::Face& face : mesh.faces) {
        const ModelPoint* at[3];
        for (size_t c = 0; c < 3; ++c)
            at[c] = &mesh.points[face.corner[c].point];
        const ModelPoint normal = Direction(Cross(Minus(*at[1], *at[0]), Minus(*at[2], *at[0])));
        for (size_t c = 0; c < 3; ++c) {
            const double angle = AngleAt(*at[c], *at[(c + 1) % 3], *at[(c + 2) % 3]);
            for (size_t i = 0; i < 3; ++i)
                sums[face.corner[c].smooth][i] += normal[i] * angle;
            ++uses[face.corner[c].smooth];
        }
    }
    int64_t count = 0;
    for (size_t i = 0; i < sums.size(); ++i)
        count += Dot(Direction(sums[i]), mesh.smoothNormals[i]) < kFiveDegrees ? uses[i] : 0;
    return count;
}
