#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <windows.h>

/// Answers the first dialog that this process shows, from a thread of its own. `answer` is called in
/// that thread with the dialog's window until it gives true.
class DialogAnswer {
public:
    explicit DialogAnswer(std::function<bool(HWND dialog)> answer);
    /// Waits for the dialog, but no longer than some seconds; the test fails if there was none.
    ~DialogAnswer();
    DialogAnswer(const DialogAnswer&) = delete;
    DialogAnswer& operator=(const DialogAnswer&) = delete;

private:
    std::atomic<bool> isDone = false;
    std::thread watcher;
};

/// Types `path` as the name into a file dialog and confirms it.
bool ConfirmFileDialog(HWND dialog, const std::string& path);
