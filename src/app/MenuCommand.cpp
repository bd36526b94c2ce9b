#include "app/MenuCommand.h"

#include "app/InfoDialog.h"
#include "app/Options.h"
#include "app/SceneFileDialog.h"
#include "app/SceneSession.h"
#include "app/resource.h"
#include "gfx/KRE_Gfx.h"

int gOpenRequested;

namespace {

/// Saves the scene on show. Without the engine there is none: the box that reports an error also
/// handles messages, and by then both are gone.
void SaveCurrentScene()
{
    if (gCurrentScene == nullptr || gGfx == nullptr)
        return;
    if (AskForTargetFile())
        gGfx->SaveScene(*gCurrentScene, gFilePattern);
}

/// QUIRK: the choice is only recorded. Nothing opens the file.
void RequestOpen()
{
    if (AskForSceneFile())
        gOpenRequested = 1;
}

} // namespace

bool DoMenuCommand(HWND window, int id)
{
    switch (id) {
    case ID_INFO:
        ShowInfoDialog(window);
        return true;
    case ID_EXIT:
        DestroyWindow(window);
        return true;
    case ID_SAVE_BINARY:
        SaveCurrentScene();
        return true;
    case ID_OPEN:
        RequestOpen();
        return true;
    default:
        return false;
    }
}
