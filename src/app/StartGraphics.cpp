#include "app/StartGraphics.h"

#include <memory>

#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Font.h"
#include "gfx/KRE_Gfx.h"

namespace {

// `gGfx` and `gFont` point at these.
std::unique_ptr<KRE_Gfx> engine;
std::unique_ptr<KRE_Font> font;

constexpr int32_t kDepthBits = 16;

// A letter's colours at its top left and its bottom right, and how text is drawn until it is told.
constexpr D3DCOLOR kFontTopColor = 0xFF96DCFF;
constexpr D3DCOLOR kFontBottomColor = 0xFF006473;
constexpr float kTextScale = 4.0f;
constexpr D3DCOLOR kTextColor = 0xFFFFFFFF;
constexpr float kTextLineFactor = 0.6666f;

D3DDISPLAYMODE WantedMode(const GraphicsSettings& settings)
{
    const D3DFORMAT format = settings.bitsPerPixel == 32 ? D3DFMT_A8R8G8B8 : D3DFMT_R5G6B5;
    return {static_cast<UINT>(settings.width), static_cast<UINT>(settings.height), 0, format};
}

/// Uses the counter's low bits, so that no two runs draw the same numbers.
void SeedRandomNumbers()
{
    LARGE_INTEGER counter{};
    QueryPerformanceCounter(&counter);
    gGfx->random.Seed(static_cast<uint32_t>(counter.QuadPart));
}

void MakeFont()
{
    gGfx->BuildFont(*gFont, kFontTopColor, kFontBottomColor);
    gGfx->SetFont(gFont, 0.0f, 0); // scale and colour as they are
    gFont->SetMetrics(kTextScale, kTextColor, KRE_Font::kKeep, KRE_Font::kKeep, kTextLineFactor);
}

void FreeFont()
{
    if (gGfx) {
        gGfx->currentFont = nullptr;
        gGfx->currentTexture = nullptr; // it may be the font's
    }
    if (font)
        font->Free();
    font.reset();
    gFont = nullptr;
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

void MakeEngine(const KRE_GfxRuntime& runtime)
{
    engine = std::make_unique<KRE_Gfx>(runtime);
    gGfx = engine.get();
}

void StartGraphics(const GraphicsSettings& settings, const KRE_GfxRuntime& runtime)
{
    MakeEngine(runtime);
    font = std::make_unique<KRE_Font>();
    gFont = font.get();
    D3DDISPLAYMODE mode = WantedMode(settings);
    if (!settings.windowed) {
        gGfx->SelectAdapter(settings.adapter);
        if (!gGfx->FindDisplayMode(mode))
            gGfx->Error("Display mode not supported by your video card!");
    }
    gGfx->InitDevice(settings.window, settings.windowed, settings.windowed ? nullptr : &mode,
                     kDepthBits, settings.vsync, settings.vertexProcessing, settings.deviceChoice);
    SeedRandomNumbers();
    MakeFont();
    gGraphicsStarted = 1;
}

void ShutdownGraphics()
{
    gGraphicsStarted = 0;
    FreeFont(); // its sheet is the engine's to share
    if (!gGfx)
        return;
    gGfx->FreeDevice();
    engine.reset();
    gGfx = nullptr;
}
