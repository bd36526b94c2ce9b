#include "tools/frames/FrameStage.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/SceneSession.h"
#include "app/StartGraphics.h"
#include "base/Clock.h"
#include "gfx/KRE_Gfx.h"

#include <cstddef>
#include <cstring>
#include <d3dx9.h>

namespace {

ComPointer<IDirect3DSurface9> MakeMemorySurface(UINT width, UINT height, D3DFORMAT format)
{
    ComPointer<IDirect3DSurface9> surface;
    gGfx->device->CreateOffscreenPlainSurface(width, height, format, D3DPOOL_SYSTEMMEM,
                                              surface.Out(), nullptr);
    return surface;
}

/// Makes the client area as large as the frame; the border width differs between hosts.
void FitClientArea(int width, int height)
{
    RECT client = {}, outer = {};
    GetClientRect(gMainWindow, &client);
    GetWindowRect(gMainWindow, &outer);
    MoveWindow(gMainWindow, 0, 0, static_cast<int>(outer.right - outer.left - client.right) + width,
               static_cast<int>(outer.bottom - outer.top - client.bottom) + height, FALSE);
    UpdateClientSize();
}

} // namespace

FrameStage::FrameStage(int width, int height)
{
    ParseOptions("/stop /t:0 /zbuf"); // only one host may have W buffering
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    LoadWindowTexts(instance);
    RegisterMainWindowClass(instance);
    CreateMainWindow(instance, SW_HIDE);
    FitClientArea(width, height);
    StartGraphics();
    gGfx->getGameTime = [] { return 0.0f; };
}

bool FrameStage::ReadsEffectTexts()
{
    static constexpr char kText[] = "technique t { pass p { CullMode = NONE; } }";
    ComPointer<ID3DXEffect> effect;
    ComPointer<ID3DXBuffer> errors;
    return SUCCEEDED(D3DXCreateEffect(gGfx->device.Get(), kText, sizeof kText - 1, nullptr, nullptr,
                                      0, nullptr, effect.Out(), errors.Out()));
}

FrameStage::~FrameStage()
{
    ShutdownGraphics();
    DestroyWindow(gMainWindow);
    gMainWindow = nullptr;
    UnregisterClassA(gWindowClassName, gInstance);
    MSG message; // WM_DESTROY has posted a WM_QUIT
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        continue;
    gWindowDestroyed = 0;
}

Frame FrameStage::BackBuffer()
{
    ComPointer<IDirect3DSurface9> target;
    D3DSURFACE_DESC desc = {};
    if (FAILED(gGfx->device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, target.Out())) ||
        FAILED(target->GetDesc(&desc)))
        return {};
    const ComPointer<IDirect3DSurface9> copy =
        MakeMemorySurface(desc.Width, desc.Height, desc.Format);
    D3DLOCKED_RECT locked = {};
    const bool isFourBytes = desc.Format == D3DFMT_A8R8G8B8 || desc.Format == D3DFMT_X8R8G8B8;
    if (!copy || !isFourBytes ||
        FAILED(gGfx->device->GetRenderTargetData(target.Get(), copy.Get())) ||
        FAILED(copy->LockRect(&locked, nullptr, D3DLOCK_READONLY)))
        return {};
    Frame frame = {desc.Width, desc.Height, {}};
    frame.pixels.resize(frame.width * frame.height);
    for (size_t y = 0; y < frame.height; ++y)
        std::memcpy(&frame.pixels[y * frame.width],
                    static_cast<const BYTE*>(locked.pBits) +
                        static_cast<ptrdiff_t>(y) * locked.Pitch,
                    frame.width * sizeof frame.pixels[0]);
    copy->UnlockRect();
    for (uint32_t& pixel : frame.pixels)
        pixel |= 0xFF000000;
    return frame;
}

Frame FrameStage::Draw(const char* fileName, const char* targetName)
{
    SceneSession session;
    char banner[kBannerSize];
    ReadBanner(banner);
    gGfx->SetLighting(gLightingOn, nullptr);
    gGfx->SetSpecular(gSpecularOn);
    session.Load(fileName);
    if (targetName)
        session.Save(targetName);
    const double start = GetTimeSeconds();
    session.DrawFrame(banner);
    Frame frame = BackBuffer();
    drawSeconds = GetTimeSeconds() - start;
    return frame;
}

bool WriteFramePng(const Frame& frame, const std::string& path)
{
    const ComPointer<IDirect3DSurface9> surface = MakeMemorySurface(
        static_cast<UINT>(frame.width), static_cast<UINT>(frame.height), D3DFMT_X8R8G8B8);
    D3DLOCKED_RECT locked = {};
    if (!surface || FAILED(surface->LockRect(&locked, nullptr, 0)))
        return false;
    for (size_t y = 0; y < frame.height; ++y)
        std::memcpy(static_cast<BYTE*>(locked.pBits) + static_cast<ptrdiff_t>(y) * locked.Pitch,
                    &frame.pixels[y * frame.width], frame.width * sizeof frame.pixels[0]);
    surface->UnlockRect();
    return SUCCEEDED(
        D3DXSaveSurfaceToFileA(path.c_str(), D3DXIFF_PNG, surface.Get(), nullptr, nullptr));
}
