#include "tests/gltf/GltfDocument.h"

#include <algorithm>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

using nlohmann::json;
namespace fs = std::filesystem;

namespace {

std::string FileBytes(const fs::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + path.string());
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

template <class T>
T At(const std::string& bytes, size_t offset)
{
    T value;
    if (offset + sizeof value > bytes.size())
        throw std::runtime_error("read beyond the end");
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

size_t WidthOf(const std::string& type)
{
    static const std::map<std::string, size_t> kWidths = {
        {"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT4", 16}};
    return kWidths.at(type);
}

std::vector<double> Slerped(std::vector<double> a, const std::vector<double>& b, double u)
{
    double cosine = 0;
    for (size_t i = 0; i < 4; ++i)
        cosine += a[i] * b[i];
    const double sign = cosine < 0 ? -1 : 1;
    const double angle = std::acos(std::min(1.0, std::fabs(cosine)));
    double from = 1 - u, to = u;
    if (angle > 1e-6) {
        from = std::sin(angle * (1 - u)) / std::sin(angle);
        to = std::sin(angle * u) / std::sin(angle);
    }
    for (size_t i = 0; i < 4; ++i)
        a[i] = a[i] * from + b[i] * to * sign;
    return a;
}

GltfMatrix MatrixOf(const std::vector<double>& t, const std::vector<double>& q,
                    const std::vector<double>& s)
{
    const double x = q[0], y = q[1], z = q[2], w = q[3];
    const double rows[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)},
                               {2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)},
                               {2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)}};
    GltfMatrix m = {};
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column)
            m[row * 4 + column] = rows[row][column] * s[row];
        m[12 + row] = t[row];
    }
    m[15] = 1;
    return m;
}

constexpr GltfMatrix kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

} // namespace

GltfMatrix operator*(const GltfMatrix& first, const GltfMatrix& second)
{
    GltfMatrix product = {};
    for (size_t row = 0; row < 4; ++row) {
        for (size_t column = 0; column < 4; ++column) {
            for (size_t i = 0; i < 4; ++i)
                product[row * 4 + column] += first[row * 4 + i] * second[i * 4 + column];
        }
    }
    return product;
}

GltfPoint MovePoint(const GltfPoint& point, const GltfMatrix& m)
{
    GltfPoint moved;
    for (size_t i = 0; i < 3; ++i)
        moved[i] = point[0] * m[i] + point[1] * m[4 + i] + point[2] * m[8 + i] + m[12 + i];
    return moved;
}

