#pragma once

// Direct3D 9: the interfaces, with their operations in the published order, and the result codes.
// platform/headless/d3d9 documents what the device does.

#include "windows.h"

#include "d3d9caps.h"
#include "d3d9types.h"
#include "unknwn.h"

#define DIRECT3D_VERSION 0x0900
#define D3D_SDK_VERSION 32
#define D3DADAPTER_DEFAULT 0
#define D3DENUM_WHQL_LEVEL 0x00000002
#define D3DPRESENT_DONOTWAIT 1
#define D3DPRESENT_LINEAR_CONTENT 2
#define D3DPRESENT_BACK_BUFFERS_MAX 3
#define D3DSGR_NO_CALIBRATION 0x00000000
#define D3DSGR_CALIBRATE 0x00000001
#define D3DCURSOR_IMMEDIATE_UPDATE 0x00000001
#define D3DSPD_IUNKNOWN 0x00000001

#define D3DCREATE_FPU_PRESERVE 0x00000002
#define D3DCREATE_MULTITHREADED 0x00000004
#define D3DCREATE_PUREDEVICE 0x00000010
#define D3DCREATE_SOFTWARE_VERTEXPROCESSING 0x00000020
#define D3DCREATE_HARDWARE_VERTEXPROCESSING 0x00000040
#define D3DCREATE_MIXED_VERTEXPROCESSING 0x00000080
#define D3DCREATE_DISABLE_DRIVER_MANAGEMENT 0x00000100
#define D3DCREATE_ADAPTERGROUP_DEVICE 0x00000200
#define D3DCREATE_NOWINDOWCHANGES 0x00000800

#define MAKE_D3DHRESULT(code) (static_cast<HRESULT>(0x88760000u | (code)))
#define MAKE_D3DSTATUS(code) (static_cast<HRESULT>(0x08760000u | (code)))
#define D3D_OK S_OK
#define D3DERR_WRONGTEXTUREFORMAT MAKE_D3DHRESULT(2072)
#define D3DERR_UNSUPPORTEDCOLOROPERATION MAKE_D3DHRESULT(2073)
#define D3DERR_UNSUPPORTEDCOLORARG MAKE_D3DHRESULT(2074)
#define D3DERR_UNSUPPORTEDALPHAOPERATION MAKE_D3DHRESULT(2075)
#define D3DERR_UNSUPPORTEDALPHAARG MAKE_D3DHRESULT(2076)
#define D3DERR_TOOMANYOPERATIONS MAKE_D3DHRESULT(2077)
#define D3DERR_CONFLICTINGTEXTUREFILTER MAKE_D3DHRESULT(2078)
#define D3DERR_UNSUPPORTEDFACTORVALUE MAKE_D3DHRESULT(2079)
#define D3DERR_CONFLICTINGRENDERSTATE MAKE_D3DHRESULT(2081)
#define D3DERR_UNSUPPORTEDTEXTUREFILTER MAKE_D3DHRESULT(2082)
#define D3DERR_CONFLICTINGTEXTUREPALETTE MAKE_D3DHRESULT(2086)
#define D3DERR_DRIVERINTERNALERROR MAKE_D3DHRESULT(2087)
#define D3DERR_NOTFOUND MAKE_D3DHRESULT(2150)
#define D3DERR_MOREDATA MAKE_D3DHRESULT(2151)
#define D3DERR_DEVICELOST MAKE_D3DHRESULT(2152)
#define D3DERR_DEVICENOTRESET MAKE_D3DHRESULT(2153)
#define D3DERR_NOTAVAILABLE MAKE_D3DHRESULT(2154)
#define D3DERR_OUTOFVIDEOMEMORY MAKE_D3DHRESULT(380)
#define D3DERR_INVALIDDEVICE MAKE_D3DHRESULT(2155)
#define D3DERR_INVALIDCALL MAKE_D3DHRESULT(2156)
#define D3DERR_DRIVERINVALIDCALL MAKE_D3DHRESULT(2157)
#define D3DERR_WASSTILLDRAWING MAKE_D3DHRESULT(540)
#define D3DOK_NOAUTOGEN MAKE_D3DSTATUS(2159)

