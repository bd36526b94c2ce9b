#include "batch/ConvertScenes.h"

#include <cstdio>
#include <cstring>
#include <memory>

#include "batch/BatchState.h"
#include "batch/BatchText.h"
#include "batch/MessageTable.h"
#include "batch/ReportPage.h"
#include "batch/RunBatch.h"
#include "batch/RunReport.h"
#include "batch/ScenePlan.h"
#include "batch/SteadyClock.h"
#include "batch/Supervisor.h"
#include "platform/headless/win32/SyncedFiles.h"

namespace {

int StatusOf(bool isDone, const Supervisor& supervisor, const RunReport& report,
             const SceneList& list)
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return BatchTrouble("the output could not be written");
    if (!isDone)
        return BatchTrouble(supervisor.error);
    if (!report.Trouble().empty())
        return BatchTrouble(report.Trouble());
    if (supervisor.Signal() != 0)
        return kBatchSignal + supervisor.Signal();
    return report.HasFailures() || !list.Unread().empty() ? kBatchFailures : kBatchWell;
}

} // namespace

ConversionEnd ConvertScenes(const BatchOptions& options, const SceneList& list,
                            const TargetLayout& layout, BatchState* state, double began,
                            const ChunkRecorder* recorder, const SourceTrees* trees)
{
    headless::gSyncsReplacements = options.durable;
    std::unique_ptr<ReportPage> page;
    if (!options.reportFile.empty())
        page = std::make_unique<ReportPage>(options.reportFile, list.Entries().size());
    RunReport report(options, list, state, page.get());
    report.UseRecorder(recorder);
    if (!report.CheckPagePlace() || !report.OpenJournal())
        return {BatchTrouble(report.Trouble()), false};
    ScenePlan plan(options, list, layout, state);
    Supervisor supervisor(options, plan, report, state ? state->LockHandle() : -1, trees);
    report.Tick(began);
    const bool isDone = supervisor.Run();
    report.Finish(SecondsOfClock());
    const bool isWhole = isDone && report.Trouble().empty() && !report.HasSkipped();
    return {StatusOf(isDone, supervisor, report, list), isWhole};
}

void SayUnread(const SceneList& list)
{
    for (const UnreadDirectory& directory : list.Unread())
        std::fprintf(
            stderr, "%s: %s %s: %s\n", OneLine(directory.path).c_str(),
            LevelName(MessageLevel::kError), CodeText(kCodeDirectoryNotRead).c_str(),
            OwnMessage(kCodeDirectoryNotRead, std::strerror(directory.errorNumber)).text.c_str());
}

int BatchTrouble(const std::string& text)
{
    std::fprintf(stderr, "qsbatch: %s\n", OneLine(text).c_str());
    return kBatchTrouble;
}