double DistanceOf(const GltfPoint& a, const GltfPoint& b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

GltfDocument::GltfDocument(const std::string& path)
{
    const std::string bytes = FileBytes(path);
    std::string own;
    if (bytes.compare(0, 4, "glTF") == 0) {
        const size_t length = At<uint32_t>(bytes, 12);
        json = json::parse(bytes.substr(20, length));
        if (20 + length < bytes.size())
            own = bytes.substr(28 + length, At<uint32_t>(bytes, 20 + length));
    } else {
        json = json::parse(bytes);
    }
    for (const auto& buffer : json.value("buffers", json::array())) {
        const std::string uri = buffer.value("uri", "");
        buffers.push_back(uri.empty() ? own : FileBytes(fs::path(path).parent_path() / uri));
    }
    for (size_t i = 0; json.contains("nodes") && i < json["nodes"].size(); ++i) {
        for (const auto& child : json["nodes"][i].value("children", json::array()))
            parents[child.get<int>()] = static_cast<int>(i);
    }
}

std::vector<double> GltfDocument::Values(int index) const
{
    const auto& accessor = json["accessors"][static_cast<size_t>(index)];
    const auto& view = json["bufferViews"][accessor["bufferView"].get<size_t>()];
    const std::string& bytes = buffers[view["buffer"].get<size_t>()];
    const size_t width = WidthOf(accessor["type"]);
    const int component = accessor["componentType"];
    const size_t size = component == 5126 || component == 5125 ? 4 : component >= 5122 ? 2 : 1;
    const size_t stride = view.value("byteStride", width * size);
    const size_t start =
        view.value("byteOffset", size_t{0}) + accessor.value("byteOffset", size_t{0});
    std::vector<double> values;
    for (size_t i = 0; i < accessor["count"].get<size_t>(); ++i) {
        for (size_t part = 0; part < width; ++part) {
            const size_t at = start + i * stride + part * size;
            switch (component) {
            case 5126:
                values.push_back(At<float>(bytes, at));
                break;
            case 5125:
                values.push_back(At<uint32_t>(bytes, at));
                break;
            case 5123:
                values.push_back(At<uint16_t>(bytes, at));
                break;
            default:
                values.push_back(At<uint8_t>(bytes, at));
            }
        }
    }
    return values;
}

int GltfDocument::NodeOf(const std::string& name) const
{
    for (size_t i = 0; json.contains("nodes") && i < json["nodes"].size(); ++i) {
        if (json["nodes"][i].value("name", "") == name)
            return static_cast<int>(i);
    }
    return -1;
}

GltfMatrix GltfDocument::WorldOf(int node, double seconds) const
{
    GltfMatrix world = LocalOf(node, seconds);
    for (auto at = parents.find(node); at != parents.end(); at = parents.find(at->second))
        world = world * LocalOf(at->second, seconds);
    return world;
}

GltfMatrix GltfDocument::LocalOf(int index, double seconds) const
{
    const auto& node = json["nodes"][static_cast<size_t>(index)];
    if (node.contains("matrix"))
        return node["matrix"].get<GltfMatrix>();
    const auto given = [&](const char* path, std::vector<double> rest) {
        return Part(index, path, seconds, node.value(path, rest));
    };
    return MatrixOf(given("translation", {0, 0, 0}), given("rotation", {0, 0, 0, 1}),
                    given("scale", {1, 1, 1}));
}

std::vector<double> GltfDocument::Part(int node, const std::string& path, double seconds,
                                       std::vector<double> rest) const
{
    if (!json.contains("animations"))
        return rest;
    const auto& animation = json["animations"][0];
    for (const auto& channel : animation["channels"]) {
        if (channel["target"].value("node", -1) == node && channel["target"]["path"] == path)
            return Animated(animation["samplers"][channel["sampler"].get<size_t>()],
                            path == "rotation", seconds);
    }
    return rest;
}

std::vector<double> GltfDocument::Animated(const nlohmann::json& sampler, bool isRotation,
                                           double seconds) const
{
    const std::vector<double> times = Values(sampler["input"]);
    const std::vector<double> values = Values(sampler["output"]);
    const std::string kind = sampler.value("interpolation", "LINEAR");
    const size_t width = isRotation ? 4 : 3;
    const bool isCubic = kind == "CUBICSPLINE";
    const auto entry = [&](size_t key, size_t which) {
        const size_t at = ((isCubic ? key * 3 : key) + which) * width;
        return std::vector<double>(values.begin() + static_cast<ptrdiff_t>(at),
                                   values.begin() + static_cast<ptrdiff_t>(at + width));
    };
    const size_t middle = isCubic ? 1 : 0;
    size_t next = 0;
    while (next < times.size() && times[next] <= seconds)
        ++next;
    if (next == 0)
        return entry(0, middle);
    if (next == times.size() || kind == "STEP")
        return entry(next - 1, middle);
    const double length = times[next] - times[next - 1];
    const double u = (seconds - times[next - 1]) / length;
    std::vector<double> from = entry(next - 1, middle);
    const std::vector<double> to = entry(next, middle);
    if (!isCubic && isRotation)
        return Slerped(from, to, u);
    const std::vector<double> out = isCubic ? entry(next - 1, 2) : from;
    const std::vector<double> in = isCubic ? entry(next, 0) : to;
    double square = 0;
    for (size_t i = 0; i < width; ++i) {
        from[i] = isCubic ? (2 * u * u * u - 3 * u * u + 1) * from[i] +
                                length * (u * u * u - 2 * u * u + u) * out[i] +
                                (3 * u * u - 2 * u * u * u) * to[i] +
                                length * (u * u * u - u * u) * in[i]
                          : from[i] + (to[i] - from[i]) * u;
        square += from[i] * from[i];
    }
    for (double& part : from)
        part /= isRotation ? std::sqrt(square) : 1;
    return from;
}

std::vector<GltfPoint> GltfDocument::WorldPoints(int index, size_t number, double seconds) const
{
    const auto& node = json["nodes"][static_cast<size_t>(index)];
    const auto& mesh = json["meshes"][node["mesh"].get<size_t>()];
    const auto& attributes = mesh["primitives"][number]["attributes"];
    const std::vector<double> values = Values(attributes["POSITION"]);
    std::vector<GltfMatrix> joints;
    std::vector<double> which, weights;
    if (node.contains("skin")) {
        const auto& skin = json["skins"][node["skin"].get<size_t>()];
        const std::vector<double> binds = Values(skin["inverseBindMatrices"]);
        for (size_t i = 0; i < skin["joints"].size(); ++i) {
            GltfMatrix bind;
            std::copy_n(binds.begin() + static_cast<ptrdiff_t>(16 * i), 16, bind.begin());
            joints.push_back(bind * WorldOf(skin["joints"][i], seconds));
        }
        which = Values(attributes["JOINTS_0"]);
        weights = Values(attributes["WEIGHTS_0"]);
    }
    const GltfMatrix world = node.contains("skin") ? kIdentity : WorldOf(index, seconds);
    std::vector<GltfPoint> points;
    for (size_t i = 0; i < values.size() / 3; ++i) {
        const GltfPoint at = {values[3 * i], values[3 * i + 1], values[3 * i + 2]};
        GltfPoint moved = {};
        if (joints.empty())
            moved = MovePoint(at, world);
        for (size_t part = 0; !joints.empty() && part < 4; ++part) {
            const GltfPoint by = MovePoint(at, joints[static_cast<size_t>(which[4 * i + part])]);
            for (size_t axis = 0; axis < 3; ++axis)
                moved[axis] += by[axis] * weights[4 * i + part];
        }
        points.push_back(moved);
    }
    return points;
}

std::vector<GltfDocument::Triangle> GltfDocument::TrianglesOf(int index) const
{
    const auto& node = json["nodes"][static_cast<size_t>(index)];
    std::vector<Triangle> all;
    if (!node.contains("mesh"))
        return all;
    for (const auto& primitive : json["meshes"][node["mesh"].get<size_t>()]["primitives"]) {
        const auto& attributes = primitive["attributes"];
        const std::vector<double> points = Values(attributes["POSITION"]);
        std::vector<double> uvs(points.size() / 3 * 2);
        if (attributes.contains("TEXCOORD_0"))
            uvs = Values(attributes["TEXCOORD_0"]);
        std::vector<double> corners;
        if (primitive.contains("indices"))
            corners = Values(primitive["indices"]);
        for (size_t i = 0; !primitive.contains("indices") && i < points.size() / 3; ++i)
            corners.push_back(static_cast<double>(i));
        for (size_t i = 0; i + 2 < corners.size(); i += 3) {
            Triangle& triangle = all.emplace_back();
            if (primitive.contains("material"))
                triangle.material =
                    json["materials"][primitive["material"].get<size_t>()].value("name", "");
            for (size_t c = 0; c < 3; ++c) {
                const auto v = static_cast<size_t>(corners[i + c]);
                for (size_t axis = 0; axis < 3; ++axis)
                    triangle.corners[c].position[axis] = static_cast<float>(points[3 * v + axis]);
                for (size_t axis = 0; axis < 2; ++axis)
                    triangle.corners[c].texCoord[axis] = static_cast<float>(uvs[2 * v + axis]);
            }
        }
    }
    return all;
}
