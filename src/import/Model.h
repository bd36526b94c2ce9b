#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A model as its reader found it: in its own axes, v downward, angles in radians. Numbers of other elements
// are valid; -1 stands for none.

using ModelPoint = std::array<float, 3>;
using ModelVector = std::array<double, 3>;
using ModelQuaternion = std::array<double, 4>; ///< x, y, z, w
using ModelMatrix = std::array<double, 16>;    ///< row by row, points are rows

inline constexpr ModelMatrix kModelIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

struct ModelImage {
    std::string name;  ///< a leaf, as a start for the picture's file; may be empty
    std::string file;  ///< where it lies; empty for a picture inside the model
    std::string bytes; ///< of a picture inside the model
};

struct ModelMap {
    int image = -1;
    bool tile[2] = {true, true}; ///< u, v
    bool mirror[2] = {false, false};
    double offset[2] = {0, 0}; ///< uv' = offset + turn(scale * uv), v downward
    double scale[2] = {1, 1};
    double angle = 0;
    int set = 0; ///< of texture coordinates
};

/// A key of what only files of our own have: tracks of colours, or of numbers, which use the first part.
/// Speeds are changes from this key to the next one, or from the one before.
struct ModelExtraKey {
    double seconds;
    ModelVector value;
    ModelVector arriving;
    ModelVector leaving;
};

struct ModelExtraTrack {
    bool isBezier = false;
    std::vector<ModelExtraKey> keys;
};

/// How a picture lies and moves, in the scene format's own terms.
struct ModelMapMoves {
    enum Part { kOffsetU, kOffsetV, kTileU, kTileV, kAngle, kParts };
    std::array<double, kParts> constants = {0, 0, 1, 1, 0};
    std::array<ModelExtraTrack, kParts> tracks;
};

/// A map that other formats have no place for.
struct ModelExtraMap {
    bool isBump = false; ///< otherwise a reflection
    int image = -1;
    double amount = 1;
    ModelMapMoves moves;
};

enum class ModelAlpha { kOpaque, kCutOut, kBlend };

struct ModelMaterial {
    std::string name;
    // Colours as on the screen.
    ModelVector diffuse = {1, 1, 1};
    ModelVector ambient = {1, 1, 1};
    ModelVector specular = {0, 0, 0};
    ModelVector emissive = {0, 0, 0};
    double power = 0; ///< exponent of the highlight
    double opacity = 1;
    ModelAlpha alpha = ModelAlpha::kOpaque;
    bool twoSided = false;
    ModelMap map;
    std::optional<ModelMapMoves> moves; ///< of the colour map, if they have keys
    std::vector<ModelExtraMap> maps;
    enum Track { kDiffuse, kAmbient, kSpecular, kSelfIllum, kOpacity, kTracks };
    std::array<ModelExtraTrack, kTracks> tracks; ///< opacities, not transparencies
    std::string effect; ///< with its values, as a material's name states them; or empty
    int transparencyType = 0;
};

struct ModelWeight {
    uint32_t joint;
    float weight;
};

struct ModelPrimitive {
    int material = -1;
    std::vector<ModelPoint> positions;
    std::vector<ModelPoint> normals;               ///< empty: those of the faces
    std::vector<std::array<float, 2>> texCoords;   ///< empty without
    std::vector<std::vector<ModelWeight>> weights; ///< empty without
    std::vector<uint32_t> corners;                 ///< three for each triangle
};

struct ModelMesh {
    std::string name;
    std::vector<ModelPrimitive> primitives;
};

enum class ModelCurve { kStep, kLinear, kCubic };

/// A track of vectors (three values used) or quaternions. Of a cubic one, the speeds per second on both
/// sides of a key.
struct ModelTrack {
    ModelCurve curve = ModelCurve::kLinear;
    std::vector<double> times; ///< strictly ascending
    std::vector<ModelQuaternion> values;
    std::vector<ModelQuaternion> arriving;
    std::vector<ModelQuaternion> leaving;

    bool IsEmpty() const { return times.empty(); }
};

struct ModelNode {
    std::string name;
    int parent = -1;
    std::vector<int> children;
    ModelVector position = {0, 0, 0};
    ModelQuaternion rotation = {0, 0, 0, 1};
    ModelVector scale = {1, 1, 1};
    int mesh = -1;
    int skin = -1;
    int camera = -1;
    int light = -1;
    bool isHidden = false;
    bool isBone = false;
    ModelTrack positionTrack;
    ModelTrack rotationTrack;
    ModelTrack scaleTrack;
};

struct ModelSkin {
    std::vector<int> joints; ///< nodes
    std::vector<ModelMatrix> binds;
};

struct ModelCamera {
    double angle = 0.785; ///< vertical
};

enum class ModelLightKind { kPoint, kSpot, kDirectional };

struct ModelLight {
    ModelLightKind kind = ModelLightKind::kPoint;
    ModelVector color = {1, 1, 1};
    double intensity = 1; ///< in units of its kind, compared with lights of that kind only
    std::optional<double> strength; ///< of the scene format, if the file states it
    bool isOn = true;
    double inner = 0; ///< of a spot: half angles
    double outer = 0.785398;
};

/// What a file may state about the scene as a whole, in the scene format's own axes.
struct ModelScene {
    std::optional<ModelVector> ambient;
    std::optional<ModelVector> background;
    std::optional<ModelVector> fog; ///< its colour
    std::optional<std::array<ModelVector, 2>> bounds;
    int backgroundImage = -1;
    std::string soundFile;
    std::string scriptFile;
    std::optional<double> frameSpeed;
    double lastFrame = 0;
};

struct Model {
    std::vector<ModelImage> images;
    std::vector<ModelMaterial> materials;
    std::vector<ModelMesh> meshes;
    std::vector<ModelNode> nodes; ///< parents before their children
    std::vector<ModelSkin> skins;
    std::vector<ModelCamera> cameras;
    std::vector<ModelLight> lights;
    ModelScene scene;
    std::vector<std::string> inputs; ///< further files that its reader looked for, found or not
    bool isZUp = false;              ///< its own axes
    double unit = 1;                 ///< of the scene, for one of its own
};
