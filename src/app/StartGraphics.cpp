#include "app/StartGraphics.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Gfx.h"

namespace {

constexpr int32_t kDepthBits = 16;

D3DDISPLAYMODE WantedMode(const GraphicsSettings& settings)
{
    const D3DFORMAT format = settings.bitsPerPixel == 32 ? D3DFMT_A8R8G8B8 : D3DFMT_R5G6B5;
    return {static_cast<UINT>(settings.width), static_cast<UINT>(settings.height), 0, format};
}

/// Takes the counter's low bits, so that no two runs draw the same numbers.
void SeedRandomNumbers()
{
    LARGE_INTEGER counter{};
    QueryPerformanceCounter(&counter);
    gGfx->random.Seed(static_cast<uint32_t>(counter.QuadPart));
}

} // namespace

GraphicsSettings SettingsFromOptions()
{
    GraphicsSettings settings;
    settings.window = gMainWindow;
    settings.windowed = gWindowed;
    settings.width = gResX;
    settings.height = gResY;
    settings.bitsPerPixel = gBitsPerPixel;
    settings.adapter = gAdapter;
    settings.vsync = gVsync;
    settings.vertexProcessing = gHardwareVertices;
    settings.deviceChoice = gReferenceRasterizer;
    return settings;
}

void StartGraphics(const GraphicsSettings& settings)
{
    gGfx = new KRE_Gfx;
    D3DDISPLAYMODE mode = WantedMode(settings);
    if (!settings.windowed) {
        gGfx->SelectAdapter(settings.adapter);
        if (!gGfx->FindDisplayMode(mode))
            gGfx->Error("Display mode not supported by your video card!");
    }
    gGfx->InitDevice(settings.window, settings.windowed, settings.windowed ? nullptr : &mode,
                     kDepthBits, settings.vsync, settings.vertexProcessing, settings.deviceChoice);
    SeedRandomNumbers();
    gGraphicsStarted = 1;
}

void ShutdownGraphics()
{
    gGraphicsStarted = 0;
    if (!gGfx)
        return;
    gGfx->FreeDevice();
    delete gGfx;
    gGfx = nullptr;
}
