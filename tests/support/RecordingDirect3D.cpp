#include "tests/support/RecordingDirect3D.h"

#include "tests/support/CallText.h"
#include "tests/support/D3DNames.h"
#include "tests/support/InterfaceIds.h"

RecordingDirect3D::RecordingDirect3D(ComHandle<IDirect3D9> wrapped) : d3d(std::move(wrapped))
{}

ComHandle<RecordingDirect3D> RecordingDirect3D::Wrap(IDirect3D9* d3d)
{
    return ComHandle<RecordingDirect3D>(new RecordingDirect3D(Shared(d3d)));
}

ComHandle<RecordingDirect3D> RecordingDirect3D::WrapReal()
{
    return ComHandle<RecordingDirect3D>(
        new RecordingDirect3D(ComHandle<IDirect3D9>(Direct3DCreate9(D3D_SDK_VERSION))));
}

ComHandle<RecordingDirect3D> RecordingDirect3D::Standalone()
{
    return ComHandle<RecordingDirect3D>(
        new RecordingDirect3D(ComHandle<IDirect3D9>(new FakeDirect3D)));
}

void RecordingDirect3D::OverrideCaps(const D3DCAPS9& caps)
{
    overriddenCaps = caps;
}

void RecordingDirect3D::OverrideAdapters(std::vector<FakeAdapter> adapters)
{
    fakeAdapters = std::move(adapters);
}

