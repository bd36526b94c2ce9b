#include <cstring>

#include "base/FormatText.h"
#include "base/LoadInHand.h"
#include "base/Paths.h"
#include "base/WithMemory.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_SearchPaths.h"
#include "qsa/QSALoader.h"
#include "qsb/QSB_HeaderFields.h"
#include "qsb/SceneDirectory.h"
#include "scene/KRE_3dScene.h"
#include "scene/ResolveClones.h"

namespace {

constexpr uint32_t kNoFlags = ~uint32_t{0};

const char* gSceneDirectory; // of `SceneDirectory`; null: that of the file

void SplitSceneDirectory(const char* path, String* directoryOut)
{
    if (gSceneDirectory)
        directoryOut->Assign(gSceneDirectory);
    else
        SplitDirectory(path, directoryOut);
}

QSA_SceneHeader ReadHeader(QSB_InputFile& file)
{
    QSA_SceneHeader header;
    LoadFields(file, header);
    return header;
}

void SetUpInput(QSB_InputFile& file, int32_t version, uint32_t flags)
{
    file.version = version;
    SplitSceneDirectory(file.GetFileName().c_str(), &file.directory);
    file.singleMipLevel = (flags & kLoadSingleMipLevel) != 0;
    file.bumpMaps = (flags & kLoadBumpMaps) != 0;
    file.vertexColors = (flags & kLoadVertexColors) != 0;
}

void SetToStartTime(KRE_3dScene& scene, const QSA_SceneHeader& header)
{
    const double frameSpeed = header.frameSpeed;
    scene.Update(frameSpeed != 0.0 ? header.firstFrame / frameSpeed : 0.0, 1);
}

/// A text that ends inside a light leaves it without a type; other types come from damaged files.
void CheckLights(KRE_Gfx& engine, KRE_3dScene& scene, const char* path)
{
    for (const KRE_Light* light : scene.lights) {
        if (!light->HasDeviceType())
            engine.Warning("'%s': Light '%s' of type %i does not shine", path, light->name.c_str(),
                           static_cast<int>(light->TypeNumber()));
    }
}

void DeleteLoader(QSALoader* loader)
{
    delete loader;
}

} // namespace

SceneDirectory::SceneDirectory(const char* directory)
{
    gSceneDirectory = directory;
}

SceneDirectory::~SceneDirectory()
{
    gSceneDirectory = nullptr;
}

QSALoader& KRE_Gfx::SceneLoader()
{
    if (!sceneLoader)
        sceneLoader = {new QSALoader(), DeleteLoader};
    return *sceneLoader;
}

QSA_SceneHeader& KRE_Gfx::SceneHeader()
{
    return SceneLoader().header;
}

void KRE_Gfx::LoadScene(KRE_3dScene& scene, const char* path, uint32_t flags)
{
    char name[kMessageSize]; // `path` may be the scene's name, which the load changes
    CopyText(name, sizeof name, path);
    WithMemory([&] { LoadSceneFile(scene, path, flags); },
               [&] { Error("'%s': Not enough memory for the scene", name); });
}

void KRE_Gfx::LoadSceneFile(KRE_3dScene& scene, const char* path, uint32_t flags)
{
    const String name(path);
    searchPaths->BeginScene();
    CheckPath(name.c_str());
    QSB_InputFile file;
    file.Open(name.c_str(), true, false, true);
    uint8_t start[4];
    file.Read(start, sizeof start);
    if (std::memcmp(start, kQsbMagic, sizeof kQsbMagic) == 0) {
        LoadQsbScene(scene, file, start[3], flags == kNoFlags ? 0 : flags);
    } else {
        SceneLoader().Load(scene, name.c_str(), flags);
        SetToStartTime(scene, SceneHeader());
    }
    CheckLights(*this, scene, name.c_str());
    scene.fileTime = file.GetFileTime();
    file.Close();
    scene.name = name;
    if (!loadsSceneEffects)
        return;
    String directory;
    SplitSceneDirectory(name.c_str(), &directory);
    LoadSceneEffects(scene, directory.c_str(), name.c_str());
}

void KRE_Gfx::LoadQsbScene(KRE_3dScene& scene, QSB_InputFile& file, int32_t version, uint32_t flags)
{
    const String path = file.GetFileName();
    if (version > kQsbCurrent)
        Error("Unknown qsb file version: %i (%s)", version, path.c_str());
    if (version < kQsbOldest)
        Error("'%s': Obsolete qsb file version: %i", path.c_str(), version);

    const LoadScope inHand(path.c_str());
    SetUpInput(file, version, flags);
    const QSA_SceneHeader header = ReadHeader(file);
    scene.Load(file);
    scene.settings.clearBackground = 0;
    CopyBudget budget(file.GetSize());
    ResolveClones(scene, budget, file);
    SceneHeader() = header;
    SetToStartTime(scene, header);
    if (version < kQsbSceneBounds)
        scene.ComputeBounds();
}
