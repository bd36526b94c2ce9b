#include <algorithm>
#include <cmath>

#include "gltf/GltfConstants.h"
#include "gltf/ModelFault.h"
#include "import/GltfReader.h"

using nlohmann::json;

namespace {

/// Corners that a file may describe beyond one for each of its bytes; only shared lists exceed that.
constexpr size_t kCornersAtLeast = 500000;

constexpr int kMostWeightSets = 8; // of four bones for each vertex

void CopyPoints(const GltfValues& values, const std::vector<uint32_t>& used,
                std::vector<ModelPoint>& pointsOut)
{
    pointsOut.resize(used.size());
    for (size_t i = 0; i < used.size(); ++i)
        std::copy_n(values.At(used[i]), 3, pointsOut[i].begin());
}

} // namespace

void GltfReader::ReadMeshes()
{
    for (const json& mesh : file.List("meshes")) {
        ModelMesh& made = model.meshes.emplace_back();
        made.name = GltfFile::Text(mesh, "name");
        const auto primitives = mesh.find("primitives");
        if (primitives == mesh.end() || !primitives->is_array())
            throw ModelFault("a mesh has no primitives");
        for (const json& primitive : *primitives)
            ReadPrimitive(primitive, made);
        if (mesh.contains("weights"))
            notices.Add("morphs are not carried");
    }
}

void GltfReader::ReadPrimitive(const json& primitive, ModelMesh& mesh)
{
    const int mode = GltfFile::Small(primitive, "mode", kGltfTriangles);
    if (mode < kGltfTriangles || mode > kGltfTriangleFan) {
        notices.Add("points and lines are not carried");
        return;
    }
    const auto attributes = primitive.find("attributes");
    if (attributes == primitive.end() || !attributes->is_object())
        throw ModelFault("a primitive has no attributes");
    if (!attributes->contains("POSITION"))
        return; // allowed, and draws nothing
    ModelPrimitive made;
    made.material = file.IndexOf("materials", primitive, "material");
    const GltfValues& points = file.Floats(file.IndexOf("accessors", *attributes, "POSITION"), 3);
    made.corners = ReadCorners(primitive, points.Count());
    CountLosses(primitive);
    if (made.corners.empty())
        return;
    const std::vector<uint32_t> used = KeepUsed(made.corners, points.Count());
    ReadVertices(*attributes, points, used, made);
    ReadWeights(*attributes, points.Count(), used, made);
    mesh.primitives.push_back(std::move(made));
}

/// The vertices that corners name, in the order of their first use; the corners then count in that order. Many
/// primitives may share one list of vertices, so each takes only its own.
std::vector<uint32_t> GltfReader::KeepUsed(std::vector<uint32_t>& corners, size_t vertexCount)
{
    if (places.size() < vertexCount)
        places.resize(vertexCount, UINT32_MAX);
    std::vector<uint32_t> used;
    for (uint32_t& corner : corners) {
        uint32_t& place = places[corner];
        if (place == UINT32_MAX) {
            place = static_cast<uint32_t>(used.size());
            used.push_back(corner);
        }
        corner = place;
    }
    for (const uint32_t vertex : used)
        places[vertex] = UINT32_MAX;
    return used;
}

/// An attribute of each vertex of a primitive.
const GltfValues& GltfReader::Attribute(const json& attributes, const std::string& key,
                                        size_t width, size_t vertexCount)
{
    const GltfValues& values =
        file.Floats(file.IndexOf("accessors", attributes, key.c_str()), width);
    if (values.Count() != vertexCount)
        throw ModelFault("the attributes of a primitive differ in length");
    return values;
}

