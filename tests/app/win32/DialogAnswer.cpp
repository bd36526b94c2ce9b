#include "tests/app/win32/DialogAnswer.h"

#include <gtest/gtest.h>

namespace {

constexpr int kFileNameField = 0x47C; // the name field of a file dialog
constexpr int kTries = 3000;          // of 10 ms each: far more than any dialog takes

HWND FindOwnDialog()
{
    HWND dialog = nullptr;
    while ((dialog = FindWindowExA(nullptr, dialog, "#32770", nullptr)) != nullptr) {
        DWORD owner = 0;
        GetWindowThreadProcessId(dialog, &owner);
        if (owner == GetCurrentProcessId() && IsWindowVisible(dialog))
            return dialog;
    }
    return nullptr;
}

} // namespace

DialogAnswer::DialogAnswer(std::function<bool(HWND dialog)> answer)
    : watcher([this, answer] {
          for (int i = 0; i < kTries && !isDone; ++i, Sleep(10)) {
              const HWND dialog = FindOwnDialog();
              isDone = dialog != nullptr && answer(dialog);
          }
      })
{}

DialogAnswer::~DialogAnswer()
{
    watcher.join();
    EXPECT_TRUE(isDone) << "no dialog was shown";
}

bool ConfirmFileDialog(HWND dialog, const std::string& path)
{
    const HWND name = GetDlgItem(dialog, kFileNameField);
    if (name == nullptr)
        return false;
    SendMessageA(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    return PostMessageA(dialog, WM_COMMAND, IDOK, 0) != FALSE;
}
