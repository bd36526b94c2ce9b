#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A scene that is to be put into a chunk.
struct ChunkScene {
    std::string path; ///< relative to the root
    uint64_t sizeBytes = 0;
};

/// The scenes of one chunk, largest first.
struct SceneChunk {
    std::vector<const ChunkScene*> scenes; // not owned
    uint64_t sizeBytes = 0;
};

/// Shares scenes out so that chunks have about the same size: the largest scenes first, each to the
/// smallest chunk so far. Never more chunks than scenes. The same scenes, in whatever order, give the same
/// chunks.
std::vector<SceneChunk> BalancedChunks(const std::vector<ChunkScene>& scenes, size_t chunkCount);

/// How many chunks of about this size there are; at least 1.
size_t ChunkCountFor(const std::vector<ChunkScene>& scenes, uint64_t chunkBytes);
