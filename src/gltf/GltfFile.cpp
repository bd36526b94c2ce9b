#include "gltf/GltfFile.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <map>

#include "base/ReadWholeFile.h"
#include "gltf/DataUri.h"
#include "gltf/GltfConstants.h"
#include "gltf/ModelFault.h"

using nlohmann::json;

namespace {

constexpr int kDeepestText = 100; // nested values in the text; real documents have about ten
constexpr size_t kGlbHeader = 12;
constexpr size_t kChunkHeader = 8;

uint32_t WordAt(std::string_view bytes, size_t offset)
{
    uint32_t word = 0;
    for (size_t i = 0; i < 4; ++i)
        word |= uint32_t{static_cast<unsigned char>(bytes[offset + i])} << 8 * i;
    return word;
}

bool IsNestedDeeply(std::string_view text)
{
    int depth = 0;
    bool isInText = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char byte = text[i];
        if (isInText && byte == '\\')
            ++i;
        else if (byte == '"')
            isInText = !isInText;
        else if (!isInText && (byte == '[' || byte == '{') && ++depth > kDeepestText)
            return true;
        else if (!isInText && (byte == ']' || byte == '}'))
            --depth;
    }
    return false;
}

[[noreturn]] void FailAt(const char* key)
{
    throw ModelFault(std::string("its member '") + key + "' is of the wrong kind");
}

} // namespace

void GltfFile::Read(const std::string& path)
{
    folder = path.substr(0, path.find_last_of('/') + 1);
    std::string bytes;
    if (!ReadWholeFile(path, bytes))
        throw ModelFault("it cannot be read");
    totalBytes = bytes.size();
    if (bytes.compare(0, 4, "glTF") == 0)
        ReadGlb(bytes);
    else
        ReadText(bytes);
    if (!document.is_object() || !document.contains("asset"))
        throw ModelFault("it is not a glTF document");
    const std::string version = Text(document["asset"], "version");
    if (version.compare(0, 2, "2.") != 0)
        throw ModelFault("it is glTF of version '" + version + "', not 2");
    ReadBuffers();
    decoded.resize(List("accessors").size());
}

void GltfFile::ReadGlb(const std::string& bytes)
{
    const std::string_view file(bytes);
    if (file.size() < kGlbHeader + kChunkHeader || WordAt(file, 4) != kGlbVersion)
        throw ModelFault("its header is cut or of another version");
    if (WordAt(file, 8) != file.size())
        throw ModelFault("it has " + std::to_string(file.size()) + " bytes and announces " +
                         std::to_string(WordAt(file, 8)));
    bool hasText = false;
    for (size_t at = kGlbHeader; at < file.size();) {
        if (file.size() - at < kChunkHeader || WordAt(file, at) > file.size() - at - kChunkHeader)
            throw ModelFault("a chunk is cut");
        const std::string_view chunk = file.substr(at + kChunkHeader, WordAt(file, at));
        const uint32_t kind = WordAt(file, at + 4);
        if (kind == kGlbJsonChunk && !hasText) {
            ReadText(chunk);
            hasText = true;
        } else if (kind == kGlbBinChunk && !hasOwnBuffer) {
            ownBuffer = chunk;
            hasOwnBuffer = true;
        }
        at += kChunkHeader + chunk.size();
    }
    if (!hasText)
        throw ModelFault("it has no chunk of text");
}

void GltfFile::ReadText(std::string_view text)
{
    // Not in a callback of the parser, which looks through an array again after each of its objects.
    if (IsNestedDeeply(text))
        throw ModelFault("its text is nested too deeply");
    try {
        document = json::parse(text);
    } catch (const json::exception& error) {
        // The library's text names the place, but quotes the bytes around it.
        const std::string what = error.what();
        const size_t at = what.find("line ");
        const size_t end = what.find(':', at == std::string::npos ? 0 : at);
        throw ModelFault("its text is not JSON" +
                         (at == std::string::npos ? "" : ", " + what.substr(at, end - at)));
    }
}

