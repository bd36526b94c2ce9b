#include "tests/support/FakeDevice.h"

// Calls that would have to return something that the fake does not have: they fail.

HRESULT STDMETHODCALLTYPE FakeDevice::CreateAdditionalSwapChain(D3DPRESENT_PARAMETERS*,
                                                                IDirect3DSwapChain9** swapChainOut)
{
    *swapChainOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetSwapChain(UINT, IDirect3DSwapChain9** swapChainOut)
{
    *swapChainOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetRasterStatus(UINT, D3DRASTER_STATUS*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE
FakeDevice::CreateVolumeTexture(UINT, UINT, UINT, UINT, DWORD, D3DFORMAT, D3DPOOL,
                                IDirect3DVolumeTexture9** volumeTextureOut, HANDLE*)
{
    *volumeTextureOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateCubeTexture(UINT, UINT, DWORD, D3DFORMAT, D3DPOOL,
                                                        IDirect3DCubeTexture9** cubeTextureOut,
                                                        HANDLE*)
{
    *cubeTextureOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetFrontBufferData(UINT, IDirect3DSurface9*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetClipPlane(DWORD, float*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateStateBlock(D3DSTATEBLOCKTYPE,
                                                       IDirect3DStateBlock9** blockOut)
{
    *blockOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::BeginStateBlock()
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::EndStateBlock(IDirect3DStateBlock9** blockOut)
{
    *blockOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetClipStatus(D3DCLIPSTATUS9*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::ValidateDevice(DWORD*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetPaletteEntries(UINT, PALETTEENTRY*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetCurrentTexturePalette(UINT*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::ProcessVertices(UINT, UINT, UINT, IDirect3DVertexBuffer9*,
                                                      IDirect3DVertexDeclaration9*, DWORD)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateVertexDeclaration(
    const D3DVERTEXELEMENT9*, IDirect3DVertexDeclaration9** declarationOut)
{
    *declarationOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE
FakeDevice::GetVertexDeclaration(IDirect3DVertexDeclaration9** declarationOut)
{
    *declarationOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateVertexShader(const DWORD*,
                                                         IDirect3DVertexShader9** shaderOut)
{
    *shaderOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetVertexShader(IDirect3DVertexShader9** shaderOut)
{
    *shaderOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetVertexShaderConstantF(UINT, float*, UINT)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetVertexShaderConstantI(UINT, int*, UINT)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetVertexShaderConstantB(UINT, BOOL*, UINT)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetStreamSourceFreq(UINT, UINT*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreatePixelShader(const DWORD*,
                                                        IDirect3DPixelShader9** shaderOut)
{
    *shaderOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetPixelShader(IDirect3DPixelShader9** shaderOut)
{
    *shaderOut = nullptr;
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetPixelShaderConstantF(UINT, float*, UINT)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetPixelShaderConstantI(UINT, int*, UINT)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetPixelShaderConstantB(UINT, BOOL*, UINT)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateQuery(D3DQUERYTYPE, IDirect3DQuery9** queryOut)
{
    *queryOut = nullptr;
    return D3DERR_INVALIDCALL;
}
