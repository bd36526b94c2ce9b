#pragma once

#include <string>
#include <vector>

#include "batch/BatchOptions.h"
#include "batch/SceneList.h"

/// The absolute path of a file or directory without links, whether it is there or not.
std::string RealPathOf(const std::string& path);

/// Whether `path` is `directory` or below it; both as by `RealPathOf`.
bool IsInDirectory(const std::string& path, const std::string& directory);

/// The directories that untrusted scenes may read, with all below them: those that were named, those of files that
/// were named, and the default ones for pictures and effects.
class SourceTrees {
public:
    /// Starts an engine to find the default directories.
    explicit SourceTrees(const SceneList& list);

    /// Absolute paths without links; none is below another one.
    const std::vector<std::string>& Paths() const { return paths; }
    /// Whether an untrusted scene finds a file there: a regular one in these directories.
    bool HaveFile(const std::string& path) const;
    /// What keeps an untrusted run from being safe: results among sources, or `statePath`, the journal or the page
    /// where scenes write. Empty if nothing does.
    std::string FaultOfPlaces(const BatchOptions& options, const std::string& statePath) const;

private:
    void AddDirectory(const std::string& path);
    std::string FaultOfResults(const std::string& option, const std::string& directory) const;

    std::vector<std::string> paths;
};
