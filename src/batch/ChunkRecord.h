#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "batch/SceneJob.h"
#include "batch/StateKeys.h"

/// All of a scene's result, in a line of a chunk's journal: with it the result goes into a state or onto a
/// page later, on another machine.
struct ChunkRecord {
    uint32_t sceneCount = 0; ///< of the chunk
    StateKeys keys;
    SceneJob job;
    SceneResult result; ///< inputs below the root are relative to it
};

/// The line of a journal with its record, and with a hash of both.
std::string LineWithRecord(const std::string& line, const ChunkRecord& record);

/// Gives the line as it was before. False for a line that is damaged or has no record.
bool TakeRecord(std::string_view line, std::string& lineOut, ChunkRecord& recordOut);

/// Makes the records of one chunk.
class ChunkRecorder {
public:
    /// `root` is the path of the root without links.
    ChunkRecorder(const StateKeys& keys, const std::string& root, size_t sceneCount);

    std::string LineOf(const std::string& line, const SceneJob& job,
                       const SceneResult& result) const;

private:
    StateKeys keys;
    std::string prefix; ///< of paths below the root
    uint32_t sceneCount;
};

/// The path of an input where the root is at `root`.
std::string InputBelow(const std::string& root, const std::string& path);
