#include "tests/app/ScratchEngine.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/StartGraphics.h"

ScratchEngine::ScratchEngine(const char* options)
{
    ParseOptions(options);
    gViewEnabled = 1;
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    LoadWindowTexts(instance);
    RegisterMainWindowClass(instance);
    CreateMainWindow(instance, SW_HIDE);
    StartGraphics();
}

ScratchEngine::~ScratchEngine()
{
    ShutdownGraphics();
    DestroyWindow(gMainWindow);
    gMainWindow = nullptr;
    UnregisterClassA(gWindowClassName, gInstance);
    MSG message; // WM_DESTROY has left a WM_QUIT behind
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        continue;
    gWindowDestroyed = 0;
}
