#pragma once

#include "tests/support/FakeResources.h"

#include <map>
#include <utility>

/// The default capabilities of a fake device: transform and lighting, eight texture stages, mipmaps
/// with bias, every texture operation, point size 64, four blend matrices without indices; no W
/// buffer, no power-of-two limit, no programs.
D3DCAPS9 FakeCaps();

/// A device without a picture, for tests that only look at calls: the standalone form of
/// RecordingDevice wraps one. States are stored and returned (0 or identity before they are set;
/// the viewport starts as the whole target); buffers, surfaces and two-dimensional textures have
/// lockable memory; drawing, clearing, copying and presenting succeed and do nothing. Volume and
/// cube textures, programs, declarations, state blocks, queries and swap chains fail. It checks
/// hardly anything, is never lost, and `Reset` does not require anything to be released. Pointers
/// must not be null.
class FakeDevice final : public FakeResourceHost {
public:
    /// `owner` may be null: then GetDirect3D fails. Returns null if the back buffer cannot be
    /// created. A windowed size of 0 x 0 means the window's client size.
    static ComHandle<FakeDevice> Create(const D3DDEVICE_CREATION_PARAMETERS& creation,
                                        const D3DPRESENT_PARAMETERS& parameters, IDirect3D9* owner);

    /// What GetDeviceCaps returns.
    D3DCAPS9 caps = FakeCaps();

