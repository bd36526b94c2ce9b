#include "info/InfoEngine.h"

#include "base/Log.h"
#include "gfx/DefaultPaths.h"

namespace {

constexpr const char* kClassName = "QSBINFO";
constexpr int kWindowSize = 16; // nothing is drawn
constexpr int32_t kDepthBits = 16;

HWND MakeHiddenWindow()
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = DefWindowProcA;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = kClassName;
    RegisterClassExA(&windowClass);
    return CreateWindowExA(0, kClassName, "qsbinfo", WS_POPUP, 0, 0, kWindowSize, kWindowSize,
                           nullptr, nullptr, windowClass.hInstance, nullptr);
}

} // namespace

InfoEngine::InfoEngine()
{
    gLogSink = [](const char*) {}; // never to a log file
    window = MakeHiddenWindow();
    try {
        engine = std::make_unique<KRE_Gfx>();
        engine->InitDevice(window, 1, nullptr, kDepthBits, 0, 0, 0);
    } catch (...) { // the constructor failed, so no destructor runs
        Stop();
        throw;
    }
    gGfx = engine.get();
    gGraphicsStarted = 1;
    ReadDefaultPaths();
}

InfoEngine::~InfoEngine()
{
    Stop();
}

void InfoEngine::Stop()
{
    gGraphicsStarted = 0;
    gGfx = nullptr;
    engine.reset();
    DestroyWindow(window);
    UnregisterClassA(kClassName, GetModuleHandleA(nullptr));
}
