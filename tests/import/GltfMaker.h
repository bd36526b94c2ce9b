#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

/// Makes glTF files by hand, independent of the program's own writer.
class GltfMaker {
public:
    GltfMaker()
    {
        json["asset"] = {{"version", "2.0"}};
        json["scene"] = 0;
        json["scenes"] = {{{"nodes", nlohmann::json::array()}}};
    }

    int Floats(const std::vector<float>& values, const char* type)
    {
        const std::string name = type;
        const size_t width = name == "SCALAR" ? 1
                             : name == "MAT4" ? 16
                             : name == "VEC2" ? 2
                             : name == "VEC3" ? 3
                                              : 4;
        return Accessor(View(values.data(), values.size() * 4), 5126, values.size() / width, type);
    }
    int Shorts(const std::vector<uint16_t>& values)
    {
        return Accessor(View(values.data(), values.size() * 2), 5123, values.size(), "SCALAR");
    }
    int Words(const std::vector<uint32_t>& values)
    {
        return Accessor(View(values.data(), values.size() * 4), 5125, values.size(), "SCALAR");
    }
    int Bytes4(const std::vector<uint8_t>& values)
    {
        return Accessor(View(values.data(), values.size()), 5121, values.size() / 4, "VEC4");
    }
    int View(const void* data, size_t size)
    {
        bytes.resize((bytes.size() + 3) / 4 * 4);
        const size_t offset = bytes.size();
        bytes.append(static_cast<const char*>(data), size);
        return Add("bufferViews", {{"buffer", 0}, {"byteOffset", offset}, {"byteLength", size}});
    }
    int Accessor(int view, int component, size_t count, const char* type)
    {
        return Add(
            "accessors",
            {{"bufferView", view}, {"componentType", component}, {"count", count}, {"type", type}});
    }
    int Add(const char* list, nlohmann::json element)
    {
        json[list].push_back(std::move(element));
        return static_cast<int>(json[list].size()) - 1;
    }
    /// Adds a node to the scene.
    int Root(nlohmann::json node)
    {
        const int index = Add("nodes", std::move(node));
        json["scenes"][0]["nodes"].push_back(index);
        return index;
    }
    void Animate(int animation, int node, const char* path, const std::string& curve,
                 const std::vector<float>& times, const std::vector<float>& values)
    {
        auto& made = json["animations"][static_cast<size_t>(animation)];
        const char* type = std::string(path) == "rotation" ? "VEC4" : "VEC3";
        made["samplers"].push_back({{"input", Floats(times, "SCALAR")},
                                    {"output", Floats(values, type)},
                                    {"interpolation", curve}});
        made["channels"].push_back({{"sampler", made["samplers"].size() - 1},
                                    {"target", {{"node", node}, {"path", path}}}});
    }

    /// The whole file as one .glb.
    std::string Glb() const
    {
        nlohmann::json whole = json;
        std::string body = bytes;
        body.resize((body.size() + 3) / 4 * 4);
        if (!body.empty())
            whole["buffers"] = {{{"byteLength", body.size()}}};
        std::string text = whole.dump();
        text.resize((text.size() + 3) / 4 * 4, ' ');
        std::string file = "glTF" + Word(2) + Word(28 + text.size() + body.size());
        file += Word(text.size()) + "JSON" + text;
        return file + Word(body.size()) + std::string("BIN\0", 4) + body;
    }
    /// The text of a .gltf whose buffer is the file of this name.
    std::string Text(const std::string& buffer) const
    {
        nlohmann::json whole = json;
        whole["buffers"] = {{{"byteLength", bytes.size()}, {"uri", buffer}}};
        return whole.dump();
    }
    void Save(const std::string& name) const { std::ofstream(name, std::ios::binary) << Glb(); }

    nlohmann::json json;
    std::string bytes;

private:
    static std::string Word(size_t value)
    {
        std::string word;
        for (int shift = 0; shift < 32; shift += 8)
            word += static_cast<char>(value >> shift & 0xFF);
        return word;
    }
};

/// Adds the sides of a box around the origin, four vertices for each, to `maker` as a primitive.
inline nlohmann::json BoxPrimitive(GltfMaker& maker, float size = 1, int sides = 6)
{
    std::vector<float> positions, normals, uvs;
    std::vector<uint16_t> corners;
    for (int side = 0; side < sides; ++side) {
        const int axis = side / 2;
        const float out = side % 2 ? 1.0f : -1.0f;
        for (int corner = 0; corner < 4; ++corner) {
            const float a = corner % 2 ? 1.0f : -1.0f;
            const float b = (corner / 2 ? 1.0f : -1.0f) * out;
            float point[3], normal[3] = {};
            const float extent[3] = {size, size * 1.1f, size * 0.7f};
            point[axis] = out * extent[axis];
            point[(axis + 1) % 3] = a * extent[(axis + 1) % 3];
            point[(axis + 2) % 3] = b * extent[(axis + 2) % 3];
            normal[axis] = out;
            positions.insert(positions.end(), point, point + 3);
            normals.insert(normals.end(), normal, normal + 3);
            uvs.push_back(static_cast<float>(corner % 2) * 0.731f);
            uvs.push_back(static_cast<float>(corner / 2) * 0.377f);
        }
        const auto first = static_cast<uint16_t>(side * 4);
        for (const int corner : {0, 1, 2, 2, 1, 3})
            corners.push_back(static_cast<uint16_t>(first + corner));
    }
    return {{"attributes",
             {{"POSITION", maker.Floats(positions, "VEC3")},
              {"NORMAL", maker.Floats(normals, "VEC3")},
              {"TEXCOORD_0", maker.Floats(uvs, "VEC2")}}},
            {"indices", maker.Shorts(corners)}};
}

/// A box of one primitive as a mesh.
inline int BoxMesh(GltfMaker& maker, const std::string& name = "Box")
{
    return maker.Add("meshes", {{"name", name}, {"primitives", {BoxPrimitive(maker)}}});
}

inline nlohmann::json ColorMaterial(const std::string& name, double r, double g, double b)
{
    return {{"name", name},
            {"pbrMetallicRoughness", {{"baseColorFactor", {r, g, b, 1}}, {"metallicFactor", 0}}}};
}
