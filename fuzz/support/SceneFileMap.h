#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

// Where the fields and records of a QSB file are, read by the description of the format and not by the
// program's own reader.

enum class SceneFieldKind : uint8_t {
    kVersion,
    kReadId,
    kCount,
    kTextLength,
    kReal,
    kWhole, ///< a mode, a type, a flag of four bytes
    kFlags, ///< one byte
    kFormat,
    kIndex, ///< two bytes
    kBone,  ///< one byte
};

struct SceneField {
    SceneFieldKind kind;
    size_t at;
    size_t size;
};

enum class SceneRecordKind : uint8_t {
    kMesh,
    kCamera,
    kObject,
    kLight,
    kPositionKey,
    kRotationKey,
    kScaleKey,
    kColorKey,
    kFloatKey,
    kMaterial, ///< its twin is the texture
    kVertex,
    kFace, ///< its twin is the attribute
    kBoneInfo,
};

/// A record of a list. Some lists have their parts in two places.
struct SceneRecord {
    SceneRecordKind kind;
    size_t countAt;
    size_t at;
    size_t size;
    size_t twinAt = 0; ///< behind the record
    size_t twinSize = 0;
};

/// What was found up to the end of the file, or to the place where it makes no sense.
struct SceneFileMap {
    std::vector<SceneField> fields;
    std::vector<SceneRecord> records;
};

/// `bytes` begin with the version.
SceneFileMap MapSceneFile(std::string_view bytes);
