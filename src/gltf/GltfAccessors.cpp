#include <algorithm>

#include "gltf/GltfConstants.h"
#include "gltf/GltfFile.h"
#include "gltf/ModelFault.h"
#include "platform/LittleEndian.h"

using nlohmann::json;

namespace {

// What a file may make the program decode: views can be used by many accessors, and accessors without a
// view are zeros. Sound files decode about as much as they are long.
constexpr size_t kDecodedPerByte = 8;
constexpr size_t kDecodedAtLeast = 1 << 22;

struct TypeWidth {
    const char* type;
    size_t width;
};
constexpr TypeWidth kTypes[] = {{"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT4", 16}};

size_t SizeOf(int component)
{
    switch (component) {
    case kGltfByte:
    case kGltfUByte:
        return 1;
    case kGltfShort:
    case kGltfUShort:
        return 2;
    case kGltfUInt:
    case kGltfFloat:
        return 4;
    default:
        throw ModelFault("an accessor has the unknown component type " + std::to_string(component));
    }
}

float Component(const char* bytes, int component, bool isNormalized)
{
    switch (component) {
    case kGltfByte: {
        const float value = LoadLittle<int8_t>(bytes);
        return isNormalized ? std::max(value / 127.0f, -1.0f) : value;
    }
    case kGltfUByte: {
        const float value = LoadLittle<uint8_t>(bytes);
        return isNormalized ? value / 255.0f : value;
    }
    case kGltfShort: {
        const float value = LoadLittle<int16_t>(bytes);
        return isNormalized ? std::max(value / 32767.0f, -1.0f) : value;
    }
    case kGltfUShort: {
        const float value = LoadLittle<uint16_t>(bytes);
        return isNormalized ? value / 65535.0f : value;
    }
    case kGltfUInt:
        return static_cast<float>(LoadLittle<uint32_t>(bytes));
    default:
        return LoadLittle<float>(bytes);
    }
}

uint32_t WholeNumber(const char* bytes, int component)
{
    switch (component) {
    case kGltfUByte:
        return LoadLittle<uint8_t>(bytes);
    case kGltfUShort:
        return LoadLittle<uint16_t>(bytes);
    case kGltfUInt:
        return LoadLittle<uint32_t>(bytes);
    default:
        throw ModelFault("indices have the component type " + std::to_string(component));
    }
}

/// A length or an offset in a file.
size_t SizeAt(const json& owner, const char* key, size_t fallback)
{
    const double value = GltfFile::Number(owner, key, static_cast<double>(fallback));
    if (value < 0 || value > 1e15)
        throw ModelFault(std::string("its '") + key + "' is out of range");
    return static_cast<size_t>(value);
}

} // namespace

/// Where the elements of an accessor lie. `bytes` is empty for one without a view.
struct GltfFile::Layout {
    std::string_view bytes;
    bool hasView = false;
    int component = 0;
    bool isNormalized = false;
    size_t width = 1;
    size_t count = 0;
    size_t stride = 0;
};

std::string_view GltfFile::ViewBytes(const json& view) const
{
    const int index = IndexOf("buffers", view, "buffer");
    if (index < 0)
        throw ModelFault("a buffer view names no buffer");
    const std::string_view bytes = *buffers[static_cast<size_t>(index)];
    const size_t offset = SizeAt(view, "byteOffset", 0);
    const size_t length = SizeAt(view, "byteLength", 0);
    if (offset > bytes.size() || length > bytes.size() - offset)
        throw ModelFault("a buffer view reaches beyond its buffer");
    return bytes.substr(offset, length);
}

GltfFile::Layout GltfFile::LayoutOf(const json& accessor) const
{
    Layout layout;
    const std::string type = Text(accessor, "type");
    layout.width = 0;
    for (const TypeWidth& known : kTypes) {
        if (type == known.type)
            layout.width = known.width;
    }
    if (layout.width == 0)
        throw ModelFault("an accessor has the unknown type '" + type.substr(0, 20) + "'");
    layout.component = Small(accessor, "componentType", 0);
    layout.isNormalized = Flag(accessor, "normalized");
    layout.count = SizeAt(accessor, "count", 0);
    const size_t size = SizeOf(layout.component) * layout.width;
    layout.stride = size;
    const json* view = Named("bufferViews", accessor, "bufferView");
    if (!view)
        return layout;
    layout.hasView = true;
    layout.bytes = ViewBytes(*view);
    layout.stride = SizeAt(*view, "byteStride", size);
    const size_t offset = SizeAt(accessor, "byteOffset", 0);
    if (layout.stride < size || offset > layout.bytes.size())
        throw ModelFault("an accessor reaches beyond its view");
    layout.bytes = layout.bytes.substr(offset);
    const size_t fits =
        layout.bytes.size() < size ? 0 : (layout.bytes.size() - size) / layout.stride + 1;
    if (layout.count > fits)
        throw ModelFault("an accessor reaches beyond its view");
    return layout;
}

