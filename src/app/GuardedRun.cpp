#include "app/GuardedRun.h"

#include "app/MainWindow.h"
#include "app/StartGraphics.h"
#include "base/ErrorClass.h"
#include "base/KRE_Base.h"

#include <cstdio>
#include <windows.h>

/// Shuts down the graphics and shows the user what ended the run.
template <typename Record>
static int EndByError(const Record& error, const char* title)
{
    char text[sizeof error.source + sizeof error.message + 2];
    std::snprintf(text, sizeof text, "%s: %s", error.source, error.message);
    ShutdownGraphics();
    ShowCursor(TRUE);
    RedrawWindow(gMainWindow, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    MessageBoxA(gMainWindow, text, title, MB_OK);
    return kStatusFailed;
}

int RunGuarded(void (*work)())
{
    try {
        work();
    } catch (KRE_Error error) {
        return EndByError(error, "KRE Error (DirectX9)");
    } catch (ErrorMsg error) {
        return EndByError(error, "Error");
    }
    ShutdownGraphics();
    return kStatusNormal;
}
