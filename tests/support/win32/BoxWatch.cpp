#include "tests/support/BoxWatch.h"

#include "tools/win32/BoxAnswers.h"

#include <atomic>
#include <thread>

struct BoxWatch::State {
    std::atomic<bool> isOver = false;
    std::string report;
    std::thread watcher;
};

BoxWatch::BoxWatch() : state(std::make_unique<State>())
{
    state->watcher = std::thread([this] {
        while (!state->isOver) {
            state->report += AnswerOpenBoxes(GetCurrentProcessId());
            Sleep(5);
        }
    });
}

BoxWatch::~BoxWatch()
{
    if (state->watcher.joinable())
        Take();
}

std::string BoxWatch::Take()
{
    state->isOver = true;
    state->watcher.join();
    return state->report;
}
