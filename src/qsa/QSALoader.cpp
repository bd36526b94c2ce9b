#include "qsa/QSALoader.h"

#include "base/LoadInHand.h"
#include "base/Paths.h"
#include "platform/WalkedFile.h"
#include "scene/KRE_3dScene.h"

namespace {

constexpr uint32_t kNoFlags = ~uint32_t{0};
constexpr float kFreshFogDensity = 0.008f;

/// Does at the end of a scope what an error must not skip.
template <class Action>
struct AtScopeEnd {
    Action action;
    ~AtScopeEnd() { action(); }
};
template <class Action>
AtScopeEnd(Action) -> AtScopeEnd<Action>;

} // namespace

QSALoader::QSALoader()
{
    SetClassName("QSALoader");
    SetFileName("*nofile*");
}

QSALoader::~QSALoader() = default;

int32_t QSALoader::Load(KRE_3dScene& target, const char* path, uint32_t flags)
{
    SetFileName(path);
    const LoadScope inHand(path);
    scene = &target;
    const AtScopeEnd tidyUp{[this] { ForgetLoad(); }};
    ResetForLoad(flags == kNoFlags ? 0 : flags);
    SplitDirectory(path, &options.directory);
    target.Reset();

    Open(path);
    if (ParseTopLevel() == 0)
        Warning("Encountered unexpected end of file at pos %i", TextPosition());
    Close();
    if (!hasKeyword)
        ReportNoKeyword();
    LinkScene();

    if (target.cameras.Count() > 0)
        target.SetCamera(0);
    target.settings.useAmbient = 1;
    target.settings.clearBackground = 0;
    target.settings.fogMode = D3DFOG_EXP;
    target.settings.fogDensity = kFreshFogDensity;
    if (target.settings.useFog)
        target.backgroundColor = target.settings.fogColor;
    return 1;
}

void QSALoader::ResetForLoad(uint32_t flags)
{
    options = QSA_LoadOptions{flags, String()};
    time = QSA_TimeScale();
    hasSkinnedMesh = false;
    hasKeyword = false;
    header = QSA_SceneHeader();
    D3DXMatrixIdentity(&meshInitTM); // it goes from mesh to mesh, and no further than the file
    announcedFaces = 0;
    keyParts = 0;
}

/// Frees what only the load in hand needed, whether it came to its end or not.
void QSALoader::ForgetLoad()
{
    Close();
    scene = nullptr;
    meshInfos.Clear();
    topMaterials.clear();
    materials.clear();
    finishedMaterials = 0;
    builder.Free();
    boneIndex.Clear();
}

/// 1 at the end of the file, 0 if it came inside a block.
int32_t QSALoader::ParseTopLevel()
{
    for (;;) {
        const QSA_Token token = NextToken();
        if (token == QSA_Token::EndOfFile)
            return 1;
        if (token != QSA_Token::Unknown && token != QSA_Token::BlockEnd)
            hasKeyword = true;
        if (ParseTopLevelKeyword(token) != 0)
            return 0;
    }
}

int32_t QSALoader::ParseTopLevelKeyword(QSA_Token token)
{
    int32_t result = 0;
    switch (token) {
    case QSA_Token::QsaExport:
        ReadVersion();
        return 0;
    case QSA_Token::Scene:
        SkipTo('{');
        result = ParseScene();
        UpdateTime();
        return result;
    case QSA_Token::MaterialList:
        SkipTo('{');
        result = ParseMaterialList();
        FinishMaterials();
        return result;
    case QSA_Token::Group:
        // QUIRK: a group adds nothing: its closing brace is passed over like any stray one, and what
        // stands behind it is read as if it stood inside.
        SkipTo('{');
        return 0;
    case QSA_Token::GeomObject:
        SkipTo('{');
        return ParseGeomObject();
    case QSA_Token::CameraObject:
        SkipTo('{');
        return ParseCamera();
    case QSA_Token::BoneObject:
        SkipTo('{');
        return ParseNode(kObjectBone);
    case QSA_Token::HelperObject:
    case QSA_Token::TargetObject:
        SkipTo('{');
        return ParseNode(kObjectHelper);
    case QSA_Token::LightObject:
        SkipTo('{');
        return ParseLight();
    case QSA_Token::Atmospheric:
        SkipTo('{');
        return ParseAtmospheric();
    default:
        return 0;
    }
}
