#include "gfx/KRE_Gfx.h"

#include "platform/CutDraw.h"

void KRE_Gfx::SetZEnable(int32_t mode)
{
    const bool hasWBuffer = (caps.RasterCaps & D3DPRASTERCAPS_WBUFFER) != 0;
    if (mode == D3DZB_USEW && !hasWBuffer)
        mode = D3DZB_TRUE;
    SetRenderState(D3DRS_ZENABLE, static_cast<DWORD>(mode));
    zEnable = mode;
    zDisableCount = 0;
}

void KRE_Gfx::SetZWrite(int32_t on)
{
    zWrite = on;
    SetRenderStateOnce(D3DRS_ZWRITEENABLE, static_cast<DWORD>(on));
}

void KRE_Gfx::DisableZ()
{
    if (zDisableCount == 0)
        SetRenderState(D3DRS_ZENABLE, DWORD{D3DZB_FALSE});
    ++zDisableCount;
}

void KRE_Gfx::EnableZ()
{
    if (zDisableCount > 0)
        --zDisableCount;
    if (zDisableCount == 0 && zEnable != D3DZB_FALSE)
        SetRenderState(D3DRS_ZENABLE, static_cast<DWORD>(zEnable));
}

static void ClearTarget(KRE_Gfx& gfx, DWORD flags, D3DCOLOR color, const D3DRECT* rect)
{
    gfx.lastResult = gfx.device->Clear(rect ? 1 : 0, rect, flags, color, 1.0f, 0);
    if (FAILED(gfx.lastResult))
        gfx.Error("Clear failed!");
}

void KRE_Gfx::Clear(D3DCOLOR color, const D3DRECT* rect)
{
    const bool hasDepth = zBits > 0 && depthSurface;
    ClearTarget(*this, D3DCLEAR_TARGET | (hasDepth ? D3DCLEAR_ZBUFFER : 0u), color, rect);
}

void KRE_Gfx::ClearZ(D3DCOLOR color, const D3DRECT* rect)
{
    if (!depthSurface)
        Error("Render target has no zbuffer!");
    ClearTarget(*this, D3DCLEAR_ZBUFFER, color, rect);
}

void KRE_Gfx::BeginScene()
{
    if (drawToPostTexture) {
        Check(renderToSurface ? renderToSurface->BeginScene(postSurface.Get(), &viewport)
                              : D3DERR_INVALIDCALL,
              "BeginScene (post effect) failed: %s");
        Check(device->SetDepthStencilSurface(depthSurface.Get()),
              "SetDepthStencilSurface failed: %s");
    } else {
        Check(device->BeginScene(), "BeginScene failed: %s");
    }
    inScene = 1;
}

void KRE_Gfx::EndScene()
{
    if (drawToPostTexture)
        Check(renderToSurface ? renderToSurface->EndScene(1) : D3DERR_INVALIDCALL,
              "EndScene (post effect) failed: %s");
    else
        Check(device->EndScene(), "EndScene failed: %s");
    inScene = 0;
    if (TakeCutDraw())
        Warning("A draw was cut off because its shaders take too long");
    if (TakeCutFrame())
        Warning("The rest of the frame was not drawn because it takes too many pixels");
}

void KRE_Gfx::SetRenderTarget(IDirect3DSurface9* surface, DWORD index)
{
    Check(device->SetRenderTarget(index, surface), "Can not set render target: %s");
}
