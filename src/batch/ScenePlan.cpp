#include "batch/ScenePlan.h"

#include <cstring>

#include "batch/BatchState.h"
#include "batch/MessageTable.h"

ScenePlan::ScenePlan(const BatchOptions& optionsIn, const SceneList& listIn,
                     const TargetLayout& layoutIn, BatchState* stateIn)
    : options(optionsIn),
      list(listIn),
      layout(layoutIn),
      state(stateIn)
{}

bool ScenePlan::IsRefused(const SceneEntry& entry, SceneResult& resultOut) const
{
    const long other = layout.OtherOf(next);
    if (entry.errorNumber != 0)
        resultOut.messages.push_back(OwnMessage(kCodeCannotOpen, std::strerror(entry.errorNumber)));
    else if (other >= 0)
        resultOut.messages.push_back(
            OwnMessage(kCodeSameTarget, list.Entries()[static_cast<size_t>(other)].path));
    return !resultOut.messages.empty();
}

SceneJob ScenePlan::WholeJob(const SceneEntry& entry) const
{
    SceneJob job;
    job.path = entry.path;
    job.target = layout.TargetOf(entry);
    job.frame = layout.FrameOf(entry);
    job.draws = options.Draws();
    job.wantsThumb = job.draws && (options.keepsThumbs || !options.reportFile.empty());
    return job;
}

PlannedScene ScenePlan::Next()
{
    PlannedScene planned;
    if (next >= Count())
        return planned;
    const SceneEntry& entry = list.Entries()[next];
    planned.number = next;
    planned.kind = PlannedScene::Kind::kDecided;
    if (!IsRefused(entry, planned.result)) {
        planned.job = WholeJob(entry);
        planned.kind = PlannedScene::Kind::kJob;
        planned.why = "it is new";
        if (state && !isOver && state->Examine(entry, planned.job, planned.why))
            planned.kind = PlannedScene::Kind::kDecided;
        if (planned.kind == PlannedScene::Kind::kDecided)
            planned.result.status = SceneStatus::kUpToDate;
    }
    ++next;
    return planned;
}
