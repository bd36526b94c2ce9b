#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "gfx/KRE_Gfx.h"
#include "tests/support/HiddenWindow.h"
#include "tests/support/RecordingDirect3D.h"
#include "tests/support/ScratchDirectory.h"

/// The engine as graphics start-up leaves it, as `gGfx`: a hidden window of 64x64 and the host's
/// own device. Scenes and meshes of a test have to go before it.
class SceneEngine {
public:
    /// `vertexProcessing` is that of `KRE_Gfx::InitDevice`: 0 software, 2 hardware. With `direct3D`
    /// the device is made by it, so that calls are noted and can fail.
    explicit SceneEngine(int32_t vertexProcessing = 2, IDirect3D9* direct3D = nullptr);
    ~SceneEngine();
    SceneEngine(const SceneEngine&) = delete;
    SceneEngine& operator=(const SceneEngine&) = delete;

private:
    HiddenWindow window{64, 64};
    std::unique_ptr<KRE_Gfx> engine;
};

/// A test with an engine, in a directory of its own, with an empty log. It fails if device objects
/// are left over, where the host keeps count of them.
class SceneEngineTest : public testing::Test {
protected:
    SceneEngineTest();
    ~SceneEngineTest() override;

    /// Puts an engine in the place of the present one whose device notes its calls and can fail
    /// them. Nothing may hold a device object then.
    RecordingDirect3D& StartRecording(int32_t vertexProcessing = 2);
    /// Puts an engine in the place of the present one.
    void Restart(int32_t vertexProcessing);

    /// What was logged so far; empty if nothing was reported.
    std::string LogText() const;

    ScratchDirectory directory;

private:
    std::unique_ptr<SceneEngine> engine;
    ComHandle<RecordingDirect3D> recording;
};
