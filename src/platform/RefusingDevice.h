#pragma once

#include <d3d9.h>

/// The operations that no device of this tree has, each of which fails: programs, declarations,
/// state blocks, queries, patches, palettes, the cursor, volume and cube textures, swap chains
/// beyond the implicit one. To take a program or a declaration away is allowed, and to ask for it
/// gives none: that is how such a device always is. The other operations are the deriving device's
/// own.
///
/// `Object` is `IDirect3DDevice9` or derives from it. `Refusal::Refuse(name, arguments...)` gives
/// the result of a call that fails.
template <class Object, class Refusal>
class RefusingDevice : public Object {
public:
    HRESULT STDMETHODCALLTYPE SetCursorProperties(UINT xHotSpot, UINT yHotSpot,
                                                  IDirect3DSurface9* cursorBitmap) override
    {
        return Refusal::Refuse("SetCursorProperties", xHotSpot, yHotSpot, cursorBitmap);
    }

    void STDMETHODCALLTYPE SetCursorPosition(int x, int y, DWORD flags) override
    {
        Refusal::Refuse("SetCursorPosition", x, y, flags);
    }

    BOOL STDMETHODCALLTYPE ShowCursor(BOOL show) override
    {
        Refusal::Refuse("ShowCursor", show);
        return FALSE;
    }

    HRESULT STDMETHODCALLTYPE CreateAdditionalSwapChain(D3DPRESENT_PARAMETERS* parameters,
                                                        IDirect3DSwapChain9** swapChainOut) override
    {
        return RefuseObject(swapChainOut, "CreateAdditionalSwapChain", parameters, swapChainOut);
    }

    HRESULT STDMETHODCALLTYPE GetSwapChain(UINT swapChain,
                                           IDirect3DSwapChain9** swapChainOut) override
    {
        return RefuseObject(swapChainOut, "GetSwapChain", swapChain, swapChainOut);
    }

    HRESULT STDMETHODCALLTYPE GetRasterStatus(UINT swapChain,
                                              D3DRASTER_STATUS* rasterStatusOut) override
    {
        return Refusal::Refuse("GetRasterStatus", swapChain, rasterStatusOut);
    }

    HRESULT STDMETHODCALLTYPE SetDialogBoxMode(BOOL enable) override
    {
        return Refusal::Refuse("SetDialogBoxMode", enable);
    }

    HRESULT STDMETHODCALLTYPE CreateVolumeTexture(UINT width, UINT height, UINT depth, UINT levels,
                                                  DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                                  IDirect3DVolumeTexture9** volumeTextureOut,
                                                  HANDLE* sharedHandle) override
    {
        return RefuseObject(volumeTextureOut, "CreateVolumeTexture", width, height, depth, levels,
                            usage, format, pool, volumeTextureOut, sharedHandle);
    }

    HRESULT STDMETHODCALLTYPE CreateCubeTexture(UINT edgeLength, UINT levels, DWORD usage,
                                                D3DFORMAT format, D3DPOOL pool,
                                                IDirect3DCubeTexture9** cubeTextureOut,
                                                HANDLE* sharedHandle) override
    {
        return RefuseObject(cubeTextureOut, "CreateCubeTexture", edgeLength, levels, usage, format,
                            pool, cubeTextureOut, sharedHandle);
    }

    HRESULT STDMETHODCALLTYPE CreateStateBlock(D3DSTATEBLOCKTYPE type,
                                               IDirect3DStateBlock9** blockOut) override
    {
        return RefuseObject(blockOut, "CreateStateBlock", type, blockOut);
    }

    HRESULT STDMETHODCALLTYPE BeginStateBlock() override
    {
        return Refusal::Refuse("BeginStateBlock");
    }

    HRESULT STDMETHODCALLTYPE EndStateBlock(IDirect3DStateBlock9** blockOut) override
    {
        return RefuseObject(blockOut, "EndStateBlock", blockOut);
    }

    HRESULT STDMETHODCALLTYPE SetPaletteEntries(UINT palette, const PALETTEENTRY* entries) override
    {
        return Refusal::Refuse("SetPaletteEntries", palette, entries);
    }

    HRESULT STDMETHODCALLTYPE GetPaletteEntries(UINT palette, PALETTEENTRY* entriesOut) override
    {
        return Refusal::Refuse("GetPaletteEntries", palette, entriesOut);
    }

    HRESULT STDMETHODCALLTYPE SetCurrentTexturePalette(UINT palette) override
    {
        return Refusal::Refuse("SetCurrentTexturePalette", palette);
    }

    HRESULT STDMETHODCALLTYPE GetCurrentTexturePalette(UINT* paletteOut) override
    {
        return Refusal::Refuse("GetCurrentTexturePalette", paletteOut);
    }

    HRESULT STDMETHODCALLTYPE ProcessVertices(UINT srcStartIndex, UINT destIndex, UINT vertexCount,
                                              IDirect3DVertexBuffer9* destBuffer,
                                              IDirect3DVertexDeclaration9* declaration,
                                              DWORD flags) override
    {
        return Refusal::Refuse("ProcessVertices", srcStartIndex, destIndex, vertexCount, destBuffer,
                               declaration, flags);
    }

    HRESULT STDMETHODCALLTYPE CreateVertexDeclaration(
        const D3DVERTEXELEMENT9* elements, IDirect3DVertexDeclaration9** declarationOut) override
    {
        return RefuseObject(declarationOut, "CreateVertexDeclaration", elements, declarationOut);
    }

