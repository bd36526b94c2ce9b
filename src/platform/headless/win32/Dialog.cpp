#include "platform/headless/win32/DesktopControl.h"
#include "platform/headless/win32/LastError.h"

#include <windows.h>

#include <optional>

namespace headless {

namespace {

/// A dialog while its procedure runs; its address is its handle.
struct ShownDialog {
    ShownDialog* outer; // dialogs may be shown from dialogs
    std::optional<INT_PTR> result;
};

ShownDialog* gInnermost = nullptr;
WORD gLastResource = 0;

/// Removes the dialog from the list on every exit: the procedure may throw.
class DialogScope {
public:
    DialogScope() { gInnermost = &dialog; }
    ~DialogScope() { gInnermost = dialog.outer; }
    DialogScope(const DialogScope&) = delete;
    DialogScope& operator=(const DialogScope&) = delete;

    ShownDialog dialog{gInnermost, std::nullopt};
};

} // namespace

} // namespace headless

using namespace headless;

INT_PTR WINAPI DialogBoxParamA(HINSTANCE, LPCSTR name, HWND owner, DLGPROC procedure,
                               LPARAM parameter)
{
    if (procedure == nullptr) {
        FailWith(ERROR_INVALID_PARAMETER);
        return -1;
    }
    gLastResource = LOWORD(reinterpret_cast<ULONG_PTR>(name));
    SendMessageA(owner, WM_ENABLE, FALSE, 0);
    DialogScope scope;
    const auto handle = reinterpret_cast<HWND>(&scope.dialog);
    procedure(handle, WM_INITDIALOG, 0, parameter);
    if (!scope.dialog.result)
        procedure(handle, WM_COMMAND, IDCANCEL, 0);
    SendMessageA(owner, WM_ENABLE, TRUE, 0);
    return scope.dialog.result.value_or(-1);
}

WORD headless::LastDialogResource()
{
    return gLastResource;
}

BOOL WINAPI EndDialog(HWND dialog, INT_PTR result)
{
    for (ShownDialog* shown = gInnermost; shown != nullptr; shown = shown->outer) {
        if (reinterpret_cast<HWND>(shown) != dialog)
            continue;
        shown->result = result;
        return TRUE;
    }
    return FailWith(ERROR_INVALID_HANDLE);
}