void GltfFile::CountDecoded(size_t bytes)
{
    const size_t most = kDecodedAtLeast + totalBytes * kDecodedPerByte;
    if (bytes > most || decodedBytes > most - bytes)
        throw ModelFault("its accessors describe far more than the file holds");
    decodedBytes += bytes;
}

const GltfValues& GltfFile::Floats(int index, size_t width)
{
    const json& accessor = List("accessors")[static_cast<size_t>(index)];
    std::unique_ptr<GltfValues>& read = decoded[static_cast<size_t>(index)];
    if (!read) {
        const Layout layout = LayoutOf(accessor);
        if (layout.count > SIZE_MAX / 64)
            throw ModelFault("its 'count' is out of range");
        CountDecoded(layout.count * layout.width * sizeof(float));
        auto made = std::make_unique<GltfValues>();
        made->width = layout.width;
        made->values.resize(layout.count * layout.width);
        Fill(*made, layout);
        ApplySparse(*made, accessor, layout);
        read = std::move(made);
    }
    if (width != 0 && read->width != width)
        throw ModelFault("an accessor has " + std::to_string(read->width) + " components, not " +
                         std::to_string(width));
    return *read;
}

void GltfFile::Fill(GltfValues& read, const Layout& layout) const
{
    if (!layout.hasView)
        return;
    const size_t size = SizeOf(layout.component);
    for (size_t i = 0; i < layout.count; ++i) {
        const char* at = layout.bytes.data() + i * layout.stride;
        for (size_t part = 0; part < layout.width; ++part)
            read.values[i * layout.width + part] =
                Component(at + part * size, layout.component, layout.isNormalized);
    }
}

/// Single elements that differ from the rest.
void GltfFile::ApplySparse(GltfValues& read, const json& accessor, const Layout& layout) const
{
    const auto sparse = accessor.find("sparse");
    if (sparse == accessor.end())
        return;
    const size_t count = SizeAt(*sparse, "count", 0);
    const json& where = sparse->value("indices", json::object());
    const json& what = sparse->value("values", json::object());
    const json* whereView = Named("bufferViews", where, "bufferView");
    const json* whatView = Named("bufferViews", what, "bufferView");
    if (!whereView || !whatView)
        throw ModelFault("a sparse accessor has no views");
    const int component = Small(where, "componentType", 0);
    const size_t indexSize = SizeOf(component);
    const size_t valueSize = SizeOf(layout.component);
    const std::string_view indices = ViewBytes(*whereView);
    const std::string_view values = ViewBytes(*whatView);
    const size_t indicesAt = SizeAt(where, "byteOffset", 0);
    const size_t valuesAt = SizeAt(what, "byteOffset", 0);
    if (count > read.Count() || indicesAt > indices.size() || valuesAt > values.size() ||
        count * indexSize > indices.size() - indicesAt ||
        count * valueSize * layout.width > values.size() - valuesAt)
        throw ModelFault("a sparse accessor reaches beyond its views");
    for (size_t i = 0; i < count; ++i) {
        const size_t element = WholeNumber(indices.data() + indicesAt + i * indexSize, component);
        if (element >= read.Count())
            throw ModelFault("a sparse accessor names an element that does not exist");
        for (size_t part = 0; part < layout.width; ++part)
            read.values[element * layout.width + part] =
                Component(values.data() + valuesAt + (i * layout.width + part) * valueSize,
                          layout.component, layout.isNormalized);
    }
}

std::vector<uint32_t> GltfFile::Indices(int index)
{
    const Layout layout = LayoutOf(List("accessors")[static_cast<size_t>(index)]);
    if (layout.width != 1 || !layout.hasView)
        throw ModelFault("indices are not single numbers in a view");
    CountDecoded(layout.count * sizeof(uint32_t));
    std::vector<uint32_t> indices(layout.count);
    for (size_t i = 0; i < layout.count; ++i)
        indices[i] = WholeNumber(layout.bytes.data() + i * layout.stride, layout.component);
    return indices;
}
