#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

// QSB files from their parts, written by the rules of docs/qsb-format.md and not by the program.
// The defaults are those of new objects, so that a test names only what it is about.

using QsbMatrix = std::array<float, 16>;
using QsbVector = std::array<float, 3>;

inline constexpr QsbMatrix kQsbIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// `data` is 9 floats for positions and scales, 21 for rotations.
struct QsbKey {
    float time = 0;
    uint16_t interpolation = 0;
    std::vector<float> data;
};

/// Key of a position or scale, without tangents.
QsbKey QsbVectorKey(float time, QsbVector value);
/// Key of a rotation by 0.
QsbKey QsbRotKey(float time);

struct QsbObject {
    uint16_t readId = 0x1234;
    int32_t kind = 0;
    QsbMatrix initTM = kQsbIdentity;
    QsbVector mirror = {1, 1, 1};
    QsbVector position = {0, 0, 0};
    QsbVector scale = {1, 1, 1};
    QsbVector axis = {0, 0, 0};
    float angle = 0;
    std::array<float, 12> pivot = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}; ///< four rows of three
    std::string name = "*undefined*";
    std::string parentName;
    uint8_t inherit = 15;
    std::vector<QsbKey> posKeys;
    std::vector<QsbKey> rotKeys;
    std::vector<QsbKey> scaleKeys;
    int32_t loop = 0;
    float loopEnd = 100;
};

struct QsbClip {
    int32_t mode = 0;
    float radius = 0;
    QsbVector center = {0, 0, 0};
    QsbVector low = {0, 0, 0};
    QsbVector high = {0, 0, 0};
};

/// Keys of 13 floats for colours, of 4 for numbers.
struct QsbTrack {
    int32_t interpolation = 1;
    uint8_t loop = 0;
    uint8_t secondFlag = 0;
    float loopEnd = 0;
    std::vector<std::vector<float>> keys;
};

struct QsbEffectValue {
    bool hasFloat = false;
    float number = 0;
    bool hasVector = false;
    QsbVector vector = {0, 0, 0};
};

struct QsbMaterial {
    std::array<float, 16> colors = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 1};
    float power = 0;
    int32_t twoSided = 0;
    int32_t transparent = 0;
    int32_t reflectionSet = -1;
    float reflectionAmount = 1;
    float transparency = 0;
    QsbTrack colorTracks[4];
    QsbTrack opacityTrack;
    std::array<uint8_t, 5> flags = {0, 0, 1, 1, 1}; ///< mirror U, V, tile U, V, add emissive
    int32_t transparencyType = 0;
    std::string effect;
    QsbEffectValue values[8];
};

struct QsbSlot {
    QsbTrack tracks[5]; ///< offset U, V, tiling U, V, angle
    std::array<float, 5> constants = {0, 0, 1, 1, 0};
    std::string file;
    int32_t type = 1;
    float amount = 1;
};

struct QsbTexture {
    uint32_t word = 0;
    float start = 0;
    float period = 0.2f;
    uint32_t mode = 0;
    float value = 0;
    uint32_t options = 0;
    QsbSlot slots[8]; ///< four of them from version 105 on
};

struct QsbVertex {
    QsbVector position = {0, 0, 0};
    float u = 0;
    float v = 0;
    std::array<int16_t, 3> normal = {0, 0, 32767};
    std::array<uint16_t, 4> weights = {0, 0, 0, 0};
    std::array<uint8_t, 4> bones = {0, 0, 0, 0};
};

struct QsbBone {
    std::string name;
    QsbMatrix boneInit = kQsbIdentity;
    QsbMatrix meshInit = kQsbIdentity;
};

struct QsbMesh {
    QsbObject object;
    QsbClip clip;
    int32_t ownGeometry = 1;
    int32_t visible = 1;
    int32_t hasTransparency = -1;
    std::vector<QsbMaterial> materials;
    std::vector<QsbTexture> textures; ///< one per material
    std::string cloneSource;
    std::vector<QsbBone> bones;
    uint32_t fvf = 0x12;
    std::vector<QsbVertex> vertices;
    std::string rawVertices; ///< used instead in version 100
    int32_t rawCount = 0;
    std::vector<std::array<uint16_t, 3>> faces;
    std::vector<uint16_t> attributes; ///< missing ones are 0
    int32_t userTag = -1;
};

struct QsbTarget {
    QsbObject object;
    std::string targetName;
};

struct QsbCamera {
    QsbTarget target;
    float fov = 0.785f;
};

struct QsbLight {
    QsbTarget target;
    uint32_t on = 1;
    uint32_t mode = 1;
    uint32_t type = 3;
    /// The 25 floats after the type; `Falloff`, the 20th of them, is 1.
    std::array<float, 25> numbers = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
};

struct QsbScene {
    QsbObject object;
    QsbClip clip;
    uint32_t ambient = 0xFF000000;
    uint32_t background = 0xFF000000;
    std::vector<QsbTexture> backgroundTexture; ///< none or one
    /// The 17 settings that are stored, as bits.
    std::array<uint32_t, 17> settings = {0, 0, 0, 0xFFFFFFFE, 0xFFFFFFFE, 0,          1, 0, 1, 0,
                                         0, 1, 1, 0,          0x3F800000, 0x3F000000, 1};
    std::vector<QsbMesh> meshes;
    std::vector<QsbCamera> cameras;
    std::vector<QsbObject> objects;
    std::vector<QsbLight> lights;
};

struct QsbFile {
    int32_t version = 106;
    float frameSpeed = 30;
    float firstFrame = 0;
    float lastFrame = 100;
    std::string sound;
    std::string script;
    QsbScene scene;
};

/// The bytes of a file and the places of its fields. Fields are named like "mesh count" and
/// "mesh0.vertex count"; see the source for all names.
struct QsbImage {
    std::string bytes;
    std::map<std::string, size_t> at;

    /// The bytes with others at a field.
    std::string With(const std::string& field, const std::string& replacement) const;
    std::string WithInt32(const std::string& field, int32_t value) const;
    int32_t Int32At(const std::string& field) const;
};

QsbImage MakeQsb(const QsbFile& file);

/// Where two files begin to differ and what is there; empty if they are equal.
std::string QsbDifference(const std::string& actual, const std::string& expected);

/// A mesh of one face, (0,0,0) (1,0,0) (0,1,0), with one material and a clip record that fits it.
QsbMesh QsbTriangle(const std::string& name);
/// A file with some data in every kind of record, without pictures. `version` 101 to 106.
QsbFile FullQsb(int32_t version = 106);
