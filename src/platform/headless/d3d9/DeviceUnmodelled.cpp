// UNMODELLED: shaders, declarations, queries, state blocks, patches, palettes, the cursor and swap
// chains beyond the implicit one. Each call is logged by name and fails. Setting a null shader or
// declaration succeeds, and the getters return null, since none is ever set.

#include "platform/headless/d3d9/Device.h"

namespace headless {

namespace {

template <typename Interface>
HRESULT GiveNone(Interface** objectOut)
{
    if (!objectOut)
        return D3DERR_INVALIDCALL;
    *objectOut = nullptr;
    return D3D_OK;
}

} // namespace

HRESULT HeadlessDevice::SetCursorProperties(UINT xHotSpot, UINT yHotSpot,
                                            IDirect3DSurface9* cursorBitmap)
{
    return Unmodelled("SetCursorProperties", xHotSpot, yHotSpot, cursorBitmap);
}

void HeadlessDevice::SetCursorPosition(int x, int y, DWORD flags)
{
    Unmodelled("SetCursorPosition", x, y, flags);
}

BOOL HeadlessDevice::ShowCursor(BOOL show)
{
    Unmodelled("ShowCursor", show);
    return FALSE;
}

HRESULT HeadlessDevice::CreateAdditionalSwapChain(D3DPRESENT_PARAMETERS* parameters,
                                                  IDirect3DSwapChain9** swapChainOut)
{
    if (swapChainOut)
        *swapChainOut = nullptr;
    return Unmodelled("CreateAdditionalSwapChain", parameters, swapChainOut);
}

HRESULT HeadlessDevice::GetSwapChain(UINT swapChain, IDirect3DSwapChain9** swapChainOut)
{
    if (swapChainOut)
        *swapChainOut = nullptr;
    return Unmodelled("GetSwapChain", swapChain, swapChainOut);
}

HRESULT HeadlessDevice::GetRasterStatus(UINT swapChain, D3DRASTER_STATUS* rasterStatusOut)
{
    return Unmodelled("GetRasterStatus", swapChain, rasterStatusOut);
}

HRESULT HeadlessDevice::SetDialogBoxMode(BOOL enable)
{
    return Unmodelled("SetDialogBoxMode", enable);
}

HRESULT HeadlessDevice::CreateVolumeTexture(UINT width, UINT height, UINT depth, UINT levels,
                                            DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                            IDirect3DVolumeTexture9** volumeTextureOut,
                                            HANDLE* sharedHandle)
{
    if (volumeTextureOut)
        *volumeTextureOut = nullptr;
    return Unmodelled("CreateVolumeTexture", width, height, depth, levels, usage, format, pool,
                      volumeTextureOut, sharedHandle);
}

HRESULT HeadlessDevice::CreateCubeTexture(UINT edgeLength, UINT levels, DWORD usage,
                                          D3DFORMAT format, D3DPOOL pool,
                                          IDirect3DCubeTexture9** cubeTextureOut,
                                          HANDLE* sharedHandle)
{
    if (cubeTextureOut)
        *cubeTextureOut = nullptr;
    return Unmodelled("CreateCubeTexture", edgeLength, levels, usage, format, pool, cubeTextureOut,
                      sharedHandle);
}

HRESULT HeadlessDevice::CreateStateBlock(D3DSTATEBLOCKTYPE type, IDirect3DStateBlock9** blockOut)
{
    if (blockOut)
        *blockOut = nullptr;
    return Unmodelled("CreateStateBlock", type, blockOut);
}

HRESULT HeadlessDevice::BeginStateBlock()
{
    return Unmodelled("BeginStateBlock");
}

HRESULT HeadlessDevice::EndStateBlock(IDirect3DStateBlock9** blockOut)
{
    if (blockOut)
        *blockOut = nullptr;
    return Unmodelled("EndStateBlock", blockOut);
}

HRESULT HeadlessDevice::SetPaletteEntries(UINT palette, const PALETTEENTRY* entries)
{
    return Unmodelled("SetPaletteEntries", palette, entries);
}

HRESULT HeadlessDevice::GetPaletteEntries(UINT palette, PALETTEENTRY* entriesOut)
{
    return Unmodelled("GetPaletteEntries", palette, entriesOut);
}

HRESULT HeadlessDevice::SetCurrentTexturePalette(UINT palette)
{
    return Unmodelled("SetCurrentTexturePalette", palette);
}

HRESULT HeadlessDevice::GetCurrentTexturePalette(UINT* paletteOut)
{
    return Unmodelled("GetCurrentTexturePalette", paletteOut);
}

HRESULT HeadlessDevice::ProcessVertices(UINT srcStartIndex, UINT destIndex, UINT vertexCount,
                                        IDirect3DVertexBuffer9* destBuffer,
                                        IDirect3DVertexDeclaration9* declaration, DWORD flags)
{
    return Unmodelled("ProcessVertices", srcStartIndex, destIndex, vertexCount, destBuffer,
                      declaration, flags);
}

HRESULT HeadlessDevice::CreateVertexDeclaration(const D3DVERTEXELEMENT9* elements,
                                                IDirect3DVertexDeclaration9** declarationOut)
{
    if (declarationOut)
        *declarationOut = nullptr;
    return Unmodelled("CreateVertexDeclaration", elements, declarationOut);
}

HRESULT HeadlessDevice::SetVertexDeclaration(IDirect3DVertexDeclaration9* declaration)
{
    return declaration ? Unmodelled("SetVertexDeclaration", declaration) : D3D_OK;
}

HRESULT HeadlessDevice::GetVertexDeclaration(IDirect3DVertexDeclaration9** declarationOut)
{
    return GiveNone(declarationOut);
}

HRESULT HeadlessDevice::CreateVertexShader(const DWORD* byteCode,
                                           IDirect3DVertexShader9** shaderOut)
{
    if (shaderOut)
        *shaderOut = nullptr;
    return Unmodelled("CreateVertexShader", byteCode, shaderOut);
}

HRESULT HeadlessDevice::SetVertexShader(IDirect3DVertexShader9* shader)
{
    return shader ? Unmodelled("SetVertexShader", shader) : D3D_OK;
}

HRESULT HeadlessDevice::GetVertexShader(IDirect3DVertexShader9** shaderOut)
{
    return GiveNone(shaderOut);
}

HRESULT HeadlessDevice::SetVertexShaderConstantF(UINT startRegister, const float* data, UINT count)
{
    return Unmodelled("SetVertexShaderConstantF", startRegister, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantF(UINT startRegister, float* constantDataOut,
                                                 UINT count)
{
    return Unmodelled("GetVertexShaderConstantF", startRegister, constantDataOut, count);
}

HRESULT HeadlessDevice::SetVertexShaderConstantI(UINT startRegister, const int* data, UINT count)
{
    return Unmodelled("SetVertexShaderConstantI", startRegister, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantI(UINT startRegister, int* constantDataOut,
                                                 UINT count)
{
    return Unmodelled("GetVertexShaderConstantI", startRegister, constantDataOut, count);
}

HRESULT HeadlessDevice::SetVertexShaderConstantB(UINT startRegister, const BOOL* data, UINT count)
{
    return Unmodelled("SetVertexShaderConstantB", startRegister, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantB(UINT startRegister, BOOL* constantDataOut,
                                                 UINT count)
{
    return Unmodelled("GetVertexShaderConstantB", startRegister, constantDataOut, count);
}

HRESULT HeadlessDevice::CreatePixelShader(const DWORD* byteCode, IDirect3DPixelShader9** shaderOut)
{
    if (shaderOut)
        *shaderOut = nullptr;
    return Unmodelled("CreatePixelShader", byteCode, shaderOut);
}

HRESULT HeadlessDevice::SetPixelShader(IDirect3DPixelShader9* shader)
{
    return shader ? Unmodelled("SetPixelShader", shader) : D3D_OK;
}

HRESULT HeadlessDevice::GetPixelShader(IDirect3DPixelShader9** shaderOut)
{
    return GiveNone(shaderOut);
}

HRESULT HeadlessDevice::SetPixelShaderConstantF(UINT startRegister, const float* data, UINT count)
{
    return Unmodelled("SetPixelShaderConstantF", startRegister, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantF(UINT startRegister, float* constantDataOut,
                                                UINT count)
{
    return Unmodelled("GetPixelShaderConstantF", startRegister, constantDataOut, count);
}

HRESULT HeadlessDevice::SetPixelShaderConstantI(UINT startRegister, const int* data, UINT count)
{
    return Unmodelled("SetPixelShaderConstantI", startRegister, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantI(UINT startRegister, int* constantDataOut,
                                                UINT count)
{
    return Unmodelled("GetPixelShaderConstantI", startRegister, constantDataOut, count);
}

HRESULT HeadlessDevice::SetPixelShaderConstantB(UINT startRegister, const BOOL* data, UINT count)
{
    return Unmodelled("SetPixelShaderConstantB", startRegister, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantB(UINT startRegister, BOOL* constantDataOut,
                                                UINT count)
{
    return Unmodelled("GetPixelShaderConstantB", startRegister, constantDataOut, count);
}

HRESULT HeadlessDevice::DrawRectPatch(UINT handle, const float* segmentCount,
                                      const D3DRECTPATCH_INFO* patchInfo)
{
    return Unmodelled("DrawRectPatch", handle, segmentCount, patchInfo);
}

HRESULT HeadlessDevice::DrawTriPatch(UINT handle, const float* segmentCount,
                                     const D3DTRIPATCH_INFO* patchInfo)
{
    return Unmodelled("DrawTriPatch", handle, segmentCount, patchInfo);
}

HRESULT HeadlessDevice::DeletePatch(UINT handle)
{
    return Unmodelled("DeletePatch", handle);
}

HRESULT HeadlessDevice::CreateQuery(D3DQUERYTYPE type, IDirect3DQuery9** queryOut)
{
    if (queryOut)
        *queryOut = nullptr;
    return Unmodelled("CreateQuery", type, queryOut);
}

} // namespace headless
