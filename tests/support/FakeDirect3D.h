#pragma once

#include "tests/support/FakeObject.h"

#include <string>
#include <vector>

/// An adapter as a test defines it.
struct FakeAdapter {
    std::string description = "Fake adapter";
    D3DDISPLAYMODE desktop = {1024, 768, 60, D3DFMT_X8R8G8B8};
    /// In the order of their numbers; modes are numbered per format.
    std::vector<D3DDISPLAYMODE> modes = {{640, 480, 60, D3DFMT_X8R8G8B8},
                                         {1024, 768, 60, D3DFMT_X8R8G8B8},
                                         {640, 480, 60, D3DFMT_R5G6B5},
                                         {1024, 768, 60, D3DFMT_R5G6B5}};
};

// What IDirect3D9 reports about such adapters; a number that does not exist gives
// D3DERR_INVALIDCALL or 0.

HRESULT IdentifierOfAdapter(const std::vector<FakeAdapter>& adapters, UINT adapter,
                            D3DADAPTER_IDENTIFIER9* identifierOut);
UINT ModeCountOfAdapter(const std::vector<FakeAdapter>& adapters, UINT adapter, D3DFORMAT format);
HRESULT ModeOfAdapter(const std::vector<FakeAdapter>& adapters, UINT adapter, D3DFORMAT format,
                      UINT mode, D3DDISPLAYMODE* modeOut);
HRESULT DesktopOfAdapter(const std::vector<FakeAdapter>& adapters, UINT adapter,
                         D3DDISPLAYMODE* modeOut);

/// An `IDirect3D9` with one FakeAdapter that accepts every format and creates FakeDevices.
class FakeDirect3D final : public FakeObject<IDirect3D9> {
public:
    /// What GetDeviceCaps returns here and on devices created from now on.
    D3DCAPS9 caps;

    FakeDirect3D();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override;
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

private:
    std::vector<FakeAdapter> adapters = {{}};
};
