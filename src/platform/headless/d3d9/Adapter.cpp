#include "platform/headless/d3d9/Adapter.h"

#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/shader/Program.h"
#include "platform/headless/shader/RegisterTable.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace headless {

namespace {

struct Size {
    UINT width;
    UINT height;
};

constexpr Size kModes[] = {{640, 480},  {800, 600},   {1024, 768},
                           {1280, 720}, {1280, 1024}, {1920, 1080}};

constexpr D3DFORMAT kTextureFormats[] = {
    D3DFMT_X8R8G8B8, D3DFMT_A8R8G8B8, D3DFMT_R5G6B5, D3DFMT_X1R5G5B5, D3DFMT_A1R5G5B5,
    D3DFMT_A4R4G4B4, D3DFMT_L8,       D3DFMT_A8L8,   D3DFMT_V8U8,     D3DFMT_DXT1,
    D3DFMT_DXT2,     D3DFMT_DXT3,     D3DFMT_DXT4,   D3DFMT_DXT5,
};

constexpr D3DFORMAT kTargetFormats[] = {D3DFMT_X8R8G8B8, D3DFMT_A8R8G8B8, D3DFMT_R5G6B5};

template <size_t Count>
bool Contains(const D3DFORMAT (&formats)[Count], D3DFORMAT format)
{
    return std::find(std::begin(formats), std::end(formats), format) != std::end(formats);
}

template <size_t Count>
void CopyText(char (&out)[Count], const char* text)
{
    std::strncpy(out, text, Count - 1);
}

constexpr DWORD kAllBlends =
    D3DPBLENDCAPS_ZERO | D3DPBLENDCAPS_ONE | D3DPBLENDCAPS_SRCCOLOR | D3DPBLENDCAPS_INVSRCCOLOR |
    D3DPBLENDCAPS_SRCALPHA | D3DPBLENDCAPS_INVSRCALPHA | D3DPBLENDCAPS_DESTALPHA |
    D3DPBLENDCAPS_INVDESTALPHA | D3DPBLENDCAPS_DESTCOLOR | D3DPBLENDCAPS_INVDESTCOLOR |
    D3DPBLENDCAPS_SRCALPHASAT | D3DPBLENDCAPS_BLENDFACTOR;
constexpr DWORD kAllCompares = D3DPCMPCAPS_NEVER | D3DPCMPCAPS_LESS | D3DPCMPCAPS_EQUAL |
                               D3DPCMPCAPS_LESSEQUAL | D3DPCMPCAPS_GREATER | D3DPCMPCAPS_NOTEQUAL |
                               D3DPCMPCAPS_GREATEREQUAL | D3DPCMPCAPS_ALWAYS;
constexpr DWORD kFilters = D3DPTFILTERCAPS_MINFPOINT | D3DPTFILTERCAPS_MINFLINEAR |
                           D3DPTFILTERCAPS_MIPFPOINT | D3DPTFILTERCAPS_MIPFLINEAR |
                           D3DPTFILTERCAPS_MAGFPOINT | D3DPTFILTERCAPS_MAGFLINEAR;
constexpr DWORD kTextureOps =
    D3DTEXOPCAPS_DISABLE | D3DTEXOPCAPS_SELECTARG1 | D3DTEXOPCAPS_SELECTARG2 |
    D3DTEXOPCAPS_MODULATE | D3DTEXOPCAPS_MODULATE2X | D3DTEXOPCAPS_MODULATE4X | D3DTEXOPCAPS_ADD |
    D3DTEXOPCAPS_ADDSIGNED | D3DTEXOPCAPS_ADDSIGNED2X | D3DTEXOPCAPS_SUBTRACT |
    D3DTEXOPCAPS_ADDSMOOTH | D3DTEXOPCAPS_BLENDDIFFUSEALPHA | D3DTEXOPCAPS_BLENDTEXTUREALPHA |
    D3DTEXOPCAPS_BLENDFACTORALPHA | D3DTEXOPCAPS_BLENDTEXTUREALPHAPM |
    D3DTEXOPCAPS_BLENDCURRENTALPHA | D3DTEXOPCAPS_PREMODULATE |
    D3DTEXOPCAPS_MODULATEALPHA_ADDCOLOR | D3DTEXOPCAPS_MODULATECOLOR_ADDALPHA |
    D3DTEXOPCAPS_MODULATEINVALPHA_ADDCOLOR | D3DTEXOPCAPS_MODULATEINVCOLOR_ADDALPHA |
    D3DTEXOPCAPS_BUMPENVMAP | D3DTEXOPCAPS_BUMPENVMAPLUMINANCE | D3DTEXOPCAPS_DOTPRODUCT3 |
    D3DTEXOPCAPS_MULTIPLYADD | D3DTEXOPCAPS_LERP;

/// No stencil test: only `Clear` writes stencil bits.
void SetDrawingCaps(D3DCAPS9& caps)
{
    caps.PrimitiveMiscCaps = D3DPMISCCAPS_MASKZ | D3DPMISCCAPS_CULLNONE | D3DPMISCCAPS_CULLCW |
                             D3DPMISCCAPS_CULLCCW | D3DPMISCCAPS_COLORWRITEENABLE |
                             D3DPMISCCAPS_TSSARGTEMP | D3DPMISCCAPS_BLENDOP |
                             D3DPMISCCAPS_PERSTAGECONSTANT | D3DPMISCCAPS_SEPARATEALPHABLEND;
    caps.RasterCaps = D3DPRASTERCAPS_ZTEST | D3DPRASTERCAPS_FOGVERTEX | D3DPRASTERCAPS_FOGTABLE |
                      D3DPRASTERCAPS_MIPMAPLODBIAS | D3DPRASTERCAPS_FOGRANGE |
                      D3DPRASTERCAPS_WBUFFER | D3DPRASTERCAPS_WFOG | D3DPRASTERCAPS_ZFOG |
                      D3DPRASTERCAPS_COLORPERSPECTIVE | D3DPRASTERCAPS_SCISSORTEST |
                      D3DPRASTERCAPS_ANISOTROPY | D3DPRASTERCAPS_DEPTHBIAS |
                      D3DPRASTERCAPS_SLOPESCALEDEPTHBIAS;
    caps.ZCmpCaps = kAllCompares;
    caps.AlphaCmpCaps = kAllCompares;
    caps.SrcBlendCaps = kAllBlends | D3DPBLENDCAPS_BOTHSRCALPHA | D3DPBLENDCAPS_BOTHINVSRCALPHA;
    caps.DestBlendCaps = kAllBlends;
    caps.ShadeCaps = D3DPSHADECAPS_COLORGOURAUDRGB | D3DPSHADECAPS_SPECULARGOURAUDRGB |
                     D3DPSHADECAPS_ALPHAGOURAUDBLEND | D3DPSHADECAPS_FOGGOURAUD;
    caps.LineCaps = D3DLINECAPS_TEXTURE | D3DLINECAPS_ZTEST | D3DLINECAPS_BLEND |
                    D3DLINECAPS_ALPHACMP | D3DLINECAPS_FOG;
}

void SetTextureCaps(D3DCAPS9& caps)
{
    caps.TextureCaps = D3DPTEXTURECAPS_PERSPECTIVE | D3DPTEXTURECAPS_ALPHA |
                       D3DPTEXTURECAPS_PROJECTED | D3DPTEXTURECAPS_MIPMAP |
                       D3DPTEXTURECAPS_CUBEMAP | D3DPTEXTURECAPS_VOLUMEMAP |
                       D3DPTEXTURECAPS_MIPCUBEMAP | D3DPTEXTURECAPS_MIPVOLUMEMAP;
    caps.TextureFilterCaps = kFilters | D3DPTFILTERCAPS_MINFANISOTROPIC;
    caps.CubeTextureFilterCaps = caps.VolumeTextureFilterCaps = kFilters;
    caps.TextureAddressCaps = D3DPTADDRESSCAPS_WRAP | D3DPTADDRESSCAPS_MIRROR |
                              D3DPTADDRESSCAPS_CLAMP | D3DPTADDRESSCAPS_BORDER |
                              D3DPTADDRESSCAPS_INDEPENDENTUV | D3DPTADDRESSCAPS_MIRRORONCE;
    caps.VolumeTextureAddressCaps = caps.TextureAddressCaps;
    caps.StretchRectFilterCaps = D3DPTFILTERCAPS_MINFPOINT | D3DPTFILTERCAPS_MINFLINEAR |
                                 D3DPTFILTERCAPS_MAGFPOINT | D3DPTFILTERCAPS_MAGFLINEAR;
    caps.MaxTextureWidth = kMaxTextureSide;
    caps.MaxTextureHeight = kMaxTextureSide;
    caps.MaxVolumeExtent = kMaxVolumeExtent;
    caps.MaxTextureRepeat = kMaxTextureSide;
    caps.MaxTextureAspectRatio = kMaxTextureSide;
    caps.MaxAnisotropy = kMaxAnisotropy;
    caps.TextureOpCaps = kTextureOps;
    caps.MaxTextureBlendStages = 8;
    caps.MaxSimultaneousTextures = 8;
}

void SetVertexCaps(D3DCAPS9& caps)
{
    caps.FVFCaps = D3DFVFCAPS_PSIZE | 8;
    caps.VertexProcessingCaps = D3DVTXPCAPS_TEXGEN | D3DVTXPCAPS_TEXGEN_SPHEREMAP |
                                D3DVTXPCAPS_MATERIALSOURCE7 | D3DVTXPCAPS_DIRECTIONALLIGHTS |
                                D3DVTXPCAPS_POSITIONALLIGHTS | D3DVTXPCAPS_LOCALVIEWER;
    caps.MaxActiveLights = 8;
    caps.MaxUserClipPlanes = 6;
    caps.MaxVertexBlendMatrices = 4;
    caps.MaxVertexBlendMatrixIndex = 255;
    caps.MaxPointSize = kMaxPointSize;
    caps.MaxVertexW = 1e10f;
    caps.GuardBandLeft = caps.GuardBandTop = -32768.0f;
    caps.GuardBandRight = caps.GuardBandBottom = 32768.0f;
    caps.MaxPrimitiveCount = 0xFFFFFF;
    caps.MaxVertexIndex = 0xFFFFFF;
    caps.MaxStreams = 16;
    caps.MaxStreamStride = 508;
}

// Public bits of what shaders of 2.x can do.
constexpr DWORD kVertexPredication = 1 << 0;
constexpr DWORD kArbitrarySwizzle = 1 << 0, kGradientInstructions = 1 << 1,
                kPixelPredication = 1 << 2, kNoDependentReadLimit = 1 << 3,
                kNoTextureInstructionLimit = 1 << 4;

/// Shaders up to 3.0 with everything that 2.x leaves open.
void SetShaderCaps(D3DCAPS9& caps)
{
    caps.VertexShaderVersion = D3DVS_VERSION(3, 0);
    caps.PixelShaderVersion = D3DPS_VERSION(3, 0);
    caps.MaxVertexShaderConst = shader::kHardwareVertexConstants;
    caps.PixelShader1xMaxValue = 1e10f;
    caps.VS20Caps = {kVertexPredication, 24, 32, 4};
    caps.PS20Caps = {kArbitrarySwizzle | kGradientInstructions | kPixelPredication |
                         kNoDependentReadLimit | kNoTextureInstructionLimit,
                     24, 32, 4, 512};
    caps.MaxVShaderInstructionsExecuted = shader::kMaxExecuted;
    caps.MaxPShaderInstructionsExecuted = shader::kMaxExecuted;
    caps.MaxVertexShader30InstructionSlots = 32768;
    caps.MaxPixelShader30InstructionSlots = 32768;
    caps.VertexTextureFilterCaps = kFilters;
}

} // namespace

