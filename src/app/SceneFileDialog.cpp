#include "app/SceneFileDialog.h"

#include "app/Options.h"

#include <windows.h>

#include <commdlg.h>

/// A dialog that fills `gFilePattern`, which is emptied first.
static OPENFILENAMEA MakeFileDialog(const char* filter, DWORD flags)
{
    gFilePattern[0] = '\0';
    OPENFILENAMEA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.lpstrFilter = filter;
    dialog.lpstrFile = gFilePattern;
    dialog.nMaxFile = sizeof gFilePattern - 1;
    dialog.Flags = flags;
    return dialog;
}

bool AskForSceneFile()
{
    OPENFILENAMEA dialog = MakeFileDialog("QSA file\0*.QSA\0", OFN_FILEMUSTEXIST | OFN_READONLY);
    return GetOpenFileNameA(&dialog) != FALSE;
}

bool AskForTargetFile()
{
    OPENFILENAMEA dialog = MakeFileDialog("QSB file\0*.QSB\0", 0);
    return GetSaveFileNameA(&dialog) != FALSE;
}