struct PALETTEENTRY;
struct RGNDATA;
struct IDirect3D9;
struct IDirect3DDevice9;
struct IDirect3DSurface9;
struct IDirect3DSwapChain9;
struct IDirect3DVolume9;
struct IDirect3DStateBlock9;
struct IDirect3DVertexDeclaration9;
struct IDirect3DVertexShader9;
struct IDirect3DPixelShader9;
struct IDirect3DQuery9;

struct IDirect3DResource9 : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPrivateData(REFGUID guid, const void* data, DWORD size,
                                                     DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPrivateData(REFGUID guid, void* dataOut,
                                                     DWORD* sizeInOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE FreePrivateData(REFGUID guid) = 0;
    virtual DWORD STDMETHODCALLTYPE SetPriority(DWORD priority) = 0;
    virtual DWORD STDMETHODCALLTYPE GetPriority() = 0;
    virtual void STDMETHODCALLTYPE PreLoad() = 0;
    virtual D3DRESOURCETYPE STDMETHODCALLTYPE GetType() = 0;
};

struct IDirect3DSurface9 : IDirect3DResource9 {
    virtual HRESULT STDMETHODCALLTYPE GetContainer(REFIID iid, void** containerOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDesc(D3DSURFACE_DESC* descOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockRect(D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                               DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnlockRect() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDC(HDC* dcOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE ReleaseDC(HDC dc) = 0;
};

struct IDirect3DBaseTexture9 : IDirect3DResource9 {
    virtual DWORD STDMETHODCALLTYPE SetLOD(DWORD lod) = 0;
    virtual DWORD STDMETHODCALLTYPE GetLOD() = 0;
    virtual DWORD STDMETHODCALLTYPE GetLevelCount() = 0;
    virtual HRESULT STDMETHODCALLTYPE SetAutoGenFilterType(D3DTEXTUREFILTERTYPE filterType) = 0;
    virtual D3DTEXTUREFILTERTYPE STDMETHODCALLTYPE GetAutoGenFilterType() = 0;
    virtual void STDMETHODCALLTYPE GenerateMipSubLevels() = 0;
};

struct IDirect3DTexture9 : IDirect3DBaseTexture9 {
    virtual HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSurfaceLevel(UINT level,
                                                      IDirect3DSurface9** surfaceLevelOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockRect(UINT level, D3DLOCKED_RECT* lockedOut,
                                               const RECT* rect, DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnlockRect(UINT level) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddDirtyRect(const RECT* dirtyRect) = 0;
};

struct IDirect3DCubeTexture9 : IDirect3DBaseTexture9 {
    virtual HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCubeMapSurface(D3DCUBEMAP_FACES face, UINT level,
                                                        IDirect3DSurface9** surfaceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockRect(D3DCUBEMAP_FACES face, UINT level,
                                               D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                               DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnlockRect(D3DCUBEMAP_FACES face, UINT level) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddDirtyRect(D3DCUBEMAP_FACES face,
                                                   const RECT* dirtyRect) = 0;
};

struct IDirect3DVolumeTexture9 : IDirect3DBaseTexture9 {
    virtual HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DVOLUME_DESC* descOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVolumeLevel(UINT level,
                                                     IDirect3DVolume9** volumeLevelOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockBox(UINT level, D3DLOCKED_BOX* lockedOut,
                                              const D3DBOX* box, DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnlockBox(UINT level) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddDirtyBox(const D3DBOX* dirtyBox) = 0;
};

struct IDirect3DVertexBuffer9 : IDirect3DResource9 {
    virtual HRESULT STDMETHODCALLTYPE Lock(UINT offsetToLock, UINT sizeToLock, void** dataOut,
                                           DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Unlock() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDesc(D3DVERTEXBUFFER_DESC* descOut) = 0;
};

struct IDirect3DIndexBuffer9 : IDirect3DResource9 {
    virtual HRESULT STDMETHODCALLTYPE Lock(UINT offsetToLock, UINT sizeToLock, void** dataOut,
                                           DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Unlock() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDesc(D3DINDEXBUFFER_DESC* descOut) = 0;
};

// Shaders and vertex declarations: the fixed-function device never creates any, but parameters of
// these types need a base for reference counting.
struct IDirect3DVertexDeclaration9 : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDeclaration(D3DVERTEXELEMENT9* elementsOut,
                                                     UINT* countOut) = 0;
};

struct IDirect3DVertexShader9 : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFunction(void* codeOut, UINT* sizeInOut) = 0;
};

struct IDirect3DPixelShader9 : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFunction(void* codeOut, UINT* sizeInOut) = 0;
};

struct IDirect3D9 : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE RegisterSoftwareDevice(void* initialize) = 0;
    virtual UINT STDMETHODCALLTYPE GetAdapterCount() = 0;
    virtual HRESULT STDMETHODCALLTYPE
    GetAdapterIdentifier(UINT adapter, DWORD flags, D3DADAPTER_IDENTIFIER9* identifierOut) = 0;
    virtual UINT STDMETHODCALLTYPE GetAdapterModeCount(UINT adapter, D3DFORMAT format) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumAdapterModes(UINT adapter, D3DFORMAT format, UINT mode,
                                                       D3DDISPLAYMODE* modeOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetAdapterDisplayMode(UINT adapter,
                                                            D3DDISPLAYMODE* modeOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE CheckDeviceType(UINT adapter, D3DDEVTYPE deviceType,
                                                      D3DFORMAT displayFormat,
                                                      D3DFORMAT backBufferFormat,
                                                      BOOL windowed) = 0;
    virtual HRESULT STDMETHODCALLTYPE CheckDeviceFormat(UINT adapter, D3DDEVTYPE deviceType,
                                                        D3DFORMAT adapterFormat, DWORD usage,
                                                        D3DRESOURCETYPE resourceType,
                                                        D3DFORMAT checkFormat) = 0;
    virtual HRESULT STDMETHODCALLTYPE CheckDeviceMultiSampleType(
        UINT adapter, D3DDEVTYPE deviceType, D3DFORMAT surfaceFormat, BOOL windowed,
        D3DMULTISAMPLE_TYPE multiSampleType, DWORD* qualityLevelsOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE CheckDepthStencilMatch(UINT adapter, D3DDEVTYPE deviceType,
                                                             D3DFORMAT adapterFormat,
                                                             D3DFORMAT renderTargetFormat,
                                                             D3DFORMAT depthStencilFormat) = 0;
    virtual HRESULT STDMETHODCALLTYPE CheckDeviceFormatConversion(UINT adapter,
                                                                  D3DDEVTYPE deviceType,
                                                                  D3DFORMAT sourceFormat,
                                                                  D3DFORMAT targetFormat) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDeviceCaps(UINT adapter, D3DDEVTYPE deviceType,
                                                    D3DCAPS9* capsOut) = 0;
    virtual HMONITOR STDMETHODCALLTYPE GetAdapterMonitor(UINT adapter) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateDevice(UINT adapter, D3DDEVTYPE deviceType,
                                                   HWND focusWindow, DWORD behaviorFlags,
                                                   D3DPRESENT_PARAMETERS* parameters,
                                                   IDirect3DDevice9** deviceOut) = 0;
};

struct IDirect3DDevice9 : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE TestCooperativeLevel() = 0;
    virtual UINT STDMETHODCALLTYPE GetAvailableTextureMem() = 0;
    virtual HRESULT STDMETHODCALLTYPE EvictManagedResources() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDirect3D(IDirect3D9** d3dOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDeviceCaps(D3DCAPS9* capsOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDisplayMode(UINT swapChain, D3DDISPLAYMODE* modeOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS* parametersOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetCursorProperties(UINT xHotSpot, UINT yHotSpot,
                                                          IDirect3DSurface9* cursorBitmap) = 0;
    virtual void STDMETHODCALLTYPE SetCursorPosition(int x, int y, DWORD flags) = 0;
    virtual BOOL STDMETHODCALLTYPE ShowCursor(BOOL show) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateAdditionalSwapChain(
        D3DPRESENT_PARAMETERS* parameters, IDirect3DSwapChain9** swapChainOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSwapChain(UINT swapChain,
                                                   IDirect3DSwapChain9** swapChainOut) = 0;
    virtual UINT STDMETHODCALLTYPE GetNumberOfSwapChains() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset(D3DPRESENT_PARAMETERS* parameters) = 0;
    virtual HRESULT STDMETHODCALLTYPE Present(const RECT* srcRect, const RECT* dstRect,
                                              HWND dstWindowOverride,
                                              const RGNDATA* dirtyRegion) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetBackBuffer(UINT swapChain, UINT backBuffer,
                                                    D3DBACKBUFFER_TYPE type,
                                                    IDirect3DSurface9** backBufferOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRasterStatus(UINT swapChain,
                                                      D3DRASTER_STATUS* rasterStatusOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDialogBoxMode(BOOL enable) = 0;
    virtual void STDMETHODCALLTYPE SetGammaRamp(UINT swapChain, DWORD flags,
                                                const D3DGAMMARAMP* ramp) = 0;
    virtual void STDMETHODCALLTYPE GetGammaRamp(UINT swapChain, D3DGAMMARAMP* rampOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateTexture(UINT width, UINT height, UINT levels,
                                                    DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                                    IDirect3DTexture9** textureOut,
                                                    HANDLE* sharedHandle) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateVolumeTexture(
        UINT width, UINT height, UINT depth, UINT levels, DWORD usage, D3DFORMAT format,
        D3DPOOL pool, IDirect3DVolumeTexture9** volumeTextureOut, HANDLE* sharedHandle) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateCubeTexture(UINT edgeLength, UINT levels, DWORD usage,
                                                        D3DFORMAT format, D3DPOOL pool,
                                                        IDirect3DCubeTexture9** cubeTextureOut,
                                                        HANDLE* sharedHandle) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateVertexBuffer(UINT length, DWORD usage, DWORD fvf,
                                                         D3DPOOL pool,
                                                         IDirect3DVertexBuffer9** vertexBufferOut,
                                                         HANDLE* sharedHandle) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format,
                                                        D3DPOOL pool,
                                                        IDirect3DIndexBuffer9** indexBufferOut,
                                                        HANDLE* sharedHandle) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateRenderTarget(UINT width, UINT height, D3DFORMAT format,
                                                         D3DMULTISAMPLE_TYPE multiSample,
                                                         DWORD quality, BOOL lockable,
                                                         IDirect3DSurface9** surfaceOut,
                                                         HANDLE* sharedHandle) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateDepthStencilSurface(
        UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE multiSample, DWORD quality,
        BOOL discard, IDirect3DSurface9** surfaceOut, HANDLE* sharedHandle) = 0;
    virtual HRESULT STDMETHODCALLTYPE UpdateSurface(IDirect3DSurface9* srcSurface,
                                                    const RECT* srcRect,
                                                    IDirect3DSurface9* dstSurface,
                                                    const POINT* dstPoint) = 0;
    virtual HRESULT STDMETHODCALLTYPE UpdateTexture(IDirect3DBaseTexture9* sourceTexture,
                                                    IDirect3DBaseTexture9* destinationTexture) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRenderTargetData(IDirect3DSurface9* renderTarget,
                                                          IDirect3DSurface9* destSurface) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFrontBufferData(UINT swapChain,
                                                         IDirect3DSurface9* destSurface) = 0;
    virtual HRESULT STDMETHODCALLTYPE StretchRect(IDirect3DSurface9* srcSurface,
                                                  const RECT* srcRect,
                                                  IDirect3DSurface9* dstSurface,
                                                  const RECT* dstRect,
                                                  D3DTEXTUREFILTERTYPE filter) = 0;
    virtual HRESULT STDMETHODCALLTYPE ColorFill(IDirect3DSurface9* surface, const RECT* rect,
                                                D3DCOLOR color) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateOffscreenPlainSurface(UINT width, UINT height,
                                                                  D3DFORMAT format, D3DPOOL pool,
                                                                  IDirect3DSurface9** surfaceOut,
                                                                  HANDLE* sharedHandle) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetRenderTarget(DWORD index,
                                                      IDirect3DSurface9* renderTarget) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRenderTarget(DWORD index,
                                                      IDirect3DSurface9** renderTargetOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDepthStencilSurface(IDirect3DSurface9* surface) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDepthStencilSurface(IDirect3DSurface9** surfaceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE BeginScene() = 0;
    virtual HRESULT STDMETHODCALLTYPE EndScene() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clear(DWORD rectCount, const D3DRECT* rects, DWORD flags,
                                            D3DCOLOR color, float z, DWORD stencil) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTransform(D3DTRANSFORMSTATETYPE state,
                                                   const D3DMATRIX* matrix) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTransform(D3DTRANSFORMSTATETYPE state,
                                                   D3DMATRIX* matrixOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE MultiplyTransform(D3DTRANSFORMSTATETYPE state,
                                                        const D3DMATRIX* matrix) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetViewport(const D3DVIEWPORT9* viewport) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetViewport(D3DVIEWPORT9* viewportOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMaterial(const D3DMATERIAL9* material) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMaterial(D3DMATERIAL9* materialOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetLight(DWORD index, const D3DLIGHT9* light) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetLight(DWORD index, D3DLIGHT9* lightOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE LightEnable(DWORD index, BOOL enable) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetLightEnable(DWORD index, BOOL* enableOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetClipPlane(DWORD index, const float* plane) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetClipPlane(DWORD index, float* planeOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetRenderState(D3DRENDERSTATETYPE state, DWORD value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRenderState(D3DRENDERSTATETYPE state, DWORD* valueOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateStateBlock(D3DSTATEBLOCKTYPE type,
                                                       IDirect3DStateBlock9** blockOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE BeginStateBlock() = 0;
    virtual HRESULT STDMETHODCALLTYPE EndStateBlock(IDirect3DStateBlock9** blockOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetClipStatus(const D3DCLIPSTATUS9* clipStatus) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetClipStatus(D3DCLIPSTATUS9* clipStatusOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTexture(DWORD stage,
                                                 IDirect3DBaseTexture9** textureOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTexture(DWORD stage, IDirect3DBaseTexture9* texture) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTextureStageState(DWORD stage,
                                                           D3DTEXTURESTAGESTATETYPE type,
                                                           DWORD* valueOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTextureStageState(DWORD stage,
                                                           D3DTEXTURESTAGESTATETYPE type,
                                                           DWORD value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                                      DWORD* valueOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                                      DWORD value) = 0;
    virtual HRESULT STDMETHODCALLTYPE ValidateDevice(DWORD* numPassesOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPaletteEntries(UINT palette,
                                                        const PALETTEENTRY* entries) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPaletteEntries(UINT palette, PALETTEENTRY* entriesOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetCurrentTexturePalette(UINT palette) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCurrentTexturePalette(UINT* paletteOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetScissorRect(const RECT* rect) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetScissorRect(RECT* rectOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSoftwareVertexProcessing(BOOL software) = 0;
    virtual BOOL STDMETHODCALLTYPE GetSoftwareVertexProcessing() = 0;
    virtual HRESULT STDMETHODCALLTYPE SetNPatchMode(float segments) = 0;
    virtual float STDMETHODCALLTYPE GetNPatchMode() = 0;
    virtual HRESULT STDMETHODCALLTYPE DrawPrimitive(D3DPRIMITIVETYPE primitiveType,
                                                    UINT startVertex, UINT primitiveCount) = 0;
    virtual HRESULT STDMETHODCALLTYPE DrawIndexedPrimitive(D3DPRIMITIVETYPE type,
                                                           INT baseVertexIndex, UINT minVertexIndex,
                                                           UINT numVertices, UINT startIndex,
                                                           UINT primitiveCount) = 0;
    virtual HRESULT STDMETHODCALLTYPE DrawPrimitiveUP(D3DPRIMITIVETYPE primitiveType,
                                                      UINT primitiveCount, const void* data,
                                                      UINT stride) = 0;
    virtual HRESULT STDMETHODCALLTYPE DrawIndexedPrimitiveUP(
        D3DPRIMITIVETYPE primitiveType, UINT minVertexIndex, UINT vertexCount, UINT primitiveCount,
        const void* indexData, D3DFORMAT indexFormat, const void* data, UINT stride) = 0;
    virtual HRESULT STDMETHODCALLTYPE ProcessVertices(UINT srcStartIndex, UINT destIndex,
                                                      UINT vertexCount,
                                                      IDirect3DVertexBuffer9* destBuffer,
                                                      IDirect3DVertexDeclaration9* declaration,
                                                      DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateVertexDeclaration(
        const D3DVERTEXELEMENT9* elements, IDirect3DVertexDeclaration9** declarationOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    SetVertexDeclaration(IDirect3DVertexDeclaration9* declaration) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    GetVertexDeclaration(IDirect3DVertexDeclaration9** declarationOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFVF(DWORD fvf) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFVF(DWORD* fvfOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateVertexShader(const DWORD* byteCode,
                                                         IDirect3DVertexShader9** shaderOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVertexShader(IDirect3DVertexShader9* shader) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVertexShader(IDirect3DVertexShader9** shaderOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVertexShaderConstantF(UINT startRegister,
                                                               const float* data, UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVertexShaderConstantF(UINT startRegister,
                                                               float* constantDataOut,
                                                               UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVertexShaderConstantI(UINT startRegister, const int* data,
                                                               UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVertexShaderConstantI(UINT startRegister,
                                                               int* constantDataOut,
                                                               UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVertexShaderConstantB(UINT startRegister, const BOOL* data,
                                                               UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVertexShaderConstantB(UINT startRegister,
                                                               BOOL* constantDataOut,
                                                               UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetStreamSource(UINT streamNumber,
                                                      IDirect3DVertexBuffer9* streamData,
                                                      UINT offsetBytes, UINT stride) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetStreamSource(UINT streamNumber,
                                                      IDirect3DVertexBuffer9** streamDataOut,
                                                      UINT* offsetBytesOut, UINT* strideOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetStreamSourceFreq(UINT streamNumber, UINT divider) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetStreamSourceFreq(UINT streamNumber, UINT* dividerOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetIndices(IDirect3DIndexBuffer9* indexData) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIndices(IDirect3DIndexBuffer9** indexDataOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreatePixelShader(const DWORD* byteCode,
                                                        IDirect3DPixelShader9** shaderOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPixelShader(IDirect3DPixelShader9* shader) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPixelShader(IDirect3DPixelShader9** shaderOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPixelShaderConstantF(UINT startRegister, const float* data,
                                                              UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPixelShaderConstantF(UINT startRegister,
                                                              float* constantDataOut,
                                                              UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPixelShaderConstantI(UINT startRegister, const int* data,
                                                              UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPixelShaderConstantI(UINT startRegister,
                                                              int* constantDataOut, UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPixelShaderConstantB(UINT startRegister, const BOOL* data,
                                                              UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPixelShaderConstantB(UINT startRegister,
                                                              BOOL* constantDataOut,
                                                              UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE DrawRectPatch(UINT handle, const float* segmentCount,
                                                    const D3DRECTPATCH_INFO* patchInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE DrawTriPatch(UINT handle, const float* segmentCount,
                                                   const D3DTRIPATCH_INFO* patchInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeletePatch(UINT handle) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateQuery(D3DQUERYTYPE type,
                                                  IDirect3DQuery9** queryOut) = 0;
};

inline constexpr GUID IID_IDirect3D9 = {
    0x81BDCBCA, 0x64D4, 0x426D, {0xAE, 0x8D, 0xAD, 0x01, 0x47, 0xF4, 0x27, 0x5C}};
inline constexpr GUID IID_IDirect3DDevice9 = {
    0xD0223B96, 0xBF7A, 0x43FD, {0x92, 0xBD, 0xA4, 0x3B, 0x0D, 0x82, 0xB9, 0xEB}};
inline constexpr GUID IID_IDirect3DResource9 = {
    0x05EEC05D, 0x8F7D, 0x4362, {0xB9, 0x99, 0xD1, 0xBA, 0xF3, 0x57, 0xC7, 0x04}};
inline constexpr GUID IID_IDirect3DVertexBuffer9 = {
    0xB64BB1B5, 0xFD70, 0x4DF6, {0xBF, 0x91, 0x19, 0xD0, 0xA1, 0x24, 0x55, 0xE3}};
inline constexpr GUID IID_IDirect3DSurface9 = {
    0x0CFBAF3A, 0x9FF6, 0x429A, {0x99, 0xB3, 0xA2, 0x79, 0x6A, 0xF8, 0xB8, 0x9B}};
inline constexpr GUID IID_IDirect3DIndexBuffer9 = {
    0x7C9DD65E, 0xD3F7, 0x4529, {0xAC, 0xEE, 0x78, 0x58, 0x30, 0xAC, 0xDE, 0x35}};
inline constexpr GUID IID_IDirect3DBaseTexture9 = {
    0x580CA87E, 0x1D3C, 0x4D54, {0x99, 0x1D, 0xB7, 0xD3, 0xE3, 0xC2, 0x98, 0xCE}};
inline constexpr GUID IID_IDirect3DTexture9 = {
    0x85C31227, 0x3DE5, 0x4F00, {0x9B, 0x3A, 0xF1, 0x1A, 0xC3, 0x8C, 0x18, 0xB5}};
inline constexpr GUID IID_IDirect3DCubeTexture9 = {
    0xFFF32F81, 0xD953, 0x473A, {0x92, 0x23, 0x93, 0xD6, 0x52, 0xAB, 0xA9, 0x3F}};
inline constexpr GUID IID_IDirect3DVolumeTexture9 = {
    0x2518526C, 0xE789, 0x4111, {0xA7, 0xB9, 0x47, 0xEF, 0x32, 0x8D, 0x13, 0xE6}};
inline constexpr GUID IID_IDirect3DVertexDeclaration9 = {
    0xDD13C59C, 0x36FA, 0x4098, {0xA8, 0xFB, 0xC7, 0xED, 0x39, 0xDC, 0x85, 0x46}};
inline constexpr GUID IID_IDirect3DVertexShader9 = {
    0xEFC5557E, 0x6265, 0x4613, {0x8A, 0x94, 0x43, 0x85, 0x78, 0x89, 0xEB, 0x36}};
inline constexpr GUID IID_IDirect3DPixelShader9 = {
    0x6D3BDBDC, 0x5B02, 0x4415, {0xB8, 0x52, 0xCE, 0x5E, 0x8B, 0xCC, 0xB2, 0x89}};

using LPDIRECT3D9 = IDirect3D9*;
using LPDIRECT3DDEVICE9 = IDirect3DDevice9*;
using LPDIRECT3DSURFACE9 = IDirect3DSurface9*;
using LPDIRECT3DBASETEXTURE9 = IDirect3DBaseTexture9*;
using LPDIRECT3DTEXTURE9 = IDirect3DTexture9*;
using LPDIRECT3DVERTEXBUFFER9 = IDirect3DVertexBuffer9*;
using LPDIRECT3DINDEXBUFFER9 = IDirect3DIndexBuffer9*;

/// Returns a new object that the caller releases, or null for a version other than
/// `D3D_SDK_VERSION`.
extern "C" IDirect3D9* WINAPI Direct3DCreate9(UINT sdkVersion);
