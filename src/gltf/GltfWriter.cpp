#include "gltf/GltfWriter.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "base/WriteWholeFile.h"
#include "platform/LittleEndian.h"

using nlohmann::json;

namespace {

constexpr size_t kAlignment = 4; // of every view, chunk and accessor

void AppendWord(std::string& text, uint32_t word)
{
    for (int shift = 0; shift < 32; shift += 8)
        text += static_cast<char>(word >> shift & 0xFF);
}

void Pad(std::string& text, char filler)
{
    text.append((kAlignment - text.size() % kAlignment) % kAlignment, filler);
}

std::string WriteFile(const std::filesystem::path& path, const std::string& bytes)
{
    errno = 0;
    if (WriteWholeFile(path.string(), bytes))
        return "";
    return path.string() + ": it cannot be written: " + std::strerror(errno != 0 ? errno : ENOSPC);
}

template <class T>
std::span<const uint8_t> BytesOf(std::span<const T> values)
{
    return {reinterpret_cast<const uint8_t*>(values.data()), values.size_bytes()};
}

/// The least and the largest of each component, as numbers of the accessor.
void AddBounds(json& accessor, std::span<const float> values, size_t width)
{
    std::vector<float> low(values.begin(), values.begin() + static_cast<ptrdiff_t>(width));
    std::vector<float> high = low;
    for (size_t i = width; i < values.size(); ++i) {
        low[i % width] = std::min(low[i % width], values[i]);
        high[i % width] = std::max(high[i % width], values[i]);
    }
    accessor["min"] = ShortNumbers(low);
    accessor["max"] = ShortNumbers(high);
}

} // namespace

double ShortNumber(float value)
{
    if (!std::isfinite(value))
        return 0;
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double number = 0;
    std::from_chars(text, end, number);
    return number;
}

json ShortNumbers(std::span<const float> values)
{
    json list = json::array();
    for (const float value : values)
        list.push_back(ShortNumber(value));
    return list;
}

json& ObjectAt(json& owner, const char* key)
{
    return *owner.emplace(key, json::object()).first;
}

json& ListAt(json& owner, const char* key)
{
    return *owner.emplace(key, json::array()).first;
}

GltfWriter::GltfWriter(const std::string& generator)
{
    document["asset"] = {{"version", "2.0"}, {"generator", generator}};
}

int GltfWriter::AddView(std::span<const uint8_t> added, GltfTarget target)
{
    Pad(bytes, '\0');
    json view = {{"buffer", 0}, {"byteOffset", bytes.size()}, {"byteLength", added.size()}};
    if (target != kGltfNoTarget)
        view["target"] = static_cast<int>(target);
    bytes.append(reinterpret_cast<const char*>(added.data()), added.size());
    return Append("bufferViews", std::move(view));
}

template <class T>
int GltfWriter::AddWords(std::span<const T> values, GltfTarget target)
{
    const int view = AddView(BytesOf(values), target);
    ReorderWords(bytes.data() + bytes.size() - values.size_bytes(), sizeof(T), values.size());
    return view;
}

int GltfWriter::AddAccessor(int view, GltfComponent component, size_t count, const char* type)
{
    return Append("accessors", {{"bufferView", view},
                                {"componentType", static_cast<int>(component)},
                                {"count", count},
                                {"type", type}});
}

int GltfWriter::AddFloats(std::span<const float> values, const char* type, int width,
                          bool withBounds, GltfTarget target)
{
    const size_t count = values.size() / static_cast<size_t>(width);
    const int index = AddAccessor(AddWords(values, target), kGltfFloat, count, type);
    if (withBounds)
        AddBounds(At("accessors", index), values, static_cast<size_t>(width));
    return index;
}

int GltfWriter::AddShorts(std::span<const uint16_t> values, GltfTarget target)
{
    return AddAccessor(AddWords(values, target), kGltfUShort, values.size(), "SCALAR");
}

int GltfWriter::AddBytes4(std::span<const uint8_t> values, GltfTarget target)
{
    return AddAccessor(AddView(values, target), kGltfUByte, values.size() / 4, "VEC4");
}

int GltfWriter::Append(const char* list, json element)
{
    json& elements = ListAt(document, list);
    elements.push_back(std::move(element));
    return static_cast<int>(elements.size()) - 1;
}

json& GltfWriter::At(const char* list, int index)
{
    return document[list][static_cast<size_t>(index)];
}

size_t GltfWriter::Count(const char* list) const
{
    const auto found = document.find(list);
    return found == document.end() ? 0 : found->size();
}

void GltfWriter::UseExtension(const std::string& name)
{
    json& used = ListAt(document, "extensionsUsed");
    if (std::find(used.begin(), used.end(), name) == used.end())
        used.push_back(name);
}

std::string GltfWriter::Write(const std::string& path)
{
    if (path.size() < 4 || path.compare(path.size() - 4, 4, ".glb") != 0)
        return WriteBeside(path);
    if (!bytes.empty())
        document["buffers"] = {{{"byteLength", bytes.size()}}};
    return WriteFile(path, GlbBytes());
}

std::string GltfWriter::GlbBytes() const
{
    std::string text = document.dump(-1, ' ', false, json::error_handler_t::replace);
    Pad(text, ' ');
    std::string binary = bytes;
    Pad(binary, '\0');
    const size_t chunks = 8 + text.size() + (binary.empty() ? 0 : 8 + binary.size());
    std::string file;
    AppendWord(file, kGlbMagic);
    AppendWord(file, kGlbVersion);
    AppendWord(file, static_cast<uint32_t>(12 + chunks));
    AppendWord(file, static_cast<uint32_t>(text.size()));
    AppendWord(file, kGlbJsonChunk);
    file += text;
    if (!binary.empty()) {
        AppendWord(file, static_cast<uint32_t>(binary.size()));
        AppendWord(file, kGlbBinChunk);
        file += binary;
    }
    return file;
}

std::string GltfWriter::WriteBeside(const std::string& path)
{
    const std::filesystem::path target(path);
    const std::string leaf = target.stem().string() + ".bin";
    if (!bytes.empty()) {
        document["buffers"] = {{{"byteLength", bytes.size()}, {"uri", UriOf(leaf)}}};
        files[leaf] = bytes;
    }
    for (const auto& [name, content] : files) {
        const std::string fault = WriteFile(target.parent_path() / name, content);
        if (!fault.empty())
            return fault;
    }
    return WriteFile(target, document.dump(1, '\t', false, json::error_handler_t::replace) + "\n");
}

std::string UriOf(const std::string& leaf)
{
    static const std::string kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    static const char kDigits[] = "0123456789ABCDEF";
    std::string uri;
    for (const char byte : leaf) {
        if (kPlain.find(byte) != std::string::npos) {
            uri += byte;
            continue;
        }
        const auto code = static_cast<unsigned char>(byte);
        uri += {'%', kDigits[code >> 4], kDigits[code & 15]};
    }
    return uri;
}
