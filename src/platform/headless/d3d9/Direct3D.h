#pragma once

#include "platform/headless/d3d9/ComObject.h"
#include "platform/headless/d3d9/ObjectCensus.h"

#include <d3d9.h>

namespace headless {

/// The entry point: describes the one adapter and creates devices on it.
class HeadlessDirect3D final : public ComIdentity<IDirect3D9, IID_IDirect3D9> {
public:
    /// The caller holds one reference.
    HeadlessDirect3D();
    ~HeadlessDirect3D();

    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE RegisterSoftwareDevice(void* initialize) override;
    UINT STDMETHODCALLTYPE GetAdapterCount() override;
    HRESULT STDMETHODCALLTYPE GetAdapterIdentifier(UINT adapter, DWORD flags,
                                                   D3DADAPTER_IDENTIFIER9* identifierOut) override;
    UINT STDMETHODCALLTYPE GetAdapterModeCount(UINT adapter, D3DFORMAT format) override;
    HRESULT STDMETHODCALLTYPE EnumAdapterModes(UINT adapter, D3DFORMAT format, UINT mode,
                                               D3DDISPLAYMODE* modeOut) override;
    HRESULT STDMETHODCALLTYPE GetAdapterDisplayMode(UINT adapter, D3DDISPLAYMODE* modeOut) override;
    HRESULT STDMETHODCALLTYPE CheckDeviceType(UINT adapter, D3DDEVTYPE deviceType,
                                              D3DFORMAT displayFormat, D3DFORMAT backBufferFormat,
                                              BOOL windowed) override;
    HRESULT STDMETHODCALLTYPE CheckDeviceFormat(UINT adapter, D3DDEVTYPE deviceType,
                                                D3DFORMAT adapterFormat, DWORD usage,
                                                D3DRESOURCETYPE resourceType,
                                                D3DFORMAT checkFormat) override;
    HRESULT STDMETHODCALLTYPE CheckDeviceMultiSampleType(UINT adapter, D3DDEVTYPE deviceType,
                                                         D3DFORMAT surfaceFormat, BOOL windowed,
                                                         D3DMULTISAMPLE_TYPE multiSampleType,
                                                         DWORD* qualityLevelsOut) override;
    HRESULT STDMETHODCALLTYPE CheckDepthStencilMatch(UINT adapter, D3DDEVTYPE deviceType,
                                                     D3DFORMAT adapterFormat,
                                                     D3DFORMAT renderTargetFormat,
                                                     D3DFORMAT depthStencilFormat) override;
    HRESULT STDMETHODCALLTYPE CheckDeviceFormatConversion(UINT adapter, D3DDEVTYPE deviceType,
                                                          D3DFORMAT sourceFormat,
                                                          D3DFORMAT targetFormat) override;
    HRESULT STDMETHODCALLTYPE GetDeviceCaps(UINT adapter, D3DDEVTYPE deviceType,
                                            D3DCAPS9* capsOut) override;
    HMONITOR STDMETHODCALLTYPE GetAdapterMonitor(UINT adapter) override;
    HRESULT STDMETHODCALLTYPE CreateDevice(UINT adapter, D3DDEVTYPE deviceType, HWND focusWindow,
                                           DWORD behaviorFlags, D3DPRESENT_PARAMETERS* parameters,
                                           IDirect3DDevice9** deviceOut) override;

    /// The caller took its first reference to a device, or released its last one. A referenced
    /// device keeps this object alive, so `DeviceUnreferenced` may destroy it.
    void DeviceReferenced();
    void DeviceUnreferenced();

private:
    ULONG references = 1; ///< the caller's
    ULONG devices = 0;
};

} // namespace headless
