#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "gltf/GltfConstants.h"

/// The shortest decimal number that reads back as this float: a float widened to double would be
/// written with digits that mean nothing. Not finite: 0.
double ShortNumber(float value);
nlohmann::json ShortNumbers(std::span<const float> values);

/// A member of an object, itself an object or a list; it is added, empty, if it is missing. `owner[key][name]` would
/// do the same, but the library leaves a broken value if memory runs out while it turns null into an object.
nlohmann::json& ObjectAt(nlohmann::json& owner, const char* key);
nlohmann::json& ListAt(nlohmann::json& owner, const char* key);

/// A glTF document under construction, and the bytes of its one buffer.
class GltfWriter {
public:
    explicit GltfWriter(const std::string& generator);

    /// Adds an accessor with a view of its own and returns its number. `type` is "SCALAR" to "MAT4",
    /// `width` its number of components. With `withBounds` the accessor states its extent.
    int AddFloats(std::span<const float> values, const char* type, int width, bool withBounds,
                  GltfTarget target = kGltfNoTarget);
    int AddShorts(std::span<const uint16_t> values, GltfTarget target);
    int AddBytes4(std::span<const uint8_t> values, GltfTarget target);
    /// Adds a view of bytes, as for a picture in a .glb, and returns its number.
    int AddView(std::span<const uint8_t> bytes, GltfTarget target = kGltfNoTarget);
    /// Appends to the array `list` of the document and returns the number of the new element.
    int Append(const char* list, nlohmann::json element);
    nlohmann::json& At(const char* list, int index);
    size_t Count(const char* list) const;
    void UseExtension(const std::string& name);

    /// A file that lies beside a .gltf: its leaf and its bytes.
    void AddFile(const std::string& leaf, std::string content) { files[leaf] = std::move(content); }

    /// Writes the document: one file if the name ends in ".glb", otherwise the text, its buffer as
    /// NAME.bin and the added files. Returns what is wrong, or an empty text.
    std::string Write(const std::string& path);

    nlohmann::json document = nlohmann::json::object();

private:
    /// A view of numbers, in the order of files.
    template <class T>
    int AddWords(std::span<const T> values, GltfTarget target);
    int AddAccessor(int view, GltfComponent component, size_t count, const char* type);
    std::string GlbBytes() const;
    std::string WriteBeside(const std::string& path);

    std::string bytes; ///< of the buffer
    std::map<std::string, std::string> files;
};

/// A path of a file as the URI of a neighbour: everything but plain characters as %XX.
std::string UriOf(const std::string& leaf);
