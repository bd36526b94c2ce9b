#include "app/MainWindow.h"

#include "app/MenuCommand.h"
#include "app/Options.h"
#include "app/resource.h"

char gWindowTitle[100];
char gWindowClassName[100];
HINSTANCE gInstance;
HWND gMainWindow;
int gClientWidth;
int gClientHeight;
int gWindowShown = 1;
int gAppActive = 1;
int gPaused;
int gWindowDestroyed;

namespace {

/// Style under /nr: no sizing border and no maximise box.
/// QUIRK: the bit of the minimise box stays set.
constexpr DWORD kFixedSizeStyle = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;

/// A system colour as a class's background brush is its number plus one.
HBRUSH SystemColorBrush(int color)
{
    return reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(color + 1));
}

/// The text is loaded here, not for each message: only painting shows it.
void PaintStartupText(HWND window)
{
    char text[100] = "";
    const int length = LoadStringA(gInstance, RESOURCE_STRING_STARTUP_TEXT, text, sizeof text);
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window, &paint);
    RECT rectangle;
    GetClientRect(window, &rectangle);
    DrawTextA(context, text, length, &rectangle, DT_CENTER);
    EndPaint(window, &paint);
}

} // namespace

void LoadWindowTexts(HINSTANCE instance)
{
    LoadStringA(instance, RESOURCE_STRING_WINDOW_TITLE, gWindowTitle, sizeof gWindowTitle);
    LoadStringA(instance, RESOURCE_STRING_WINDOW_CLASS, gWindowClassName, sizeof gWindowClassName);
}

void RegisterMainWindowClass(HINSTANCE instance)
{
    const bool hasMenu = !gNoMenu && gWindowed;
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = MainWindowProc;
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconA(instance, MAKEINTRESOURCEA(RESOURCE_ICON_MAIN));
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = SystemColorBrush(COLOR_WINDOW);
    windowClass.lpszMenuName = hasMenu ? MAKEINTRESOURCEA(RESOURCE_MENU) : nullptr;
    windowClass.lpszClassName = gWindowClassName;
    windowClass.hIconSm = LoadIconA(instance, MAKEINTRESOURCEA(RESOURCE_ICON_SMALL));
    RegisterClassExA(&windowClass);
}

int CreateMainWindow(HINSTANCE instance, int showCommand)
{
    gInstance = instance;
    DWORD style = 0;
    if (gWindowed)
        style = gNoResize ? kFixedSizeStyle : WS_OVERLAPPEDWINDOW;
    const int width = gWindowed ? gResX : CW_USEDEFAULT;
    const int height = gWindowed ? gResY : 0;
    gMainWindow = CreateWindowExA(0, gWindowClassName, gWindowTitle, style, CW_USEDEFAULT, 0, width,
                                  height, nullptr, nullptr, instance, nullptr);
    if (gMainWindow == nullptr)
        return 0;
    ShowWindow(gMainWindow, showCommand);
    UpdateWindow(gMainWindow);
    UpdateClientSize();
    return 1;
}

void UpdateClientSize()
{
    RECT client = {};
    GetClientRect(gMainWindow, &client);
    gClientWidth = static_cast<int>(client.right - client.left);
    gClientHeight = static_cast<int>(client.bottom - client.top);
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_DESTROY:
        gWindowDestroyed = 1;
        PostQuitMessage(0);
        return 0;
    case WM_SIZE:
        gWindowShown = wParam != SIZE_MAXHIDE && wParam != SIZE_MINIMIZED;
        UpdateClientSize();
        return 0;
    case WM_PAINT:
        PaintStartupText(window);
        return 0;
    case WM_ACTIVATEAPP:
        gAppActive = static_cast<int>(wParam);
        return 0;
    case WM_ENTERMENULOOP:
    case WM_ENTERSIZEMOVE:
        gPaused = 1;
        return 0;
    case WM_EXITMENULOOP:
    case WM_EXITSIZEMOVE:
        gPaused = 0;
        return 0;
    case WM_COMMAND:
        if (DoMenuCommand(window, LOWORD(wParam)))
            return 0;
        break;
    default:
        break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}