D3DDISPLAYMODE DesktopMode()
{
    return {1024, 768, kRefreshRate, D3DFMT_X8R8G8B8};
}

bool IsDisplayFormat(D3DFORMAT format)
{
    return format == D3DFMT_X8R8G8B8 || format == D3DFMT_R5G6B5;
}

UINT DisplayModeCount(D3DFORMAT format)
{
    return IsDisplayFormat(format) ? static_cast<UINT>(std::size(kModes)) : 0;
}

D3DDISPLAYMODE DisplayMode(D3DFORMAT format, UINT index)
{
    return {kModes[index].width, kModes[index].height, kRefreshRate, format};
}

bool HasDisplayMode(UINT width, UINT height, D3DFORMAT format, UINT refreshRate)
{
    if (!IsDisplayFormat(format) || (refreshRate != 0 && refreshRate != kRefreshRate))
        return false;
    return std::any_of(std::begin(kModes), std::end(kModes), [=](const Size& mode) {
        return mode.width == width && mode.height == height;
    });
}

D3DADAPTER_IDENTIFIER9 AdapterIdentifier()
{
    D3DADAPTER_IDENTIFIER9 identifier = {};
    CopyText(identifier.Driver, "headless");
    CopyText(identifier.Description, "Headless reference rasterizer");
    CopyText(identifier.DeviceName, "\\\\.\\DISPLAY1");
    return identifier;
}

