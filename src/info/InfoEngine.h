#pragma once

#include <memory>

#include <windows.h>

#include "gfx/KRE_Gfx.h"

/// The engine as the converter starts it, as `gGfx`, with a small hidden window. Reports during
/// start-up are discarded. Scenes must be destroyed before it.
class InfoEngine {
public:
    /// Throws KRE_Error if there is no device.
    InfoEngine();
    ~InfoEngine();
    InfoEngine(const InfoEngine&) = delete;
    InfoEngine& operator=(const InfoEngine&) = delete;

private:
    void Stop();

    HWND window = nullptr; // owned
    std::unique_ptr<KRE_Gfx> engine;
};