    void Unbind(const IUnknown* resource) override;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override;
    HRESULT STDMETHODCALLTYPE TestCooperativeLevel() override;
    UINT STDMETHODCALLTYPE GetAvailableTextureMem() override;
    HRESULT STDMETHODCALLTYPE EvictManagedResources() override;
    HRESULT STDMETHODCALLTYPE GetDirect3D(IDirect3D9** d3dOut) override;
    HRESULT STDMETHODCALLTYPE GetDeviceCaps(D3DCAPS9* capsOut) override;
    HRESULT STDMETHODCALLTYPE GetDisplayMode(UINT swapChain, D3DDISPLAYMODE* modeOut) override;
    HRESULT STDMETHODCALLTYPE
    GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS* parametersOut) override;
    HRESULT STDMETHODCALLTYPE SetCursorProperties(UINT xHotSpot, UINT yHotSpot,
                                                  IDirect3DSurface9* cursorBitmap) override;
    void STDMETHODCALLTYPE SetCursorPosition(int x, int y, DWORD flags) override;
    BOOL STDMETHODCALLTYPE ShowCursor(BOOL show) override;
    HRESULT STDMETHODCALLTYPE CreateAdditionalSwapChain(
        D3DPRESENT_PARAMETERS* parameters, IDirect3DSwapChain9** swapChainOut) override;
    HRESULT STDMETHODCALLTYPE GetSwapChain(UINT swapChain,
                                           IDirect3DSwapChain9** swapChainOut) override;
    UINT STDMETHODCALLTYPE GetNumberOfSwapChains() override;
    HRESULT STDMETHODCALLTYPE Reset(D3DPRESENT_PARAMETERS* parameters) override;
    HRESULT STDMETHODCALLTYPE Present(const RECT* srcRect, const RECT* dstRect,
                                      HWND dstWindowOverride, const RGNDATA* dirtyRegion) override;
    HRESULT STDMETHODCALLTYPE GetBackBuffer(UINT swapChain, UINT backBuffer,
                                            D3DBACKBUFFER_TYPE type,
                                            IDirect3DSurface9** backBufferOut) override;
    HRESULT STDMETHODCALLTYPE GetRasterStatus(UINT swapChain,
                                              D3DRASTER_STATUS* rasterStatusOut) override;
    HRESULT STDMETHODCALLTYPE SetDialogBoxMode(BOOL enable) override;
    void STDMETHODCALLTYPE SetGammaRamp(UINT swapChain, DWORD flags,
                                        const D3DGAMMARAMP* ramp) override;
    void STDMETHODCALLTYPE GetGammaRamp(UINT swapChain, D3DGAMMARAMP* rampOut) override;
    HRESULT STDMETHODCALLTYPE CreateTexture(UINT width, UINT height, UINT levels, DWORD usage,
                                            D3DFORMAT format, D3DPOOL pool,
                                            IDirect3DTexture9** textureOut,
                                            HANDLE* sharedHandle) override;
    HRESULT STDMETHODCALLTYPE CreateVolumeTexture(UINT width, UINT height, UINT depth, UINT levels,
                                                  DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                                  IDirect3DVolumeTexture9** volumeTextureOut,
                                                  HANDLE* sharedHandle) override;
    HRESULT STDMETHODCALLTYPE CreateCubeTexture(UINT edgeLength, UINT levels, DWORD usage,
                                                D3DFORMAT format, D3DPOOL pool,
                                                IDirect3DCubeTexture9** cubeTextureOut,
                                                HANDLE* sharedHandle) override;
    HRESULT STDMETHODCALLTYPE CreateVertexBuffer(UINT length, DWORD usage, DWORD fvf, D3DPOOL pool,
                                                 IDirect3DVertexBuffer9** vertexBufferOut,
                                                 HANDLE* sharedHandle) override;
    HRESULT STDMETHODCALLTYPE CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format,
                                                D3DPOOL pool,
                                                IDirect3DIndexBuffer9** indexBufferOut,
                                                HANDLE* sharedHandle) override;
    HRESULT STDMETHODCALLTYPE CreateRenderTarget(UINT width, UINT height, D3DFORMAT format,
                                                 D3DMULTISAMPLE_TYPE multiSample, DWORD quality,
                                                 BOOL lockable, IDirect3DSurface9** surfaceOut,
                                                 HANDLE* sharedHandle) override;
    HRESULT STDMETHODCALLTYPE CreateDepthStencilSurface(UINT width, UINT height, D3DFORMAT format,
                                                        D3DMULTISAMPLE_TYPE multiSample,
                                                        DWORD quality, BOOL discard,
                                                        IDirect3DSurface9** surfaceOut,
                                                        HANDLE* sharedHandle) override;
    HRESULT STDMETHODCALLTYPE UpdateSurface(IDirect3DSurface9* srcSurface, const RECT* srcRect,
                                            IDirect3DSurface9* dstSurface,
                                            const POINT* dstPoint) override;
    HRESULT STDMETHODCALLTYPE UpdateTexture(IDirect3DBaseTexture9* sourceTexture,
                                            IDirect3DBaseTexture9* destinationTexture) override;
    HRESULT STDMETHODCALLTYPE GetRenderTargetData(IDirect3DSurface9* renderTarget,
                                                  IDirect3DSurface9* destSurface) override;
    HRESULT STDMETHODCALLTYPE GetFrontBufferData(UINT swapChain,
                                                 IDirect3DSurface9* destSurface) override;
    HRESULT STDMETHODCALLTYPE StretchRect(IDirect3DSurface9* srcSurface, const RECT* srcRect,
                                          IDirect3DSurface9* dstSurface, const RECT* dstRect,
                                          D3DTEXTUREFILTERTYPE filter) override;
    HRESULT STDMETHODCALLTYPE ColorFill(IDirect3DSurface9* surface, const RECT* rect,
                                        D3DCOLOR color) override;
    HRESULT STDMETHODCALLTYPE CreateOffscreenPlainSurface(UINT width, UINT height, D3DFORMAT format,
                                                          D3DPOOL pool,
                                                          IDirect3DSurface9** surfaceOut,
                                                          HANDLE* sharedHandle) override;
    HRESULT STDMETHODCALLTYPE SetRenderTarget(DWORD index,
                                              IDirect3DSurface9* renderTarget) override;
    HRESULT STDMETHODCALLTYPE GetRenderTarget(DWORD index,
                                              IDirect3DSurface9** renderTargetOut) override;
    HRESULT STDMETHODCALLTYPE SetDepthStencilSurface(IDirect3DSurface9* surface) override;
    HRESULT STDMETHODCALLTYPE GetDepthStencilSurface(IDirect3DSurface9** surfaceOut) override;
    HRESULT STDMETHODCALLTYPE BeginScene() override;
    HRESULT STDMETHODCALLTYPE EndScene() override;
    HRESULT STDMETHODCALLTYPE Clear(DWORD rectCount, const D3DRECT* rects, DWORD flags,
                                    D3DCOLOR color, float z, DWORD stencil) override;
    HRESULT STDMETHODCALLTYPE SetTransform(D3DTRANSFORMSTATETYPE state,
                                           const D3DMATRIX* matrix) override;
    HRESULT STDMETHODCALLTYPE GetTransform(D3DTRANSFORMSTATETYPE state,
                                           D3DMATRIX* matrixOut) override;
    HRESULT STDMETHODCALLTYPE MultiplyTransform(D3DTRANSFORMSTATETYPE state,
                                                const D3DMATRIX* matrix) override;
    HRESULT STDMETHODCALLTYPE SetViewport(const D3DVIEWPORT9* viewport) override;
    HRESULT STDMETHODCALLTYPE GetViewport(D3DVIEWPORT9* viewportOut) override;
    HRESULT STDMETHODCALLTYPE SetMaterial(const D3DMATERIAL9* material) override;
    HRESULT STDMETHODCALLTYPE GetMaterial(D3DMATERIAL9* materialOut) override;
    HRESULT STDMETHODCALLTYPE SetLight(DWORD index, const D3DLIGHT9* light) override;
    HRESULT STDMETHODCALLTYPE GetLight(DWORD index, D3DLIGHT9* lightOut) override;
    HRESULT STDMETHODCALLTYPE LightEnable(DWORD index, BOOL enable) override;
    HRESULT STDMETHODCALLTYPE GetLightEnable(DWORD index, BOOL* enableOut) override;
    HRESULT STDMETHODCALLTYPE SetClipPlane(DWORD index, const float* plane) override;
    HRESULT STDMETHODCALLTYPE GetClipPlane(DWORD index, float* planeOut) override;
    HRESULT STDMETHODCALLTYPE SetRenderState(D3DRENDERSTATETYPE state, DWORD value) override;
    HRESULT STDMETHODCALLTYPE GetRenderState(D3DRENDERSTATETYPE state, DWORD* valueOut) override;
    HRESULT STDMETHODCALLTYPE CreateStateBlock(D3DSTATEBLOCKTYPE type,
                                               IDirect3DStateBlock9** blockOut) override;
    HRESULT STDMETHODCALLTYPE BeginStateBlock() override;
    HRESULT STDMETHODCALLTYPE EndStateBlock(IDirect3DStateBlock9** blockOut) override;
    HRESULT STDMETHODCALLTYPE SetClipStatus(const D3DCLIPSTATUS9* clipStatus) override;
    HRESULT STDMETHODCALLTYPE GetClipStatus(D3DCLIPSTATUS9* clipStatusOut) override;
    HRESULT STDMETHODCALLTYPE GetTexture(DWORD stage, IDirect3DBaseTexture9** textureOut) override;
    HRESULT STDMETHODCALLTYPE SetTexture(DWORD stage, IDirect3DBaseTexture9* texture) override;
    HRESULT STDMETHODCALLTYPE GetTextureStageState(DWORD stage, D3DTEXTURESTAGESTATETYPE type,
                                                   DWORD* valueOut) override;
    HRESULT STDMETHODCALLTYPE SetTextureStageState(DWORD stage, D3DTEXTURESTAGESTATETYPE type,
                                                   DWORD value) override;
    HRESULT STDMETHODCALLTYPE GetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                              DWORD* valueOut) override;
    HRESULT STDMETHODCALLTYPE SetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                              DWORD value) override;
    HRESULT STDMETHODCALLTYPE ValidateDevice(DWORD* numPassesOut) override;
    HRESULT STDMETHODCALLTYPE SetPaletteEntries(UINT palette, const PALETTEENTRY* entries) override;
    HRESULT STDMETHODCALLTYPE GetPaletteEntries(UINT palette, PALETTEENTRY* entriesOut) override;
    HRESULT STDMETHODCALLTYPE SetCurrentTexturePalette(UINT palette) override;
    HRESULT STDMETHODCALLTYPE GetCurrentTexturePalette(UINT* paletteOut) override;
    HRESULT STDMETHODCALLTYPE SetScissorRect(const RECT* rect) override;
    HRESULT STDMETHODCALLTYPE GetScissorRect(RECT* rectOut) override;
    HRESULT STDMETHODCALLTYPE SetSoftwareVertexProcessing(BOOL software) override;
    BOOL STDMETHODCALLTYPE GetSoftwareVertexProcessing() override;
    HRESULT STDMETHODCALLTYPE SetNPatchMode(float segments) override;
    float STDMETHODCALLTYPE GetNPatchMode() override;
    HRESULT STDMETHODCALLTYPE DrawPrimitive(D3DPRIMITIVETYPE primitiveType, UINT startVertex,
                                            UINT primitiveCount) override;
    HRESULT STDMETHODCALLTYPE DrawIndexedPrimitive(D3DPRIMITIVETYPE type, INT baseVertexIndex,
                                                   UINT minVertexIndex, UINT numVertices,
                                                   UINT startIndex, UINT primitiveCount) override;
    HRESULT STDMETHODCALLTYPE DrawPrimitiveUP(D3DPRIMITIVETYPE primitiveType, UINT primitiveCount,
                                              const void* data, UINT stride) override;
    HRESULT STDMETHODCALLTYPE DrawIndexedPrimitiveUP(D3DPRIMITIVETYPE primitiveType,
                                                     UINT minVertexIndex, UINT vertexCount,
                                                     UINT primitiveCount, const void* indexData,
                                                     D3DFORMAT indexFormat, const void* data,
                                                     UINT stride) override;
    HRESULT STDMETHODCALLTYPE ProcessVertices(UINT srcStartIndex, UINT destIndex, UINT vertexCount,
                                              IDirect3DVertexBuffer9* destBuffer,
                                              IDirect3DVertexDeclaration9* declaration,
                                              DWORD flags) override;
    HRESULT STDMETHODCALLTYPE CreateVertexDeclaration(
        const D3DVERTEXELEMENT9* elements, IDirect3DVertexDeclaration9** declarationOut) override;
    HRESULT STDMETHODCALLTYPE
    SetVertexDeclaration(IDirect3DVertexDeclaration9* declaration) override;
    HRESULT STDMETHODCALLTYPE
    GetVertexDeclaration(IDirect3DVertexDeclaration9** declarationOut) override;
    HRESULT STDMETHODCALLTYPE SetFVF(DWORD fvf) override;
    HRESULT STDMETHODCALLTYPE GetFVF(DWORD* fvfOut) override;
    HRESULT STDMETHODCALLTYPE CreateVertexShader(const DWORD* byteCode,
                                                 IDirect3DVertexShader9** shaderOut) override;
    HRESULT STDMETHODCALLTYPE SetVertexShader(IDirect3DVertexShader9* shader) override;
    HRESULT STDMETHODCALLTYPE GetVertexShader(IDirect3DVertexShader9** shaderOut) override;
    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantF(UINT startRegister, const float* data,
                                                       UINT count) override;
    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantF(UINT startRegister, float* constantDataOut,
                                                       UINT count) override;
    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantI(UINT startRegister, const int* data,
                                                       UINT count) override;
    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantI(UINT startRegister, int* constantDataOut,
                                                       UINT count) override;
    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantB(UINT startRegister, const BOOL* data,
                                                       UINT count) override;
    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantB(UINT startRegister, BOOL* constantDataOut,
                                                       UINT count) override;
    HRESULT STDMETHODCALLTYPE SetStreamSource(UINT streamNumber, IDirect3DVertexBuffer9* streamData,
                                              UINT offsetBytes, UINT stride) override;
    HRESULT STDMETHODCALLTYPE GetStreamSource(UINT streamNumber,
                                              IDirect3DVertexBuffer9** streamDataOut,
                                              UINT* offsetBytesOut, UINT* strideOut) override;
    HRESULT STDMETHODCALLTYPE SetStreamSourceFreq(UINT streamNumber, UINT divider) override;
    HRESULT STDMETHODCALLTYPE GetStreamSourceFreq(UINT streamNumber, UINT* dividerOut) override;
    HRESULT STDMETHODCALLTYPE SetIndices(IDirect3DIndexBuffer9* indexData) override;
    HRESULT STDMETHODCALLTYPE GetIndices(IDirect3DIndexBuffer9** indexDataOut) override;
    HRESULT STDMETHODCALLTYPE CreatePixelShader(const DWORD* byteCode,
                                                IDirect3DPixelShader9** shaderOut) override;
    HRESULT STDMETHODCALLTYPE SetPixelShader(IDirect3DPixelShader9* shader) override;
    HRESULT STDMETHODCALLTYPE GetPixelShader(IDirect3DPixelShader9** shaderOut) override;
    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantF(UINT startRegister, const float* data,
                                                      UINT count) override;
    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantF(UINT startRegister, float* constantDataOut,
                                                      UINT count) override;
    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantI(UINT startRegister, const int* data,
                                                      UINT count) override;
    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantI(UINT startRegister, int* constantDataOut,
                                                      UINT count) override;
    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantB(UINT startRegister, const BOOL* data,
                                                      UINT count) override;
    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantB(UINT startRegister, BOOL* constantDataOut,
                                                      UINT count) override;
    HRESULT STDMETHODCALLTYPE DrawRectPatch(UINT handle, const float* segmentCount,
                                            const D3DRECTPATCH_INFO* patchInfo) override;
    HRESULT STDMETHODCALLTYPE DrawTriPatch(UINT handle, const float* segmentCount,
                                           const D3DTRIPATCH_INFO* patchInfo) override;
    HRESULT STDMETHODCALLTYPE DeletePatch(UINT handle) override;
    HRESULT STDMETHODCALLTYPE CreateQuery(D3DQUERYTYPE type, IDirect3DQuery9** queryOut) override;

