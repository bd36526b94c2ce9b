#include "app/ProcessFile.h"
#include "app/StartGraphics.h"
#include "gfx/KRE_Gfx.h"
#include "platform/headless/d3d9/TestControl.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/ScratchWalk.h"
#include "tests/support/RecordingDirect3D.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>

using namespace headless;

namespace {

class DeviceLife : public testing::Test {
protected:
    DeviceLife()
    {
        scratch.Write("boat.qsa", kWalkScene);
        scratch.Write("cleat.qsa", kWalkScene);
    }

    const ScratchDirectory scratch; // the log is written here
};

RecordingDirect3D* gFailing; // given to the next engine; not owned

IDirect3D9* GiveFailing(UINT)
{
    gFailing->AddRef();
    return gFailing;
}

constexpr KRE_GfxRuntime kFailingRuntime = {[](const char*) { return true; }, GiveFailing};

/// The window of the program that took the display: its message returns it.
LRESULT CALLBACK GiveDisplayBack(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_USER)
        SimulateDeviceRestorable(gGfx->device.Get());
    return DefWindowProcA(window, message, wParam, lParam);
}

HWND CreateOtherWindow()
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = GiveDisplayBack;
    windowClass.lpszClassName = "QSA2QSB_OTHER_PROGRAM";
    RegisterClassExA(&windowClass);
    return CreateWindowExA(0, windowClass.lpszClassName, "other", WS_POPUP, 0, 0, 8, 8, nullptr,
                           nullptr, nullptr, nullptr);
}

} // namespace

TEST_F(DeviceLife, ShutdownLeavesNothingAlive)
{
    EXPECT_EQ(LiveObjectReport(), "");
    {
        const ScratchEngine engine("");
        ProcessFile("boat.qsa", 1);
        EXPECT_NE(LiveObjectReport(), "");
        gGfx->ResetDevice(nullptr);
        ShutdownGraphics();
        EXPECT_EQ(LiveObjectReport(), "");
    }
    EXPECT_EQ(TakeLeakReport(), "");
}

TEST_F(DeviceLife, FailedStartLeavesNothingAlive)
{
    const ScratchEngine engine("");
    ShutdownGraphics();
    for (const char* call :
         {"CreateDevice", "GetBackBuffer", "CreateVertexBuffer", "SetTransform"}) {
        const ComHandle<RecordingDirect3D> failing = RecordingDirect3D::WrapReal();
        failing->FailNext(call, D3DERR_INVALIDCALL);
        gFailing = failing.get();
        EXPECT_THROW(StartGraphics(SettingsFromOptions(), kFailingRuntime), KRE_Error) << call;
        ShutdownGraphics();
        EXPECT_EQ(LiveObjectReport(), "1 interface") << call << ": the test's own is left";
        EXPECT_EQ(failing->Recorder()->FailuresLeft(), 0u) << call;
    }
    EXPECT_EQ(LiveObjectReport(), "");
    EXPECT_EQ(TakeLeakReport(), "");
}

TEST_F(DeviceLife, LostDeviceIsWaitedForAndFilesGoOn)
{
    const ScratchEngine engine("");
    const HWND other = CreateOtherWindow();
    ProcessFile("boat.qsa", 1);
    SimulateDeviceLost(gGfx->device.Get());
    PostMessageA(other, WM_NULL, 0, 0);
    PostMessageA(other, WM_USER, 0, 0);
    ProcessFile("cleat.qsa", 1);
    EXPECT_EQ(gGfx->device->TestCooperativeLevel(), D3D_OK);
    EXPECT_EQ(gGfx->ShowFrame(), 1);
    EXPECT_EQ(gGfx->frameCount, 3) << "the dropped frame counts";
    DestroyWindow(other);
    UnregisterClassA("QSA2QSB_OTHER_PROGRAM", nullptr);
}

TEST_F(DeviceLife, NoCallOfStartFrameAndResetIsUnmodelled)
{
    const ScratchEngine engine("");
    ProcessFile("boat.qsa", 1);
    gGfx->ResetDevice(nullptr);
    for (const char* call : {"SetGammaRamp", "SetSoftwareVertexProcessing", "SetRenderState",
                             "SetTextureStageState", "SetSamplerState"})
        EXPECT_EQ(UnmodelledCallCount(call), 0) << call;
}
