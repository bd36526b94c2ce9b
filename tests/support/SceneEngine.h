#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "gfx/KRE_Gfx.h"
#include "tests/support/HiddenWindow.h"
#include "tests/support/RecordingDirect3D.h"
#include "tests/support/ScratchDirectory.h"

/// The engine as graphics start-up leaves it, as `gGfx`: a hidden window of 64x64 and the host's
/// own device. Scenes and meshes of a test must be destroyed before it.
class SceneEngine {
public:
    /// `vertexProcessing` is that of `KRE_Gfx::InitDevice`: 0 software, 2 hardware. If `direct3D`
    /// is given, it creates the device, so calls are recorded and can fail.
    explicit SceneEngine(int32_t vertexProcessing = 2, IDirect3D9* direct3D = nullptr);
    ~SceneEngine();
    SceneEngine(const SceneEngine&) = delete;
    SceneEngine& operator=(const SceneEngine&) = delete;

private:
    HiddenWindow window{64, 64};
    std::unique_ptr<KRE_Gfx> engine;
};

/// A test with an engine, in its own directory, with an empty log. Fails if device objects are left
/// over, on hosts that keep count of them.
class SceneEngineTest : public testing::Test {
protected:
    SceneEngineTest();
    ~SceneEngineTest() override;

    /// Replaces the present engine by one whose device records its calls and can fail them. Nothing
    /// may hold a device object at this point.
    RecordingDirect3D& StartRecording(int32_t vertexProcessing = 2);
    /// Replaces the present engine by a new one.
    void Restart(int32_t vertexProcessing);

    /// What was logged so far; empty if nothing was reported.
    std::string LogText() const;

    ScratchDirectory directory;

private:
    std::unique_ptr<SceneEngine> engine;
    ComHandle<RecordingDirect3D> recording;
};
