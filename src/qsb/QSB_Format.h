#pragma once

#include <cstdint>

// Numbers of the QSB format; docs/qsb-format.md explains them.

inline constexpr uint8_t kQsbMagic[3] = {'Q', 'S', 'B'};
inline constexpr uint16_t kQsbObjectId = 0x1234; ///< first in each object, to detect a misread

/// The first version of a file that holds each of these.
enum QSB_Version : int32_t {
    kQsbOldest = 100,
    kQsbPackedVertices = 101, ///< before: vertices as they were in memory
    kQsbOptionalUV = 102,     ///< before: room for texture coordinates in every vertex
    kQsbSceneBounds = 103,
    kQsbEffectNames = 104, ///< and `KRE_SceneSettings::drawTransparentOnly`
    kQsbEffectValues = 105,
    kQsbFourSlots = 105, ///< before: eight slots in a texture
    kQsbReflectionAmount = 106,
    kQsbCurrent = 106,
};

/// The fewest bytes that a record of each kind takes in a file of any version. Before memory is
/// allocated, a file's counts times these are checked against the bytes left.
enum QSB_LeastBytes : int32_t {
    kQsbLeastString = 4,
    kQsbLeastObject = 2 + 4 + 116 + 48 + 2 * kQsbLeastString + 1 + 3 * 4 + 8,
    kQsbLeastTarget = kQsbLeastObject + kQsbLeastString,
    kQsbLeastCamera = kQsbLeastTarget + 4,
    kQsbLeastLight = kQsbLeastTarget + 8 + 104,
    kQsbLeastMesh = kQsbLeastObject + 44 + 16 + kQsbLeastString + 4 + 4,
    kQsbLeastKey = 43, ///< of an object, with the byte that says whether another follows
    kQsbLeastTrack = 4 + 4 + 2 + 4,
    kQsbLeastColorKey = 52,
    kQsbLeastFloatKey = 16,
    kQsbLeastMaterial = 80 + 4 + 5 * kQsbLeastTrack + 5 + 4,
    kQsbLeastSlot = 5 * kQsbLeastTrack + 5 * 4 + kQsbLeastString + 8,
    kQsbLeastTexture = 24 + 4 * kQsbLeastSlot,
    kQsbLeastBone = kQsbLeastString + 2 * 64,
};