private:
    using StageKey = std::pair<DWORD, DWORD>; // stage and state

    struct Stream {
        IDirect3DVertexBuffer9* buffer = nullptr;
        UINT offsetBytes = 0;
        UINT stride = 0;
    };

    FakeDevice(const D3DDEVICE_CREATION_PARAMETERS& creationParameters, IDirect3D9* ownerOrNull);
    ~FakeDevice() override;

    bool Take(const D3DPRESENT_PARAMETERS& wanted);
    void DropImplicitSurfaces();
    void ClearStates();

    D3DDEVICE_CREATION_PARAMETERS creation;
    D3DPRESENT_PARAMETERS parameters = {};
    ComHandle<IDirect3D9> owner;
    ComHandle<FakeSurface> backBufferSurface;
    ComHandle<FakeSurface> autoDepthSurface; // null if there is none
    // Bound objects are not owned: see Unbind.
    std::map<DWORD, IDirect3DSurface9*> renderTargets;
    IDirect3DSurface9* depthStencil = nullptr;
    std::map<DWORD, DWORD> renderStates;
    std::map<StageKey, DWORD> stageStates;
    std::map<StageKey, DWORD> samplerStates;
    std::map<DWORD, D3DMATRIX> transforms;
    std::map<DWORD, D3DLIGHT9> lights;
    std::map<DWORD, BOOL> lightEnables;
    std::map<DWORD, IDirect3DBaseTexture9*> textures;
    std::map<DWORD, Stream> streams;
    IDirect3DIndexBuffer9* indices = nullptr;
    D3DVIEWPORT9 viewportState = {};
    D3DMATERIAL9 materialState = {};
    D3DGAMMARAMP gammaRamp = {};
    RECT scissor = {};
    DWORD fvfState = 0;
    BOOL softwareProcessing = FALSE;
};
