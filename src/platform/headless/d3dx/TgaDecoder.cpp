#include "platform/LittleEndian.h"
#include "platform/headless/d3dx/ImageDecoders.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace headless {

namespace {

constexpr size_t kTgaHeaderSize = 18;

enum TgaType { kTgaPalette = 1, kTgaColour = 2, kTgaGrey = 3 };
constexpr unsigned kRunLengthFlag = 8;

constexpr unsigned kAlphaBitsMask = 0x0F;
constexpr unsigned kRightToLeft = 0x10;
constexpr unsigned kTopDown = 0x20;
constexpr unsigned kReserved = 0xC0;

struct TgaHeader {
    unsigned idLength;
    unsigned paletteType;
    unsigned type; // without the run-length flag
    bool runLength;
    unsigned paletteFirst;
    unsigned paletteCount;
    unsigned paletteBits;
    UINT width;
    UINT height;
    unsigned pixelBits;
    unsigned descriptor;
    D3DFORMAT format; // of the decoded pixels

    unsigned PaletteEntryBytes() const { return (paletteBits + 7) / 8; }
    unsigned PixelBytes() const { return (pixelBits + 7) / 8; }
    size_t PaletteOffset() const { return kTgaHeaderSize + idLength; }
    size_t PixelOffset() const
    {
        const size_t paletteBytes = size_t{paletteCount} * PaletteEntryBytes();
        return PaletteOffset() + (paletteType != 0 ? paletteBytes : 0);
    }
};

struct TgaKind {
    unsigned type;
    unsigned pixelBits;
    bool alphaBit; // of the descriptor; used for 16-bit files only
    D3DFORMAT format;
};

// 32-bit files hold alpha whatever the descriptor says: many writers leave it 0.
const TgaKind kTgaKinds[] = {
    {kTgaPalette, 8, false, D3DFMT_A8R8G8B8}, {kTgaPalette, 8, true, D3DFMT_A8R8G8B8},
    {kTgaColour, 15, false, D3DFMT_X1R5G5B5}, {kTgaColour, 15, true, D3DFMT_X1R5G5B5},
    {kTgaColour, 16, false, D3DFMT_X1R5G5B5}, {kTgaColour, 16, true, D3DFMT_A1R5G5B5},
    {kTgaColour, 24, false, D3DFMT_X8R8G8B8}, {kTgaColour, 24, true, D3DFMT_X8R8G8B8},
    {kTgaColour, 32, false, D3DFMT_A8R8G8B8}, {kTgaColour, 32, true, D3DFMT_A8R8G8B8},
    {kTgaGrey, 8, false, D3DFMT_L8},          {kTgaGrey, 8, true, D3DFMT_L8},
};

D3DFORMAT FormatOf(const TgaHeader& header)
{
    const bool alphaBit = (header.descriptor & kAlphaBitsMask) != 0;
    for (const TgaKind& kind : kTgaKinds) {
        if (kind.type == header.type && kind.pixelBits == header.pixelBits &&
            kind.alphaBit == alphaBit)
            return kind.format;
    }
    return D3DFMT_UNKNOWN;
}

bool IsPaletteValid(const TgaHeader& header)
{
    const bool knownBits = header.paletteBits == 15 || header.paletteBits == 16 ||
                           header.paletteBits == 24 || header.paletteBits == 32;
    if (header.paletteType == 0)
        return header.type != kTgaPalette;
    return header.paletteType == 1 && knownBits &&
           (header.type != kTgaPalette || header.paletteCount);
}

bool ReadHeader(ImageFile file, TgaHeader& headerOut)
{
    if (file.size() < kTgaHeaderSize)
        return false;
    headerOut.idLength = file[0];
    headerOut.paletteType = file[1];
    headerOut.type = file[2] & ~kRunLengthFlag;
    headerOut.runLength = (file[2] & kRunLengthFlag) != 0;
    headerOut.paletteFirst = ReadU16(file, 3);
    headerOut.paletteCount = ReadU16(file, 5);
    headerOut.paletteBits = file[7];
    headerOut.width = ReadU16(file, 12);
    headerOut.height = ReadU16(file, 14);
    headerOut.pixelBits = file[16];
    headerOut.descriptor = file[17];
    headerOut.format = FormatOf(headerOut);
    return headerOut.format != D3DFMT_UNKNOWN && IsPaletteValid(headerOut) &&
           (headerOut.descriptor & kReserved) == 0 &&
           IsImageSize(headerOut.width, headerOut.height);
}

// Packets may continue across the ends of rows. False if the packets end before the picture does; a
// packet that extends past the picture is cut.
bool UnpackRuns(ImageFile packets, size_t pixelBytes, size_t size, uint8_t* out)
{
    size_t position = 0;
    size_t done = 0;
    while (done < size) {
        if (position >= packets.size())
            return false;
        const unsigned packet = packets[position++];
        const size_t count = (packet & 0x7F) + 1;
        const bool run = (packet & 0x80) != 0;
        const size_t stored = (run ? 1 : count) * pixelBytes;
        if (stored > packets.size() - position)
            return false;

        const size_t wanted = std::min(count * pixelBytes, size - done);
        if (run) {
            for (size_t i = 0; i < wanted; i += pixelBytes)
                std::memcpy(out + done + i, packets.data() + position, pixelBytes);
        } else {
            std::memcpy(out + done, packets.data() + position, wanted);
        }
        position += stored;
        done += wanted;
    }
    return true;
}

// Entries of 15 and 16 bits are opaque: few writers set their top bit.
uint32_t ReadPaletteEntry(ImageFile file, size_t offset, unsigned bits)
{
    if (bits >= 24) {
        const uint32_t alpha = bits == 32 ? file[offset + 3] : 0xFFu;
        return alpha << 24 | file[offset + 2] * 0x10000u | ReadU16(file, offset);
    }
    const uint32_t word = ReadU16(file, offset);
    return 0xFF000000u | WidenTo8Bits(word >> 10 & 31, 5) << 16 |
           WidenTo8Bits(word >> 5 & 31, 5) << 8 | WidenTo8Bits(word & 31, 5);
}

// Converts one row, in the file's column order. False if a pixel has no palette entry.
bool ConvertRow(ImageFile file, const TgaHeader& header, const uint8_t* source, uint8_t* rowOut)
{
    if (header.type != kTgaPalette && header.pixelBits != 24) {
        std::memcpy(rowOut, source, size_t{header.width} * header.PixelBytes());
        return true;
    }
    for (UINT x = 0; x < header.width; ++x) {
        uint32_t pixel = 0;
        if (header.type == kTgaPalette) {
            const unsigned index = source[x] - header.paletteFirst; // wraps below the first
            if (index >= header.paletteCount)
                return false;
            pixel = ReadPaletteEntry(
                file, header.PaletteOffset() + size_t{index} * header.PaletteEntryBytes(),
                header.paletteBits);
        } else {
            const uint8_t* bgr = source + size_t{x} * 3;
            pixel = 0xFF000000u | bgr[2] * 0x10000u | bgr[1] * 0x100u | bgr[0];
        }
        StoreLittle(rowOut + size_t{x} * 4, pixel);
    }
    return true;
}

void MirrorRow(uint8_t* row, size_t width, size_t pixelBytes)
{
    for (size_t left = 0, right = width - 1; left < right; ++left, --right)
        std::swap_ranges(row + left * pixelBytes, row + (left + 1) * pixelBytes,
                         row + right * pixelBytes);
}

bool ConvertPixels(ImageFile file, const TgaHeader& header, const uint8_t* source,
                   uint8_t* pixelsOut, size_t pitchBytes)
{
    const size_t sourcePitch = size_t{header.width} * header.PixelBytes();
    for (UINT y = 0; y < header.height; ++y) {
        const UINT target = (header.descriptor & kTopDown) != 0 ? y : header.height - 1 - y;
        uint8_t* row = pixelsOut + target * pitchBytes;
        if (!ConvertRow(file, header, source + y * sourcePitch, row))
            return false;
        if ((header.descriptor & kRightToLeft) != 0)
            MirrorRow(row, header.width, pitchBytes / header.width);
    }
    return true;
}

} // namespace

