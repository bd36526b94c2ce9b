#include "tests/support/FakeDirect3D.h"

#include "tests/support/FakeDevice.h"
#include "tests/support/InterfaceIds.h"

HRESULT IdentifierOfAdapter(const std::vector<FakeAdapter>& adapters, UINT adapter,
                            D3DADAPTER_IDENTIFIER9* identifierOut)
{
    if (adapter >= adapters.size())
        return D3DERR_INVALIDCALL;
    *identifierOut = {};
    const std::string& description = adapters[adapter].description;
    description.copy(identifierOut->Description, sizeof identifierOut->Description - 1);
    return D3D_OK;
}

UINT ModeCountOfAdapter(const std::vector<FakeAdapter>& adapters, UINT adapter, D3DFORMAT format)
{
    if (adapter >= adapters.size())
        return 0;
    UINT count = 0;
    for (const D3DDISPLAYMODE& mode : adapters[adapter].modes)
        count += mode.Format == format;
    return count;
}

HRESULT ModeOfAdapter(const std::vector<FakeAdapter>& adapters, UINT adapter, D3DFORMAT format,
                      UINT mode, D3DDISPLAYMODE* modeOut)
{
    if (adapter >= adapters.size())
        return D3DERR_INVALIDCALL;
    UINT number = 0;
    for (const D3DDISPLAYMODE& candidate : adapters[adapter].modes) {
        if (candidate.Format != format || number++ != mode)
            continue;
        *modeOut = candidate;
        return D3D_OK;
    }
    return D3DERR_INVALIDCALL;
}

HRESULT DesktopOfAdapter(const std::vector<FakeAdapter>& adapters, UINT adapter,
                         D3DDISPLAYMODE* modeOut)
{
    if (adapter >= adapters.size())
        return D3DERR_INVALIDCALL;
    *modeOut = adapters[adapter].desktop;
    return D3D_OK;
}

FakeDirect3D::FakeDirect3D() : caps(FakeCaps())
{}

HRESULT STDMETHODCALLTYPE FakeDirect3D::QueryInterface(REFIID iid, void** objectOut)
{
    return GiveInterface(this, iid, {kUnknownId, kDirect3DId}, objectOut);
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::RegisterSoftwareDevice(void*)
{
    return D3DERR_INVALIDCALL;
}

UINT STDMETHODCALLTYPE FakeDirect3D::GetAdapterCount()
{
    return static_cast<UINT>(adapters.size());
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::GetAdapterIdentifier(UINT adapter, DWORD,
                                                             D3DADAPTER_IDENTIFIER9* identifierOut)
{
    return IdentifierOfAdapter(adapters, adapter, identifierOut);
}

UINT STDMETHODCALLTYPE FakeDirect3D::GetAdapterModeCount(UINT adapter, D3DFORMAT format)
{
    return ModeCountOfAdapter(adapters, adapter, format);
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::EnumAdapterModes(UINT adapter, D3DFORMAT format, UINT mode,
                                                         D3DDISPLAYMODE* modeOut)
{
    return ModeOfAdapter(adapters, adapter, format, mode, modeOut);
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::GetAdapterDisplayMode(UINT adapter, D3DDISPLAYMODE* modeOut)
{
    return DesktopOfAdapter(adapters, adapter, modeOut);
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::CheckDeviceType(UINT, D3DDEVTYPE, D3DFORMAT, D3DFORMAT,
                                                        BOOL)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::CheckDeviceFormat(UINT, D3DDEVTYPE, D3DFORMAT, DWORD,
                                                          D3DRESOURCETYPE, D3DFORMAT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::CheckDeviceMultiSampleType(UINT, D3DDEVTYPE, D3DFORMAT,
                                                                   BOOL, D3DMULTISAMPLE_TYPE type,
                                                                   DWORD* qualityLevelsOut)
{
    if (qualityLevelsOut)
        *qualityLevelsOut = 1;
    return type == D3DMULTISAMPLE_NONE ? D3D_OK : D3DERR_NOTAVAILABLE;
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::CheckDepthStencilMatch(UINT, D3DDEVTYPE, D3DFORMAT,
                                                               D3DFORMAT, D3DFORMAT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::CheckDeviceFormatConversion(UINT, D3DDEVTYPE, D3DFORMAT,
                                                                    D3DFORMAT)
{
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::GetDeviceCaps(UINT adapter, D3DDEVTYPE deviceType,
                                                      D3DCAPS9* capsOut)
{
    *capsOut = caps;
    capsOut->AdapterOrdinal = adapter;
    capsOut->DeviceType = deviceType;
    return D3D_OK;
}

HMONITOR STDMETHODCALLTYPE FakeDirect3D::GetAdapterMonitor(UINT)
{
    return nullptr;
}

HRESULT STDMETHODCALLTYPE FakeDirect3D::CreateDevice(UINT adapter, D3DDEVTYPE deviceType,
                                                     HWND focusWindow, DWORD behaviorFlags,
                                                     D3DPRESENT_PARAMETERS* parameters,
                                                     IDirect3DDevice9** deviceOut)
{
    ComHandle<FakeDevice> device =
        FakeDevice::Create({adapter, deviceType, focusWindow, behaviorFlags}, *parameters, this);
    *deviceOut = nullptr;
    if (!device)
        return D3DERR_INVALIDCALL;
    device->caps = caps;
    *deviceOut = device.release();
    return D3D_OK;
}
