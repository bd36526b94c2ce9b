#include "platform/headless/d3d9/Direct3D.h"

#include "platform/headless/d3d9/Adapter.h"
#include "platform/headless/d3d9/Device.h"
#include "platform/headless/d3d9/PresentParameters.h"

#include <bit>
#include <new>

namespace headless {

namespace {

bool IsAdapter(UINT adapter, D3DDEVTYPE deviceType)
{
    return adapter == D3DADAPTER_DEFAULT && HasDeviceType(deviceType);
}

/// Exactly one kind of vertex processing; a pure device needs hardware processing.
bool AreBehaviorFlagsPossible(DWORD flags)
{
    constexpr DWORD kProcessing = D3DCREATE_SOFTWARE_VERTEXPROCESSING |
                                  D3DCREATE_HARDWARE_VERTEXPROCESSING |
                                  D3DCREATE_MIXED_VERTEXPROCESSING;
    const DWORD processing = flags & kProcessing;
    if (std::popcount(processing) != 1)
        return false;
    return (flags & D3DCREATE_PUREDEVICE) == 0 || processing == D3DCREATE_HARDWARE_VERTEXPROCESSING;
}

/// The query bits that a format can support.
constexpr DWORD kPlainQueries =
    D3DUSAGE_DYNAMIC | D3DUSAGE_QUERY_FILTER | D3DUSAGE_QUERY_WRAPANDMIP |
    D3DUSAGE_QUERY_POSTPIXELSHADER_BLENDING | D3DUSAGE_QUERY_LEGACYBUMPMAP |
    D3DUSAGE_QUERY_SRGBREAD | D3DUSAGE_QUERY_SRGBWRITE | D3DUSAGE_QUERY_VERTEXTEXTURE;

bool CanBeUsed(DWORD usage, D3DRESOURCETYPE resourceType, D3DFORMAT format)
{
    const bool isSolid =
        resourceType == D3DRTYPE_CUBETEXTURE || resourceType == D3DRTYPE_VOLUMETEXTURE;
    if (resourceType != D3DRTYPE_TEXTURE && resourceType != D3DRTYPE_SURFACE && !isSolid)
        return false;
    if (isSolid && (usage & ~kPlainQueries) != 0)
        return false;
    if (usage & D3DUSAGE_DEPTHSTENCIL)
        return usage == D3DUSAGE_DEPTHSTENCIL && IsDepthFormat(format);
    if ((usage & D3DUSAGE_QUERY_LEGACYBUMPMAP) && format != D3DFMT_V8U8)
        return false;
    if ((usage & D3DUSAGE_QUERY_SRGBREAD) && format == D3DFMT_V8U8)
        return false;
    if ((usage & D3DUSAGE_QUERY_SRGBWRITE) && (isSolid || !IsRenderTargetFormat(format)))
        return false;
    if (usage & ~(kPlainQueries | D3DUSAGE_RENDERTARGET))
        return false;
    return usage & D3DUSAGE_RENDERTARGET ? IsRenderTargetFormat(format) : IsTextureFormat(format);
}

} // namespace

HeadlessDirect3D::HeadlessDirect3D()
{
    gObjectCensus.Add(ObjectKind::Interface);
}

HeadlessDirect3D::~HeadlessDirect3D()
{
    gObjectCensus.Remove(ObjectKind::Interface);
}

ULONG HeadlessDirect3D::AddRef()
{
    return ++references + devices;
}

ULONG HeadlessDirect3D::Release()
{
    if (references == 0)
        return 0;
    --references;
    const ULONG left = references + devices;
    if (references == 0 && devices > 0) {
        ObjectCensus children;
        for (ULONG i = 0; i < devices; ++i)
            children.Add(ObjectKind::Device);
        ReportLeak("IDirect3D9", children);
    }
    if (left == 0)
        delete this;
    return left;
}

void HeadlessDirect3D::DeviceReferenced()
{
    ++devices;
}

void HeadlessDirect3D::DeviceUnreferenced()
{
    if (--devices == 0 && references == 0)
        delete this;
}

HRESULT HeadlessDirect3D::RegisterSoftwareDevice(void* initialize)
{
    return Unmodelled("RegisterSoftwareDevice", initialize);
}

UINT HeadlessDirect3D::GetAdapterCount()
{
    return 1;
}

HRESULT HeadlessDirect3D::GetAdapterIdentifier(UINT adapter, DWORD,
                                               D3DADAPTER_IDENTIFIER9* identifierOut)
{
    if (adapter != D3DADAPTER_DEFAULT || !identifierOut)
        return D3DERR_INVALIDCALL;
    *identifierOut = AdapterIdentifier();
    return D3D_OK;
}

UINT HeadlessDirect3D::GetAdapterModeCount(UINT adapter, D3DFORMAT format)
{
    return adapter == D3DADAPTER_DEFAULT ? DisplayModeCount(format) : 0;
}

HRESULT HeadlessDirect3D::EnumAdapterModes(UINT adapter, D3DFORMAT format, UINT mode,
                                           D3DDISPLAYMODE* modeOut)
{
    if (!modeOut || mode >= GetAdapterModeCount(adapter, format))
        return D3DERR_INVALIDCALL;
    *modeOut = DisplayMode(format, mode);
    return D3D_OK;
}

HRESULT HeadlessDirect3D::GetAdapterDisplayMode(UINT adapter, D3DDISPLAYMODE* modeOut)
{
    if (adapter != D3DADAPTER_DEFAULT || !modeOut)
        return D3DERR_INVALIDCALL;
    *modeOut = DesktopMode();
    return D3D_OK;
}

HRESULT HeadlessDirect3D::CheckDeviceType(UINT adapter, D3DDEVTYPE deviceType,
                                          D3DFORMAT displayFormat, D3DFORMAT backBufferFormat,
                                          BOOL windowed)
{
    if (adapter != D3DADAPTER_DEFAULT)
        return D3DERR_INVALIDCALL;
    const bool possible = HasDeviceType(deviceType) &&
                          IsBackBufferFormat(displayFormat, backBufferFormat, windowed != 0);
    return possible ? D3D_OK : D3DERR_NOTAVAILABLE;
}

HRESULT HeadlessDirect3D::CheckDeviceFormat(UINT adapter, D3DDEVTYPE deviceType,
                                            D3DFORMAT adapterFormat, DWORD usage,
                                            D3DRESOURCETYPE resourceType, D3DFORMAT checkFormat)
{
    if (adapter != D3DADAPTER_DEFAULT)
        return D3DERR_INVALIDCALL;
    const bool possible = HasDeviceType(deviceType) && IsDisplayFormat(adapterFormat) &&
                          CanBeUsed(usage, resourceType, checkFormat);
    return possible ? D3D_OK : D3DERR_NOTAVAILABLE;
}

HRESULT HeadlessDirect3D::CheckDeviceMultiSampleType(UINT adapter, D3DDEVTYPE deviceType,
                                                     D3DFORMAT surfaceFormat, BOOL,
                                                     D3DMULTISAMPLE_TYPE multiSampleType,
                                                     DWORD* qualityLevelsOut)
{
    if (adapter != D3DADAPTER_DEFAULT || multiSampleType > D3DMULTISAMPLE_16_SAMPLES)
        return D3DERR_INVALIDCALL;
    if (!HasDeviceType(deviceType) || multiSampleType != D3DMULTISAMPLE_NONE ||
        !(IsRenderTargetFormat(surfaceFormat) || IsDepthFormat(surfaceFormat)))
        return D3DERR_NOTAVAILABLE;
    if (qualityLevelsOut)
        *qualityLevelsOut = 1;
    return D3D_OK;
}

HRESULT HeadlessDirect3D::CheckDepthStencilMatch(UINT adapter, D3DDEVTYPE deviceType,
                                                 D3DFORMAT adapterFormat,
                                                 D3DFORMAT renderTargetFormat,
                                                 D3DFORMAT depthStencilFormat)
{
    if (adapter != D3DADAPTER_DEFAULT)
        return D3DERR_INVALIDCALL;
    const bool match = HasDeviceType(deviceType) && IsDisplayFormat(adapterFormat) &&
                       IsRenderTargetFormat(renderTargetFormat) &&
                       IsDepthFormat(depthStencilFormat);
    return match ? D3D_OK : D3DERR_NOTAVAILABLE;
}

HRESULT HeadlessDirect3D::CheckDeviceFormatConversion(UINT adapter, D3DDEVTYPE deviceType,
                                                      D3DFORMAT sourceFormat,
                                                      D3DFORMAT targetFormat)
{
    if (!IsAdapter(adapter, deviceType))
        return D3DERR_INVALIDCALL;
    const bool possible = IsRenderTargetFormat(sourceFormat) && IsRenderTargetFormat(targetFormat);
    return possible ? D3D_OK : D3DERR_NOTAVAILABLE;
}

HRESULT HeadlessDirect3D::GetDeviceCaps(UINT adapter, D3DDEVTYPE deviceType, D3DCAPS9* capsOut)
{
    if (!IsAdapter(adapter, deviceType) || !capsOut)
        return D3DERR_INVALIDCALL;
    *capsOut = AdapterCaps(deviceType);
    return D3D_OK;
}

HMONITOR HeadlessDirect3D::GetAdapterMonitor(UINT adapter)
{
    Unmodelled("GetAdapterMonitor", adapter);
    return nullptr;
}

HRESULT HeadlessDirect3D::CreateDevice(UINT adapter, D3DDEVTYPE deviceType, HWND focusWindow,
                                       DWORD behaviorFlags, D3DPRESENT_PARAMETERS* parameters,
                                       IDirect3DDevice9** deviceOut)
{
    if (!deviceOut)
        return D3DERR_INVALIDCALL;
    *deviceOut = nullptr;
    if (!IsAdapter(adapter, deviceType) || !AreBehaviorFlagsPossible(behaviorFlags) ||
        !parameters || (!focusWindow && !parameters->hDeviceWindow))
        return D3DERR_INVALIDCALL;
    D3DPRESENT_PARAMETERS complete = *parameters;
    if (const HRESULT result = CompletePresentParameters(complete, focusWindow); FAILED(result))
        return result;
    *deviceOut =
        HeadlessDevice::Create(*this, {adapter, deviceType, focusWindow, behaviorFlags}, complete);
    if (!*deviceOut)
        return E_OUTOFMEMORY;
    *parameters = complete;
    return D3D_OK;
}

} // namespace headless

using namespace headless;

IDirect3D9* WINAPI Direct3DCreate9(UINT sdkVersion)
{
    return sdkVersion == D3D_SDK_VERSION ? new (std::nothrow) HeadlessDirect3D : nullptr;
}
