#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "batch/BatchOptions.h"
#include "batch/SceneList.h"

/// Where the results of each scene go.
class TargetLayout {
public:
    explicit TargetLayout(const BatchOptions& optionsIn) : options(optionsIn) {}

    /// The QSB file of a scene.
    std::string TargetOf(const SceneEntry& entry) const;
    /// The picture of a scene's frame; empty if frames are not kept.
    std::string FrameOf(const SceneEntry& entry) const;

    /// Finds scenes that would have one target, or one picture.
    void FindConflicts(const std::vector<SceneEntry>& entries);
    /// Another scene with the same target, or -1.
    long OtherOf(size_t entryNumber) const;

private:
    void FindConflict(const std::vector<SceneEntry>& entries, size_t number,
                      const std::string& result, std::unordered_map<size_t, uint32_t>& seen);
    std::string PlaceOf(const std::string& result);
    std::string ResultOf(size_t number, const std::vector<SceneEntry>& entries, bool isFrame) const;

    const BatchOptions& options; ///< not owned
    std::string lastDirectory;   ///< of `PlaceOf`, with the answer
    std::string lastPlace;
    std::unordered_map<size_t, uint32_t>
        targetsSeen; ///< entries by hash, while conflicts are looked for
    std::unordered_map<size_t, uint32_t> framesSeen;
    std::unordered_map<size_t, size_t>
        others; ///< entries that cannot be converted, with another such
};
