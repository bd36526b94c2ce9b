#pragma once

/// A program that has come through its start-up: options, window and graphics. Everything is gone
/// again with it, so that no process ends with a live device.
class ScratchEngine {
public:
    explicit ScratchEngine(const char* options);
    ~ScratchEngine();
    ScratchEngine(const ScratchEngine&) = delete;
    ScratchEngine& operator=(const ScratchEngine&) = delete;
};
