#include "tests/app/ScratchEngine.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/StartGraphics.h"
#include "tests/app/ScratchWindow.h"

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
    RemoveMainWindow();
}
