#include "app/GuardedRun.h"

#include "app/MainWindow.h"
#include "app/StartGraphics.h"
#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/WatchedWindow.h"
#include "tests/support/BoxWatch.h"
#include "tests/support/ScratchDirectory.h"

#include <gmock/gmock.h>
#include <string>

namespace {

class Foundation : public ErrorClass {
public:
    Foundation() { SetClassName("Foundation"); }
};

class GuardedEngine : public KRE_Base {
public:
    GuardedEngine() { SetClassName("Engine"); }
};

/// How often the cursor was shown, minus how often it was hidden, counted by the calls.
int CursorShowCount()
{
    ShowCursor(TRUE);
    return ShowCursor(FALSE);
}

} // namespace

TEST(GuardedRun, NormalEndIsOneWithoutABox)
{
    BoxWatch boxes;
    EXPECT_EQ(RunGuarded([] {}), 1);
    EXPECT_EQ(boxes.Take(), "");
}

TEST(GuardedRun, FoundationErrorEndsTheRunWithItsBox)
{
    const ScratchDirectory scratch; // the log is written here
    BoxWatch boxes;
    EXPECT_EQ(RunGuarded([] { Foundation().Error("number %i", 7); }), 0);
    EXPECT_EQ(boxes.Take(), "Error\nFoundation: number 7\n");
}

TEST(GuardedRun, EngineErrorEndsTheRunWithItsBox)
{
    const ScratchDirectory scratch;
    BoxWatch boxes;
    EXPECT_EQ(RunGuarded([] { GuardedEngine().Error("number %i", 7); }), 0);
    EXPECT_EQ(boxes.Take(), "KRE Error (DirectX9)\nEngine: number 7\n");
}

// Records hold labels of 31 and messages of 1023 bytes.
TEST(GuardedRun, LongestLabelAndMessageAreShownWhole)
{
    const ScratchDirectory scratch;
    static const std::string label = std::string(30, 'l') + '$';
    static const std::string message = std::string(1022, 'm') + '$';
    const struct {
        const char* title;
        void (*end)();
    } cases[] = {
        {"Error",
         [] {
             Foundation failing;
             failing.SetClassName(label.c_str());
             failing.Error("%s", message.c_str());
         }},
        {"KRE Error (DirectX9)",
         [] {
             GuardedEngine failing;
             failing.SetClassName(label.c_str());
             failing.Error("%s", message.c_str());
         }},
    };
    for (const auto& c : cases) {
        BoxWatch boxes;
        EXPECT_EQ(RunGuarded(c.end), 0);
        EXPECT_EQ(boxes.Take(), std::string(c.title) + "\n" + label + ": " + message + "\n");
    }
}

TEST(GuardedRun, GraphicsAreShutDownOnEveryWayOut)
{
    const ScratchDirectory scratch;
    BoxWatch boxes;
    RunGuarded([] { MakeEngine(); });
    EXPECT_EQ(gGfx, nullptr);
    RunGuarded([] {
        MakeEngine();
        Foundation().Error("number %i", 7);
    });
    EXPECT_EQ(gGfx, nullptr);
}

// When the box appears, the engine is destroyed, the cursor is shown again and the
// window has been erased and painted.
TEST(GuardedRun, BoxComesLastAndBelongsToTheWindow)
{
    const ScratchDirectory scratch;
    void (*const ends[])() = {[] { Foundation().Error("number %i", 7); },
                              [] { GuardedEngine().Error("number %i", 7); }};
    for (const auto& end : ends) {
        const int before = CursorShowCount();
        const WatchedWindow window([before] {
            return (gGfx == nullptr ? "no engine, cursor " : "engine, cursor ") +
                   std::to_string(CursorShowCount() - before);
        });
        gMainWindow = window.Handle();
        MakeEngine();
        {
            const BoxWatch boxes;
            EXPECT_EQ(RunGuarded(end), 0);
        }
        EXPECT_THAT(window.UntilDisabled(), testing::ElementsAre("erased: no engine, cursor 1",
                                                                 "painted: no engine, cursor 1",
                                                                 "disabled: no engine, cursor 1"));
        gMainWindow = nullptr;
        ShowCursor(FALSE);
    }
}

TEST(GuardedRun, NormalEndLeavesCursorAndWindowAlone)
{
    const int before = CursorShowCount();
    const WatchedWindow window;
    gMainWindow = window.Handle();
    EXPECT_EQ(RunGuarded([] {}), 1);
    gMainWindow = nullptr;
    EXPECT_EQ(CursorShowCount(), before);
    EXPECT_THAT(window.UntilDisabled(), testing::IsEmpty());
}
