#pragma once

#include <set>
#include <stdexcept>
#include <string>

#include "batch/FrameReader.h"
#include "batch/SceneImport.h"
#include "batch/SceneJob.h"
#include "batch/WorkerEngine.h"
#include "batch/WorkingDirectory.h"

class InputRecorder;
class MessageCatcher;
class SceneSession;

/// Converts one scene after the other in this process, as the converter does each in a run of its own.
class SceneConverter {
public:
    /// Relative paths of jobs begin in the directory that is current now.
    explicit SceneConverter(const WorkerSetup& setup);

    /// Never throws; whatever goes wrong is in the result.
    SceneResult Convert(const SceneJob& job);

private:
    /// What ends a conversion besides an error of the engine. Its message is in the result.
    struct Refusal {};

    bool Attempt(const SceneJob& job, SceneResult& result);
    void ConvertLoaded(const SceneJob& job, const std::string& leaf, SceneSession& session);
    ImportedScene Import(const SceneJob& job, const std::string& leaf);
    void Save(const SceneJob& job, SceneSession& session);
    void Draw(const SceneJob& job, SceneSession& session);
    void CheckTarget(const SceneJob& job);
    void CheckNothingChanged(const std::string& leaf);
    bool HasSourceChanged(const std::string& leaf) const;
    void CheckStrictly();
    bool KeepNamesAbove(const Descriptor& directory);
    void StampTarget(const Descriptor& directory, const std::string& leaf);
    [[noreturn]] void Refuse(uint16_t code, const std::string& what = "");
    void CountObjects(SceneSession& session);

    WorkerSetup setup;
    Descriptor start; ///< directory where the program was started
    WorkerEngine engine;
    std::set<std::string> kept; ///< directories whose names are on the disk

    // Of the scene in hand.
    SceneResult* result = nullptr;     // not owned
    MessageCatcher* catcher = nullptr; // not owned
    InputRecorder* inputs = nullptr;   // not owned
    Descriptor sourceDirectory;
    Descriptor sceneDirectory; ///< the source's, or that of the scene which was made from it
    SmallContent content;      ///< of the source
    bool hasChanged = false;
};
