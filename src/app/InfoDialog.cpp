#include "app/InfoDialog.h"

#include "app/MainWindow.h"
#include "app/resource.h"

void ShowInfoDialog(HWND owner)
{
    DialogBoxParamA(gInstance, MAKEINTRESOURCEA(RESOURCE_INFO_DIALOG), owner, InfoDialogProc, 0);
}

INT_PTR CALLBACK InfoDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG)
        return TRUE;
    const int id = LOWORD(wParam);
    if (message != WM_COMMAND || (id != IDOK && id != IDCANCEL))
        return FALSE;
    EndDialog(dialog, id);
    return TRUE;
}
