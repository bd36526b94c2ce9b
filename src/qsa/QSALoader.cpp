#include "qsa/QSALoader.h"

#include "base/LoadInHand.h"
#include "base/Paths.h"
#include "base/WithMemory.h"
#include "platform/WalkedFile.h"
#include "qsa/QSA_BoundsObject.h"
#include "qsa/QSA_MaterialImport.h"
#include "qsa/QSA_MeshImport.h"
#include "qsa/QSA_NodeImport.h"
#include "scene/KRE_3dScene.h"

namespace {

constexpr uint32_t kNoFlags = ~uint32_t{0};
constexpr float kFreshFogDensity = 0.008f;

/// Closes a text at the end of the scope, also when an error ends it.
struct TextClosing {
    QSA_SceneText& text;
    ~TextClosing() { text.Close(); }
};

} // namespace

/// The importers of one file and the scene that they fill. Created anew for each load, so no state
/// carries over from one file to the next.
struct QSALoader::Import {
    Import(QSALoader& loader, KRE_3dScene& target, uint32_t flags, const char* path)
        : scene(target),
          options(OptionsOf(flags, path)),
          materials(loader, loader.time, options),
          nodes(loader, target, loader.keyPartLimits),
          meshes(loader, materials, nodes, target, options)
    {}

    static QSA_LoadOptions OptionsOf(uint32_t flags, const char* path)
    {
        QSA_LoadOptions options{flags == kNoFlags ? 0 : flags, String()};
        SplitDirectory(path, &options.directory);
        return options;
    }

    KRE_3dScene& scene; ///< not owned, the caller's
    const QSA_LoadOptions options;
    QSA_MaterialImport materials;
    QSA_NodeImport nodes;
    QSA_MeshImport meshes;
    bool hasKeyword = false; ///< a keyword of the format was read; stray braces do not count
};

QSALoader::QSALoader()
{
    SetClassName("QSALoader");
    SetFileName("*nofile*");
}

QSALoader::~QSALoader() = default;

int32_t QSALoader::Load(KRE_3dScene& scene, const char* path, uint32_t flags)
{
    SetFileName(path);
    const LoadScope inHand(path);
    WithMemory([&] { ReadScene(scene, path, flags); },
               [&] { Error("Not enough memory for the scene"); });
    return 1;
}

void QSALoader::ReadScene(KRE_3dScene& scene, const char* path, uint32_t flags)
{
    const TextClosing closing{*this};
    header = QSA_SceneHeader();
    time = QSA_TimeScale();
    scene.Reset();

    Open(path);
    Import import(*this, scene, flags, path); // needs the size of the text
    if (!ParseTopLevel(import))
        Warning("Encountered unexpected end of file at pos %i", TextPosition());
    Close();
    if (!import.hasKeyword)
        ReportNoKeyword();
    LinkScene(import);

    if (scene.cameras.Count() > 0)
        scene.SetCamera(0);
    scene.settings.useAmbient = 1;
    scene.settings.clearBackground = 0;
    scene.settings.fogMode = D3DFOG_EXP;
    scene.settings.fogDensity = kFreshFogDensity;
    if (scene.settings.useFog)
        scene.backgroundColor = scene.settings.fogColor;
}

/// False if the file ended inside a block.
bool QSALoader::ParseTopLevel(Import& import)
{
    for (;;) {
        const QSA_Token token = NextToken();
        if (token == QSA_Token::EndOfFile)
            return true;
        if (token != QSA_Token::Unknown && token != QSA_Token::BlockEnd)
            import.hasKeyword = true;
        if (ParseTopLevelKeyword(token, import) != 0)
            return false;
    }
}

int32_t QSALoader::ParseTopLevelKeyword(QSA_Token token, Import& import)
{
    switch (token) {
    case QSA_Token::QsaExport:
        ReadVersion();
        return 0;
    case QSA_Token::Scene:
        SkipTo('{');
        return ParseScene(import.scene, import.options);
    case QSA_Token::MaterialList:
        SkipTo('{');
        return import.materials.ParseList();
    case QSA_Token::Group:
        // QUIRK: a group adds nothing. Its closing brace is skipped like any stray one, and what
        // follows it is read as if it were inside.
        SkipTo('{');
        return 0;
    case QSA_Token::GeomObject:
        SkipTo('{');
        return import.meshes.ParseGeomObject();
    case QSA_Token::CameraObject:
        SkipTo('{');
        return import.nodes.ParseCamera();
    case QSA_Token::BoneObject:
        SkipTo('{');
        return import.nodes.ParseNode(kObjectBone);
    case QSA_Token::HelperObject:
    case QSA_Token::TargetObject:
        SkipTo('{');
        return import.nodes.ParseNode(kObjectHelper);
    case QSA_Token::LightObject:
        SkipTo('{');
        return import.nodes.ParseLight();
    case QSA_Token::Atmospheric:
        SkipTo('{');
        return ParseAtmospheric(import.scene);
    default:
        return 0;
    }
}

/// Called after the last byte has been read.
void QSALoader::LinkScene(Import& import)
{
    KRE_3dScene& scene = import.scene;
    header.firstFrame = static_cast<float>(time.firstFrame);
    header.lastFrame = static_cast<float>(time.lastFrame);
    scene.LinkObjects(scene);
    scene.SetLoopEnd(time.Duration());
    import.nodes.FinishKeys(time);
    import.meshes.FinishClones();
    if (!TakeBoundsObject(scene, *this)) {
        scene.Update(time.StartSeconds(), 1);
        scene.ComputeBounds();
        if (import.meshes.HasSkinnedMesh())
            Warning("Skinned meshes without 'Bounds' object");
    }
    scene.PartitionMeshes();
}
