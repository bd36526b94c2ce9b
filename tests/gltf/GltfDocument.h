#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

/// A row-vector matrix: the 16 numbers in glTF's own order.
using GltfMatrix = std::array<double, 16>;
using GltfPoint = std::array<double, 3>;

GltfMatrix operator*(const GltfMatrix& first, const GltfMatrix& second);
GltfPoint MovePoint(const GltfPoint& point, const GltfMatrix& matrix);
double DistanceOf(const GltfPoint& a, const GltfPoint& b);

/// A glTF file as its specification reads it, independent of the program's own reader and writer. It takes
/// sound files only: whatever is wrong ends in an exception.
class GltfDocument {
public:
    /// Reads a .glb, or a .gltf with the files beside it.
    explicit GltfDocument(const std::string& path);

    std::vector<double> Values(int accessor) const;
    /// The number of the first node of this name; -1 for none.
    int NodeOf(const std::string& name) const;
    /// The node's matrix in the world at a time of the first animation.
    GltfMatrix WorldOf(int node, double seconds) const;
    /// The point of a vertex in the world: of a node's mesh, moved by its skin if it has one.
    std::vector<GltfPoint> WorldPoints(int node, size_t primitive, double seconds) const;

    struct Corner {
        std::array<float, 3> position;
        std::array<float, 2> texCoord;
    };
    struct Triangle {
        std::string material; ///< its name; empty for none
        std::array<Corner, 3> corners;
    };
    /// The triangles of a node's mesh in its own space.
    std::vector<Triangle> TrianglesOf(int node) const;

    nlohmann::json json;

private:
    GltfMatrix LocalOf(int node, double seconds) const;
    std::vector<double> Part(int node, const std::string& path, double seconds,
                             std::vector<double> rest) const;
    std::vector<double> Animated(const nlohmann::json& sampler, bool isRotation,
                                 double seconds) const;

    std::vector<std::string> buffers;
    std::map<int, int> parents;
};
