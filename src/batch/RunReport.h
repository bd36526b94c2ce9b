#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "batch/BatchJournal.h"
#include "batch/BatchOptions.h"
#include "batch/SceneList.h"
#include "batch/StatusLine.h"

class BatchState;
class ReportPage;

/// Takes the result of each scene: says it, writes it to the journal and the page, and notes it in the
/// state. At the end it tells what became of all.
class RunReport {
public:
    /// `stateIn` and `pageIn` may be null. Nothing is owned.
    RunReport(const BatchOptions& options, const SceneList& list, BatchState* stateIn,
              ReportPage* pageIn);

    /// False, with `trouble`, if the journal cannot be made.
    bool OpenJournal();
    /// False, with `trouble`, if the page will not be written.
    bool CheckPagePlace();
    /// Lines of the journal have a record. Not owned.
    void UseRecorder(const ChunkRecorder* recorder) { journal.UseRecorder(recorder); }
    void Done(size_t number, const SceneJob& job, const SceneResult& result);
    /// To be called now and then: keeps what is done, moves the status line.
    void Tick(double now);
    /// Keeps everything and prints the summary.
    void Finish(double now);
    /// What could not be written: journal, state, page; empty if all could.
    const std::string& Trouble() const { return trouble; }
    bool HasFailures() const { return progress.failed > 0; }
    bool HasSkipped() const { return skipped > 0; }

private:
    struct FailedScene {
        size_t number;
        std::string reason;
    };

    void Record(const std::string& path, const SceneJob& job, const SceneResult& result);
    void Count(size_t number, const SceneResult& result);
    void SayMessages(const std::string& path, const SceneResult& result);
    void Keep();
    void PrintSummary() const;
    void AddTrouble(const std::string& text);
    std::string PageTrouble() const;

    const BatchOptions& options;
    const SceneList& list;
    BatchState* state;
    ReportPage* page;
    BatchJournal journal;
    StatusLine status;
    RunProgress progress;
    std::vector<FailedScene> failed;
    size_t upToDate = 0;
    size_t skipped = 0;
    size_t withWarnings = 0;
    double startedAt = -1;
    double keptAt = 0;
    std::string trouble;
};
