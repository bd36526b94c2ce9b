// Entry of the program: options, window, graphics, the run over the named files, shutdown.

#include "app/CommandLine.h"
#include "app/GuardedRun.h"
#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/ProcessDirectory.h"
#include "app/SceneFileDialog.h"
#include "app/StartGraphics.h"
#include "gfx/DefaultPaths.h"

#include <windows.h>

static void RunSession()
{
    StartGraphics();
    ReadDefaultPaths();
    ProcessFilePattern();
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int showCommand)
{
    LoadWindowTexts(instance);
    if (HasHelpSwitch(commandLine)) {
        ShowHelp();
        return kStatusNormal;
    }
    if (CmdGetFileName(commandLine, 1, gFilePattern) < 0 && !AskForSceneFile())
        return kStatusNormal;

    gViewEnabled = 1;
    ParseOptions(commandLine);
    RegisterMainWindowClass(instance);
    if (!CreateMainWindow(instance, showCommand))
        return kStatusFailed;
    return RunGuarded(RunSession);
}
