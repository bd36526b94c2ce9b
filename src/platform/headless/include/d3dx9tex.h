#pragma once

// Image files, textures and surfaces.

#include "d3d9.h"

#define D3DX_FILTER_NONE 0x00000001
#define D3DX_FILTER_POINT 0x00000002
#define D3DX_FILTER_LINEAR 0x00000003
#define D3DX_FILTER_TRIANGLE 0x00000004
#define D3DX_FILTER_BOX 0x00000005
#define D3DX_FILTER_MIRROR_U 0x00010000
#define D3DX_FILTER_MIRROR_V 0x00020000
#define D3DX_FILTER_MIRROR_W 0x00040000
#define D3DX_FILTER_MIRROR 0x00070000
#define D3DX_FILTER_DITHER 0x00080000
#define D3DX_FILTER_DITHER_DIFFUSION 0x00100000
#define D3DX_FILTER_SRGB_IN 0x00200000
#define D3DX_FILTER_SRGB_OUT 0x00400000
#define D3DX_FILTER_SRGB 0x00600000

enum D3DXIMAGE_FILEFORMAT {
    D3DXIFF_BMP,
    D3DXIFF_JPG,
    D3DXIFF_TGA,
    D3DXIFF_PNG,
    D3DXIFF_DDS,
    D3DXIFF_PPM,
    D3DXIFF_DIB,
    D3DXIFF_HDR,
    D3DXIFF_PFM,
    D3DXIFF_FORCE_DWORD = 0x7FFFFFFF
};

struct D3DXIMAGE_INFO {
    UINT Width;
    UINT Height;
    UINT Depth;
    UINT MipLevels;
    D3DFORMAT Format;
    D3DRESOURCETYPE ResourceType;
    D3DXIMAGE_FILEFORMAT ImageFileFormat;
};
static_assert(sizeof(D3DXIMAGE_INFO) == 28);

extern "C" {

/// Describes an image file by its content. `D3DXERR_INVALIDDATA` for a file that is missing, empty,
/// truncated or not an image.
HRESULT WINAPI D3DXGetImageInfoFromFileA(LPCSTR path, D3DXIMAGE_INFO* infoOut);
HRESULT WINAPI D3DXGetImageInfoFromFileInMemory(LPCVOID data, UINT sizeBytes,
                                                D3DXIMAGE_INFO* infoOut);

/// Adjusts width, height, levels and format so that the device can create such a texture. A null
/// pointer skips that property; levels of 0 or `D3DX_DEFAULT` become the full chain.
HRESULT WINAPI D3DXCheckTextureRequirements(IDirect3DDevice9* device, UINT* widthInOut,
                                            UINT* heightInOut, UINT* levelsInOut, DWORD usage,
                                            D3DFORMAT* formatInOut, D3DPOOL pool);

/// Creates an empty texture of the nearest size and format that the device supports.
HRESULT WINAPI D3DXCreateTexture(IDirect3DDevice9* device, UINT width, UINT height, UINT levels,
                                 DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                 IDirect3DTexture9** textureOut);

HRESULT WINAPI D3DXCreateTextureFromFileA(IDirect3DDevice9* device, LPCSTR path,
                                          IDirect3DTexture9** textureOut);

/// Sides of 0 or `D3DX_DEFAULT_NONPOW2` are the file's, `D3DX_DEFAULT` is the file's rounded up to
/// a power of 2. Levels of 0 or `D3DX_DEFAULT` are the full chain, `D3DX_FROM_FILE` the file's. A
/// colour key of 0 means none; others are compared in all four channels. `palette` is not written.
HRESULT WINAPI D3DXCreateTextureFromFileExA(IDirect3DDevice9* device, LPCSTR path, UINT width,
                                            UINT height, UINT levels, DWORD usage, D3DFORMAT format,
                                            D3DPOOL pool, DWORD filter, DWORD mipFilter,
                                            D3DCOLOR colorKey, D3DXIMAGE_INFO* infoOut,
                                            PALETTEENTRY* palette, IDirect3DTexture9** textureOut);
HRESULT WINAPI D3DXCreateTextureFromFileInMemoryEx(
    IDirect3DDevice9* device, LPCVOID data, UINT sizeBytes, UINT width, UINT height, UINT levels,
    DWORD usage, D3DFORMAT format, D3DPOOL pool, DWORD filter, DWORD mipFilter, D3DCOLOR colorKey,
    D3DXIMAGE_INFO* infoOut, PALETTEENTRY* palette, IDirect3DTexture9** textureOut);

/// Of a cube file, all six faces; sides and levels as above. A file of another kind is refused with
/// `D3DXERR_INVALIDDATA`.
HRESULT WINAPI D3DXCreateCubeTextureFromFileExA(IDirect3DDevice9* device, LPCSTR path, UINT size,
                                                UINT levels, DWORD usage, D3DFORMAT format,
                                                D3DPOOL pool, DWORD filter, DWORD mipFilter,
                                                D3DCOLOR colorKey, D3DXIMAGE_INFO* infoOut,
                                                PALETTEENTRY* palette,
                                                IDirect3DCubeTexture9** cubeOut);

/// Of a volume file, in its own size; other sizes give `D3DERR_INVALIDCALL`. A file of another kind is
/// refused with `D3DXERR_INVALIDDATA`.
HRESULT WINAPI D3DXCreateVolumeTextureFromFileExA(IDirect3DDevice9* device, LPCSTR path, UINT width,
                                                  UINT height, UINT depth, UINT levels, DWORD usage,
                                                  D3DFORMAT format, D3DPOOL pool, DWORD filter,
                                                  DWORD mipFilter, D3DCOLOR colorKey,
                                                  D3DXIMAGE_INFO* infoOut, PALETTEENTRY* palette,
                                                  IDirect3DVolumeTexture9** volumeOut);

/// Fills the levels after `sourceLevel` (`D3DX_DEFAULT`: 0) from it.
HRESULT WINAPI D3DXFilterTexture(IDirect3DBaseTexture9* texture, const PALETTEENTRY* palette,
                                 UINT sourceLevel, DWORD filter);

/// Copies pixels into a surface, with conversion and scaling. `memory` points to pixel 0, 0 of the
/// source, `sourceRect` (required) selects the part to copy; a null `targetRect` means the whole.
HRESULT WINAPI D3DXLoadSurfaceFromMemory(IDirect3DSurface9* target,
                                         const PALETTEENTRY* targetPalette, const RECT* targetRect,
                                         LPCVOID memory, D3DFORMAT format, UINT pitch,
                                         const PALETTEENTRY* sourcePalette, const RECT* sourceRect,
                                         DWORD filter, D3DCOLOR colorKey);
HRESULT WINAPI D3DXLoadSurfaceFromSurface(IDirect3DSurface9* target,
                                          const PALETTEENTRY* targetPalette, const RECT* targetRect,
                                          IDirect3DSurface9* source,
                                          const PALETTEENTRY* sourcePalette, const RECT* sourceRect,
                                          DWORD filter, D3DCOLOR colorKey);

/// Saves a surface as PNG or BMP; other file formats give `E_NOTIMPL`.
HRESULT WINAPI D3DXSaveSurfaceToFileA(LPCSTR path, D3DXIMAGE_FILEFORMAT format,
                                      IDirect3DSurface9* surface, const PALETTEENTRY* palette,
                                      const RECT* rect);

} // extern "C"

// The system's header maps this name by macro.
inline HRESULT D3DXGetImageInfoFromFile(LPCSTR path, D3DXIMAGE_INFO* infoOut)
{
    return D3DXGetImageInfoFromFileA(path, infoOut);
}
