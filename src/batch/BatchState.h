#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "batch/BatchOptions.h"
#include "batch/SceneJob.h"
#include "batch/SceneList.h"
#include "batch/StateDatabase.h"
#include "batch/StateKeys.h"

class SourceTrees;

/// What was done in earlier runs, and with which inputs, so that only what changed is done again. A
/// scene is up to date if its source and everything that was looked at have the same content, what was
/// missing is still missing, program and options are the same, and the target is as it was written.
/// Every operation may throw StateError, and std::bad_alloc.
class BatchState {
public:
    /// Opens or makes the file of the state. `trees` has the files that untrusted scenes find, and lives as long
    /// as this object; null if scenes are trusted.
    BatchState(const std::string& path, const BatchOptions& options,
               const SourceTrees* trees = nullptr);
    ~BatchState();
    BatchState(const BatchState&) = delete;
    BatchState& operator=(const BatchState&) = delete;

    const std::string& Path() const { return statePath; }
    /// Where the state of a run is kept, unless it is told.
    static std::string DefaultPath(const BatchOptions& options);
    /// The keys of what a run with these options on this machine converts. Starts an engine for it.
    static StateKeys KeysOf(const BatchOptions& options);

    /// True if nothing is to be done. If only the frame is, the job becomes one that leaves the target
    /// alone. `whyOut` says what is new.
    bool Examine(const SceneEntry& entry, SceneJob& job, std::string& whyOut);
    /// What is noted from now on was converted with other keys, as on another machine.
    void UseKeys(const StateKeys& other) { keys = other; }
    /// Notes what became of a scene.
    void Store(const SceneEntry& entry, const SceneJob& job, const SceneResult& result);
    /// Fills in what is known of a scene that is up to date: contents, objects, messages, small picture.
    void AddFacts(const SceneEntry& entry, SceneResult& result);
    /// To be kept open by workers, so that the next run waits for them.
    int LockHandle() const { return database.LockHandle(); }
    /// Keeps what was noted, even if the process is killed.
    void Commit();

private:
    struct KnownInput {
        std::string path;
        bool isThere = false;
        FileStamp stamp;
    };
    struct KnownInputs {
        int64_t id;
        bool isThere;
        FileStamp stamp;
    };

    std::string KeyOf(const SceneEntry& entry);
    std::string AbsoluteDirectory(const std::string& directory);
    std::string AbsolutePath(const std::string& path);
    bool IsTargetCurrent(const SceneEntry& entry, const SceneJob& job, std::string& whyOut);
    bool IsSourceCurrent(const SceneEntry& entry, std::string& whyOut);
    bool IsFrameCurrent(const SceneJob& job, std::string& whyOut);
    bool IsFileCurrent(const std::string& path, const FileStamp& known) const;
    bool AreInputsCurrent(std::string_view ids, std::string& whyOut);
    bool IsInputCurrent(int64_t id, std::string& pathOut);
    bool CompareInput(int64_t id, const KnownInput& known);
    bool IsFound(const std::string& path, struct stat& infoOut) const;
    int64_t IdOfInput(const SceneInput& input);
    int64_t StoreInput(const SceneInput& input);
    void KeepFewInputs();
    std::string PackInputs(const std::vector<SceneInput>& inputs);
    void Begin();

    const std::string statePath;
    const BatchOptions& options; ///< not owned
    const SourceTrees* trees;    ///< not owned
    StateDatabase database;
    StateKeys keys;
    bool isInTransaction = false;
    bool wasEmpty = false;                                            ///< when it was opened
    std::unordered_map<std::string, std::string> absoluteDirectories; ///< some, by path as given
    std::unordered_map<int64_t, bool> inputsCurrent;                  ///< by id
    std::unordered_map<std::string, KnownInputs> inputsStored;        ///< some of this run, by path

    StateStatement find;
    StateStatement findInput;
    StateStatement renewInput;
    StateStatement findSameInput;
    StateStatement addInput;
    StateStatement renewSource;
    StateStatement storeScene;
    StateStatement storeFrame;
    StateStatement storeFailure;
};
