#include "platform/headless/win32/DesktopControl.h"
#include "platform/headless/win32/HostPath.h"
#include "platform/headless/win32/LastError.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace headless;

// A window is a record and its handle is the record's address. The record lives until the window is
// destroyed; a handle that is not in the list is refused as Windows refuses a stale one.

struct HWND__ {
    std::string title;
    WNDPROC procedure;
    HMENU menu;
    DWORD style;
    DWORD extendedStyle;
    LONG width;
    LONG height;
    bool needsPaint;
    bool needsErase;
};

namespace headless {

namespace {

constexpr LONG kDefaultWidth = 640;
constexpr LONG kDefaultHeight = 480;

struct WindowClass {
    std::string name;
    WNDPROC procedure;
    HMENU menu;
};

std::vector<WindowClass> gClasses;
std::vector<std::unique_ptr<HWND__>> gWindows;
int gCursorShowCount = 0;
UINT gLastRedrawFlags = 0;

auto FindClass(const char* name)
{
    return std::find_if(gClasses.begin(), gClasses.end(), [name](const WindowClass& c) {
        return SameNameIgnoringCase(c.name.c_str(), name);
    });
}

auto FindWindowRecord(HWND window)
{
    return std::find_if(gWindows.begin(), gWindows.end(),
                        [window](const auto& record) { return record.get() == window; });
}

} // namespace

} // namespace headless

