#pragma once

#include <string>

#include "batch/Descriptor.h"
#include "batch/SceneJob.h"

/// The journal of a run: a line of JSON for each scene, in the order in which they end, as
/// docs/journal.schema.json describes it. Lines are written whole.
class BatchJournal {
public:
    /// Makes the file anew. False, with `errno` set, if it cannot be made.
    bool Open(const std::string& path);
    bool IsOpen() const { return file.IsOpen(); }

    void Add(const std::string& path, const SceneJob& job, const SceneResult& result);
    /// False, with `errno` set, if lines could not be written, now or before.
    bool Flush();

private:
    Descriptor file;
    std::string waiting;
    int failure = 0;
};

/// The line of a scene, without its end.
std::string JournalLine(const std::string& path, const SceneJob& job, const SceneResult& result);
