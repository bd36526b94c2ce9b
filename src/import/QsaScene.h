#pragma once

#include <string>
#include <vector>

#include "import/CutMesh.h"
#include "import/Model.h"

// A scene as its text has it: its own axes, names that are unique, everything in its final form but
// numbers, which the writer rounds.

/// A key of a position or a scale; speeds per second, both forward in time.
struct QsaVectorKey {
    double seconds;
    ModelVector value;
    ModelVector arriving;
    ModelVector leaving;
};

struct QsaVectorTrack {
    bool isBezier = false;
    std::vector<QsaVectorKey> keys;
};

/// A key of a rotation from rest.
struct QsaRotationKey {
    double seconds;
    ModelQuaternion value;
};

struct QsaBone {
    std::string name;
    uint32_t joint; ///< as the weights of the piece name it
    ModelMatrix bind;
};

enum class QsaKind { kMesh, kClone, kCamera, kLight, kBone, kHelper };

struct QsaNode {
    QsaKind kind = QsaKind::kHelper;
    std::string name;
    std::string parent; ///< empty for a root
    ModelVector position = {0, 0, 0};
    ModelQuaternion rotation = {0, 0, 0, 1};
    ModelVector scale = {1, 1, 1}; ///< positive
    int mirrored = -1;             ///< an axis; only of a node without rotation
    QsaVectorTrack positions;
    QsaVectorTrack scales;
    std::vector<QsaRotationKey> rotations;

    // Of a mesh.
    const MeshPiece* piece = nullptr; ///< not owned, lives in the scene
    std::string source;               ///< of a clone
    int material = -1;
    bool isVisible = true;
    std::vector<QsaBone> bones;
    bool mirrorsBind = false; ///< the bones mirror the vertices

    double cameraAngle = 0;
    ModelLight light; ///< with its strength
};

struct QsaScene {
    std::vector<std::vector<int>> materials; ///< of the model; several are submaterials
    std::vector<QsaNode> nodes;
    std::vector<CutResult> meshes; ///< what the nodes' pieces point to; not moved once filled
    double framesPerSecond = 30;
    int lastFrame = 100;
    std::optional<std::array<ModelVector, 2>> bounds; ///< a mesh of this name is written
};
