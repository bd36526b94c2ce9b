#include "app/ProcessFile.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/SceneSession.h"
#include "app/TargetName.h"
#include "gfx/KRE_Gfx.h"
#include "platform/ReplacementFile.h"

namespace {

/// Handles the window's messages between two files.
void HandleMessages()
{
    if (gNoKey || gEscOff)
        return;
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

/// Waits while the program is minimised or behind another one.
void WaitUntilShown()
{
    if (gWindowDestroyed)
        return;
    while (!gWindowShown || !gAppActive) {
        MSG message = {}; // without a queue it stays as it is
        GetMessageA(&message, nullptr, 0, 0);
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

} // namespace

void ProcessFile(const char* fileName, int overwrite)
{
    SceneSession session;
    const String targetName = MakeTargetName(fileName);
    if (!overwrite && ReplacementFile::IsTargetThere(targetName.c_str()))
        return;
    char banner[kBannerSize];
    ReadBanner(banner);
    gGfx->SetLighting(gLightingOn, nullptr);
    gGfx->SetSpecular(gSpecularOn);
    session.Load(fileName);
    session.Save(targetName.c_str());
    if (!gViewEnabled)
        return;
    session.ShowFrame(banner);
    HandleMessages();
    WaitUntilShown();
}
