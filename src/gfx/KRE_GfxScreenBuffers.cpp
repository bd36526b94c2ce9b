// Textures of the screen's size, for effects that read what has been drawn.

#include "gfx/KRE_Gfx.h"

IDirect3DTexture9* KRE_Gfx::GetScreenBufferTexture(int32_t kind, int32_t index)
{
    static constexpr const char* kNoBuffer =
        "GetScreenBufferTexture failed - can not create texture buffer: %s";
    const bool isQuarter = kind == kQuarterBuffer;
    const int32_t count = isQuarter ? kScreenQuarterBuffers : kScreenBuffers;
    // QUIRK: no other kind exists; whether that is an `Error` depends on the last device result.
    if ((!isQuarter && kind != kFullBuffer) || index < 0 || index >= count) {
        Check(lastResult, kNoBuffer);
        return nullptr;
    }
    const int32_t divisor = isQuarter ? 4 : 1;
    ComPointer<IDirect3DTexture9>& entry =
        isQuarter ? screenQuarterBuffers[index] : screenBuffers[index];
    if (!entry)
        Check(D3DXCreateTexture(device.Get(), static_cast<UINT>(backBuffer.width / divisor),
                                static_cast<UINT>(backBuffer.height / divisor), 1,
                                D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT,
                                entry.Out()),
              kNoBuffer);
    return entry.Get();
}

IDirect3DTexture9* KRE_Gfx::GetScreenCopyTexture()
{
    // A reset may release the copy in the middle of a frame.
    const bool isDue = !screenCopy || !effectCacheOn || copiedFrame != frameNumber ||
                       (copiedSubFrame != subFrameNumber && materialEffect);
    if (isDue)
        CopyScreen();
    return screenCopy.Get();
}

void KRE_Gfx::CopyScreen()
{
    ComPointer<IDirect3DSurface9> target;
    Check(device->GetRenderTarget(0, target.Out()), "Can not retrieve render target: %s");
    if (!screenCopy) {
        D3DSURFACE_DESC description{};
        Check(target->GetDesc(&description), "Could not create screen copy texture: %s");
        Check(device->CreateTexture(description.Width, description.Height, 1, D3DUSAGE_RENDERTARGET,
                                    description.Format, D3DPOOL_DEFAULT, screenCopy.Out(), nullptr),
              "Could not create screen copy texture: %s");
    }
    ComPointer<IDirect3DSurface9> copy;
    Check(screenCopy->GetSurfaceLevel(0, copy.Out()), "StretchRect failed: %s");
    Check(device->StretchRect(target.Get(), nullptr, copy.Get(), nullptr, D3DTEXF_NONE),
          "StretchRect failed: %s");
    copiedFrame = frameNumber;
    copiedSubFrame = subFrameNumber;
}

int32_t KRE_Gfx::InitPostRenderEffects()
{
    if (postEffectsReady)
        return 1;
    const auto create = [&](DWORD usage) {
        return D3DXCreateTexture(device.Get(), static_cast<UINT>(backBuffer.width),
                                 static_cast<UINT>(backBuffer.height), 1, usage, D3DFMT_A8R8G8B8,
                                 D3DPOOL_DEFAULT, postTexture.Out());
    };
    lastResult = create(D3DUSAGE_RENDERTARGET);
    if (FAILED(lastResult))
        Check(create(0), "InitPostRenderEffects failed - can not create texture buffer: %s");
    static constexpr const char* kNoTarget =
        "InitPostRenderEffects failed - error creating D3DXRenderToSurface: %s";
    D3DSURFACE_DESC description{};
    Check(postTexture->GetSurfaceLevel(0, postSurface.Out()), kNoTarget);
    Check(postSurface->GetDesc(&description), kNoTarget);
    Check(runtime.createRenderToSurface(device.Get(), description.Width, description.Height,
                                        description.Format, FALSE, D3DFMT_UNKNOWN,
                                        renderToSurface.Out()),
          kNoTarget);
    postEffectsReady = 1;
    return 1;
}

void KRE_Gfx::FreePostRenderEffects()
{
    renderToSurface.Free();
    postSurface.Free();
    postTexture.Free();
    postEffectsReady = 0;
}

/// All of them are in the default pool; they are recreated on demand.
void KRE_Gfx::FreeScreenBuffers()
{
    savedRenderTarget.Free();
    screenCopy.Free();
    for (ComPointer<IDirect3DTexture9>& buffer : screenBuffers)
        buffer.Free();
    for (ComPointer<IDirect3DTexture9>& buffer : screenQuarterBuffers)
        buffer.Free();
}
