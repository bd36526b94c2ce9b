#include "platform/headless/d3dx/ImageDecoders.h"

#include "platform/headless/d3d9/PixelFormat.h"

#include <algorithm>
#include <bit>

namespace headless {

namespace {

constexpr size_t kHeaderEnd = 128; // magic word and header
constexpr uint32_t kDdsHeaderSize = 124;
constexpr uint32_t kPixelFormatSize = 32;

// Offsets from the start of the file.
enum DdsOffset : size_t {
    kAtHeaderSize = 4,
    kAtFlags = 8,
    kAtHeight = 12,
    kAtWidth = 16,
    kAtDepth = 24,
    kAtLevels = 28,
    kAtFormatSize = 76,
    kAtFormatFlags = 80,
    kAtFourCC = 84,
    kAtBits = 88,
    kAtMasks = 92,
    kAtCaps2 = 112,
};

constexpr uint32_t kFlagLevels = 0x20000;
constexpr uint32_t kCaps2Cube = 0x200;
constexpr uint32_t kCaps2AnyFace = 0xFC00;
constexpr uint32_t kCaps2Volume = 0x200000;
constexpr uint32_t kMaxDepth = 2048;

constexpr uint32_t kFormatAlpha = 0x1;
constexpr uint32_t kFormatAlphaOnly = 0x2;
constexpr uint32_t kFormatFourCC = 0x4;
constexpr uint32_t kFormatColour = 0x40;
constexpr uint32_t kFormatGrey = 0x20000;
constexpr uint32_t kFormatSigned = 0x80000;
constexpr uint32_t kFormatKinds =
    kFormatAlphaOnly | kFormatFourCC | kFormatColour | kFormatGrey | kFormatSigned;

struct DdsLayout {
    uint32_t kind; // the one of `kFormatKinds` that is set
    uint32_t bits;
    uint32_t masks[4]; // red or grey, green, blue, alpha
    D3DFORMAT format;
};

const DdsLayout kDdsLayouts[] = {
    {kFormatColour, 24, {0xFF0000, 0xFF00, 0xFF, 0}, D3DFMT_R8G8B8},
    {kFormatColour, 32, {0xFF0000, 0xFF00, 0xFF, 0xFF000000}, D3DFMT_A8R8G8B8},
    {kFormatColour, 32, {0xFF0000, 0xFF00, 0xFF, 0}, D3DFMT_X8R8G8B8},
    {kFormatColour, 32, {0xFF, 0xFF00, 0xFF0000, 0xFF000000}, D3DFMT_A8B8G8R8},
    {kFormatColour, 32, {0xFF, 0xFF00, 0xFF0000, 0}, D3DFMT_X8B8G8R8},
    {kFormatColour, 16, {0xF800, 0x07E0, 0x001F, 0}, D3DFMT_R5G6B5},
    {kFormatColour, 16, {0x7C00, 0x03E0, 0x001F, 0x8000}, D3DFMT_A1R5G5B5},
    {kFormatColour, 16, {0x7C00, 0x03E0, 0x001F, 0}, D3DFMT_X1R5G5B5},
    {kFormatColour, 16, {0x0F00, 0x00F0, 0x000F, 0xF000}, D3DFMT_A4R4G4B4},
    {kFormatColour, 16, {0x0F00, 0x00F0, 0x000F, 0}, D3DFMT_X4R4G4B4},
    {kFormatColour, 16, {0x00E0, 0x001C, 0x0003, 0xFF00}, D3DFMT_A8R3G3B2},
    {kFormatColour, 8, {0xE0, 0x1C, 0x03, 0}, D3DFMT_R3G3B2},
    {kFormatGrey, 8, {0xFF, 0, 0, 0}, D3DFMT_L8},
    {kFormatGrey, 8, {0x0F, 0, 0, 0xF0}, D3DFMT_A4L4},
    {kFormatGrey, 16, {0xFF, 0, 0, 0xFF00}, D3DFMT_A8L8},
    {kFormatAlphaOnly, 8, {0, 0, 0, 0xFF}, D3DFMT_A8},
    {kFormatSigned, 16, {0x00FF, 0xFF00, 0, 0}, D3DFMT_V8U8},
};

const D3DFORMAT kFourCCs[] = {D3DFMT_DXT1, D3DFMT_DXT2, D3DFMT_DXT3, D3DFMT_DXT4, D3DFMT_DXT5};

// Writers often leave masks behind for channels that the flags do not declare.
bool FitsLayout(ImageFile file, uint32_t flags, const DdsLayout& layout)
{
    if ((flags & kFormatKinds) != layout.kind || ReadU32(file, kAtBits) != layout.bits)
        return false;
    const bool hasAlpha = (flags & (kFormatAlpha | kFormatAlphaOnly)) != 0;
    for (size_t i = 0; i < 4; ++i) {
        uint32_t mask = ReadU32(file, kAtMasks + i * 4);
        if ((i == 3 && !hasAlpha) || (i < 3 && layout.kind == kFormatAlphaOnly) ||
            ((i == 1 || i == 2) && layout.kind == kFormatGrey))
            mask = 0;
        if (mask != layout.masks[i])
            return false;
    }
    return true;
}

D3DFORMAT ReadFormat(ImageFile file)
{
    const uint32_t flags = ReadU32(file, kAtFormatFlags);
    if ((flags & kFormatFourCC) != 0) {
        for (const D3DFORMAT format : kFourCCs) {
            if (static_cast<uint32_t>(format) == ReadU32(file, kAtFourCC))
                return format;
        }
        return D3DFMT_UNKNOWN;
    }
    for (const DdsLayout& layout : kDdsLayouts) {
        if (FitsLayout(file, flags, layout))
            return layout.format;
    }
    return D3DFMT_UNKNOWN;
}

D3DRESOURCETYPE ReadType(uint32_t caps2)
{
    if ((caps2 & kCaps2Cube) != 0)
        return D3DRTYPE_CUBETEXTURE;
    return (caps2 & kCaps2Volume) != 0 ? D3DRTYPE_VOLUMETEXTURE : D3DRTYPE_TEXTURE;
}

bool ReadInfo(ImageFile file, D3DXIMAGE_INFO& infoOut)
{
    if (file.size() < kHeaderEnd || ReadU32(file, kAtHeaderSize) != kDdsHeaderSize ||
        ReadU32(file, kAtFormatSize) != kPixelFormatSize)
        return false;

    infoOut = PlainImageInfo(ReadU32(file, kAtWidth), ReadU32(file, kAtHeight), ReadFormat(file),
                             D3DXIFF_DDS);
    infoOut.ResourceType = ReadType(ReadU32(file, kAtCaps2));
    if (infoOut.ResourceType == D3DRTYPE_VOLUMETEXTURE)
        infoOut.Depth = ReadU32(file, kAtDepth);
    if ((ReadU32(file, kAtFlags) & kFlagLevels) != 0)
        infoOut.MipLevels = std::max(ReadU32(file, kAtLevels), 1u);

    if (infoOut.Format == D3DFMT_UNKNOWN || !IsImageSize(infoOut.Width, infoOut.Height) ||
        infoOut.Depth < 1 || infoOut.Depth > kMaxDepth)
        return false;
    const UINT longest = std::max({infoOut.Width, infoOut.Height, infoOut.Depth});
    return infoOut.MipLevels <= static_cast<UINT>(std::bit_width(longest));
}

// Ignores the pitch in the header: levels are stored without padding, and writers disagree about
// its value. False if the file ends before its levels do.
bool PlaceLevels(ImageFile file, const PixelFormat& layout, DecodedImage& imageOut)
{
    uint64_t faceSize = 0;
    for (UINT i = 0; i < imageOut.info.MipLevels; ++i) {
        const UINT width = std::max(imageOut.info.Width >> i, 1u);
        const UINT height = std::max(imageOut.info.Height >> i, 1u);
        const UINT depth = std::max(imageOut.info.Depth >> i, 1u);
        if (i < kMaxImageLevels && kHeaderEnd + faceSize <= file.size())
            imageOut.levels[i] = {width, height, RowBytes(layout, width),
                                  file.data() + kHeaderEnd + faceSize};
        faceSize += uint64_t{ImageBytes(layout, width, height)} * depth;
    }
    if (imageOut.info.ResourceType == D3DRTYPE_CUBETEXTURE)
        imageOut.faceCount =
            static_cast<UINT>(std::popcount(ReadU32(file, kAtCaps2) & kCaps2AnyFace));
    imageOut.faceBytes = static_cast<size_t>(faceSize);
    return imageOut.faceCount > 0 && faceSize * imageOut.faceCount <= file.size() - kHeaderEnd;
}

} // namespace

bool IsDds(ImageFile file)
{
    return file.size() >= 4 && ReadU32(file, 0) == MAKEFOURCC('D', 'D', 'S', ' ');
}

// The levels point into the file, so no pixels need decoding. A cube gives its first face, a volume
// its first slice.
HRESULT DecodeDds(ImageFile file, bool, DecodedImage& imageOut)
{
    if (!ReadInfo(file, imageOut.info))
        return D3DXERR_INVALIDDATA;
    imageOut.format = imageOut.info.Format;
    const PixelFormat* layout = FindPixelFormat(imageOut.format);
    if (!layout || !PlaceLevels(file, *layout, imageOut))
        return D3DXERR_INVALIDDATA;
    return D3D_OK;
}

} // namespace headless
