#include "tools/win32/FrameHold.h"

#include <cstdio>
#include <utility>

namespace {

constexpr const char* kDialogClass = "#32770";
constexpr UINT kAnswerTime = 50;   // milliseconds
constexpr DWORD kSettleTime = 300; // milliseconds until a presented frame is on the screen

std::string TitleOf(HWND window)
{
    char title[1024] = "";
    GetWindowTextA(window, title, sizeof title);
    return title;
}

/// A thread that answers in time is processing its messages.
bool IsAnswering(HWND window)
{
    DWORD_PTR ignored = 0;
    return SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_NORMAL, kAnswerTime, &ignored) != 0;
}

} // namespace

FrameHold::FrameHold(std::string placeFileName) : placeFile(std::move(placeFileName))
{}

void FrameHold::Step(DWORD processId)
{
    switch (state) {
    case State::NoWindow:
        FindWindowOf(processId);
        break;
    case State::Loading:
        WaitForFrame();
        break;
    case State::Shown:
        if (GetFileAttributesA(placeFile.c_str()) == INVALID_FILE_ATTRIBUTES) {
            PostMessageA(window, WM_ACTIVATEAPP, 1, 0);
            state = State::Done;
        }
        break;
    case State::Done:
        break;
    }
}

void FrameHold::FindWindowOf(DWORD processId)
{
    for (HWND found = nullptr;
         (found = FindWindowExA(nullptr, found, nullptr, nullptr)) != nullptr;) {
        char className[64] = "";
        DWORD owner = 0;
        GetWindowThreadProcessId(found, &owner);
        GetClassNameA(found, className, sizeof className);
        if (owner != processId || !IsWindowVisible(found) || std::string(className) == kDialogClass)
            continue;
        window = found;
        startTitle = TitleOf(found);
        PostMessageA(found, WM_ACTIVATEAPP, 0, 0); // taken from the queue after the first frame
        state = State::Loading;
        return;
    }
}

/// The title becomes the scene's name once it is loaded; messages are handled after its frame.
void FrameHold::WaitForFrame()
{
    if (TitleOf(window) == startTitle || !IsAnswering(window))
        return;
    Sleep(kSettleTime);
    if (IsAnswering(window))
        state = WritePlace() ? State::Shown : State::Done;
    if (state == State::Done)
        PostMessageA(window, WM_ACTIVATEAPP, 1, 0);
}

bool FrameHold::WritePlace() const
{
    RECT place = {};
    std::FILE* file = GetWindowRect(window, &place) ? std::fopen(placeFile.c_str(), "w") : nullptr;
    if (!file)
        return false;
    std::fprintf(file, "%ldx%ld+%ld+%ld\n", place.right - place.left, place.bottom - place.top,
                 place.left, place.top);
    return std::fclose(file) == 0;
}
