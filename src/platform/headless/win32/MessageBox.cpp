#include "platform/headless/win32/DesktopControl.h"

#include <cstdio>
#include <utility>

namespace headless {

static FileDialogAnswer gFileDialogAnswer;

void AnswerFileDialogs(FileDialogAnswer answer)
{
    gFileDialogAnswer = std::move(answer);
}

} // namespace headless

using namespace headless;

int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR title, UINT)
{
    SendMessageA(owner, WM_ENABLE, FALSE, 0);
    // Earlier output on standard output must appear before the box.
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n%s\n", title, text);
    SendMessageA(owner, WM_ENABLE, TRUE, 0);
    return IDOK;
}

BOOL WINAPI GetOpenFileNameA(OPENFILENAMEA* dialog)
{
    return gFileDialogAnswer ? gFileDialogAnswer("GetOpenFileName", *dialog) : FALSE;
}

BOOL WINAPI GetSaveFileNameA(OPENFILENAMEA* dialog)
{
    return gFileDialogAnswer ? gFileDialogAnswer("GetSaveFileName", *dialog) : FALSE;
}
