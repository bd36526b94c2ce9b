#pragma once

#include <string>

#include "batch/ChunkName.h"
#include "batch/FarmArguments.h"
#include "batch/RootPath.h"
#include "batch/SceneList.h"

/// Converts the scenes of one chunk. Other runs of the same chunk do no harm: targets are replaced whole,
/// and each run has a journal of its own.
class ChunkRun {
public:
    /// Not owned.
    explicit ChunkRun(const FarmOptions& optionsIn);

    /// Returns the exit status.
    int Run();

private:
    bool Prepare();
    bool ReadChunkName();
    bool EnterRoot();
    bool MakeJournal();
    bool KeepJournal();
    bool Fail(const std::string& text);

    const FarmOptions& options;
    BatchOptions batch; ///< as seen from the root
    const double began;
    RootPath root;
    ChunkName chunk;
    SceneList list;
    std::string journalPath; ///< without its extension
    std::string error;
};
