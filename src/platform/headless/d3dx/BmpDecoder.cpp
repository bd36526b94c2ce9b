#include "platform/headless/d3dx/ImageDecoders.h"

#include "platform/LittleEndian.h"
#include "platform/headless/d3dx/BmpRuns.h"

#include <bit>
#include <cstring>
#include <new>

namespace headless {

namespace {

constexpr size_t kFileHeaderSize = 14;
constexpr uint32_t kCoreHeaderSize = 12;
constexpr uint32_t kInfoHeaderSize = 40;
constexpr uint32_t kMaxHeaderSize = 124;
constexpr uint32_t kMaxPalette = 256;

// A run-length file may skip most of its pixels; expansion beyond this factor counts as damage.
constexpr uint64_t kMaxRunRatio = 1024;

enum BmpCompression { kPlain = 0, kRuns8 = 1, kRuns4 = 2, kMasks = 3, kAlphaMasks = 6 };

struct BmpHeader {
    uint32_t headerSize;
    UINT width;
    UINT height;
    bool topDown;
    unsigned bits;
    uint32_t compression;
    uint32_t masks[4]; // red, green, blue, alpha; 16 and 32 bits only
    size_t paletteOffset;
    size_t paletteEntryBytes;
    uint32_t paletteCount;
    size_t pixelOffset;
    D3DFORMAT format; // of the decoded pixels

