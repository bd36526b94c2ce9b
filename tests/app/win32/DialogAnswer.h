#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <windows.h>

/// Answers the first dialog that this process shows, from a separate thread. `answer` is called in
/// that thread with the dialog's window until it returns true.
class DialogAnswer {
public:
    explicit DialogAnswer(std::function<bool(HWND dialog)> answer);
    /// Waits some seconds for the dialog at most; the test fails if there was none.
    ~DialogAnswer();
    DialogAnswer(const DialogAnswer&) = delete;
    DialogAnswer& operator=(const DialogAnswer&) = delete;

private:
    std::atomic<bool> isDone = false;
    std::thread watcher;
};

/// Types `path` into the name field of a file dialog and confirms it.
bool ConfirmFileDialog(HWND dialog, const std::string& path);
