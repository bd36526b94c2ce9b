#pragma once

#include "platform/RefusingDevice.h"
#include "tests/support/FakeResources.h"

#include <map>
#include <utility>

/// The default capabilities of a fake device: transform and lighting, eight texture stages, mipmaps
/// with bias, every texture operation, point size 64, four blend matrices without indices; no W
/// buffer, no power-of-two limit, no programs.
D3DCAPS9 FakeCaps();

/// Calls fail without a word.
struct PlainRefusal {
    template <class... Arguments>
    static HRESULT Refuse(const char*, Arguments...)
    {
        return D3DERR_INVALIDCALL;
    }
};

/// A device without a picture, for tests that only look at calls: the standalone form of
/// RecordingDevice wraps one. States are stored and returned (0 or identity before they are set;
/// the viewport starts as the whole target); buffers, surfaces and two-dimensional textures have
/// lockable memory; drawing, clearing, copying and presenting succeed and do nothing. What
/// RefusingDevice lists fails. It checks hardly anything, is never lost, and `Reset` does not
/// require anything to be released. Pointers must not be null.
class FakeDevice final : public RefusingDevice<FakeResourceHost, PlainRefusal> {
public:
    /// `owner` may be null: then GetDirect3D fails. Returns null if the back buffer cannot be
    /// created. A windowed size of 0 x 0 means the window's client size.
    static ComHandle<FakeDevice> Create(const D3DDEVICE_CREATION_PARAMETERS& creation,
                                        const D3DPRESENT_PARAMETERS& parameters, IDirect3D9* owner);

    /// What GetDeviceCaps returns.
    D3DCAPS9 caps = FakeCaps();

