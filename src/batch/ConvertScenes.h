#pragma once

#include <string>

#include "batch/BatchOptions.h"
#include "batch/SceneList.h"
#include "batch/TargetLayout.h"

class BatchState;
class ChunkRecorder;
class SourceTrees;

struct ConversionEnd {
    int status = 0;
    bool isWhole = false; ///< every scene was converted or has failed, and the journal tells so
};

/// Converts the scenes of a list and prints the summary, with the time since the run `began`. `state` and
/// `recorder` may be null; with a recorder the lines of the journal have records. `trees` is what untrusted scenes may
/// read; null if scenes are trusted.
ConversionEnd ConvertScenes(const BatchOptions& options, const SceneList& list,
                            const TargetLayout& layout, BatchState* state, double began,
                            const ChunkRecorder* recorder = nullptr,
                            const SourceTrees* trees = nullptr);

/// Names the directories that could not be read.
void SayUnread(const SceneList& list);

/// Prints what is wrong and gives the status of it.
int BatchTrouble(const std::string& text);
