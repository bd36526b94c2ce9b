#pragma once

#include <string>
#include <vector>

#include "import/PlanScene.h"

class NoticeList;

struct ImportOptions {
    std::string folder;    ///< where the scene goes; empty: beside the model
    std::string animation; ///< its name or number; empty: the first
    PlanOptions plan;
    double mostSeconds = 0; ///< for a child process that reads a model; 0: 10, and 1 for each MiB
    uint64_t mostBytes = 2ull << 30; ///< of the child's memory
    bool isAlone = false; ///< this process is for the one model, so there is no need for a child
};

struct ImportResult {
    std::string scene;                 ///< the QSA file
    std::vector<std::string> pictures; ///< further files that were written
    std::vector<std::string> inputs;   ///< further files that were looked for, found or not
};

/// Where the scene of a model goes.
std::string SceneOfModel(const std::string& path, const ImportOptions& options);
/// Writes a model as a scene: MODEL.qsa and its pictures, in the folder, which must exist. Nothing is left of
/// a scene that could not be written whole. Throws ModelFault without the model's name.
ImportResult ImportModel(const std::string& path, const ImportOptions& options,
                         NoticeList& notices);
