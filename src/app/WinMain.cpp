// Entry of the program: options, window, graphics, the run over the named files, shutdown.

#include "app/CommandLine.h"
#include "app/GuardedRun.h"
#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/ProcessDirectory.h"
#include "app/SceneFileDialog.h"
#include "app/StartGraphics.h"
#include "base/ErrorClass.h"
#include "base/WithMemory.h"
#include "gfx/DefaultPaths.h"
#include "platform/WalkedFile.h"

#include <windows.h>

namespace {

/// Raises what is an error of the run and of no other object.
struct RunErrors : ErrorClass {
    RunErrors() { SetClassName("QSA2QSB"); }
};

} // namespace

static void RunSession()
{
    const auto run = [] {
        WalkedFile named("", "", gFilePattern); // if there are no graphics, nothing is converted
        StartGraphics();
        ReadDefaultPaths();
        named.Converted();
        ProcessFilePattern();
    };
    // Most of what a scene needs has its own message. By now the file that was in hand has been named.
    WithMemory(run,
               [] { RunErrors().Error("'%s': Not enough memory for the scene", gFilePattern); });
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
