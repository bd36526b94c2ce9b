#pragma once

#include <string>

#include "batch/Descriptor.h"
#include "batch/SceneJob.h"

class ChunkRecorder;

/// The journal of a run: a line of JSON for each scene, in the order in which they end, as
/// docs/journal.schema.json describes it. Lines are written whole.
class BatchJournal {
public:
    /// Makes the file anew. What a durable one has flushed is on the disk. False, with `errno` set, if it cannot be made.
    bool Open(const std::string& path, bool isDurable);
    bool IsOpen() const { return file.IsOpen(); }

    /// Lines from now on have a record. Not owned; it has to live as long as lines are added.
    void UseRecorder(const ChunkRecorder* used) { recorder = used; }
    void Add(const std::string& path, const SceneJob& job, const SceneResult& result);
    /// False, with `errno` set, if lines could not be written, now or before.
    bool Flush();

private:
    Descriptor file;
    std::string waiting;
    int failure = 0;
    bool isDurable = false;
    const ChunkRecorder* recorder = nullptr; // not owned
};

/// The line of a scene, without its end.
std::string JournalLine(const std::string& path, const SceneJob& job, const SceneResult& result);
