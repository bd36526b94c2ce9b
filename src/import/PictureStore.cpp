#include "import/PictureStore.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/Ascii.h"
#include "base/ReadWholeFile.h"
#include "base/WriteWholeFile.h"
#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/SceneNames.h"

namespace fs = std::filesystem;

namespace {

constexpr size_t kMostStem = 80;
constexpr int64_t kPixelsForByte = 8; // that larger pictures may have decoded

std::string StemOf(const std::string& name)
{
    const std::string leaf = name.substr(name.find_last_of("/\\:") + 1);
    std::string stem = HarmlessText(leaf.substr(0, leaf.find_last_of('.')), kMostStem);
    return stem.empty() ? "picture" : stem;
}

} // namespace

std::vector<std::string> PictureStore::Keep(const Model& model)
{
    std::vector<bool> isUsed(model.images.size());
    // A picture with alpha makes a material of the scene transparent; where the model's is opaque, the
    // alpha must go.
    std::vector<bool> dropsAlpha(model.images.size(), true);
    for (const ModelMaterial& material : model.materials) {
        for (const ModelExtraMap& map : material.maps) {
            isUsed[static_cast<size_t>(map.image)] = true;
            dropsAlpha[static_cast<size_t>(map.image)] = false;
        }
        if (material.map.image < 0)
            continue;
        isUsed[static_cast<size_t>(material.map.image)] = true;
        if (material.alpha != ModelAlpha::kOpaque)
            dropsAlpha[static_cast<size_t>(material.map.image)] = false;
    }
    if (model.scene.backgroundImage >= 0)
        isUsed[static_cast<size_t>(model.scene.backgroundImage)] = true;
    std::vector<std::string> kept;
    for (size_t i = 0; i < model.images.size(); ++i)
        kept.push_back(isUsed[i] ? KeepOne(model.images[i], dropsAlpha[i]) : "");
    return kept;
}

std::string PictureStore::KeepOne(const ModelImage& image, bool dropsAlpha)
{
    std::string bytes = image.bytes;
    if (!image.file.empty() && !ReadWholeFile(image.file, bytes)) {
        notices.Add("pictures are missing");
        return "";
    }
    budget.left += static_cast<int64_t>(bytes.size()) * kPixelsForByte;
    TakenPicture picture = TakePicture(bytes, image.name, dropsAlpha, budget);
    if (picture.result == TakenPicture::Result::kDamaged) {
        notices.Add("pictures are damaged or of a kind that is not read");
        return "";
    }
    if (picture.result == TakenPicture::Result::kTooLarge) {
        notices.Add("pictures are too large to be converted");
        return "";
    }
    if (!picture.png.empty())
        bytes = std::move(picture.png);
    std::string name = StemOf(image.name);
    if (image.file.empty() || IsOthers(name + picture.extension, image.file, bytes))
        name = HarmlessText(stem, kMostStem / 2) + "-" + name;
    const std::string leaf = FreeLeaf(name + picture.extension, bytes);
    std::error_code ignored;
    const std::string path = folder + leaf;
    if (image.file.empty() || !fs::equivalent(path, image.file, ignored))
        Write(path, bytes);
    return leaf;
}

/// Whether the folder has another picture of that name, which may belong to another scene.
bool PictureStore::IsOthers(const std::string& leaf, const std::string& source,
                            const std::string& bytes) const
{
    std::error_code ignored;
    const std::string path = folder + leaf;
    const bool isOurs = std::find(written.begin(), written.end(), path) != written.end() ||
                        fs::equivalent(path, source, ignored);
    if (isOurs || !fs::exists(path, ignored))
        return false;
    std::string there;
    return fs::file_size(path, ignored) != bytes.size() || !ReadWholeFile(path, there) ||
           there != bytes;
}

/// The name, numbered if another picture has it. Equal pictures of one name are one file.
std::string PictureStore::FreeLeaf(const std::string& wanted, const std::string& bytes)
{
    const auto lower = [](std::string text) {
        for (char& byte : text)
            byte = ToLowerAscii(byte);
        return text;
    };
    const std::string key = lower(wanted);
    std::string& known = leaves[{key, bytes}];
    if (!known.empty())
        return known;
    const size_t dot = wanted.find_last_of('.');
    int& number = numbers[key]; // models can have very many pictures of one name
    known = wanted;
    while (!taken.insert(lower(known)).second)
        known = wanted.substr(0, dot) + "-" + std::to_string(++number + 1) + wanted.substr(dot);
    return known;
}

void PictureStore::Write(const std::string& path, const std::string& bytes)
{
    errno = 0;
    if (!WriteWholeFile(path, bytes))
        throw ModelFault("the picture '" + path +
                         "' cannot be written: " + std::strerror(errno != 0 ? errno : ENOSPC));
    written.push_back(path);
}
