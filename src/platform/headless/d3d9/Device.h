#pragma once

#include "platform/RefusingDevice.h"
#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/DeviceState.h"
#include "platform/headless/d3d9/Direct3D.h"
#include "platform/headless/d3d9/Rasterizer.h"
#include "platform/headless/d3d9/TargetCopy.h"

#include <cstdint>
#include <memory>

namespace headless {

/// The states that `TestCooperativeLevel` reports.
enum class Cooperation { Ok, Lost, NotReset };

/// The device: its states, its implicit surfaces and the count of its children. Its operations are
/// split by topic over the files Device*.cpp; those that the host does not model are in
/// RefusingDevice.h.
class HeadlessDevice final
    : public RefusingDevice<ComIdentity<IDirect3DDevice9, IID_IDirect3DDevice9>, LoggedRefusal>,
      public ResourceOwner {
public:
    /// `parameters` are complete (see PresentParameters.h). The caller holds one reference. Null if
    /// memory runs out. `owner` outlives the device.
    static HeadlessDevice* Create(HeadlessDirect3D& owner,
                                  const D3DDEVICE_CREATION_PARAMETERS& creation,
                                  const D3DPRESENT_PARAMETERS& parameters);

    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE TestCooperativeLevel() override;
    UINT STDMETHODCALLTYPE GetAvailableTextureMem() override;
    HRESULT STDMETHODCALLTYPE EvictManagedResources() override;
    HRESULT STDMETHODCALLTYPE GetDirect3D(IDirect3D9** d3dOut) override;
    HRESULT STDMETHODCALLTYPE GetDeviceCaps(D3DCAPS9* capsOut) override;
    HRESULT STDMETHODCALLTYPE GetDisplayMode(UINT swapChain, D3DDISPLAYMODE* modeOut) override;
    HRESULT STDMETHODCALLTYPE
    GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS* parametersOut) override;
    UINT STDMETHODCALLTYPE GetNumberOfSwapChains() override;
    HRESULT STDMETHODCALLTYPE Reset(D3DPRESENT_PARAMETERS* parameters) override;
    HRESULT STDMETHODCALLTYPE Present(const RECT* srcRect, const RECT* dstRect,
                                      HWND dstWindowOverride, const RGNDATA* dirtyRegion) override;
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
    HRESULT STDMETHODCALLTYPE SetFVF(DWORD fvf) override;
    HRESULT STDMETHODCALLTYPE GetFVF(DWORD* fvfOut) override;
    HRESULT STDMETHODCALLTYPE SetStreamSource(UINT streamNumber, IDirect3DVertexBuffer9* streamData,
                                              UINT offsetBytes, UINT stride) override;
    HRESULT STDMETHODCALLTYPE GetStreamSource(UINT streamNumber,
                                              IDirect3DVertexBuffer9** streamDataOut,
                                              UINT* offsetBytesOut, UINT* strideOut) override;
    HRESULT STDMETHODCALLTYPE SetStreamSourceFreq(UINT streamNumber, UINT divider) override;
    HRESULT STDMETHODCALLTYPE GetStreamSourceFreq(UINT streamNumber, UINT* dividerOut) override;
    HRESULT STDMETHODCALLTYPE SetIndices(IDirect3DIndexBuffer9* indexData) override;
    HRESULT STDMETHODCALLTYPE GetIndices(IDirect3DIndexBuffer9** indexDataOut) override;

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

    void ChildReferenced(ObjectKind kind, D3DPOOL pool) override;
    void ChildUnreferenced(ObjectKind kind, D3DPOOL pool) override;
    IDirect3DDevice9& DeviceInterface() override { return *this; }

    void SetCooperation(Cooperation next) { cooperation = next; }
    const DeviceState& State() const { return state; }

private:
    HeadlessDevice(HeadlessDirect3D& owner, const D3DDEVICE_CREATION_PARAMETERS& creation);
    ~HeadlessDevice();

    HRESULT MakeImplicitSurfaces(const D3DPRESENT_PARAMETERS& parameters);
    HRESULT CreateSurface(const D3DSURFACE_DESC& desc, bool lockable,
                          IDirect3DSurface9** surfaceOut);
    void BindRenderTarget(HeadlessSurface& surface);
    RECT ClearArea() const;
    HRESULT Draw(const DrawRequest& request, const VertexLayout& layout);
    void ForgetStream();
    HWND PresentWindow() const;

    HeadlessDirect3D& d3d; ///< not owned, kept alive by `DeviceReferenced`
    const D3DDEVICE_CREATION_PARAMETERS creationParameters;
    D3DPRESENT_PARAMETERS presentParameters = {};
    Cooperation cooperation = Cooperation::Ok;
    ULONG references = 1;          ///< the caller's
    ObjectCensus heldChildren;     ///< children that the caller holds; each keeps the device alive
    int64_t heldInDefaultPool = 0; ///< those of them in the default pool, which block a reset

    Binding<HeadlessSurface> backBuffer;
    Binding<HeadlessSurface> autoDepth; ///< empty without an automatic depth buffer
    PixelBuffer frontBuffer;            ///< the last presented picture, in the back buffer's format
    DeviceState state;
    TargetCopy targetCopy;
    std::unique_ptr<Rasterizer> rasterizer; ///< made by the first draw
};

} // namespace headless
