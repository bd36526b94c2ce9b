#pragma once

#include <cstdint>
#include <string>

/// The engine of a worker. Between two scenes everything goes back to how a process of its own begins,
/// so that no scene can tell which ones came before it.
/// A scene that draws or fails leaves a device, managers and loaders whose every state would have to be
/// known to undo it, so after it the next scene gets a new device and engine object; window, options and
/// decoders stay. A scene that is only loaded and saved leaves few traces, and these are undone one by
/// one.
class WorkerEngine {
public:
    /// `options` as on the converter's own command line. Throws KRE_Error if there is no device.
    explicit WorkerEngine(const std::string& options);
    ~WorkerEngine();
    WorkerEngine(const WorkerEngine&) = delete;
    WorkerEngine& operator=(const WorkerEngine&) = delete;

    /// Before each scene, when the one before is destroyed.
    void Prepare();
    /// The scene in hand draws or has failed.
    void MarkUsed() { isUsed = true; }

private:
    void StartEngine();
    bool HasLeftovers() const;

    std::string options;
    bool isUsed = false;
    bool hasPaths = false;     ///< the default ones were read
    int32_t sharedAtStart = 0; ///< objects of all managers
};
