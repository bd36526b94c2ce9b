#include "app/GuardedRun.h"

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "gfx/KRE_Gfx.h"
#include "tests/support/BoxWatch.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>

namespace {

class Foundation : public ErrorClass {
public:
    Foundation() { SetClassName("Foundation"); }
};

class Engine : public KRE_Base {
public:
    Engine() { SetClassName("Engine"); }
};

} // namespace

TEST(RunGuarded, NormalEndIsOneWithoutABox)
{
    BoxWatch boxes;
    EXPECT_EQ(RunGuarded([] {}), 1);
    EXPECT_EQ(boxes.Take(), "");
}

TEST(RunGuarded, FoundationErrorEndsTheRunWithItsBox)
{
    const ScratchDirectory scratch; // the log is written here
    BoxWatch boxes;
    EXPECT_EQ(RunGuarded([] { Foundation().Error("number %i", 7); }), 0);
    EXPECT_EQ(boxes.Take(), "Error\nFoundation: number 7\n");
}

TEST(RunGuarded, EngineErrorEndsTheRunWithItsBox)
{
    const ScratchDirectory scratch;
    BoxWatch boxes;
    EXPECT_EQ(RunGuarded([] { Engine().Error("number %i", 7); }), 0);
    EXPECT_EQ(boxes.Take(), "KRE Error (DirectX9)\nEngine: number 7\n");
}

TEST(RunGuarded, GraphicsAreShutDownOnEveryWayOut)
{
    const ScratchDirectory scratch;
    BoxWatch boxes;
    RunGuarded([] { gGfx = new KRE_Gfx; });
    EXPECT_EQ(gGfx, nullptr);
    RunGuarded([] {
        gGfx = new KRE_Gfx;
        Foundation().Error("number %i", 7);
    });
    EXPECT_EQ(gGfx, nullptr);
}
