#include "tests/gltf/PlainTriangles.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <tuple>

using nlohmann::json;

namespace {

/// A triangle without its names: colour, and corners from the least on.
struct PlainTriangle {
    std::array<uint32_t, 15> key; ///< of the colour, and the bits of positions and of u
    std::array<float, 3> v;
};

uint32_t BitsOf(float value)
{
    uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

using Color = std::array<uint32_t, 3>;

/// The colours of materials by name; without one they are white.
std::map<std::string, Color> ColorsOf(const GltfDocument& document)
{
    std::map<std::string, Color> colors = {{"", {200, 200, 200}}};
    for (const json& known : document.json.value("materials", json::array())) {
        const json& color = known["pbrMetallicRoughness"]["baseColorFactor"];
        for (size_t i = 0; i < 3; ++i)
            colors[known.value("name", "")][i] =
                static_cast<uint32_t>(std::lround(color[i].get<double>() * 200));
    }
    return colors;
}

PlainTriangle PlainOf(const GltfDocument::Triangle& triangle, const Color& color)
{
    std::array<std::array<uint32_t, 4>, 3> corners;
    for (size_t c = 0; c < 3; ++c) {
        const auto& corner = triangle.corners[c];
        corners[c] = {BitsOf(corner.position[0]), BitsOf(corner.position[1]),
                      BitsOf(corner.position[2]), BitsOf(corner.texCoord[0])};
    }
    const auto first =
        static_cast<size_t>(std::min_element(corners.begin(), corners.end()) - corners.begin());
    PlainTriangle plain;
    std::copy(color.begin(), color.end(), plain.key.begin());
    for (size_t c = 0; c < 3; ++c) {
        const size_t from = (first + c) % 3; // the sense of rotation stays
        std::copy_n(corners[from].begin(), 4,
                    plain.key.begin() + static_cast<ptrdiff_t>(3 + c * 4));
        plain.v[c] = triangle.corners[from].texCoord[1];
    }
    return plain;
}

std::vector<PlainTriangle> AllTriangles(const GltfDocument& document)
{
    std::vector<PlainTriangle> all;
    const std::map<std::string, Color> colors = ColorsOf(document);
    for (size_t node = 0; node < document.json["nodes"].size(); ++node) {
        for (const auto& triangle : document.TrianglesOf(static_cast<int>(node)))
            all.push_back(PlainOf(triangle, colors.at(triangle.material)));
    }
    std::sort(all.begin(), all.end(), [](const PlainTriangle& a, const PlainTriangle& b) {
        return std::tie(a.key, a.v) < std::tie(b.key, b.v);
    });
    return all;
}

} // namespace

std::string TrianglesDiffer(const GltfDocument& before, const GltfDocument& after)
{
    const std::vector<PlainTriangle> expected = AllTriangles(before);
    const std::vector<PlainTriangle> found = AllTriangles(after);
    if (expected.empty() || found.size() != expected.size())
        return std::to_string(found.size()) + " triangles, not " + std::to_string(expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        if (found[i].key != expected[i].key)
            return "triangle " + std::to_string(i) + " is another one";
        for (size_t c = 0; c < 3; ++c) {
            if (!(std::fabs(double{found[i].v[c]} - expected[i].v[c]) <= std::ldexp(1, -24)))
                return "triangle " + std::to_string(i) + " has another v";
        }
    }
    return "";
}