    bool HasRuns() const { return compression == kRuns8 || compression == kRuns4; }
    size_t RowBytes() const { return (size_t{width} * bits + 31) / 32 * 4; }
};

struct BmpMaskLayout {
    unsigned bits;
    uint32_t masks[4];
    D3DFORMAT format;
};

// The layouts whose pixels are used unchanged; others are converted.
const BmpMaskLayout kMaskLayouts[] = {
    {16, {0x7C00, 0x03E0, 0x001F, 0}, D3DFMT_X1R5G5B5},
    {16, {0x7C00, 0x03E0, 0x001F, 0x8000}, D3DFMT_A1R5G5B5},
    {16, {0xF800, 0x07E0, 0x001F, 0}, D3DFMT_R5G6B5},
    {16, {0x0F00, 0x00F0, 0x000F, 0xF000}, D3DFMT_A4R4G4B4},
    {32, {0xFF0000, 0xFF00, 0xFF, 0}, D3DFMT_X8R8G8B8},
    {32, {0xFF0000, 0xFF00, 0xFF, 0xFF000000}, D3DFMT_A8R8G8B8},
};

const BmpMaskLayout* FindLayout(const BmpHeader& header)
{
    for (const BmpMaskLayout& layout : kMaskLayouts) {
        if (layout.bits == header.bits &&
            std::memcmp(layout.masks, header.masks, sizeof header.masks) == 0)
            return &layout;
    }
    return nullptr;
}

void ReadSizes(ImageFile file, BmpHeader& headerOut)
{
    const size_t at = kFileHeaderSize;
    if (headerOut.headerSize == kCoreHeaderSize) {
        headerOut.width = ReadU16(file, at + 4);
        headerOut.height = ReadU16(file, at + 6);
        headerOut.bits = ReadU16(file, at + 10);
        headerOut.paletteEntryBytes = 3;
        return;
    }
    const auto height = static_cast<int32_t>(ReadU32(file, at + 8));
    headerOut.width = ReadU32(file, at + 4);
    headerOut.topDown = height < 0;
    headerOut.height =
        headerOut.topDown ? 0u - static_cast<UINT>(height) : static_cast<UINT>(height);
    headerOut.bits = ReadU16(file, at + 14);
    headerOut.compression = ReadU32(file, at + 16);
    headerOut.paletteCount = ReadU32(file, at + 32);
    headerOut.paletteEntryBytes = 4;
}

bool IsCodingValid(const BmpHeader& header)
{
    switch (header.compression) {
    case kPlain:
        return header.bits == 1 || header.bits == 4 || header.bits == 8 || header.bits == 16 ||
               header.bits == 24 || header.bits == 32;
    case kRuns8:
        return header.bits == 8 && !header.topDown;
    case kRuns4:
        return header.bits == 4 && !header.topDown;
    case kMasks:
    case kAlphaMasks:
        return header.bits == 16 || header.bits == 32;
    default:
        return false;
    }
}

// A mask is one contiguous run of bits; only alpha may be missing.
bool IsMaskValid(uint32_t mask, bool mayBeMissing)
{
    if (mask == 0)
        return mayBeMissing;
    const uint32_t run = mask >> std::countr_zero(mask);
    return (run & (run + 1)) == 0;
}

bool AreMasksValid(const BmpHeader& header)
{
    for (int i = 0; i < 4; ++i) {
        if (!IsMaskValid(header.masks[i], i == 3))
            return false;
    }
    return true;
}

// In a file with the old header the masks follow it; longer headers contain them at the same
// offset.
bool ReadMasks(ImageFile file, BmpHeader& headerOut)
{
    if (headerOut.compression == kPlain) {
        const BmpMaskLayout& layout = kMaskLayouts[headerOut.bits == 16 ? 0 : 4];
        std::memcpy(headerOut.masks, layout.masks, sizeof headerOut.masks);
        return true;
    }
    const bool hasAlpha = headerOut.compression == kAlphaMasks || headerOut.headerSize >= 56;
    const size_t count = hasAlpha ? 4 : 3;
    const size_t offset = kFileHeaderSize + kInfoHeaderSize;
    if (file.size() < offset + count * 4)
        return false;
    for (size_t i = 0; i < count; ++i)
        headerOut.masks[i] = ReadU32(file, offset + i * 4);
    if (headerOut.headerSize == kInfoHeaderSize)
        headerOut.paletteOffset += count * 4;
    return AreMasksValid(headerOut);
}

bool ReadPaletteSize(ImageFile file, BmpHeader& headerOut)
{
    if (headerOut.bits > 8)
        return true;
    const uint32_t most = 1u << headerOut.bits;
    if (headerOut.paletteCount == 0)
        headerOut.paletteCount = most;
    return headerOut.paletteCount <= kMaxPalette && headerOut.paletteOffset <= file.size() &&
           headerOut.paletteCount * headerOut.paletteEntryBytes <=
               file.size() - headerOut.paletteOffset;
}

bool DoPixelsFit(ImageFile file, const BmpHeader& header)
{
    if (header.pixelOffset > file.size() || header.pixelOffset < header.headerSize)
        return false;
    const size_t left = file.size() - header.pixelOffset;
    if (header.HasRuns())
        return uint64_t{header.width} * header.height <= left * kMaxRunRatio;
    return header.RowBytes() * header.height <= left;
}

// Many writers leave the top byte of plain 32-bit pixels 0; a non-zero one is alpha.
bool HasUsedTopByte(ImageFile file, const BmpHeader& header)
{
    const size_t count = size_t{header.width} * header.height;
    for (size_t i = 0; i < count; ++i) {
        if (file[header.pixelOffset + i * 4 + 3] != 0)
            return true;
    }
    return false;
}

D3DFORMAT FormatOf(ImageFile file, const BmpHeader& header)
{
    if (header.bits <= 8)
        return D3DFMT_A8R8G8B8;
    if (header.bits == 24)
        return D3DFMT_X8R8G8B8;
    const BmpMaskLayout* layout = FindLayout(header);
    if (!layout)
        return header.masks[3] != 0 ? D3DFMT_A8R8G8B8 : D3DFMT_X8R8G8B8;
    if (layout->format == D3DFMT_X8R8G8B8 && HasUsedTopByte(file, header))
        return D3DFMT_A8R8G8B8;
    return layout->format;
}

bool ReadHeader(ImageFile file, BmpHeader& headerOut)
{
    headerOut = {};
    if (file.size() < kFileHeaderSize + kCoreHeaderSize)
        return false;
    headerOut.headerSize = ReadU32(file, kFileHeaderSize);
    const bool knownSize =
        headerOut.headerSize == kCoreHeaderSize ||
        (headerOut.headerSize >= kInfoHeaderSize && headerOut.headerSize <= kMaxHeaderSize);
    if (!knownSize || file.size() < kFileHeaderSize + headerOut.headerSize)
        return false;

    headerOut.pixelOffset = ReadU32(file, 10);
    headerOut.paletteOffset = kFileHeaderSize + headerOut.headerSize;
    ReadSizes(file, headerOut);
    if (!IsImageSize(headerOut.width, headerOut.height) || !IsCodingValid(headerOut))
        return false;
    const bool hasMasks = headerOut.bits == 16 || headerOut.bits == 32;
    if ((hasMasks && !ReadMasks(file, headerOut)) || !ReadPaletteSize(file, headerOut) ||
        !DoPixelsFit(file, headerOut))
        return false;
    headerOut.format = FormatOf(file, headerOut);
    return true;
}

uint32_t ReadMasked(uint32_t word, uint32_t mask)
{
    const int shift = std::countr_zero(mask);
    int bits = std::popcount(mask);
    uint32_t value = (word & mask) >> shift;
    if (bits > 16) {
        value >>= bits - 16;
        bits = 16;
    }
    return WidenTo8Bits(value, static_cast<unsigned>(bits));
}

void ConvertMaskedRow(const BmpHeader& header, const uint8_t* source, uint8_t* rowOut)
{
    const size_t pixelBytes = header.bits / 8;
    for (UINT x = 0; x < header.width; ++x) {
        const uint8_t* at = source + x * pixelBytes;
        const uint32_t word = pixelBytes == 2 ? LoadLittle<uint16_t>(at) : LoadLittle<uint32_t>(at);
        const uint32_t alpha = header.masks[3] != 0 ? ReadMasked(word, header.masks[3]) : 0xFF;
        const uint32_t pixel = alpha << 24 | ReadMasked(word, header.masks[0]) << 16 |
                               ReadMasked(word, header.masks[1]) << 8 |
                               ReadMasked(word, header.masks[2]);
        StoreLittle(rowOut + size_t{x} * 4, pixel);
    }
}

void ConvertBgrRow(const BmpHeader& header, const uint8_t* source, uint8_t* rowOut)
{
    for (UINT x = 0; x < header.width; ++x) {
        std::memcpy(rowOut + size_t{x} * 4, source + size_t{x} * 3, 3);
        rowOut[size_t{x} * 4 + 3] = 0xFF;
    }
}

// `bits` is the size of an index; unpacked runs take 8. False if an index has no palette entry.
bool ConvertPaletteRow(ImageFile file, const BmpHeader& header, unsigned bits,
                       const uint8_t* source, uint8_t* rowOut)
{
    const uint32_t mask = (1u << bits) - 1;
    for (UINT x = 0; x < header.width; ++x) {
        const size_t bit = size_t{x} * bits;
        const unsigned shift = 8 - bits - static_cast<unsigned>(bit % 8);
        const uint32_t index = (source[bit / 8] >> shift) & mask;
        if (index >= header.paletteCount)
            return false;
        const size_t entry = header.paletteOffset + index * header.paletteEntryBytes;
        std::memcpy(rowOut + size_t{x} * 4, file.data() + entry, 3);
        rowOut[size_t{x} * 4 + 3] = 0xFF;
    }
    return true;
}

bool ConvertRow(ImageFile file, const BmpHeader& header, unsigned bits, const uint8_t* source,
                uint8_t* rowOut)
{
    if (bits <= 8)
        return ConvertPaletteRow(file, header, bits, source, rowOut);
    if (bits == 24)
        ConvertBgrRow(header, source, rowOut);
    else if (FindLayout(header))
        std::memcpy(rowOut, source, size_t{header.width} * bits / 8);
    else
        ConvertMaskedRow(header, source, rowOut);
    return true;
}

} // namespace

bool IsBmp(ImageFile file)
{
    return file.size() >= 2 && file[0] == 'B' && file[1] == 'M';
}

HRESULT DecodeBmp(ImageFile file, bool infoOnly, DecodedImage& imageOut)
{
    BmpHeader header;
    if (!ReadHeader(file, header))
        return D3DXERR_INVALIDDATA;
    imageOut.info = PlainImageInfo(header.width, header.height,
                                   header.bits <= 8 ? D3DFMT_P8 : header.format, D3DXIFF_BMP);
    if (infoOnly)
        return D3D_OK;

    const uint8_t* source = file.data() + header.pixelOffset;
    size_t sourcePitch = header.RowBytes();
    unsigned bits = header.bits;
    std::unique_ptr<uint8_t[]> indices;
    if (header.HasRuns()) {
        indices.reset(new (std::nothrow) uint8_t[size_t{header.width} * header.height]);
        if (!indices)
            return E_OUTOFMEMORY;
        if (!UnpackBmpRuns(file.subspan(header.pixelOffset), header.compression == kRuns4,
                           header.width, header.height, indices.get()))
            return D3DXERR_INVALIDDATA;
        source = indices.get();
        sourcePitch = header.width;
        bits = 8;
    }

    uint8_t* pixels = imageOut.Allocate(header.format);
    if (!pixels)
        return E_OUTOFMEMORY;
    for (UINT y = 0; y < header.height; ++y) {
        const UINT target = header.topDown ? y : header.height - 1 - y;
        if (!ConvertRow(file, header, bits, source + y * sourcePitch,
                        pixels + target * imageOut.levels[0].pitchBytes))
            return D3DXERR_INVALIDDATA;
    }
    return D3D_OK;
}

} // namespace headless
