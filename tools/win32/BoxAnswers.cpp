#include "tools/win32/BoxAnswers.h"

#include <set>

namespace {

constexpr const char* kDialogClass = "#32770";
constexpr int kBoxText = 0xFFFF;      // the text control of a message box
constexpr int kFileNameField = 0x47C; // the name field of a file dialog

/// Boxes that were answered and may take a moment to close.
std::set<HWND> gAnswered;

std::string ControlText(HWND box, int control)
{
    char text[8192] = "";
    GetDlgItemTextA(box, control, text, sizeof text);
    return text;
}

std::string AnswerBox(HWND box)
{
    if (GetDlgItem(box, kFileNameField) != nullptr) {
        PostMessageA(box, WM_COMMAND, IDCANCEL, 0);
        return {};
    }
    char title[1024] = "";
    GetWindowTextA(box, title, sizeof title);
    const std::string report = std::string(title) + "\n" + ControlText(box, kBoxText) + "\n";
    PostMessageA(box, WM_COMMAND, IDOK, 0);
    return report;
}

} // namespace

std::string AnswerOpenBoxes(DWORD processId)
{
    std::string report;
    HWND box = nullptr;
    while ((box = FindWindowExA(nullptr, box, kDialogClass, nullptr)) != nullptr) {
        DWORD owner = 0;
        GetWindowThreadProcessId(box, &owner);
        if (owner == processId && IsWindowVisible(box) && gAnswered.insert(box).second)
            report += AnswerBox(box);
    }
    return report;
}
