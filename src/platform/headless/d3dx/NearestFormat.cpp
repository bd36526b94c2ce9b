#include "platform/headless/d3dx/NearestFormat.h"

#include "platform/ComPointer.h"
#include "platform/headless/d3d9/PixelFormat.h"

namespace headless {

namespace {

// Formats to convert pictures to, the usual ones first: of equal ones the first is taken.
const D3DFORMAT kCandidates[] = {
    D3DFMT_A8R8G8B8, D3DFMT_X8R8G8B8, D3DFMT_R5G6B5,   D3DFMT_X1R5G5B5,
    D3DFMT_A1R5G5B5, D3DFMT_A4R4G4B4, D3DFMT_L8,       D3DFMT_A8L8,
    D3DFMT_X4R4G4B4, D3DFMT_A8B8G8R8, D3DFMT_X8B8G8R8, D3DFMT_A8,
    D3DFMT_A4L4,     D3DFMT_R3G3B2,   D3DFMT_A8R3G3B2, D3DFMT_V8U8,
};

constexpr int kMissingAlpha = 1000;
constexpr int kLostBit = 50; // weighs more than all bits that can be added
constexpr int kUnfit = -1;

// Bits of each channel as displayed: grey counts for red, green and blue.
struct ChannelBits {
    int a, r, g, b;
    bool isSigned;
};

ChannelBits BitsOf(const PixelFormat& format)
{
    switch (format.kind) {
    case PixelKind::Luminance:
        return {format.a.bits, format.r.bits, format.r.bits, format.r.bits, false};
    case PixelKind::Compressed:
        return {format.format == D3DFMT_DXT1 ? 1 : 8, 5, 6, 5, false};
    default:
        return {format.a.bits, format.r.bits, format.g.bits, format.b.bits,
                format.kind == PixelKind::Signed};
    }
}

void AddChannel(int wanted, int offered, int& costInOut)
{
    costInOut += wanted > offered ? (wanted - offered) * kLostBit : offered - wanted;
}

// A grey format can only hold grey; bump map formats and colour formats are not interchangeable.
int CostOf(const PixelFormat& wanted, const PixelFormat& offered)
{
    const ChannelBits want = BitsOf(wanted);
    const ChannelBits have = BitsOf(offered);
    const bool isWantedGrey = wanted.kind == PixelKind::Luminance || want.r + want.g + want.b == 0;
    if (want.isSigned != have.isSigned || (offered.kind == PixelKind::Luminance && !isWantedGrey))
        return kUnfit;

    int cost = want.a > 0 && have.a == 0 ? kMissingAlpha : 0;
    AddChannel(want.a, have.a, cost);
    AddChannel(want.r, have.r, cost);
    AddChannel(want.g, have.g, cost);
    AddChannel(want.b, have.b, cost);
    return cost;
}

// Asks the device's adapter what textures it can make.
class TextureFormatQuery {
public:
    bool Open(IDirect3DDevice9& device, DWORD textureUsage)
    {
        usage = textureUsage;
        return SUCCEEDED(device.GetDirect3D(d3d.Out())) &&
               SUCCEEDED(device.GetCreationParameters(&creation)) &&
               SUCCEEDED(device.GetDisplayMode(0, &mode));
    }

    bool Supports(D3DFORMAT format) const
    {
        return SUCCEEDED(d3d->CheckDeviceFormat(creation.AdapterOrdinal, creation.DeviceType,
                                                mode.Format, usage, D3DRTYPE_TEXTURE, format));
    }

private:
    ComPointer<IDirect3D9> d3d;
    D3DDEVICE_CREATION_PARAMETERS creation = {};
    D3DDISPLAYMODE mode = {};
    DWORD usage = 0;
};

struct AlphaReplacement {
    D3DFORMAT format;
    D3DFORMAT withAlpha;
};

// A file format without alpha cannot represent the transparency that the colour key makes.
const AlphaReplacement kAlphaReplacements[] = {
    {D3DFMT_R8G8B8, D3DFMT_A8R8G8B8},   {D3DFMT_X8R8G8B8, D3DFMT_A8R8G8B8},
    {D3DFMT_X8B8G8R8, D3DFMT_A8B8G8R8}, {D3DFMT_R5G6B5, D3DFMT_A1R5G5B5},
    {D3DFMT_X1R5G5B5, D3DFMT_A1R5G5B5}, {D3DFMT_X4R4G4B4, D3DFMT_A4R4G4B4},
    {D3DFMT_R3G3B2, D3DFMT_A8R3G3B2},   {D3DFMT_L8, D3DFMT_A8L8},
};

} // namespace

D3DFORMAT NearestTextureFormat(IDirect3DDevice9& device, DWORD usage, D3DFORMAT wanted)
{
    TextureFormatQuery query;
    if (!query.Open(device, usage))
        return D3DFMT_UNKNOWN;
    if (wanted == D3DFMT_UNKNOWN)
        wanted = D3DFMT_A8R8G8B8;
    if (query.Supports(wanted))
        return wanted;

    // A palette may contain any colour and alpha, and so may formats that the table lacks.
    const PixelFormat* wantedLayout = FindPixelFormat(wanted);
    if (!wantedLayout)
        wantedLayout = FindPixelFormat(D3DFMT_A8R8G8B8);
    D3DFORMAT best = D3DFMT_UNKNOWN;
    int bestCost = 0;
    for (const D3DFORMAT candidate : kCandidates) {
        const PixelFormat* layout = FindPixelFormat(candidate);
        const int cost = layout ? CostOf(*wantedLayout, *layout) : kUnfit;
        if (cost == kUnfit || (best != D3DFMT_UNKNOWN && cost >= bestCost) ||
            !query.Supports(candidate))
            continue;
        best = candidate;
        bestCost = cost;
    }
    return best;
}

D3DFORMAT WithAlpha(D3DFORMAT format)
{
    for (const AlphaReplacement& replacement : kAlphaReplacements) {
        if (replacement.format == format)
            return replacement.withAlpha;
    }
    return format;
}

} // namespace headless
