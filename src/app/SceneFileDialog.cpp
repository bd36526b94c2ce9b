#include "app/SceneFileDialog.h"

#include "app/Options.h"

#include <windows.h>

#include <commdlg.h>

bool AskForSceneFile()
{
    gFilePattern[0] = '\0';
    OPENFILENAMEA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.lpstrFilter = "QSA file\0*.QSA\0";
    dialog.lpstrFile = gFilePattern;
    dialog.nMaxFile = sizeof gFilePattern - 1;
    dialog.Flags = OFN_FILEMUSTEXIST | OFN_READONLY;
    return GetOpenFileNameA(&dialog) != FALSE;
}