ATOM WINAPI RegisterClassExA(const WNDCLASSEXA* windowClass)
{
    if (windowClass->cbSize != sizeof(WNDCLASSEXA) || windowClass->lpfnWndProc == nullptr) {
        FailWith(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (FindClass(windowClass->lpszClassName) != gClasses.end())
        return 0;
    // The menu resource is not examined; the handle only records that there is a menu.
    const auto menu = reinterpret_cast<HMENU>(const_cast<char*>(windowClass->lpszMenuName));
    gClasses.push_back({windowClass->lpszClassName, windowClass->lpfnWndProc, menu});
    return static_cast<ATOM>(0xC000 + gClasses.size());
}

BOOL WINAPI UnregisterClassA(LPCSTR className, HINSTANCE)
{
    const auto found = FindClass(className);
    if (found == gClasses.end())
        return FailWith(ERROR_INVALID_PARAMETER);
    gClasses.erase(found);
    return TRUE;
}

HWND WINAPI CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR title, DWORD style, int x,
                            int, int width, int height, HWND, HMENU menu, HINSTANCE, LPVOID)
{
    const auto found = FindClass(className);
    if (found == gClasses.end()) {
        FailWith(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    static_cast<void>(x); // a record has no position on a screen
    const bool isDefaultSize = width == CW_USEDEFAULT;
    auto window = std::make_unique<HWND__>();
    window->title = title;
    window->procedure = found->procedure;
    window->menu = menu != nullptr ? menu : found->menu;
    window->style = style;
    window->extendedStyle = extendedStyle;
    window->width = isDefaultSize ? kDefaultWidth : std::max(width, 0);
    window->height = isDefaultSize ? kDefaultHeight : std::max(height, 0);
    gWindows.push_back(std::move(window));
    const HWND handle = gWindows.back().get();
    if (SendMessageA(handle, WM_CREATE, 0, 0) == -1) {
        DestroyWindow(handle);
        return nullptr;
    }
    return IsWindow(handle) ? handle : nullptr;
}

BOOL WINAPI DestroyWindow(HWND window)
{
    if (!IsWindow(window))
        return FailWith(ERROR_INVALID_HANDLE);
    SendMessageA(window, WM_DESTROY, 0, 0);
    // The procedure may have destroyed the window already.
    if (const auto record = FindWindowRecord(window); record != gWindows.end())
        gWindows.erase(record);
    return TRUE;
}

BOOL WINAPI IsWindow(HWND window)
{
    return FindWindowRecord(window) != gWindows.end();
}

BOOL WINAPI ShowWindow(HWND window, int)
{
    return IsWindow(window) ? FALSE : FailWith(ERROR_INVALID_HANDLE);
}

BOOL WINAPI UpdateWindow(HWND window)
{
    return IsWindow(window) ? TRUE : FailWith(ERROR_INVALID_HANDLE);
}

BOOL WINAPI RedrawWindow(HWND window, const RECT*, HRGN, UINT flags)
{
    gLastRedrawFlags = flags;
    if (!IsWindow(window))
        return FailWith(ERROR_INVALID_HANDLE);
    if ((flags & RDW_INVALIDATE) != 0) {
        window->needsPaint = true;
        window->needsErase = window->needsErase || (flags & RDW_ERASE) != 0;
    }
    if ((flags & RDW_UPDATENOW) != 0 && window->needsPaint)
        SendMessageA(window, WM_PAINT, 0, 0);
    return TRUE;
}

UINT headless::LastRedrawFlags()
{
    return gLastRedrawFlags;
}

BOOL WINAPI GetClientRect(HWND window, RECT* rectOut)
{
    if (!IsWindow(window))
        return FailWith(ERROR_INVALID_HANDLE);
    *rectOut = {0, 0, window->width, window->height};
    return TRUE;
}

BOOL WINAPI GetWindowRect(HWND window, RECT* rectOut)
{
    return GetClientRect(window, rectOut);
}

BOOL WINAPI MoveWindow(HWND window, int, int, int width, int height, BOOL)
{
    if (!IsWindow(window))
        return FailWith(ERROR_INVALID_HANDLE);
    window->width = std::max(width, 0);
    window->height = std::max(height, 0);
    const auto size = static_cast<LPARAM>(window->height << 16 | (window->width & 0xFFFF));
    SendMessageA(window, WM_SIZE, SIZE_RESTORED, size);
    return TRUE;
}

BOOL WINAPI SetWindowTextA(HWND window, LPCSTR title)
{
    if (!IsWindow(window))
        return FailWith(ERROR_INVALID_HANDLE);
    window->title = title;
    return TRUE;
}

int WINAPI GetWindowTextA(HWND window, LPSTR buffer, int size)
{
    if (!IsWindow(window) || size <= 0)
        return 0;
    const size_t length = std::min(window->title.size(), static_cast<size_t>(size) - 1);
    std::memcpy(buffer, window->title.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

LONG WINAPI GetWindowLongA(HWND window, int index)
{
    if (!IsWindow(window))
        return 0;
    if (index == GWL_STYLE)
        return static_cast<LONG>(window->style);
    return index == GWL_EXSTYLE ? static_cast<LONG>(window->extendedStyle) : 0;
}

HMENU WINAPI GetMenu(HWND window)
{
    return IsWindow(window) ? window->menu : nullptr;
}

int WINAPI ShowCursor(BOOL show)
{
    gCursorShowCount += show ? 1 : -1;
    return gCursorShowCount;
}

// Painting has no effect: a window shows nothing until the device presents.

HDC WINAPI BeginPaint(HWND window, PAINTSTRUCT* paintOut)
{
    *paintOut = {};
    if (!GetClientRect(window, &paintOut->rcPaint))
        return nullptr;
    window->needsPaint = false;
    if (std::exchange(window->needsErase, false))
        SendMessageA(window, WM_ERASEBKGND, 0, 0);
    return nullptr;
}

BOOL WINAPI EndPaint(HWND window, const PAINTSTRUCT*)
{
    return IsWindow(window);
}

int WINAPI DrawTextA(HDC, LPCSTR, int, RECT*, UINT)
{
    return 0;
}

LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM, LPARAM)
{
    if (message == WM_CLOSE)
        DestroyWindow(window);
    return 0;
}

LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return IsWindow(window) ? window->procedure(window, message, wParam, lParam) : 0;
}
