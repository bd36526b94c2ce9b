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

DWORD gPictureFilter = 0;

/// No file is read and there is no real device, so any texture will do.
HRESULT WINAPI CreateTextureFromFile(IDirect3DDevice9* device, LPCSTR, UINT, UINT, UINT,
                                     DWORD usage, D3DFORMAT, D3DPOOL pool, DWORD filter, DWORD,
                                     D3DCOLOR, D3DXIMAGE_INFO*, PALETTEENTRY*,
                                     IDirect3DTexture9** textureOut)
{
    gPictureFilter = filter;
    return device->CreateTexture(4, 4, 1, usage, D3DFMT_X8R8G8B8, pool, textureOut, nullptr);
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
        CreateTextureFromFile,
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
    gPictureFilter = 0;
    gKreErrorRecord = {};
}

void EngineTest::Start(const D3DDISPLAYMODE* fullScreen, int32_t vertexProcessing)
{
    gfx.InitDevice(window.Handle(), fullScreen ? 0 : 1, fullScreen, 16, 0, vertexProcessing, 0);
    recorder->ClearLines();
}

DWORD EngineTest::PictureFilter()
{
    return gPictureFilter;
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
