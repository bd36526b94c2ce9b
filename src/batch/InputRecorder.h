#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include <sys/stat.h>

#include "batch/Descriptor.h"
#include "batch/SceneJob.h"

/// Notes each file that the engine looks for while it lives, found or missing: pictures, lists of frames,
/// effects with what they include. The result of a conversion depends on all of them. One at a time.
class InputRecorder {
public:
    /// `current` is the current directory, in which `sourceLeaf` is; it outlives this object.
    InputRecorder(const Descriptor& current, const std::string& sourceLeaf);
    ~InputRecorder();
    InputRecorder(const InputRecorder&) = delete;
    InputRecorder& operator=(const InputRecorder&) = delete;

    /// What was looked for, each once and in this order, with their contents. False if one of them
    /// has changed since it was opened, or has come or gone.
    bool Finish(std::vector<SceneInput>& inputsOut);
    /// Notes a file that someone else looked for; the path is absolute.
    void NoteFile(const std::string& path);
    /// Look-ups in between are not noted.
    void Pause() { isPaused = true; }

private:
    struct LookedUp {
        std::string path;
        bool isThere;
        struct stat info; ///< at the first look; valid if it was there
    };
    void Note(const char* path, const struct stat* found);
    const std::string& Directory();
    bool Describe(const LookedUp& looked, SceneInput& inputOut) const;

    const Descriptor& current;
    std::string directory; ///< its absolute path, ends in a separator; empty until it is needed
    std::string sourceLeaf;
    std::vector<LookedUp> seen;
    std::unordered_map<std::string, size_t> places; ///< in `seen`, by path
    int64_t startedAtNs = FileClockNs();
    bool isPaused = false;
};
