#pragma once

#include <cstdint>

#include <windows.h>

#include "gfx/KRE_GfxRuntime.h"

/// The engine's start-up settings.
struct GraphicsSettings {
    HWND window = nullptr;
    int32_t windowed = 1;
    int32_t width = 640;          ///< pixels, full screen only
    int32_t height = 480;         ///< pixels, full screen only
    int32_t bitsPerPixel = 32;    ///< 32, anything else is 16; full screen only
    int32_t adapter = 0;          ///< full screen only
    int32_t vsync = 0;            ///< 0 to 4, full screen only
    int32_t vertexProcessing = 0; ///< 0 software, 1 mixed, 2 hardware
    int32_t deviceChoice = 0;     ///< 1 the reference device
};

/// The settings from the options of the run.
GraphicsSettings SettingsFromOptions();

/// Creates the engine object `gGfx` without a device. `StartGraphics` calls it first. The object is
/// owned here until `ShutdownGraphics`.
void MakeEngine(const KRE_GfxRuntime& runtime = KRE_GfxRuntime::System());

/// Creates the engine object `gGfx`, its device and the font `gFont`. Raises KRE_Error on failure.
void StartGraphics(const GraphicsSettings& settings = SettingsFromOptions(),
                   const KRE_GfxRuntime& runtime = KRE_GfxRuntime::System());

/// Frees the font, the device and the engine. May be called if nothing was started, and twice.
void ShutdownGraphics();
