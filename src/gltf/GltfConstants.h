#pragma once

#include <cstdint>

// Numbers of the glTF 2.0 format, which takes them from OpenGL.

enum GltfComponent : int32_t {
    kGltfByte = 5120,
    kGltfUByte = 5121,
    kGltfShort = 5122,
    kGltfUShort = 5123,
    kGltfUInt = 5125,
    kGltfFloat = 5126,
};

enum GltfTarget : int32_t {
    kGltfNoTarget = 0,
    kGltfVertices = 34962,
    kGltfIndices = 34963,
};

enum GltfWrap : int32_t {
    kGltfClamp = 33071,
    kGltfMirror = 33648,
    kGltfRepeat = 10497,
};

enum GltfPrimitive : int32_t {
    kGltfPoints = 0,
    kGltfTriangles = 4,
    kGltfTriangleStrip = 5,
    kGltfTriangleFan = 6,
};

/// The container for one file: a header of three words, then chunks of two words and their bytes.
inline constexpr uint32_t kGlbMagic = 0x46546C67;     // "glTF"
inline constexpr uint32_t kGlbJsonChunk = 0x4E4F534A; // "JSON"
inline constexpr uint32_t kGlbBinChunk = 0x004E4942;  // "BIN"
inline constexpr uint32_t kGlbVersion = 2;
