#include "platform/headless/win32/LastError.h"

#include <deque>

namespace headless {

static std::deque<MSG> gQueue;

} // namespace headless

using namespace headless;

BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    gQueue.push_back({window, message, wParam, lParam, 0, {}});
    return TRUE;
}

void WINAPI PostQuitMessage(int exitCode)
{
    PostMessageA(nullptr, WM_QUIT, static_cast<WPARAM>(exitCode), 0);
}

BOOL WINAPI PeekMessageA(MSG* messageOut, HWND, UINT, UINT, UINT remove)
{
    if (gQueue.empty())
        return FALSE;
    *messageOut = gQueue.front();
    if ((remove & PM_REMOVE) != 0)
        gQueue.pop_front();
    return TRUE;
}

BOOL WINAPI GetMessageA(MSG* messageOut, HWND window, UINT first, UINT last)
{
    if (!PeekMessageA(messageOut, window, first, last, PM_REMOVE)) {
        FailWith(ERROR_INVALID_HANDLE);
        return -1;
    }
    return messageOut->message != WM_QUIT;
}

/// UNMODELLED: keyboard layouts. Only Escape, whose code is its character in all of them, produces
/// a character.
BOOL WINAPI TranslateMessage(const MSG* message)
{
    if (message->message != WM_KEYDOWN)
        return message->message == WM_KEYUP;
    if (message->wParam == VK_ESCAPE)
        PostMessageA(message->hwnd, WM_CHAR, message->wParam, message->lParam);
    return TRUE;
}

LRESULT WINAPI DispatchMessageA(const MSG* message)
{
    return SendMessageA(message->hwnd, message->message, message->wParam, message->lParam);
}
