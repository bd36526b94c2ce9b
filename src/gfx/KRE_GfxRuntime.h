#pragma once

#include <d3d9.h>
#include <d3dx9.h>

/// The system calls that the engine makes. Tests replace them with their own.
struct KRE_GfxRuntime {
    /// Whether a library of the installed runtime can be loaded.
    bool (*hasLibrary)(const char* fileName);
    /// Returns the interface with one reference for the caller, or null.
    IDirect3D9* (*createDirect3D)(UINT sdkVersion);
    HRESULT(WINAPI* createEffectPool)(ID3DXEffectPool** poolOut) = D3DXCreateEffectPool;
    HRESULT(WINAPI* createEffect)
    (IDirect3DDevice9* device, LPCSTR file, const D3DXMACRO* defines, ID3DXInclude* include,
     DWORD flags, ID3DXEffectPool* pool, ID3DXEffect** effectOut,
     ID3DXBuffer** errorsOut) = D3DXCreateEffectFromFileA;
    HRESULT(WINAPI* createRenderToSurface)
    (IDirect3DDevice9* device, UINT width, UINT height, D3DFORMAT format, BOOL depthStencil,
     D3DFORMAT depthStencilFormat, ID3DXRenderToSurface** surfaceOut) = D3DXCreateRenderToSurface;
    HRESULT(WINAPI* createTextureFromFile)
    (IDirect3DDevice9* device, LPCSTR file, UINT width, UINT height, UINT levels, DWORD usage,
     D3DFORMAT format, D3DPOOL pool, DWORD filter, DWORD mipFilter, D3DCOLOR colorKey,
     D3DXIMAGE_INFO* info, PALETTEENTRY* palette,
     IDirect3DTexture9** textureOut) = D3DXCreateTextureFromFileExA;

    static const KRE_GfxRuntime& System();
};
