#include "tests/support/FakeDevice.h"

// Calls that do nothing and succeed: presenting, drawing, copying, and states that are not stored.

HRESULT STDMETHODCALLTYPE FakeDevice::TestCooperativeLevel()
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::EvictManagedResources()
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetCursorProperties(UINT, UINT, IDirect3DSurface9*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::Present(const RECT*, const RECT*, HWND, const RGNDATA*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetDialogBoxMode(BOOL)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::UpdateSurface(IDirect3DSurface9*, const RECT*,
                                                    IDirect3DSurface9*, const POINT*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::UpdateTexture(IDirect3DBaseTexture9*, IDirect3DBaseTexture9*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetRenderTargetData(IDirect3DSurface9*, IDirect3DSurface9*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::StretchRect(IDirect3DSurface9*, const RECT*,
                                                  IDirect3DSurface9*, const RECT*,
                                                  D3DTEXTUREFILTERTYPE)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::ColorFill(IDirect3DSurface9*, const RECT*, D3DCOLOR)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::BeginScene()
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::EndScene()
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::Clear(DWORD, const D3DRECT*, DWORD, D3DCOLOR, float, DWORD)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::MultiplyTransform(D3DTRANSFORMSTATETYPE, const D3DMATRIX*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetClipPlane(DWORD, const float*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetClipStatus(const D3DCLIPSTATUS9*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetPaletteEntries(UINT, const PALETTEENTRY*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetCurrentTexturePalette(UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetNPatchMode(float)
{
    return D3D_OK;
}

float STDMETHODCALLTYPE FakeDevice::GetNPatchMode()
{
    return 0.0f;
}

HRESULT STDMETHODCALLTYPE FakeDevice::DrawPrimitive(D3DPRIMITIVETYPE, UINT, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::DrawIndexedPrimitive(D3DPRIMITIVETYPE, INT, UINT, UINT, UINT,
                                                           UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::DrawPrimitiveUP(D3DPRIMITIVETYPE, UINT, const void*, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::DrawIndexedPrimitiveUP(D3DPRIMITIVETYPE, UINT, UINT, UINT,
                                                             const void*, D3DFORMAT, const void*,
                                                             UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetVertexDeclaration(IDirect3DVertexDeclaration9*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetVertexShader(IDirect3DVertexShader9*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetVertexShaderConstantF(UINT, const float*, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetVertexShaderConstantI(UINT, const int*, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetVertexShaderConstantB(UINT, const BOOL*, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetStreamSourceFreq(UINT, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetPixelShader(IDirect3DPixelShader9*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetPixelShaderConstantF(UINT, const float*, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetPixelShaderConstantI(UINT, const int*, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetPixelShaderConstantB(UINT, const BOOL*, UINT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::DrawRectPatch(UINT, const float*, const D3DRECTPATCH_INFO*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::DrawTriPatch(UINT, const float*, const D3DTRIPATCH_INFO*)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::DeletePatch(UINT)
{
    return D3D_OK;
}