UINT RecordingDirect3D::Real(UINT adapter) const
{
    return fakeAdapters && adapter < fakeAdapters->size() ? D3DADAPTER_DEFAULT : adapter;
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::QueryInterface(REFIID iid, void** objectOut)
{
    return GiveInterface(this, iid, {kUnknownId, kDirect3DId}, objectOut);
}

ULONG STDMETHODCALLTYPE RecordingDirect3D::AddRef()
{
    return ++references;
}

ULONG STDMETHODCALLTYPE RecordingDirect3D::Release()
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::RegisterSoftwareDevice(void* initialize)
{
    return Forward("RegisterSoftwareDevice", {DataText(initialize)},
                   [&] { return d3d->RegisterSoftwareDevice(initialize); });
}

UINT STDMETHODCALLTYPE RecordingDirect3D::GetAdapterCount()
{
    calls->Note("GetAdapterCount", {});
    return fakeAdapters ? static_cast<UINT>(fakeAdapters->size()) : d3d->GetAdapterCount();
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::GetAdapterIdentifier(
    UINT adapter, DWORD flags, D3DADAPTER_IDENTIFIER9* identifierOut)
{
    return Forward("GetAdapterIdentifier", {std::to_string(adapter), HexText(flags)}, [&] {
        return fakeAdapters ? IdentifierOfAdapter(*fakeAdapters, adapter, identifierOut)
                            : d3d->GetAdapterIdentifier(adapter, flags, identifierOut);
    });
}

UINT STDMETHODCALLTYPE RecordingDirect3D::GetAdapterModeCount(UINT adapter, D3DFORMAT format)
{
    calls->Note("GetAdapterModeCount", {std::to_string(adapter), FormatName(format)});
    return fakeAdapters ? ModeCountOfAdapter(*fakeAdapters, adapter, format)
                        : d3d->GetAdapterModeCount(adapter, format);
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::EnumAdapterModes(UINT adapter, D3DFORMAT format,
                                                              UINT mode, D3DDISPLAYMODE* modeOut)
{
    return Forward("EnumAdapterModes",
                   {std::to_string(adapter), FormatName(format), std::to_string(mode)}, [&] {
                       return fakeAdapters
                                  ? ModeOfAdapter(*fakeAdapters, adapter, format, mode, modeOut)
                                  : d3d->EnumAdapterModes(adapter, format, mode, modeOut);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::GetAdapterDisplayMode(UINT adapter,
                                                                   D3DDISPLAYMODE* modeOut)
{
    return Forward("GetAdapterDisplayMode", {std::to_string(adapter)}, [&] {
        return fakeAdapters ? DesktopOfAdapter(*fakeAdapters, adapter, modeOut)
                            : d3d->GetAdapterDisplayMode(adapter, modeOut);
    });
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::CheckDeviceType(UINT adapter, D3DDEVTYPE deviceType,
                                                             D3DFORMAT displayFormat,
                                                             D3DFORMAT backBufferFormat,
                                                             BOOL windowed)
{
    return Forward("CheckDeviceType",
                   {std::to_string(adapter), DeviceTypeName(deviceType), FormatName(displayFormat),
                    FormatName(backBufferFormat), BoolText(windowed)},
                   [&] {
                       return d3d->CheckDeviceType(Real(adapter), deviceType, displayFormat,
                                                   backBufferFormat, windowed);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::CheckDeviceFormat(UINT adapter, D3DDEVTYPE deviceType,
                                                               D3DFORMAT adapterFormat, DWORD usage,
                                                               D3DRESOURCETYPE resourceType,
                                                               D3DFORMAT checkFormat)
{
    return Forward("CheckDeviceFormat",
                   {std::to_string(adapter), DeviceTypeName(deviceType), FormatName(adapterFormat),
                    UsageFlags(usage), ResourceTypeName(resourceType), FormatName(checkFormat)},
                   [&] {
                       return d3d->CheckDeviceFormat(Real(adapter), deviceType, adapterFormat,
                                                     usage, resourceType, checkFormat);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::CheckDeviceMultiSampleType(
    UINT adapter, D3DDEVTYPE deviceType, D3DFORMAT surfaceFormat, BOOL windowed,
    D3DMULTISAMPLE_TYPE multiSampleType, DWORD* qualityLevelsOut)
{
    return Forward("CheckDeviceMultiSampleType",
                   {std::to_string(adapter), DeviceTypeName(deviceType), FormatName(surfaceFormat),
                    BoolText(windowed), MultiSampleName(multiSampleType)},
                   [&] {
                       return d3d->CheckDeviceMultiSampleType(Real(adapter), deviceType,
                                                              surfaceFormat, windowed,
                                                              multiSampleType, qualityLevelsOut);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::CheckDepthStencilMatch(UINT adapter,
                                                                    D3DDEVTYPE deviceType,
                                                                    D3DFORMAT adapterFormat,
                                                                    D3DFORMAT renderTargetFormat,
                                                                    D3DFORMAT depthStencilFormat)
{
    return Forward("CheckDepthStencilMatch",
                   {std::to_string(adapter), DeviceTypeName(deviceType), FormatName(adapterFormat),
                    FormatName(renderTargetFormat), FormatName(depthStencilFormat)},
                   [&] {
                       return d3d->CheckDepthStencilMatch(Real(adapter), deviceType, adapterFormat,
                                                          renderTargetFormat, depthStencilFormat);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::CheckDeviceFormatConversion(UINT adapter,
                                                                         D3DDEVTYPE deviceType,
                                                                         D3DFORMAT sourceFormat,
                                                                         D3DFORMAT targetFormat)
{
    return Forward("CheckDeviceFormatConversion",
                   {std::to_string(adapter), DeviceTypeName(deviceType), FormatName(sourceFormat),
                    FormatName(targetFormat)},
                   [&] {
                       return d3d->CheckDeviceFormatConversion(Real(adapter), deviceType,
                                                               sourceFormat, targetFormat);
                   });
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::GetDeviceCaps(UINT adapter, D3DDEVTYPE deviceType,
                                                           D3DCAPS9* capsOut)
{
    return Forward("GetDeviceCaps", {std::to_string(adapter), DeviceTypeName(deviceType)}, [&] {
        if (!overriddenCaps)
            return d3d->GetDeviceCaps(Real(adapter), deviceType, capsOut);
        *capsOut = *overriddenCaps;
        capsOut->AdapterOrdinal = adapter;
        capsOut->DeviceType = deviceType;
        return D3D_OK;
    });
}

HMONITOR STDMETHODCALLTYPE RecordingDirect3D::GetAdapterMonitor(UINT adapter)
{
    calls->Note("GetAdapterMonitor", {std::to_string(adapter)});
    return d3d->GetAdapterMonitor(Real(adapter));
}

HRESULT STDMETHODCALLTYPE RecordingDirect3D::CreateDevice(UINT adapter, D3DDEVTYPE deviceType,
                                                          HWND focusWindow, DWORD behaviorFlags,
                                                          D3DPRESENT_PARAMETERS* parameters,
                                                          IDirect3DDevice9** deviceOut)
{
    const auto noted =
        calls->Note("CreateDevice",
                    {std::to_string(adapter), DeviceTypeName(deviceType), WindowText(focusWindow),
                     BehaviorFlags(behaviorFlags), PresentParametersText(parameters)});
    *deviceOut = nullptr;
    const HRESULT result = noted.failure ? *noted.failure
                                         : MakeDevice(adapter, deviceType, focusWindow,
                                                      behaviorFlags, parameters, deviceOut);
    if (*deviceOut)
        calls->NoteResult(noted.line, calls->NameOfNewObject("device", *deviceOut));
    return result;
}

HRESULT RecordingDirect3D::MakeDevice(UINT adapter, D3DDEVTYPE deviceType, HWND focusWindow,
                                      DWORD behaviorFlags, D3DPRESENT_PARAMETERS* parameters,
                                      IDirect3DDevice9** deviceOut)
{
    IDirect3DDevice9* made = nullptr;
    const HRESULT result =
        d3d->CreateDevice(Real(adapter), deviceType, focusWindow, behaviorFlags, parameters, &made);
    const ComHandle<IDirect3DDevice9> device(made);
    if (FAILED(result))
        return result;
    ComHandle<RecordingDevice> recording = RecordingDevice::Wrap(device.get(), calls, this);
    if (overriddenCaps)
        recording->OverrideCaps(*overriddenCaps);
    *deviceOut = recording.release();
    return result;
}
