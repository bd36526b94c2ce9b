#include <d3dx9.h>

#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3dx/NearestFormat.h"

#include <algorithm>
#include <bit>

namespace headless {

namespace {

constexpr UINT kDefaultSide = 256;

// An unspecified side copies the other one, or gets the default if both are unspecified.
UINT FillInSide(UINT side, UINT other)
{
    if (side != D3DX_DEFAULT)
        return std::max(side, 1u);
    return other != D3DX_DEFAULT ? std::max(other, 1u) : kDefaultSide;
}

bool NeedsPowersOf2(const D3DCAPS9& caps, UINT levels)
{
    if ((caps.TextureCaps & D3DPTEXTURECAPS_POW2) == 0)
        return false;
    const bool isConditional = (caps.TextureCaps & D3DPTEXTURECAPS_NONPOW2CONDITIONAL) != 0;
    return !isConditional || levels != 1;
}

void FitSize(const D3DCAPS9& caps, UINT levels, D3DFORMAT format, UINT& widthInOut,
             UINT& heightInOut)
{
    widthInOut = std::min(widthInOut, static_cast<UINT>(caps.MaxTextureWidth));
    heightInOut = std::min(heightInOut, static_cast<UINT>(caps.MaxTextureHeight));
    if (NeedsPowersOf2(caps, levels)) {
        widthInOut = std::bit_ceil(widthInOut);
        heightInOut = std::bit_ceil(heightInOut);
    }
    if ((caps.TextureCaps & D3DPTEXTURECAPS_SQUAREONLY) != 0)
        widthInOut = heightInOut = std::max(widthInOut, heightInOut);

    const PixelFormat* layout = FindPixelFormat(format);
    const UINT unit = layout ? layout->UnitSide() : 1;
    widthInOut = (widthInOut + unit - 1) / unit * unit;
    heightInOut = (heightInOut + unit - 1) / unit * unit;
}

UINT FitLevels(const D3DCAPS9& caps, DWORD usage, UINT width, UINT height, UINT levels)
{
    if ((usage & D3DUSAGE_AUTOGENMIPMAP) != 0)
        return levels > 1 ? 0 : levels; // the device makes the chain and exposes one level
    if ((caps.TextureCaps & D3DPTEXTURECAPS_MIPMAP) == 0)
        return 1;
    const auto full = static_cast<UINT>(std::bit_width(std::max(width, height)));
    return levels == 0 ? full : std::min(levels, full);
}

} // namespace

} // namespace headless

using namespace headless;

HRESULT WINAPI D3DXCheckTextureRequirements(IDirect3DDevice9* device, UINT* widthInOut,
                                            UINT* heightInOut, UINT* levelsInOut, DWORD usage,
                                            D3DFORMAT* formatInOut, D3DPOOL)
{
    constexpr DWORD kBufferUsage = D3DUSAGE_WRITEONLY | D3DUSAGE_DONOTCLIP | D3DUSAGE_POINTS |
                                   D3DUSAGE_RTPATCHES | D3DUSAGE_NPATCHES;
    D3DCAPS9 caps;
    if (!device || (usage & kBufferUsage) != 0 || FAILED(device->GetDeviceCaps(&caps)))
        return D3DERR_INVALIDCALL;

    const D3DFORMAT wanted = formatInOut ? *formatInOut : D3DFMT_UNKNOWN;
    const D3DFORMAT format = NearestTextureFormat(*device, usage, wanted);
    if (format == D3DFMT_UNKNOWN)
        return D3DERR_NOTAVAILABLE;

    const UINT givenWidth = widthInOut ? *widthInOut : D3DX_DEFAULT;
    const UINT givenHeight = heightInOut ? *heightInOut : D3DX_DEFAULT;
    UINT levels = levelsInOut && *levelsInOut != D3DX_DEFAULT ? *levelsInOut : 0;
    UINT width = FillInSide(givenWidth, givenHeight);
    UINT height = FillInSide(givenHeight, givenWidth);
    FitSize(caps, levels, format, width, height);
    levels = FitLevels(caps, usage, width, height, levels);

    if (widthInOut)
        *widthInOut = width;
    if (heightInOut)
        *heightInOut = height;
    if (levelsInOut)
        *levelsInOut = levels;
    if (formatInOut)
        *formatInOut = format;
    return D3D_OK;
}

HRESULT WINAPI D3DXCreateTexture(IDirect3DDevice9* device, UINT width, UINT height, UINT levels,
                                 DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                 IDirect3DTexture9** textureOut)
{
    if (!device || !textureOut)
        return D3DERR_INVALIDCALL;
    const HRESULT result =
        D3DXCheckTextureRequirements(device, &width, &height, &levels, usage, &format, pool);
    if (FAILED(result))
        return result;
    return device->CreateTexture(width, height, levels, usage, format, pool, textureOut, nullptr);
}
