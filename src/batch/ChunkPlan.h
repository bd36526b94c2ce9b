#pragma once

#include <memory>
#include <string>
#include <vector>

#include "batch/BatchState.h"
#include "batch/ChunkBalance.h"
#include "batch/FarmArguments.h"
#include "batch/RootPath.h"
#include "batch/SceneList.h"

/// Shares scenes out to chunks and writes their lists.
class ChunkPlan {
public:
    /// Not owned.
    explicit ChunkPlan(const FarmOptions& optionsIn);

    /// Returns the exit status. May throw StateError.
    int Run();

private:
    bool Collect();
    bool OpenState();
    void Choose();
    bool Write();
    bool RemoveOldChunks();
    bool Fail(const std::string& text);
    void PrintSummary(const std::vector<SceneChunk>& chunks) const;

    const FarmOptions& options;
    BatchOptions batch; ///< as seen from the root
    RootPath root;
    SceneList list;
    std::unique_ptr<BatchState> state;
    std::vector<ChunkScene> scenes;
    std::string directory; ///< of the plan
    size_t upToDate = 0;
    size_t refused = 0;
    std::string error;
};
