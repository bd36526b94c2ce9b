#include "info/Report.h"

#include <algorithm>
#include <map>

#include "info/NameText.h"
#include "info/SceneFacts.h"
#include "info/SceneFields.h"

namespace {

constexpr size_t kMostLines = 20; ///< of a list, unless `all`
constexpr size_t kLabelWidth = 12;
constexpr size_t kMostNameWidth = 40;

void PrintLabelled(const char* label, const std::string& text, Output& output)
{
    output.Line({"  ", Padded(label, kLabelWidth), text});
}

void PrintItem(const std::string& text, Output& output)
{
    output.Line({std::string(kLabelWidth + 4, ' '), text});
}

/// How many of `count` lines are printed; `PrintRest` mentions the rest.
size_t LinesOf(size_t count, bool all)
{
    return all ? count : std::min(count, kMostLines);
}

void PrintRest(size_t count, size_t printed, Output& output)
{
    if (printed < count)
        PrintItem("and " + CountText(static_cast<int64_t>(count - printed)) + " more (--all)",
                  output);
}

std::string FormatName(const LoadedScene& loaded)
{
    std::string text = "QSB version " + std::to_string(loaded.version);
    if (!loaded.IsQsb())
        text = loaded.hasTextMark ? "QSA text" : "read as QSA text, which it does not look like";
    return text + ", " + CountText(loaded.sizeBytes) + " bytes";
}

void PrintCounts(const SceneCounts& counts, Output& output)
{
    PrintLabelled("Objects",
                  CountOf(counts.meshes, "mesh", "meshes") + ", " +
                      CountOf(counts.cameras, "camera", "cameras") + ", " +
                      CountOf(counts.lights, "light", "lights") + ", " +
                      CountOf(counts.helpers, "helper", "helpers") + ", " +
                      CountOf(counts.bones, "bone", "bones"),
                  output);
    std::string geometry = CountOf(counts.vertices, "vertex", "vertices") + ", " +
                           CountOf(counts.faces, "face", "faces");
    if (counts.clones > 0)
        geometry += "; shared by " + CountOf(counts.clones, "clone", "clones");
    PrintLabelled("Geometry", geometry, output);
}

/// Prints the length in seconds and frames, and the keys.
void PrintAnimation(const LoadedScene& loaded, const SceneCounts& counts, Output& output)
{
    const QSA_SceneHeader& header = loaded.header;
    std::string text = "frames " + ShortestText(header.firstFrame) + " to " +
                       ShortestText(header.lastFrame) + " at " + ShortestText(header.frameSpeed) +
                       " frames/s";
    if (header.frameSpeed > 0)
        text = RoundedText(loaded.Seconds(), 3) + " s, " + text;
    PrintLabelled("Animation", text + "; " + CountOf(counts.Keys(), "key", "keys"), output);
}

std::string PlaceText(const D3DXVECTOR3& place)
{
    return "(" + RoundedText(place.x, 3) + ", " + RoundedText(place.y, 3) + ", " +
           RoundedText(place.z, 3) + ")";
}

void PrintBounds(const KRE_3dScene& scene, Output& output)
{
    if (scene.meshes.Count() == 0 && scene.objects.Count() == 0) {
        PrintLabelled("Bounds", "none", output);
        return;
    }
    const D3DXVECTOR3 size = scene.boxMax - scene.boxMin;
    PrintLabelled("Bounds", PlaceText(scene.boxMin) + " to " + PlaceText(scene.boxMax), output);
    PrintItem("size " + RoundedText(size.x, 3) + " x " + RoundedText(size.y, 3) + " x " +
                  RoundedText(size.z, 3) + ", sphere of radius " + RoundedText(scene.radius, 3) +
                  " around " + PlaceText(scene.center),
              output);
}

void PrintNames(const LoadedScene& loaded, Output& output)
{
    if (!loaded.header.soundFile.IsEmpty())
        PrintLabelled("Sound", ShownName(loaded.header.soundFile.c_str()), output);
    if (!loaded.header.scriptFile.IsEmpty())
        PrintLabelled("Script", ShownName(loaded.header.scriptFile.c_str()), output);
}

// ---- Materials

int ByteOf(float channel)
{
    return channel > 0 ? static_cast<int>(std::min(channel, 1.0f) * 255.0f + 0.5f) : 0;
}

std::string ColorText(const D3DCOLORVALUE& color)
{
    char text[16];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", ByteOf(color.r), ByteOf(color.g),
                  ByteOf(color.b));
    return text;
}

