#include <algorithm>
#include <cmath>

#include "gltf/GltfConstants.h"
#include "gltf/ModelFault.h"
#include "import/GltfReader.h"

using nlohmann::json;

namespace {

/// Corners that a file may describe beyond one for each of its bytes; only shared lists exceed that.
constexpr size_t kCornersAtLeast = 100000;

void FromFloats(const GltfValues& values, std::vector<ModelPoint>& pointsOut)
{
    pointsOut.resize(values.Count());
    for (size_t i = 0; i < values.Count(); ++i)
        std::copy_n(values.At(i), 3, pointsOut[i].begin());
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
    const int mode = static_cast<int>(GltfFile::Number(primitive, "mode", kGltfTriangles));
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
    ReadVertices(*attributes, made);
    ReadWeights(*attributes, made);
    made.corners = ReadCorners(primitive, made.positions.size());
    CountLosses(primitive);
    if (!made.corners.empty())
        mesh.primitives.push_back(std::move(made));
}

void GltfReader::ReadVertices(const json& attributes, ModelPrimitive& made)
{
    FromFloats(file.Floats(file.IndexOf("accessors", attributes, "POSITION"), 3), made.positions);
    for (ModelPoint& point : made.positions) {
        for (float& part : point) {
            if (!std::isfinite(part))
                throw ModelFault("a position is not finite");
        }
    }
    const auto expect = [&](size_t count) {
        if (count != made.positions.size())
            throw ModelFault("the attributes of a primitive differ in length");
    };
    if (attributes.contains("NORMAL")) {
        FromFloats(file.Floats(file.IndexOf("accessors", attributes, "NORMAL"), 3), made.normals);
        expect(made.normals.size());
    }
    int set = 0;
    if (made.material >= 0)
        set = model.materials[static_cast<size_t>(made.material)].map.set;
    const std::string key = "TEXCOORD_" + std::to_string(set);
    if (!attributes.contains(key))
        return;
    const GltfValues& uvs = file.Floats(file.IndexOf("accessors", attributes, key.c_str()), 2);
    expect(uvs.Count());
    for (size_t i = 0; i < uvs.Count(); ++i) {
        const float* uv = uvs.At(i);
        made.texCoords.push_back({std::isfinite(uv[0]) ? uv[0] : 0.0f, //
                                  std::isfinite(uv[1]) ? uv[1] : 0.0f});
    }
}

void GltfReader::ReadWeights(const json& attributes, ModelPrimitive& made)
{
    for (int set = 0;; ++set) {
        const std::string jointsKey = "JOINTS_" + std::to_string(set);
        const std::string weightsKey = "WEIGHTS_" + std::to_string(set);
        if (!attributes.contains(jointsKey) || !attributes.contains(weightsKey))
            return;
        const GltfValues& joints =
            file.Floats(file.IndexOf("accessors", attributes, jointsKey.c_str()), 4);
        const GltfValues& weights =
            file.Floats(file.IndexOf("accessors", attributes, weightsKey.c_str()), 4);
        if (joints.Count() != made.positions.size() || weights.Count() != made.positions.size())
            throw ModelFault("the attributes of a primitive differ in length");
        made.weights.resize(made.positions.size());
        for (size_t i = 0; i < made.positions.size(); ++i) {
            for (size_t part = 0; part < 4; ++part) {
                const float weight = weights.At(i)[part];
                const float joint = joints.At(i)[part];
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
    const int mode = static_cast<int>(GltfFile::Number(primitive, "mode", kGltfTriangles));
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
