#pragma once

#include <cstddef>
#include <string>

#include "batch/BatchOptions.h"
#include "batch/SceneJob.h"
#include "batch/SceneList.h"
#include "batch/TargetLayout.h"

class BatchState;

/// What is to be done with one scene.
struct PlannedScene {
    enum class Kind { kJob, kDecided, kDone };

    Kind kind = Kind::kDone; ///< done: there are no more scenes
    size_t number = 0;       ///< of the entry in the list
    SceneJob job;            ///< of a job
    std::string why;         ///< of a job: what is new
    SceneResult result;      ///< if it is decided without a job
};

/// Goes through all scenes in their order and tells which have to be converted.
class ScenePlan {
public:
    /// `stateIn` may be null: then everything is converted. Nothing is owned.
    ScenePlan(const BatchOptions& options, const SceneList& list, const TargetLayout& layout,
              BatchState* stateIn);

    PlannedScene Next();
    /// Nothing more is begun: what is left is not looked at.
    void End() { isOver = true; }
    size_t Count() const { return list.Entries().size(); }

private:
    bool IsRefused(const SceneEntry& entry, SceneResult& resultOut) const;
    SceneJob WholeJob(const SceneEntry& entry) const;

    const BatchOptions& options;
    const SceneList& list;
    const TargetLayout& layout;
    BatchState* state;
    size_t next = 0;
    bool isOver = false;
};
