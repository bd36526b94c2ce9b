#pragma once

#include <functional>
#include <string>
#include <vector>
#include <windows.h>

/// A shown window of the test's own that notes what the system tells it: "erased", "painted", and
/// "disabled" and "enabled" by a box or dialog that it owns. One at a time.
class WatchedWindow {
public:
    /// `whatIsSo` tells what holds at each message; it is noted behind it.
    explicit WatchedWindow(std::function<std::string()> whatIsSo = {});
    ~WatchedWindow();
    WatchedWindow(const WatchedWindow&) = delete;
    WatchedWindow& operator=(const WatchedWindow&) = delete;

    HWND Handle() const { return window; }

    /// What was noted up to the first "disabled", which is the last then; all if there is none. A box
    /// that goes away may have what lay behind it painted anew.
    std::vector<std::string> UntilDisabled() const;
    /// How often a note begins with this word.
    int Count(const std::string& word) const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Note(const char* word);

    std::function<std::string()> state;
    std::vector<std::string> notes;
    HWND window = nullptr; // owned
};