void GltfFile::ReadBuffers()
{
    std::map<std::string, std::shared_ptr<const std::string>>
        read; // by URI; empty: inside the file
    for (const json& buffer : List("buffers")) {
        const std::string uri = Text(buffer, "uri");
        std::shared_ptr<const std::string>& bytes = read[uri];
        if (!bytes) {
            std::string own = uri.empty() ? std::move(ownBuffer) : "";
            if (!uri.empty() && !UriBytes(uri, own))
                throw ModelFault("its buffer '" + uri.substr(0, 80) + "' cannot be read");
            totalBytes += uri.empty() ? 0 : own.size();
            bytes = std::make_shared<const std::string>(std::move(own));
        }
        const double announced = Number(buffer, "byteLength", -1);
        if (!(announced >= 1) || announced > static_cast<double>(bytes->size()))
            throw ModelFault("a buffer has " + std::to_string(bytes->size()) +
                             " bytes, fewer than announced");
        buffers.push_back(bytes);
    }
}

bool GltfFile::UriBytes(const std::string& uri, std::string& bytesOut)
{
    if (uri.compare(0, 5, "data:") == 0)
        return DecodeDataUri(uri, bytesOut);
    lookedFor.push_back(folder + UnescapedUri(uri));
    return ReadWholeFile(lookedFor.back(), bytesOut);
}

// ---- The document

const json& GltfFile::List(const char* name) const
{
    static const json kNone = json::array();
    const auto found = document.find(name);
    if (found == document.end())
        return kNone;
    if (!found->is_array())
        FailAt(name);
    for (const json& element : *found) {
        if (!element.is_object())
            FailAt(name);
        break; // the others when they are used
    }
    return *found;
}

int GltfFile::IndexOf(const char* list, const json& owner, const char* key) const
{
    if (!owner.is_object())
        FailAt(list);
    const auto found = owner.find(key);
    return found == owner.end() ? -1 : IndexIn(list, *found, key);
}

int GltfFile::IndexIn(const char* list, const json& number, const char* what) const
{
    const size_t count = List(list).size();
    if (!number.is_number_integer() || number.get<int64_t>() < 0 ||
        static_cast<uint64_t>(number.get<int64_t>()) >= count)
        throw ModelFault(std::string("its '") + what + "' " + number.dump().substr(0, 30) +
                         " is not among the " + std::to_string(count) + " of '" + list + "'");
    return static_cast<int>(number.get<int64_t>());
}

const json* GltfFile::Named(const char* list, const json& owner, const char* key) const
{
    const int index = IndexOf(list, owner, key);
    if (index < 0)
        return nullptr;
    const json& element = List(list)[static_cast<size_t>(index)];
    if (!element.is_object())
        FailAt(list);
    return &element;
}

double GltfFile::Number(const json& owner, const char* key, double fallback)
{
    if (!owner.is_object())
        FailAt(key);
    const auto found = owner.find(key);
    if (found == owner.end())
        return fallback;
    if (!found->is_number() || !std::isfinite(found->get<double>()))
        FailAt(key);
    return found->get<double>();
}

int GltfFile::Small(const json& owner, const char* key, int fallback)
{
    constexpr double kMost = 1e6;
    const double value = Number(owner, key, fallback);
    return value >= 0 && value <= kMost ? static_cast<int>(value) : -1;
}

std::string GltfFile::Text(const json& owner, const char* key)
{
    if (!owner.is_object())
        FailAt(key);
    const auto found = owner.find(key);
    if (found == owner.end())
        return "";
    if (!found->is_string())
        FailAt(key);
    return found->get<std::string>();
}

bool GltfFile::Flag(const json& owner, const char* key)
{
    const auto found = owner.find(key);
    if (found == owner.end())
        return false;
    if (!found->is_boolean())
        FailAt(key);
    return found->get<bool>();
}

std::vector<double> GltfFile::Numbers(const json& owner, const char* key,
                                      std::vector<double> fallback)
{
    if (!owner.is_object())
        FailAt(key);
    const auto found = owner.find(key);
    if (found == owner.end())
        return fallback;
    if (!found->is_array() || found->size() != fallback.size())
        FailAt(key);
    std::vector<double> values;
    for (const json& value : *found) {
        if (!value.is_number() || !std::isfinite(value.get<double>()))
            FailAt(key);
        values.push_back(value.get<double>());
    }
    return values;
}
