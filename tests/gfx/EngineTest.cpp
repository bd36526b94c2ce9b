#include "tests/gfx/EngineTest.h"

#include "base/ResetLogForTests.h"
#include "tests/support/ScriptedEffect.h"

#include <utility>

namespace {

constexpr const char* kClassName = "QSA2QSB_ENGINE_TEST";

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

HiddenWindow::HiddenWindow(int width, int height)
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = DefWindowProcA;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = kClassName;
    RegisterClassExA(&windowClass);
    window = CreateWindowExA(0, kClassName, "engine test", WS_POPUP, 0, 0, width, height, nullptr,
                             nullptr, windowClass.hInstance, nullptr);
}

HiddenWindow::~HiddenWindow()
{
    DestroyWindow(window);
    UnregisterClassA(kClassName, GetModuleHandleA(nullptr));
}

void HiddenWindow::Resize(int width, int height)
{
    MoveWindow(window, 0, 0, width, height, FALSE);
}

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
