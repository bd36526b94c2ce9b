#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

/// Values of an accessor, `width` of them for each element.
struct GltfValues {
    std::vector<float> values;
    size_t width = 1;

    size_t Count() const { return values.size() / width; }
    const float* At(size_t element) const { return values.data() + element * width; }
};

/// A glTF 2.0 document with its buffers. Nothing in a file is believed: each number that leads to another
/// element or into a buffer is checked when it is followed, and what a file can make the program decode is
/// limited by the file's size. All operations throw ModelFault for what is wrong.
class GltfFile {
public:
    /// Reads a .glb or a .gltf, told apart by content, with the files that it names beside it.
    void Read(const std::string& path);

    /// The elements of a list of the document; none if it is missing.
    const nlohmann::json& List(const char* name) const;
    /// The element that `owner[key]` names by number; null if there is no such member.
    const nlohmann::json* Named(const char* list, const nlohmann::json& owner,
                                const char* key) const;
    /// The number `owner[key]`, checked against the length of a list; -1 if there is none.
    int IndexOf(const char* list, const nlohmann::json& owner, const char* key) const;
    /// A number of an element, checked against the length of a list; `what` is for messages.
    int IndexIn(const char* list, const nlohmann::json& number, const char* what) const;

    /// An accessor's numbers, normalised ones as fractions. `width` is the number of components that
    /// it must have; 0 for any. Kept: asking again costs nothing.
    const GltfValues& Floats(int accessor, size_t width);
    /// An accessor of whole numbers, one for each element.
    std::vector<uint32_t> Indices(int accessor);
    /// The bytes of a buffer view.
    std::string_view ViewBytes(const nlohmann::json& view) const;
    /// The bytes behind a URI: data in the text, or a file beside the document. False if the file
    /// cannot be read.
    bool UriBytes(const std::string& uri, std::string& bytesOut);

    /// The files beside the document that were looked for.
    const std::vector<std::string>& LookedFor() const { return lookedFor; }
    /// All that was read, for limits.
    size_t TotalBytes() const { return totalBytes; }
    /// A finite number; absent members give the fallback, others of the wrong kind are a fault.
    static double Number(const nlohmann::json& owner, const char* key, double fallback);
    /// The same for kinds and counts: rounded down, and -1 for what is below 0 or above a million.
    static int Small(const nlohmann::json& owner, const char* key, int fallback);
    static std::string Text(const nlohmann::json& owner, const char* key);
    static bool Flag(const nlohmann::json& owner, const char* key);
    /// A list of `count` finite numbers, or the fallback.
    static std::vector<double> Numbers(const nlohmann::json& owner, const char* key,
                                       std::vector<double> fallback);

    nlohmann::json document;

private:
    struct Layout;

    void ReadGlb(const std::string& bytes);
    void ReadText(std::string_view text);
    void ReadBuffers();
    Layout LayoutOf(const nlohmann::json& accessor) const;
    void Fill(GltfValues& read, const Layout& layout) const;
    void ApplySparse(GltfValues& read, const nlohmann::json& accessor, const Layout& layout) const;
    void CountDecoded(size_t bytes);

    std::string folder; ///< of the document, ending in a separator; or empty
    std::string ownBuffer;
    bool hasOwnBuffer = false;
    std::vector<std::shared_ptr<const std::string>> buffers; ///< one file may be several
    std::vector<std::string> lookedFor;
    std::vector<std::unique_ptr<GltfValues>> decoded; ///< by accessor
    size_t totalBytes = 0;
    size_t decodedBytes = 0;
};
