#include "tests/support/SceneEngine.h"

#include "base/ResetLogForTests.h"
#include "tests/support/LiveObjects.h"
#include "tests/support/ScriptedEffect.h"

namespace {

IDirect3D9* gOffered; // given to the next engine; not owned

IDirect3D9* GiveOffered(UINT)
{
    gOffered->AddRef();
    return gOffered;
}

constexpr KRE_GfxRuntime kOfferedRuntime = {[](const char*) { return true; }, GiveOffered,
                                            D3DXCreateEffectPool, CreateScriptedEffect};

std::unique_ptr<KRE_Gfx> MakeEngine(IDirect3D9* direct3D)
{
    gOffered = direct3D;
    return std::make_unique<KRE_Gfx>(direct3D ? kOfferedRuntime : KRE_GfxRuntime::System());
}

} // namespace

SceneEngine::SceneEngine(int32_t vertexProcessing, IDirect3D9* direct3D)
    : engine(MakeEngine(direct3D))
{
    engine->InitDevice(window.Handle(), 1, nullptr, 16, 0, vertexProcessing, 0);
    gGfx = engine.get();
    gGraphicsStarted = 1;
}

SceneEngine::~SceneEngine()
{
    gGraphicsStarted = 0;
    gGfx = nullptr;
    engine.reset();
}

SceneEngineTest::SceneEngineTest()
{
    ResetLogForTests();
    Restart(2);
}

SceneEngineTest::~SceneEngineTest()
{
    engine.reset();
    recording.reset();
    EXPECT_EQ(TakeLiveObjects(), "");
    ResetLogForTests();
}

RecordingDirect3D& SceneEngineTest::StartRecording(int32_t vertexProcessing)
{
    engine.reset();
    recording = RecordingDirect3D::WrapReal();
    engine = std::make_unique<SceneEngine>(vertexProcessing, recording.get());
    recording->ClearLines();
    return *recording;
}

void SceneEngineTest::Restart(int32_t vertexProcessing)
{
    engine.reset();
    engine = std::make_unique<SceneEngine>(vertexProcessing);
}

std::string SceneEngineTest::LogText() const
{
    return directory.Has("logfile.txt") ? directory.Read("logfile.txt") : "";
}