    HRESULT STDMETHODCALLTYPE
    SetVertexDeclaration(IDirect3DVertexDeclaration9* declaration) override
    {
        return declaration ? Refusal::Refuse("SetVertexDeclaration", declaration) : D3D_OK;
    }

    HRESULT STDMETHODCALLTYPE
    GetVertexDeclaration(IDirect3DVertexDeclaration9** declarationOut) override
    {
        return GiveNone(declarationOut);
    }

    HRESULT STDMETHODCALLTYPE CreateVertexShader(const DWORD* byteCode,
                                                 IDirect3DVertexShader9** shaderOut) override
    {
        return RefuseObject(shaderOut, "CreateVertexShader", byteCode, shaderOut);
    }

    HRESULT STDMETHODCALLTYPE SetVertexShader(IDirect3DVertexShader9* shader) override
    {
        return shader ? Refusal::Refuse("SetVertexShader", shader) : D3D_OK;
    }

    HRESULT STDMETHODCALLTYPE GetVertexShader(IDirect3DVertexShader9** shaderOut) override
    {
        return GiveNone(shaderOut);
    }

    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantF(UINT startRegister, const float* data,
                                                       UINT count) override
    {
        return Refusal::Refuse("SetVertexShaderConstantF", startRegister, data, count);
    }

    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantF(UINT startRegister, float* constantDataOut,
                                                       UINT count) override
    {
        return Refusal::Refuse("GetVertexShaderConstantF", startRegister, constantDataOut, count);
    }

    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantI(UINT startRegister, const int* data,
                                                       UINT count) override
    {
        return Refusal::Refuse("SetVertexShaderConstantI", startRegister, data, count);
    }

    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantI(UINT startRegister, int* constantDataOut,
                                                       UINT count) override
    {
        return Refusal::Refuse("GetVertexShaderConstantI", startRegister, constantDataOut, count);
    }

    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantB(UINT startRegister, const BOOL* data,
                                                       UINT count) override
    {
        return Refusal::Refuse("SetVertexShaderConstantB", startRegister, data, count);
    }

    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantB(UINT startRegister, BOOL* constantDataOut,
                                                       UINT count) override
    {
        return Refusal::Refuse("GetVertexShaderConstantB", startRegister, constantDataOut, count);
    }

    HRESULT STDMETHODCALLTYPE CreatePixelShader(const DWORD* byteCode,
                                                IDirect3DPixelShader9** shaderOut) override
    {
        return RefuseObject(shaderOut, "CreatePixelShader", byteCode, shaderOut);
    }

    HRESULT STDMETHODCALLTYPE SetPixelShader(IDirect3DPixelShader9* shader) override
    {
        return shader ? Refusal::Refuse("SetPixelShader", shader) : D3D_OK;
    }

    HRESULT STDMETHODCALLTYPE GetPixelShader(IDirect3DPixelShader9** shaderOut) override
    {
        return GiveNone(shaderOut);
    }

    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantF(UINT startRegister, const float* data,
                                                      UINT count) override
    {
        return Refusal::Refuse("SetPixelShaderConstantF", startRegister, data, count);
    }

    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantF(UINT startRegister, float* constantDataOut,
                                                      UINT count) override
    {
        return Refusal::Refuse("GetPixelShaderConstantF", startRegister, constantDataOut, count);
    }

    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantI(UINT startRegister, const int* data,
                                                      UINT count) override
    {
        return Refusal::Refuse("SetPixelShaderConstantI", startRegister, data, count);
    }

    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantI(UINT startRegister, int* constantDataOut,
                                                      UINT count) override
    {
        return Refusal::Refuse("GetPixelShaderConstantI", startRegister, constantDataOut, count);
    }

    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantB(UINT startRegister, const BOOL* data,
                                                      UINT count) override
    {
        return Refusal::Refuse("SetPixelShaderConstantB", startRegister, data, count);
    }

    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantB(UINT startRegister, BOOL* constantDataOut,
                                                      UINT count) override
    {
        return Refusal::Refuse("GetPixelShaderConstantB", startRegister, constantDataOut, count);
    }

    HRESULT STDMETHODCALLTYPE DrawRectPatch(UINT handle, const float* segmentCount,
                                            const D3DRECTPATCH_INFO* patchInfo) override
    {
        return Refusal::Refuse("DrawRectPatch", handle, segmentCount, patchInfo);
    }

    HRESULT STDMETHODCALLTYPE DrawTriPatch(UINT handle, const float* segmentCount,
                                           const D3DTRIPATCH_INFO* patchInfo) override
    {
        return Refusal::Refuse("DrawTriPatch", handle, segmentCount, patchInfo);
    }

    HRESULT STDMETHODCALLTYPE DeletePatch(UINT handle) override
    {
        return Refusal::Refuse("DeletePatch", handle);
    }

    HRESULT STDMETHODCALLTYPE CreateQuery(D3DQUERYTYPE type, IDirect3DQuery9** queryOut) override
    {
        return RefuseObject(queryOut, "CreateQuery", type, queryOut);
    }

protected:
    RefusingDevice() = default;
    ~RefusingDevice() = default;

private:
    template <class Interface, class... Arguments>
    static HRESULT RefuseObject(Interface** objectOut, const char* name, Arguments... arguments)
    {
        if (objectOut)
            *objectOut = nullptr;
        return Refusal::Refuse(name, arguments...);
    }

    template <class Interface>
    static HRESULT GiveNone(Interface** objectOut)
    {
        if (!objectOut)
            return D3DERR_INVALIDCALL;
        *objectOut = nullptr;
        return D3D_OK;
    }
};
