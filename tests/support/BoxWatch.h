#pragma once

#include <memory>
#include <string>

/// Answers the message boxes that this process itself shows while the object lives (OK; file dialogs
/// are cancelled) and notes what they said.
class BoxWatch {
public:
    BoxWatch();
    ~BoxWatch();
    BoxWatch(const BoxWatch&) = delete;
    BoxWatch& operator=(const BoxWatch&) = delete;

    /// Title, line end, text and line end of each box so far. Ends the watch; call it once.
    std::string Take();

private:
    struct State;
    std::unique_ptr<State> state;
};
