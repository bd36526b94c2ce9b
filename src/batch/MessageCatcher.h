#pragma once

#include <string>
#include <vector>

#include "base/ReportObserver.h"
#include "batch/SceneJob.h"

/// Catches all reports of the engine while it lives, so that no log file is written, and adds them to a
/// result. One at a time.
class MessageCatcher : public ReportObserver {
public:
    /// Texts that are kept of one scene; the rest is only counted.
    static constexpr size_t kMostKept = 1000;

    explicit MessageCatcher(SceneResult& target);
    ~MessageCatcher();
    MessageCatcher(const MessageCatcher&) = delete;
    MessageCatcher& operator=(const MessageCatcher&) = delete;

    void OnReport(ReportKind kind, const char* source, const char* text) override;
    void Add(SceneMessage message);
    /// From here on only `Add` counts.
    void LeaveOutReports() { isLeftOut = true; }

private:
    SceneResult& result; ///< not owned
    bool isLeftOut = false;
};