bool IsTga(ImageFile file)
{
    TgaHeader header;
    return ReadHeader(file, header);
}

HRESULT DecodeTga(ImageFile file, bool infoOnly, DecodedImage& imageOut)
{
    TgaHeader header;
    if (!ReadHeader(file, header) || header.PixelOffset() > file.size())
        return D3DXERR_INVALIDDATA;

    const size_t pixelBytes = header.PixelBytes();
    const size_t rawSize = size_t{header.width} * header.height * pixelBytes;
    const ImageFile stored = file.subspan(header.PixelOffset());
    // A run-length packet of 1 + pixelBytes bytes expands to at most 128 pixels.
    const size_t mostRaw =
        header.runLength ? stored.size() / (1 + pixelBytes) * 128 * pixelBytes + 128 * pixelBytes
                         : stored.size();
    if (rawSize > mostRaw)
        return D3DXERR_INVALIDDATA;

    imageOut.info =
        PlainImageInfo(header.width, header.height,
                       header.type == kTgaPalette ? D3DFMT_P8 : header.format, D3DXIFF_TGA);
    if (infoOnly)
        return D3D_OK;

    std::unique_ptr<uint8_t[]> unpacked;
    const uint8_t* source = stored.data();
    if (header.runLength) {
        unpacked.reset(new (std::nothrow) uint8_t[rawSize]);
        if (!unpacked)
            return E_OUTOFMEMORY;
        if (!UnpackRuns(stored, pixelBytes, rawSize, unpacked.get()))
            return D3DXERR_INVALIDDATA;
        source = unpacked.get();
    }
    uint8_t* pixels = imageOut.Allocate(header.format);
    if (!pixels)
        return E_OUTOFMEMORY;
    const bool whole = ConvertPixels(file, header, source, pixels, imageOut.levels[0].pitchBytes);
    return whole ? D3D_OK : D3DXERR_INVALIDDATA;
}

} // namespace headless
