#include "tests/gfx/EngineTest.h"

#include "base/ResetLogForTests.h"
#include "tests/support/ScriptedEffect.h"

#include <utility>

namespace {

IDirect3D9* gNextDirect3D = nullptr;

HRESULT gRenderToSurfaceResult = D3D_OK;

HRESULT WINAPI CreateRenderToSurface(IDirect3DDevice9* device, UINT width, UINT height,
                                     D3DFORMAT format, BOOL depthStencil,
                                     D3DFORMAT depthStencilFormat,
                                     ID3DXRenderToSurface** surfaceOut)
{
    const HRESULT ordered = std::exchange(gRenderToSurfaceResult, D3D_OK);
    return FAILED(ordered) ? ordered
                           : D3DXCreateRenderToSurface(device, width, height, format, depthStencil,
                                                       depthStencilFormat, surfaceOut);
}

std::unique_ptr<KRE_Gfx> MakeEngine(RecordingDirect3D* direct3D)
{
    gNextDirect3D = direct3D;
    static const KRE_GfxRuntime kRuntime = {
        [](const char*) { return true; },
        [](UINT) { return std::exchange(gNextDirect3D, nullptr); },
        D3DXCreateEffectPool,
        CreateScriptedEffect,
        CreateRenderToSurface,
    };
    return std::make_unique<KRE_Gfx>(kRuntime);
}

} // namespace

EngineTest::EngineTest(ComHandle<RecordingDirect3D> direct3D)
    : recorder(direct3D->Recorder()),
      d3d(direct3D.release()),
      engine(MakeEngine(d3d)),
      gfx(*engine)
{
    ResetLogForTests();
    gRenderToSurfaceResult = D3D_OK;
    gKreErrorRecord = {};
}

void EngineTest::Start(const D3DDISPLAYMODE* fullScreen, int32_t vertexProcessing)
{
    gfx.InitDevice(window.Handle(), fullScreen ? 0 : 1, fullScreen, 16, 0, vertexProcessing, 0);
    recorder->ClearLines();
}

void EngineTest::FailNextRenderToSurface(HRESULT result)
{
    gRenderToSurfaceResult = result;
}

std::vector<std::string> EngineTest::Calls()
{
    std::vector<std::string> calls = recorder->Lines();
    recorder->ClearLines();
    return calls;
}

std::string EngineTest::LastWarning()
{
    const KRE_Error record = std::exchange(gKreErrorRecord, KRE_Error());
    return record.message;
}
