#include "export/ExportScene.h"

#include "export/SceneNodes.h"
#include "info/LoadedScene.h"
#include "info/NameText.h"

using nlohmann::json;

namespace {

json ColorOf(uint32_t argb)
{
    const float parts[] = {static_cast<float>(argb >> 16 & 255) / 255,
                           static_cast<float>(argb >> 8 & 255) / 255,
                           static_cast<float>(argb & 255) / 255};
    return ShortNumbers(parts);
}

json PointOf(const D3DXVECTOR3& point)
{
    const D3DXVECTOR3 turned = point;
    const float parts[] = {turned.x, turned.y, turned.z};
    return ShortNumbers(parts);
}

/// What glTF has no word for, in the scene's own axes.
json SceneExtras(const LoadedScene& loaded)
{
    const KRE_3dScene& scene = loaded.scene;
    json extras = {{"ambient", ColorOf(scene.ambientColor)},
                   {"background", ColorOf(scene.backgroundColor)},
                   {"frameSpeed", ShortNumber(loaded.header.frameSpeed)},
                   {"firstFrame", loaded.header.firstFrame},
                   {"lastFrame", loaded.header.lastFrame},
                   {"boundsMin", PointOf(scene.boxMin)},
                   {"boundsMax", PointOf(scene.boxMax)}};
    if (scene.settings.useFog)
        extras["fog"] = {{"color", ColorOf(scene.settings.fogColor)},
                         {"mode", scene.settings.fogMode},
                         {"start", ShortNumber(scene.settings.fogStart)},
                         {"end", ShortNumber(scene.settings.fogEnd)},
                         {"density", ShortNumber(scene.settings.fogDensity)}};
    if (!scene.backgroundTexture.slotNames[0].IsEmpty())
        extras["backgroundPicture"] = Utf8Name(scene.backgroundTexture.slotNames[0].c_str());
    if (!loaded.header.soundFile.IsEmpty())
        extras["soundFile"] = Utf8Name(loaded.header.soundFile.c_str());
    if (!loaded.header.scriptFile.IsEmpty())
        extras["scriptFile"] = Utf8Name(loaded.header.scriptFile.c_str());
    return extras;
}

} // namespace

std::string ExportScene(LoadedScene& loaded, const std::string& path, NoticeList& notices)
{
    const bool isGlb = path.size() >= 4 && path.compare(path.size() - 4, 4, ".glb") == 0;
    GltfWriter writer("qsbexport " QSA_VERSION);
    ExportPictures pictures(writer, loaded, isGlb, notices);
    ExportMaterials materials(writer, pictures, notices);
    ExportMeshes meshes(writer, materials, notices);
    loaded.scene.SetLoop(0);
    SceneNodes nodes(writer, meshes, loaded.scene, notices);
    const std::vector<int> roots = nodes.Add();
    json scene = {{"extras", {{"qsb", SceneExtras(loaded)}}}};
    const int background = pictures.ImageOf(loaded.scene.backgroundTexture, 0);
    if (background >= 0)
        scene["extras"]["qsb"]["backgroundImage"] = background;
    if (!roots.empty())
        scene["nodes"] = roots;
    writer.document["scenes"] = json::array({std::move(scene)}); // plain braces copy with clang
    writer.document["scene"] = 0;
    return writer.Write(path);
}
