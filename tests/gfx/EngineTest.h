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

/// An engine over an interface that records its calls. Unless a test says otherwise, there is no
/// real device.
class EngineTest : public testing::Test {
protected:
    explicit EngineTest(ComHandle<RecordingDirect3D> direct3D = RecordingDirect3D::Standalone());

    /// Creates the device, in a window unless a full-screen mode is given, and clears the recorded
    /// calls.
    void Start(const D3DDISPLAYMODE* fullScreen = nullptr, int32_t vertexProcessing = 2);

    /// Returns and clears the recorded calls.
    std::vector<std::string> Calls();
    /// The recorded calls of one name; does not clear them.
    std::vector<std::string> CallsOf(const char* name) { return recorder->LinesOf(name); }

    void FailNext(const char* name, HRESULT result = D3DERR_INVALIDCALL, const char* match = "")
    {
        recorder->FailNext(name, result, match);
    }

    /// The filter requested for the last picture. Only file headers are read.
    static DWORD PictureFilter();

    /// Makes the next creation of an `ID3DXRenderToSurface` fail: D3DX does that without the
    /// device.
    static void FailNextRenderToSurface(HRESULT result);

    /// Returns and clears the last warning, or empty.
    std::string LastWarning();

    const ScratchDirectory scratch; // the log is written here
    HiddenWindow window{64, 48};
    std::shared_ptr<CallRecorder> recorder;
    RecordingDirect3D* d3d; // not owned, lives in the engine
    std::unique_ptr<KRE_Gfx> engine;
    KRE_Gfx& gfx;
};
