#include "tests/app/WatchedWindow.h"

#include <algorithm>
#include <utility>

namespace {

constexpr char kClassName[] = "QSA2QSB_WATCHED_WINDOW";

WatchedWindow* gWatched = nullptr;

void Paint(HWND window)
{
    PAINTSTRUCT paint;
    BeginPaint(window, &paint);
    EndPaint(window, &paint);
}

} // namespace

WatchedWindow::WatchedWindow(std::function<std::string()> whatIsSo) : state(std::move(whatIsSo))
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = kClassName;
    RegisterClassExA(&windowClass);
    window = CreateWindowExA(0, kClassName, "watched", WS_POPUP, 0, 0, 64, 64, nullptr, nullptr,
                             windowClass.hInstance, nullptr);
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window); // nothing is left to paint
    gWatched = this;
}

WatchedWindow::~WatchedWindow()
{
    gWatched = nullptr;
    DestroyWindow(window);
    UnregisterClassA(kClassName, GetModuleHandleA(nullptr));
}

LRESULT CALLBACK WatchedWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_PAINT)
        Paint(window); // asks for the background to be erased
    if (gWatched != nullptr) {
        if (message == WM_PAINT)
            gWatched->Note("painted");
        if (message == WM_ERASEBKGND)
            gWatched->Note("erased");
        if (message == WM_ENABLE)
            gWatched->Note(wParam != FALSE ? "enabled" : "disabled");
    }
    return message == WM_PAINT ? 0 : DefWindowProcA(window, message, wParam, lParam);
}

void WatchedWindow::Note(const char* word)
{
    notes.push_back(word + (state ? ": " + state() : std::string()));
}

std::vector<std::string> WatchedWindow::UntilDisabled() const
{
    auto end = std::find_if(notes.begin(), notes.end(),
                            [](const std::string& note) { return note.starts_with("disabled"); });
    return {notes.begin(), end == notes.end() ? end : end + 1};
}

int WatchedWindow::Count(const std::string& word) const
{
    return static_cast<int>(
        std::count_if(notes.begin(), notes.end(),
                      [&word](const std::string& note) { return note.starts_with(word); }));
}
