#include "qsa/QSA_Keywords.h"

#include <array>
#include <string_view>

#include "base/Ascii.h"

namespace {

struct KeywordText {
    std::string_view text;
    QSA_Token token;
};

using enum QSA_Token;

constexpr KeywordText kKeywords[] = {
    {"3DSMAX_QSAEXPORT", QsaExport},
    {"SCENE", Scene},
    {"MATERIAL_LIST", MaterialList},
    {"GEOMOBJECT", GeomObject},
    {"GROUP", Group},
    {"CAMERAOBJECT", CameraObject},
    {"BONEOBJECT", BoneObject},
    {"HELPEROBJECT", HelperObject},
    {"TARGETOBJECT", TargetObject},
    {"LIGHTOBJECT", LightObject},
    {"ATMOSPHERIC", Atmospheric},
    {"SCENE_BACKGROUND_STATIC", SceneBackgroundStatic},
    {"SCENE_AMBIENT_STATIC", SceneAmbientStatic},
    {"SCENE_FIRSTFRAME", SceneFirstFrame},
    {"SCENE_LASTFRAME", SceneLastFrame},
    {"SCENE_FRAMESPEED", SceneFrameSpeed},
    {"SCENE_TICKSPERFRAME", SceneTicksPerFrame},
    {"SCENE_ENVMAP", SceneEnvMap},
    {"SCENE_SOUNDFILE", SceneSoundFile},
    {"SCENE_SCRIPTFILE", SceneScriptFile},
    {"MATERIAL_COUNT", MaterialCount},
    {"MATERIAL", Material},
    {"MATERIAL_NAME", MaterialName},
    {"MATERIAL_DIFFUSE", MaterialDiffuse},
    {"MATERIAL_AMBIENT", MaterialAmbient},
    {"MATERIAL_SPECULAR", MaterialSpecular},
    {"MATERIAL_SHINESTRENGTH", MaterialShineStrength},
    {"MATERIAL_SHINE", MaterialShine},
    {"NUMSUBMTLS", NumSubMaterials},
    {"SUBMATERIAL", SubMaterial},
    {"MATERIAL_TRANSPARENCY", MaterialTransparency},
    {"MATERIAL_TWOSIDED", MaterialTwoSided},
    {"MATERIAL_SELFILLUM_COLOR", MaterialSelfIllumColor},
    {"MATERIAL_TRANSPARENCY_TYPE", MaterialTransparencyType},
    {"MAP_DIFFUSE", MapDiffuse},
    {"MAP_REFLECT", MapReflect},
    {"MAP_BUMP", MapBump},
    {"MATERIAL_ANIMATION", MaterialAnimation},
    {"BITMAP", Bitmap},
    {"MAP_AMOUNT", MapAmount},
    {"UVW_U_OFFSET", UVWUOffset},
    {"UVW_V_OFFSET", UVWVOffset},
    {"UVW_U_TILING", UVWUTiling},
    {"UVW_V_TILING", UVWVTiling},
    {"UVW_U_ANGLE", UVWUAngle},
    {"UVW_V_ANGLE", UVWVAngle},
    {"UVW_W_ANGLE", UVWWAngle},
    {"UVW_TILE_U", UVWTileU},
    {"UVW_TILE_V", UVWTileV},
    {"TIME_STARTFRAME", TimeStartFrame},
    {"TIME_PLAYBACKRATE", TimePlaybackRate},
    {"TIME_ENDCONDITION", TimeEndCondition},
    {"MAP_ANIMATION", MapAnimation},
    {"MAP_ATTRIBUTE", MapAttribute},
    {"CONTROL_FLOAT_BEZIER", ControlFloatBezier},
    {"CONTROL_BEZIER_FLOAT_KEY", ControlBezierFloatKey},
    {"MATERIAL_ATTRIBUTE", MaterialAttribute},
    {"CONTROL_COLOR_BEZIER", ControlColorBezier},
    {"CONTROL_COLOR_LINEAR", ControlColorLinear},
    {"CONTROL_BEZIER_POINT3_KEY", ControlBezierPoint3Key},
    {"CONTROL_POINT3_KEY", ControlPoint3Key},
    {"CONTROL_FLOAT_LINEAR", ControlFloatLinear},
    {"CONTROL_FLOAT_KEY", ControlFloatKey},
    {"NODE_NAME", NodeName},
    {"NODE_PARENT", NodeParent},
    {"NODE_VISIBLE", NodeVisible},
    {"NODE_TM", NodeTM},
    {"PIVOT_TM", PivotTM},
    {"TM_ANIMATION", TMAnimation},
    {"MESH", Mesh},
    {"CLONE", Clone},
    {"MATERIAL_REF", MaterialRef},
    {"WIREFRAME_COLOR", WireframeColor},
    {"TM_ROW0", TMRow0},
    {"TM_ROW1", TMRow1},
    {"TM_ROW2", TMRow2},
    {"TM_ROW3", TMRow3},
    {"TM_POS", TMPos},
    {"TM_ROTAXIS", TMRotAxis},
    {"TM_SCALE", TMScale},
    {"TM_ROTANGLE", TMRotAngle},
    {"CONTROL_POS_BEZIER", ControlPos},
    {"CONTROL_POS_TRACK", ControlPos},
    {"CONTROL_ROT_TCB", ControlRot},
    {"CONTROL_ROT_TRACK", ControlRot},
    {"CONTROL_ROT_LINEAR", ControlRot},
    {"CONTROL_SCALE_BEZIER", ControlScale},
    {"CONTROL_SCALE_TRACK", ControlScale},
    {"CONTROL_POS_SAMPLE", LinearPosKey},
    {"CONTROL_BEZIER_POS_KEY", BezierPosKey},
    {"CONTROL_ROT_SAMPLE", LinearRotKey},
    {"CONTROL_ROT_KEY", LinearRotKey},
    {"CONTROL_TCB_ROT_KEY", TcbRotKey},
    {"CONTROL_SCALE_SAMPLE", LinearScaleKey},
    {"CONTROL_BEZIER_SCALE_KEY", BezierScaleKey},
    {"MESH_NUMVERTEX", MeshNumVertices},
    {"MESH_NUMFACES", MeshNumFaces},
    {"MESH_VERTEX_LIST", MeshVertexList},
    {"MESH_VERTEX", MeshVertex},
    {"MESH_FACE_LIST", MeshFaceList},
    {"MESH_FACE", MeshFace},
    {"MESH_SMOOTHING", MeshSmoothing},
    {"MESH_MTLID", MeshMaterialId},
    {"MESH_NUMTVERTEX", MeshNumTVertices},
    {"MESH_TVERTLIST", MeshTVertList},
    {"MESH_TVERT", MeshTVert},
    {"MESH_NUMTVFACES", MeshNumTVFaces},
    {"MESH_TFACELIST", MeshTFaceList},
    {"MESH_TFACE", MeshTFace},
    {"MESH_WEIGHTS", MeshWeights},
    {"MESH_INIT_TM", MeshInitTM},
    {"BONE_WEIGHT", BoneWeight},
    {"BOUNDINGBOX_MIN", BoundingBoxMin},
    {"BOUNDINGBOX_MAX", BoundingBoxMax},
    {"BONE_NAME", BoneName},
    {"BONE_INIT_TM", BoneInitTM},
    {"INDEX_WEIGHT", IndexWeight},
    {"TARGET_NODE", TargetNode},
    {"CAMERA_SETTINGS", CameraSettings},
    {"CAMERA_FOV", CameraFieldOfView},
    {"LIGHT_TYPE", LightType},
    {"LIGHT_USELIGHT", LightUseLight},
    {"LIGHT_SETTINGS", LightSettings},
    {"LIGHT_COLOR", LightColor},
    {"LIGHT_INTENS", LightIntensity},
    {"LIGHT_ASPECT", LightAspect},
    {"LIGHT_HOTSPOT", LightHotSpot},
    {"LIGHT_FALLOFF", LightFalloff},
    {"LIGHT_TDIST", LightTDist},
    {"STDFOG", StdFog},
    {"FOG_COLOR", FogColor},
    {"FOG_NEAR", FogNear},
    {"FOG_FAR", FogFar},
    {"FOG_DENSITY", FogDensity},
};
static_assert(std::size(kKeywords) == kKeywordNumber);

constexpr int32_t kLongestKeyword = 26;
constexpr size_t kBuckets = 512;
constexpr uint8_t kNone = 0xFF; ///< ends a bucket
static_assert(kKeywordNumber < kNone);

/// The length and three letters in upper case, which tell most keywords apart.
constexpr size_t BucketOf(const char* word, size_t length)
{
    const auto letter = [word](size_t i) {
        return static_cast<size_t>(static_cast<uint8_t>(ToUpperAscii(word[i])));
    };
    const size_t sum = length * 67 + letter(length - 1) * 5 + letter(length / 2) * 13 + letter(0);
    return sum % kBuckets;
}

/// The keywords by bucket. Those of one bucket are linked in the order of the table.
struct Buckets {
    std::array<uint8_t, kBuckets> first;
    std::array<uint8_t, kKeywordNumber> next;
};

constexpr auto kTable = [] {
    Buckets table;
    table.first.fill(kNone);
    table.next.fill(kNone);
    for (size_t i = std::size(kKeywords); i-- > 0;) {
        const std::string_view text = kKeywords[i].text;
        uint8_t& first = table.first[BucketOf(text.data(), text.size())];
        table.next[i] = first;
        first = static_cast<uint8_t>(i);
    }
    return table;
}();

bool IsInUpperCase(const char* word, std::string_view keyword)
{
    for (size_t i = 0; i < keyword.size(); ++i) {
        if (ToUpperAscii(word[i]) != keyword[i])
            return false;
    }
    return true;
}

} // namespace

QSA_Token ClassifyKeyword(const char* word, int32_t length)
{
    if (length < 1 || length > kLongestKeyword)
        return Unknown;
    const auto size = static_cast<size_t>(length);
    for (uint8_t i = kTable.first[BucketOf(word, size)]; i != kNone; i = kTable.next[i]) {
        if (kKeywords[i].text.size() == size && IsInUpperCase(word, kKeywords[i].text))
            return kKeywords[i].token;
    }
    return Unknown;
}
