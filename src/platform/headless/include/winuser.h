#pragma once

// Windows, messages, message boxes, resources. A window is a record; its client area has the size
// of the window; the message queue holds only what `PostMessageA` put there.

#include "minwindef.h"

#define CS_VREDRAW 0x0001
#define CS_HREDRAW 0x0002
#define WS_OVERLAPPED 0x00000000
#define WS_POPUP 0x80000000u
#define WS_CAPTION 0x00C00000
#define WS_SYSMENU 0x00080000
#define WS_THICKFRAME 0x00040000
#define WS_MINIMIZEBOX 0x00020000
#define WS_MAXIMIZEBOX 0x00010000
#define WS_OVERLAPPEDWINDOW                                                                        \
    (WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX)
#define CW_USEDEFAULT (static_cast<int>(0x80000000u))
#define COLOR_WINDOW 5
#define SW_HIDE 0
#define SW_SHOWNORMAL 1
#define SW_SHOWDEFAULT 10

#define WM_NULL 0x0000
#define WM_CREATE 0x0001
#define WM_DESTROY 0x0002
#define WM_SIZE 0x0005
#define WM_ENABLE 0x000A
#define WM_PAINT 0x000F
#define WM_CLOSE 0x0010
#define WM_QUIT 0x0012
#define WM_ERASEBKGND 0x0014
#define WM_ACTIVATEAPP 0x001C
#define WM_KEYDOWN 0x0100
#define WM_KEYUP 0x0101
#define WM_CHAR 0x0102
#define WM_INITDIALOG 0x0110
#define WM_COMMAND 0x0111
#define WM_ENTERMENULOOP 0x0211
#define WM_EXITMENULOOP 0x0212
#define WM_ENTERSIZEMOVE 0x0231
#define WM_EXITSIZEMOVE 0x0232
#define WM_USER 0x0400
#define SIZE_RESTORED 0
#define SIZE_MINIMIZED 1
#define SIZE_MAXIMIZED 2
#define SIZE_MAXSHOW 3
#define SIZE_MAXHIDE 4

#define DT_CENTER 0x00000001
#define RDW_INVALIDATE 0x0001
#define RDW_ERASE 0x0004
#define RDW_ALLCHILDREN 0x0080
#define RDW_UPDATENOW 0x0100
#define PM_NOREMOVE 0x0000
#define PM_REMOVE 0x0001
#define MB_OK 0x00000000
#define IDOK 1
#define IDCANCEL 2

#define VK_CANCEL 0x03
#define VK_SHIFT 0x10
#define VK_CONTROL 0x11
#define VK_ESCAPE 0x1B
#define VK_PRIOR 0x21
#define VK_NEXT 0x22
#define VK_LEFT 0x25
#define VK_UP 0x26
#define VK_RIGHT 0x27
#define VK_DOWN 0x28
#define VK_SNAPSHOT 0x2C
#define VK_MULTIPLY 0x6A
#define VK_ADD 0x6B
#define VK_SUBTRACT 0x6D
#define VK_DIVIDE 0x6F

#define MAKEINTRESOURCEA(id)                                                                       \
    (reinterpret_cast<LPSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(id))))
#define IDC_ARROW MAKEINTRESOURCEA(32512)

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

struct WNDCLASSEXA {
    UINT cbSize;
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
    HICON hIconSm;
};

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};

struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};

ATOM WINAPI RegisterClassExA(const WNDCLASSEXA* windowClass);
BOOL WINAPI UnregisterClassA(LPCSTR className, HINSTANCE instance);
/// Sends `WM_CREATE` with an lParam of 0. Returns null if the procedure answers -1.
HWND WINAPI CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR title, DWORD style, int x,
                            int y, int width, int height, HWND parent, HMENU menu,
                            HINSTANCE instance, LPVOID parameter);
BOOL WINAPI DestroyWindow(HWND window);
BOOL WINAPI ShowWindow(HWND window, int showCommand);
BOOL WINAPI UpdateWindow(HWND window);
BOOL WINAPI IsWindow(HWND window);
BOOL WINAPI GetClientRect(HWND window, RECT* rectOut);
BOOL WINAPI GetWindowRect(HWND window, RECT* rectOut);
/// Sets the size in the record and sends `WM_SIZE`, as dragging the frame would.
BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL WINAPI SetWindowTextA(HWND window, LPCSTR title);
int WINAPI GetWindowTextA(HWND window, LPSTR buffer, int size);
/// `index` is `GWL_STYLE` or `GWL_EXSTYLE`.
LONG WINAPI GetWindowLongA(HWND window, int index);
HMENU WINAPI GetMenu(HWND window);
/// With `RDW_UPDATENOW` a window that needs painting is painted at once. There are no child
/// windows.
BOOL WINAPI RedrawWindow(HWND window, const RECT* rect, HRGN region, UINT flags);
int WINAPI ShowCursor(BOOL show);
#define GWL_STYLE (-16)
#define GWL_EXSTYLE (-20)

HDC WINAPI BeginPaint(HWND window, PAINTSTRUCT* paintOut);
BOOL WINAPI EndPaint(HWND window, const PAINTSTRUCT* paint);
int WINAPI DrawTextA(HDC context, LPCSTR text, int length, RECT* rect, UINT format);

LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void WINAPI PostQuitMessage(int exitCode);
BOOL WINAPI PeekMessageA(MSG* messageOut, HWND window, UINT first, UINT last, UINT remove);
/// Nothing else can post messages here, so waiting on an empty queue would never end: returns -1
/// instead.
BOOL WINAPI GetMessageA(MSG* messageOut, HWND window, UINT first, UINT last);
BOOL WINAPI TranslateMessage(const MSG* message);
LRESULT WINAPI DispatchMessageA(const MSG* message);

/// Writes title, line end, text and line end to standard error and returns `IDOK` at once. The
/// owner is disabled meanwhile and receives `WM_ENABLE`.
int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR title, UINT type);

/// Nobody can answer a dialog here: it is initialised (`WM_INITDIALOG`) and cancelled at once. The
/// resource is not read. The owner is disabled meanwhile. Returns the value passed to `EndDialog`,
/// or -1 if the procedure never calls it.
INT_PTR WINAPI DialogBoxParamA(HINSTANCE instance, LPCSTR name, HWND owner, DLGPROC procedure,
                               LPARAM parameter);
/// Fails for anything but a dialog being shown.
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result);

int WINAPI LoadStringA(HINSTANCE instance, UINT id, LPSTR buffer, int size);
HICON WINAPI LoadIconA(HINSTANCE instance, LPCSTR name);
HCURSOR WINAPI LoadCursorA(HINSTANCE instance, LPCSTR name);
