#include "tests/app/ScratchWindow.h"

#include "app/MainWindow.h"
#include "app/MenuCommand.h"
#include "app/Options.h"

#include <gtest/gtest.h>

ScratchWindow::ScratchWindow(const char* options)
{
    ParseOptions(options);
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    LoadWindowTexts(instance);
    RegisterMainWindowClass(instance);
    EXPECT_EQ(CreateMainWindow(instance, SW_SHOWNORMAL), 1);
}

ScratchWindow::~ScratchWindow()
{
    RemoveMainWindow();
}

void RemoveMainWindow()
{
    DestroyWindow(gMainWindow);
    gMainWindow = nullptr;
    UnregisterClassA(gWindowClassName, gInstance);
    MSG message; // WM_DESTROY has posted a WM_QUIT
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        continue;
    gWindowShown = 1;
    gAppActive = 1;
    gPaused = 0;
    gWindowDestroyed = 0;
    gOpenRequested = 0;
}