    void Unbind(const IUnknown* resource) override;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override;
    HRESULT STDMETHODCALLTYPE TestCooperativeLevel() override { return D3D_OK; }
    UINT STDMETHODCALLTYPE GetAvailableTextureMem() override;
    HRESULT STDMETHODCALLTYPE EvictManagedResources() override { return D3D_OK; }
    HRESULT STDMETHODCALLTYPE GetDirect3D(IDirect3D9** d3dOut) override;
    HRESULT STDMETHODCALLTYPE GetDeviceCaps(D3DCAPS9* capsOut) override;
    HRESULT STDMETHODCALLTYPE GetDisplayMode(UINT swapChain, D3DDISPLAYMODE* modeOut) override;
    HRESULT STDMETHODCALLTYPE
    GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS* parametersOut) override;
    UINT STDMETHODCALLTYPE GetNumberOfSwapChains() override;
    HRESULT STDMETHODCALLTYPE Reset(D3DPRESENT_PARAMETERS* parameters) override;
    HRESULT STDMETHODCALLTYPE Present(const RECT*, const RECT*, HWND, const RGNDATA*) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE GetBackBuffer(UINT swapChain, UINT backBuffer,
                                            D3DBACKBUFFER_TYPE type,
                                            IDirect3DSurface9** backBufferOut) override;
    void STDMETHODCALLTYPE SetGammaRamp(UINT swapChain, DWORD flags,
                                        const D3DGAMMARAMP* ramp) override;
    void STDMETHODCALLTYPE GetGammaRamp(UINT swapChain, D3DGAMMARAMP* rampOut) override;
    HRESULT STDMETHODCALLTYPE CreateTexture(UINT width, UINT height, UINT levels, DWORD usage,
                                            D3DFORMAT format, D3DPOOL pool,
                                            IDirect3DTexture9** textureOut,
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
    HRESULT STDMETHODCALLTYPE UpdateSurface(IDirect3DSurface9*, const RECT*, IDirect3DSurface9*,
                                            const POINT*) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE UpdateTexture(IDirect3DBaseTexture9*, IDirect3DBaseTexture9*) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE GetRenderTargetData(IDirect3DSurface9*, IDirect3DSurface9*) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE GetFrontBufferData(UINT, IDirect3DSurface9*) override
    {
        return D3DERR_INVALIDCALL;
    }
    HRESULT STDMETHODCALLTYPE StretchRect(IDirect3DSurface9*, const RECT*, IDirect3DSurface9*,
                                          const RECT*, D3DTEXTUREFILTERTYPE) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE ColorFill(IDirect3DSurface9*, const RECT*, D3DCOLOR) override
    {
        return D3D_OK;
    }
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
    HRESULT STDMETHODCALLTYPE BeginScene() override { return D3D_OK; }
    HRESULT STDMETHODCALLTYPE EndScene() override { return D3D_OK; }
    HRESULT STDMETHODCALLTYPE Clear(DWORD, const D3DRECT*, DWORD, D3DCOLOR, float, DWORD) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE SetTransform(D3DTRANSFORMSTATETYPE state,
                                           const D3DMATRIX* matrix) override;
    HRESULT STDMETHODCALLTYPE GetTransform(D3DTRANSFORMSTATETYPE state,
                                           D3DMATRIX* matrixOut) override;
    HRESULT STDMETHODCALLTYPE MultiplyTransform(D3DTRANSFORMSTATETYPE, const D3DMATRIX*) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE SetViewport(const D3DVIEWPORT9* viewport) override;
    HRESULT STDMETHODCALLTYPE GetViewport(D3DVIEWPORT9* viewportOut) override;
    HRESULT STDMETHODCALLTYPE SetMaterial(const D3DMATERIAL9* material) override;
    HRESULT STDMETHODCALLTYPE GetMaterial(D3DMATERIAL9* materialOut) override;
    HRESULT STDMETHODCALLTYPE SetLight(DWORD index, const D3DLIGHT9* light) override;
    HRESULT STDMETHODCALLTYPE GetLight(DWORD index, D3DLIGHT9* lightOut) override;
    HRESULT STDMETHODCALLTYPE LightEnable(DWORD index, BOOL enable) override;
    HRESULT STDMETHODCALLTYPE GetLightEnable(DWORD index, BOOL* enableOut) override;
    HRESULT STDMETHODCALLTYPE SetClipPlane(DWORD, const float*) override { return D3D_OK; }
    HRESULT STDMETHODCALLTYPE GetClipPlane(DWORD, float*) override { return D3DERR_INVALIDCALL; }
    HRESULT STDMETHODCALLTYPE SetRenderState(D3DRENDERSTATETYPE state, DWORD value) override;
    HRESULT STDMETHODCALLTYPE GetRenderState(D3DRENDERSTATETYPE state, DWORD* valueOut) override;
    HRESULT STDMETHODCALLTYPE SetClipStatus(const D3DCLIPSTATUS9*) override { return D3D_OK; }
    HRESULT STDMETHODCALLTYPE GetClipStatus(D3DCLIPSTATUS9*) override { return D3DERR_INVALIDCALL; }
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
    HRESULT STDMETHODCALLTYPE ValidateDevice(DWORD*) override { return D3DERR_INVALIDCALL; }
    HRESULT STDMETHODCALLTYPE SetScissorRect(const RECT* rect) override;
    HRESULT STDMETHODCALLTYPE GetScissorRect(RECT* rectOut) override;
    HRESULT STDMETHODCALLTYPE SetSoftwareVertexProcessing(BOOL software) override;
    BOOL STDMETHODCALLTYPE GetSoftwareVertexProcessing() override;
    HRESULT STDMETHODCALLTYPE SetNPatchMode(float) override { return D3D_OK; }
    float STDMETHODCALLTYPE GetNPatchMode() override { return 0.0f; }
    HRESULT STDMETHODCALLTYPE DrawPrimitive(D3DPRIMITIVETYPE, UINT, UINT) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE DrawIndexedPrimitive(D3DPRIMITIVETYPE, INT, UINT, UINT, UINT,
                                                   UINT) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE DrawPrimitiveUP(D3DPRIMITIVETYPE, UINT, const void*, UINT) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE DrawIndexedPrimitiveUP(D3DPRIMITIVETYPE, UINT, UINT, UINT,
                                                     const void*, D3DFORMAT, const void*,
                                                     UINT) override
    {
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE SetFVF(DWORD fvf) override;
    HRESULT STDMETHODCALLTYPE GetFVF(DWORD* fvfOut) override;
    HRESULT STDMETHODCALLTYPE SetStreamSource(UINT streamNumber, IDirect3DVertexBuffer9* streamData,
                                              UINT offsetBytes, UINT stride) override;
    HRESULT STDMETHODCALLTYPE GetStreamSource(UINT streamNumber,
                                              IDirect3DVertexBuffer9** streamDataOut,
                                              UINT* offsetBytesOut, UINT* strideOut) override;
    HRESULT STDMETHODCALLTYPE SetStreamSourceFreq(UINT, UINT) override { return D3D_OK; }
    HRESULT STDMETHODCALLTYPE GetStreamSourceFreq(UINT, UINT*) override
    {
        return D3DERR_INVALIDCALL;
    }
    HRESULT STDMETHODCALLTYPE SetIndices(IDirect3DIndexBuffer9* indexData) override;
    HRESULT STDMETHODCALLTYPE GetIndices(IDirect3DIndexBuffer9** indexDataOut) override;

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
