#pragma once

#include <functional>
#include <string>
#include <vector>
#include <windows.h>

/// A visible window of the test that records its messages: "erased", "painted", and
/// "disabled" and "enabled" by a box or dialog that it owns. One at a time.
class WatchedWindow {
public:
    /// `whatIsSo` returns the state at each message; it is recorded after the message.
    explicit WatchedWindow(std::function<std::string()> whatIsSo = {});
    ~WatchedWindow();
    WatchedWindow(const WatchedWindow&) = delete;
    WatchedWindow& operator=(const WatchedWindow&) = delete;

    HWND Handle() const { return window; }

    /// The record up to and including the first "disabled"; all of it if there is none. A box that closes
    /// may cause the window behind it to be painted again.
    std::vector<std::string> UntilDisabled() const;
    /// How many records begin with this word.
    int Count(const std::string& word) const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Note(const char* word);

    std::function<std::string()> state;
    std::vector<std::string> notes;
    HWND window = nullptr; // owned
};
