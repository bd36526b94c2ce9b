#pragma once

#include "tests/support/CallRecorder.h"
#include "tests/support/ComHandle.h"

#include <memory>
#include <optional>

/// A device that records every call as a line of text and forwards it to the device that it wraps.
///
/// `SetRenderState D3DRS_ZENABLE D3DZB_TRUE`, `SetTexture 0 texture#1`, `SetTransform D3DTS_VIEW
/// identity`, `Clear 0 rects D3DCLEAR_TARGET|D3DCLEAR_ZBUFFER 0xFF000000 1 0`, `CreateVertexBuffer
/// 96 D3DUSAGE_WRITEONLY D3DFVF_XYZ D3DPOOL_MANAGED -> vertexbuffer#1`. Resources are named by
/// their kind and numbered per kind in the order of first appearance. The operations of IUnknown
/// are not recorded.
///
/// Objects that the wrapped device creates are its own: their GetDevice returns that device, and
/// calls on them are not recorded. Calls that D3DX makes on this device are.
class RecordingDevice final : public IDirect3DDevice9 {
public:
    /// Holds a reference to `device` until its own last reference is released. `owner`, which may
    /// be null, is what GetDirect3D returns instead of the device's.
    static ComHandle<RecordingDevice>
    Wrap(IDirect3DDevice9* device,
         std::shared_ptr<CallRecorder> recorder = std::make_shared<CallRecorder>(),
         IDirect3D9* owner = nullptr);

    /// Without a real device: wraps a FakeDevice, see there.
    static ComHandle<RecordingDevice> Standalone(UINT width = 640, UINT height = 480);

    /// Shared so that the lines can be read after the device is gone.
    const std::shared_ptr<CallRecorder>& Recorder() const { return calls; }
    IDirect3DDevice9* Wrapped() const { return device.get(); }

    /// What GetDeviceCaps returns from now on.
    void OverrideCaps(const D3DCAPS9& caps);

    /// Vertex buffers that are created from now on hold this in each byte, as those of a device may
    /// hold anything.
    void FillNewVertexBuffers(BYTE value) { newVertexByte = value; }

    // Shortcuts for the recorder's operations of the same names.

    const std::vector<std::string>& Lines() const { return calls->Lines(); }
    std::string Joined() const { return calls->Joined(); }
    void ClearLines() { calls->ClearLines(); }
    /// Out pointers to objects become null when a call fails as planned.
    void FailNext(const char* name, HRESULT result, const char* match = "")
    {
        calls->FailNext(name, result, match);
    }
    void FailAlways(const char* name, HRESULT result, const char* match = "")
    {
        calls->FailAlways(name, result, match);
    }
    void ClearFailures() { calls->ClearFailures(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override;
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
    using Arguments = std::initializer_list<std::string>;

    RecordingDevice(ComHandle<IDirect3DDevice9> wrapped, std::shared_ptr<CallRecorder> recorder,
                    IDirect3D9* ownerOrNull);
    ~RecordingDevice() = default;

    /// Records the call and makes it, unless a failure is due.
    template <class Call>
    HRESULT Forward(const char* name, Arguments arguments, Call call)
    {
        const auto noted = calls->Note(name, arguments);
        return noted.failure ? *noted.failure : call();
    }

    /// The same for a call that returns an object, whose name is appended to the line.
    template <class Object, class Call>
    HRESULT Give(const char* name, Arguments arguments, const char* kind, Object** out, Call call)
    {
        return NoteObject(name, arguments, kind, out, call, false);
    }

    /// The same for a call that creates an object.
    template <class Object, class Call>
    HRESULT Create(const char* name, Arguments arguments, const char* kind, Object** out, Call call)
    {
        return NoteObject(name, arguments, kind, out, call, true);
    }

    template <class Object, class Call>
    HRESULT NoteObject(const char* name, Arguments arguments, const char* kind, Object** out,
                       Call call, bool isNew)
    {
        const auto noted = calls->Note(name, arguments);
        if (noted.failure && out)
            *out = nullptr;
        const HRESULT result = noted.failure ? *noted.failure : call();
        if (SUCCEEDED(result) && out)
            calls->NoteResult(noted.line, isNew ? calls->NameOfNewObject(kind, *out)
                                                : calls->NameOfObject(kind, *out));
        return result;
    }

    ComHandle<IDirect3DDevice9> device;
    std::shared_ptr<CallRecorder> calls;
    ComHandle<IDirect3D9> owner; // null if the device was wrapped on its own
    std::optional<D3DCAPS9> overriddenCaps;
    std::optional<BYTE> newVertexByte;
    ULONG references = 1;
};
