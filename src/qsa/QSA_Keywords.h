#pragma once

#include <cstdint>

/// The meaning of a keyword of a QSA text. The low byte is the family of the block it belongs to; a
/// member's code is that of its block plus a multiple of 0x100. Keywords with the same meaning
/// share a code.
enum class QSA_Token : int32_t {
    EndOfFile = -1,
    BlockEnd = -2,
    Unknown = 0,

    // Top level
    QsaExport = 0x5F,
    Scene = 0x1,
    MaterialList = 0x2,
    GeomObject = 0x3,
    Group = 0x4,
    CameraObject = 0x6,
    BoneObject = 0x7,
    HelperObject = 0x8,
    TargetObject = 0x9,
    LightObject = 0xA,
    Atmospheric = 0xB,

    // Scene
    SceneBackgroundStatic = 0x11,
    SceneAmbientStatic = 0x21,
    SceneFirstFrame = 0x31,
    SceneLastFrame = 0x41,
    SceneFrameSpeed = 0x51,
    SceneTicksPerFrame = 0x61,
    SceneEnvMap = 0x71,
    SceneSoundFile = 0x81,
    SceneScriptFile = 0x91,

    // Materials
    MaterialCount = 0x12,
    Material = 0x22,
    MaterialName = 0x122,
    MaterialDiffuse = 0x322,
    MaterialAmbient = 0x422,
    MaterialSpecular = 0x522,
    MaterialShineStrength = 0x622,
    MaterialShine = 0x722,
    NumSubMaterials = 0x822,
    SubMaterial = 0x922,
    MaterialTransparency = 0xA22,
    MaterialTwoSided = 0xB22,
    MaterialSelfIllumColor = 0xE22,
    MaterialTransparencyType = 0x11022,
    MapDiffuse = 0x222,
    MapReflect = 0xC22,
    MapBump = 0xD22,
    MaterialAnimation = 0xF22,

    // Maps
    Bitmap = 0x1222,
    MapAmount = 0x9222,
    UVWUOffset = 0x2222,
    UVWVOffset = 0x3222,
    UVWUTiling = 0x4222,
    UVWVTiling = 0x5222,
    UVWUAngle = 0x6222,
    UVWVAngle = 0x7222,
    UVWWAngle = 0x8222,
    UVWTileU = 0x11122,
    UVWTileV = 0x11222,
    TimeStartFrame = 0xC222,
    TimePlaybackRate = 0xD222,
    TimeEndCondition = 0xE222,
    MapAnimation = 0xA222,
    MapAttribute = 0xB222,
    ControlFloatBezier = 0x13F,
    ControlBezierFloatKey = 0x113F,

    // Material animation
    MaterialAttribute = 0x10F22,
    ControlColorBezier = 0x45,
    ControlColorLinear = 0x55,
    ControlBezierPoint3Key = 0x145,
    ControlPoint3Key = 0x155,
    ControlFloatLinear = 0x23F,
    ControlFloatKey = 0x123F,

    // Nodes
    NodeName = 0x12F,
    NodeParent = 0x22F,
    NodeVisible = 0x32F,
    NodeTM = 0x1F,
    PivotTM = 0x4F,
    TMAnimation = 0x5,
    Mesh = 0x23,
    Clone = 0x43,
    MaterialRef = 0x32,
    WireframeColor = 0x33,

    // Transform blocks
    TMRow0 = 0x11F,
    TMRow1 = 0x21F,
    TMRow2 = 0x31F,
    TMRow3 = 0x41F,
    TMPos = 0x51F,
    TMRotAxis = 0x61F,
    TMScale = 0x81F,
    TMRotAngle = 0x71F,

    // Node animation
    ControlPos = 0x15,
    ControlRot = 0x25,
    ControlScale = 0x35,
    LinearPosKey = 0x115,
    BezierPosKey = 0x215,
    LinearRotKey = 0x125,
    TcbRotKey = 0x225,
    LinearScaleKey = 0x135,
    BezierScaleKey = 0x235,

    // Mesh
    MeshNumVertices = 0x123,
    MeshNumFaces = 0x223,
    MeshVertexList = 0x323,
    MeshVertex = 0x1323,
    MeshFaceList = 0x423,
    MeshFace = 0x1423,
    MeshSmoothing = 0x2423,
    MeshMaterialId = 0x3423,
    MeshNumTVertices = 0x523,
    MeshTVertList = 0x623,
    MeshTVert = 0x1623,
    MeshNumTVFaces = 0x723,
    MeshTFaceList = 0x823,
    MeshTFace = 0x1823,
    MeshWeights = 0x923,
    MeshInitTM = 0x1923,
    BoneWeight = 0x2923,
    BoundingBoxMin = 0xA23,
    BoundingBoxMax = 0xB23,
    BoneName = 0x12923,
    BoneInitTM = 0x22923,
    IndexWeight = 0x32923,

    // Cameras
    TargetNode = 0x26,
    CameraSettings = 0x16,
    CameraFieldOfView = 0x116,

    // Lights
    LightType = 0x3A,
    LightUseLight = 0x2A,
    LightSettings = 0x1A,
    LightColor = 0x11A,
    LightIntensity = 0x21A,
    LightAspect = 0x31A,
    LightHotSpot = 0x41A,
    LightFalloff = 0x51A,
    LightTDist = 0x61A,

    // Atmosphere
    StdFog = 0x1B,
    FogColor = 0x11B,
    FogNear = 0x21B,
    FogFar = 0x31B,
    FogDensity = 0x41B,
};

inline constexpr int32_t kKeywordNumber = 134;

/// The code of the keyword [word, word + length), in upper or lower case; `Unknown` for any other
/// word. A keyword matches only as a whole.
QSA_Token ClassifyKeyword(const char* word, int32_t length);