void GltfReader::ReadVertices(const json& attributes, const GltfValues& points,
                              const std::vector<uint32_t>& used, ModelPrimitive& made)
{
    CopyPoints(points, used, made.positions);
    for (const ModelPoint& point : made.positions) {
        for (const float part : point) {
            if (!std::isfinite(part))
                throw ModelFault("a position is not finite");
        }
    }
    if (attributes.contains("NORMAL"))
        CopyPoints(Attribute(attributes, "NORMAL", 3, points.Count()), used, made.normals);
    int set = 0;
    if (made.material >= 0)
        set = model.materials[static_cast<size_t>(made.material)].map.set;
    const std::string key = "TEXCOORD_" + std::to_string(set);
    if (!attributes.contains(key))
        return;
    const GltfValues& uvs = Attribute(attributes, key, 2, points.Count());
    for (const uint32_t vertex : used) {
        const float* uv = uvs.At(vertex);
        made.texCoords.push_back({std::isfinite(uv[0]) ? uv[0] : 0.0f, //
                                  std::isfinite(uv[1]) ? uv[1] : 0.0f});
    }
}

void GltfReader::ReadWeights(const json& attributes, size_t vertexCount,
                             const std::vector<uint32_t>& used, ModelPrimitive& made)
{
    for (int set = 0;; ++set) {
        const std::string jointsKey = "JOINTS_" + std::to_string(set);
        const std::string weightsKey = "WEIGHTS_" + std::to_string(set);
        if (!attributes.contains(jointsKey) || !attributes.contains(weightsKey))
            return;
        if (set == kMostWeightSets)
            throw ModelFault("a vertex has weights for more bones than are read");
        const GltfValues& joints = Attribute(attributes, jointsKey, 4, vertexCount);
        const GltfValues& weights = Attribute(attributes, weightsKey, 4, vertexCount);
        made.weights.resize(used.size());
        for (size_t i = 0; i < used.size(); ++i) {
            for (size_t part = 0; part < 4; ++part) {
                const float weight = weights.At(used[i])[part];
                const float joint = joints.At(used[i])[part];
                if (weight > 0 && std::isfinite(weight) && joint >= 0 && joint < 65536)
                    made.weights[i].push_back({static_cast<uint32_t>(joint), weight});
            }
        }
    }
}

/// The corners of triangles, three each, from a list, a strip or a fan.
std::vector<uint32_t> GltfReader::ReadCorners(const json& primitive, size_t vertexCount)
{
    std::vector<uint32_t> listed;
    const int accessor = file.IndexOf("accessors", primitive, "indices");
    if (accessor >= 0) {
        listed = file.Indices(accessor);
    } else {
        CountCorners(vertexCount);
        for (size_t i = 0; i < vertexCount; ++i)
            listed.push_back(static_cast<uint32_t>(i));
    }
    for (const uint32_t corner : listed) {
        if (corner >= vertexCount)
            throw ModelFault("a triangle has corner " + std::to_string(corner) + " of " +
                             std::to_string(vertexCount));
    }
    const int mode = GltfFile::Small(primitive, "mode", kGltfTriangles);
    if (mode == kGltfTriangles) {
        listed.resize(listed.size() - listed.size() % 3);
        CountCorners(listed.size());
        return listed;
    }
    std::vector<uint32_t> corners;
    CountCorners(listed.size() * 3);
    for (size_t i = 2; i < listed.size(); ++i) {
        const bool isFan = mode == kGltfTriangleFan;
        const size_t swap = !isFan && i % 2 == 1 ? 1 : 0; // every other one of a strip
        corners.push_back(listed[isFan ? 0 : i - 2 + swap]);
        corners.push_back(listed[i - 1 - swap]);
        corners.push_back(listed[i]);
    }
    return corners;
}

void GltfReader::CountCorners(size_t count)
{
    cornerCount += count;
    if (cornerCount > kCornersAtLeast + file.TotalBytes())
        throw ModelFault("its meshes describe far more than the file holds");
}

void GltfReader::CountLosses(const json& primitive)
{
    const json& attributes = primitive["attributes"];
    if (attributes.contains("COLOR_0"))
        notices.Add("vertex colours are not carried");
    if (attributes.contains("TEXCOORD_0") && attributes.contains("TEXCOORD_1"))
        notices.Add("second texture coordinates are not carried");
    if (primitive.contains("targets"))
        notices.Add("morphs are not carried");
}
