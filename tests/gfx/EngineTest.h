#pragma once

#include "base/ErrorClass.h"
#include "gfx/KRE_Gfx.h"
#include "tests/support/HiddenWindow.h"
#include "tests/support/RaisedBy.h"
#include "tests/support/RecordingDirect3D.h"
#include "tests/support/ScratchDirectory.h"

#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

/// An engine over an interface that notes its calls. Unless a test says otherwise nothing real stands
/// behind it.
class EngineTest : public testing::Test {
protected:
    explicit EngineTest(ComHandle<RecordingDirect3D> direct3D = RecordingDirect3D::Standalone());

    /// Makes the device, in the window unless a mode for full screen is given, and forgets the calls
    /// so far.
    void Start(const D3DDISPLAYMODE* fullScreen = nullptr, int32_t vertexProcessing = 2);

    /// The calls since the last look.
    std::vector<std::string> Calls();
    /// The calls of one name since the last look, which this is not.
    std::vector<std::string> CallsOf(const char* name) { return recorder->LinesOf(name); }

    void FailNext(const char* name, HRESULT result = D3DERR_INVALIDCALL, const char* match = "")
    {
        recorder->FailNext(name, result, match);
    }

    /// The filter with which the last picture was to be read. Files are looked at, but not read.
    static DWORD PictureFilter();

    /// The next `ID3DXRenderToSurface` is not made: D3DX does that without the device.
    static void FailNextRenderToSurface(HRESULT result);

    /// The last warning since the last look, or empty.
    std::string LastWarning();

    const ScratchDirectory scratch; // the log is written here
    HiddenWindow window{64, 48};
    std::shared_ptr<CallRecorder> recorder;
    RecordingDirect3D* d3d; // not owned, lives in the engine
    std::unique_ptr<KRE_Gfx> engine;
    KRE_Gfx& gfx;
};
