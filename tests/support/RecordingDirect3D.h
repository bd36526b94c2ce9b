#pragma once

#include "tests/support/FakeDirect3D.h"
#include "tests/support/RecordingDevice.h"

/// An `IDirect3D9` that records every call like RecordingDevice, forwards it to the one that it
/// wraps, and puts a RecordingDevice in front of each device that it creates. Both write to one
/// recorder, so its lines are in the order of all calls.
class RecordingDirect3D final : public IDirect3D9 {
public:
    /// Holds a reference to `d3d` until its own last reference is released.
    static ComHandle<RecordingDirect3D> Wrap(IDirect3D9* d3d);

    /// Wraps a new one of the host's.
    static ComHandle<RecordingDirect3D> WrapReal();

    /// Wraps a FakeDirect3D, whose devices are FakeDevices.
    static ComHandle<RecordingDirect3D> Standalone();

    const std::shared_ptr<CallRecorder>& Recorder() const { return calls; }
    IDirect3D9* Wrapped() const { return d3d.get(); }

    /// What GetDeviceCaps returns from now on, here and on devices created from now on; device type
    /// and adapter are those of the call.
    void OverrideCaps(const D3DCAPS9& caps);

    /// From now on these adapters exist. Calls that need a real one go to the wrapped object's
    /// default adapter, whichever of these they name.
    void OverrideAdapters(std::vector<FakeAdapter> adapters);

    // Shortcuts for the recorder's operations of the same names.

    const std::vector<std::string>& Lines() const { return calls->Lines(); }
    std::string Joined() const { return calls->Joined(); }
    void ClearLines() { calls->ClearLines(); }
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
    explicit RecordingDirect3D(ComHandle<IDirect3D9> wrapped);
    ~RecordingDirect3D() = default;

    /// Records the call and makes it, unless a failure is due.
    template <class Call>
    HRESULT Forward(const char* name, std::initializer_list<std::string> arguments, Call call)
    {
        const auto noted = calls->Note(name, arguments);
        return noted.failure ? *noted.failure : call();
    }

    HRESULT MakeDevice(UINT adapter, D3DDEVTYPE deviceType, HWND focusWindow, DWORD behaviorFlags,
                       D3DPRESENT_PARAMETERS* parameters, IDirect3DDevice9** deviceOut);

    /// The wrapped object's adapter for one of these.
    UINT Real(UINT adapter) const;

    ComHandle<IDirect3D9> d3d;
    std::shared_ptr<CallRecorder> calls = std::make_shared<CallRecorder>();
    std::optional<D3DCAPS9> overriddenCaps;
    std::optional<std::vector<FakeAdapter>> fakeAdapters;
    ULONG references = 1;
};