D3DCAPS9 AdapterCaps(D3DDEVTYPE deviceType)
{
    D3DCAPS9 caps = {};
    caps.DeviceType = deviceType;
    caps.Caps2 = D3DCAPS2_FULLSCREENGAMMA | D3DCAPS2_DYNAMICTEXTURES;
    caps.PresentationIntervals = D3DPRESENT_INTERVAL_IMMEDIATE | D3DPRESENT_INTERVAL_ONE |
                                 D3DPRESENT_INTERVAL_TWO | D3DPRESENT_INTERVAL_THREE |
                                 D3DPRESENT_INTERVAL_FOUR;
    caps.DevCaps = D3DDEVCAPS_EXECUTESYSTEMMEMORY | D3DDEVCAPS_TLVERTEXSYSTEMMEMORY |
                   D3DDEVCAPS_TEXTUREVIDEOMEMORY | D3DDEVCAPS_DRAWPRIMTLVERTEX |
                   D3DDEVCAPS_DRAWPRIMITIVES2 | D3DDEVCAPS_DRAWPRIMITIVES2EX |
                   D3DDEVCAPS_HWTRANSFORMANDLIGHT | D3DDEVCAPS_HWRASTERIZATION;
    caps.DevCaps2 = D3DDEVCAPS2_STREAMOFFSET | D3DDEVCAPS2_CAN_STRETCHRECT_FROM_TEXTURES;
    caps.NumberOfAdaptersInGroup = 1;
    caps.NumSimultaneousRTs = 1;
    SetDrawingCaps(caps);
    SetTextureCaps(caps);
    SetVertexCaps(caps);
    SetShaderCaps(caps);
    return caps;
}

bool HasDeviceType(D3DDEVTYPE deviceType)
{
    return deviceType == D3DDEVTYPE_HAL || deviceType == D3DDEVTYPE_REF;
}

bool IsBackBufferFormat(D3DFORMAT displayFormat, D3DFORMAT backBufferFormat, bool windowed)
{
    if (!IsDisplayFormat(displayFormat))
        return false;
    if (windowed)
        return backBufferFormat == D3DFMT_UNKNOWN || IsRenderTargetFormat(backBufferFormat);
    return backBufferFormat == displayFormat ||
           (displayFormat == D3DFMT_X8R8G8B8 && backBufferFormat == D3DFMT_A8R8G8B8);
}

bool IsTextureFormat(D3DFORMAT format)
{
    return Contains(kTextureFormats, format);
}

bool IsRenderTargetFormat(D3DFORMAT format)
{
    return Contains(kTargetFormats, format);
}

bool IsDepthFormat(D3DFORMAT format)
{
    const PixelFormat* row = FindPixelFormat(format);
    return row && row->kind == PixelKind::Depth;
}

} // namespace headless
