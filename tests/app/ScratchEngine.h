#pragma once

/// A started program: options, window and graphics. Its destructor removes everything, so that no process
/// ends with a live device.
class ScratchEngine {
public:
    explicit ScratchEngine(const char* options);
    ~ScratchEngine();
    ScratchEngine(const ScratchEngine&) = delete;
    ScratchEngine& operator=(const ScratchEngine&) = delete;
};