/// A material on one line: colour, special settings, maps.
std::string MaterialText(const KRE_MaterialInfo& material, const KRE_Texture& texture)
{
    std::string text = ColorText(material.diffuse);
    if (material.transparent)
        text += ", transparent";
    if (material.transparency > 0)
        text += " " + RoundedText(100.0 * material.transparency, 0) + "%";
    if (material.twoSided)
        text += ", two-sided";
    const std::vector<NamedTrack> tracks = TracksOf(material);
    if (std::any_of(tracks.begin(), tracks.end(),
                    [](const NamedTrack& named) { return named.KeyCount() > 0; }))
        text += ", animated";
    if (!material.effectParams.name.IsEmpty())
        text += ", effect " + ShownName(material.effectParams.name.c_str());
    for (int32_t slot = 0; slot < KRE_Texture::kSlots; ++slot) {
        if (!texture.slotNames[slot].IsEmpty())
            text += ", " + SlotTypeName(texture.slots[slot].type) + " " +
                    ShownName(texture.slotNames[slot].c_str());
    }
    return text;
}

/// Materials that look alike share a line, the most used first: files have a copy for each mesh.
void PrintMaterials(KRE_3dScene& scene, const SceneCounts& counts, bool all, Output& output)
{
    std::map<std::string, int64_t> uses;
    for (const KRE_Mesh* mesh : scene.meshes) {
        for (int32_t i = 0; i < mesh->materialCount; ++i)
            ++uses[MaterialText(mesh->materials[i], mesh->textures[i])];
    }
    std::vector<std::pair<int64_t, std::string>> rows;
    rows.reserve(uses.size());
    for (const auto& [material, count] : uses)
        rows.emplace_back(count, material);
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::string text = CountText(counts.materials);
    if (counts.materials > 0)
        text += ", " + CountText(static_cast<int64_t>(rows.size())) + " different, " +
                CountText(counts.transparentMaterials) + " transparent";
    PrintLabelled("Materials", text, output);
    const size_t lines = LinesOf(rows.size(), all);
    for (size_t i = 0; i < lines; ++i)
        PrintItem(Padded(CountText(rows[i].first) + "x", 5) + rows[i].second, output);
    PrintRest(rows.size(), lines, output);
}

// ---- Files that the scene names

std::string StateOf(const NamedFile& file)
{
    if (!file.IsFound())
        return "MISSING";
    std::string text = "found";
    if (file.width > 0)
        text += ", " + std::to_string(file.width) + " x " + std::to_string(file.height);
    if (file.frames > 0)
        text += ", " + CountOf(file.frames, "frame", "frames");
    const std::string path = ShownName(file.path);
    return path == ShownName(file.name) ? text : text + ", " + path;
}

void PrintFiles(const char* label, const std::vector<NamedFile>& files, bool all, Output& output)
{
    const auto missing = std::count_if(files.begin(), files.end(),
                                       [](const NamedFile& file) { return !file.IsFound(); });
    std::string text = CountText(static_cast<int64_t>(files.size()));
    if (missing > 0)
        text += ", " + CountText(missing) + " MISSING";
    PrintLabelled(label, text, output);
    const size_t lines = LinesOf(files.size(), all);
    size_t width = 0;
    for (size_t i = 0; i < lines; ++i)
        width = std::max(width, std::min(ShownWidth(ShownName(files[i].name)), kMostNameWidth));
    for (size_t i = 0; i < lines; ++i)
        PrintItem(Padded(ShownName(files[i].name), width + 2) + StateOf(files[i]), output);
    PrintRest(files.size(), lines, output);
}

} // namespace

void PrintWarnings(const LoadedScene& loaded, bool all, Output& output)
{
    const WarningList& warnings = loaded.warnings;
    if (warnings.Count() == 0)
        return;
    PrintLabelled("Warnings", CountText(warnings.Count()), output);
    const size_t lines = LinesOf(warnings.Kept().size(), all);
    for (size_t i = 0; i < lines; ++i) {
        const ReaderWarning& warning = warnings.Kept()[i];
        const std::string times = warning.count > 1 ? " (" + CountText(warning.count) + "x)" : "";
        PrintItem(ShownName(loaded.WithoutFileName(warning.text)) + times, output);
    }
    PrintRest(warnings.Kept().size(), lines, output);
    if (warnings.LeftOut() > 0)
        PrintItem("and " + CountText(warnings.LeftOut()) + " that were not kept", output);
}

void PrintReport(LoadedScene& loaded, bool all, Output& output)
{
    const SceneFacts facts = FactsOf(loaded);
    output.Line({ShownName(loaded.path)});
    PrintLabelled("Format", FormatName(loaded), output);
    PrintCounts(facts.counts, output);
    PrintAnimation(loaded, facts.counts, output);
    PrintBounds(loaded.scene, output);
    PrintNames(loaded, output);
    PrintMaterials(loaded.scene, facts.counts, all, output);
    PrintFiles("Textures", facts.textures, all, output);
    if (!facts.effects.empty())
        PrintFiles("Effects", facts.effects, all, output);
    PrintWarnings(loaded, all, output);
}
