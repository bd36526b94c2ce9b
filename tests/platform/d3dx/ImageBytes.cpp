#include "tests/platform/d3dx/ImageBytes.h"

#include <algorithm>

namespace {

std::string BigU16(uint32_t value)
{
    return Bytes({value >> 8, value});
}

std::string BigU32(uint32_t value)
{
    return BigU16(value >> 16) + BigU16(value);
}

// The checksums as defined by the PNG and zlib specifications, one bit or byte at a time.
uint32_t Crc32(const std::string& data)
{
    uint32_t crc = 0xFFFFFFFF;
    for (const char c : data) {
        crc ^= static_cast<uint8_t>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320u : crc >> 1;
    }
    return ~crc;
}

uint32_t Adler32(const std::string& data)
{
    uint32_t a = 1;
    uint32_t b = 0;
    for (const char c : data) {
        a = (a + static_cast<uint8_t>(c)) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

// A zlib stream of stored (uncompressed) blocks.
std::string StoredStream(const std::string& data)
{
    std::string stream = Bytes({0x78, 0x01});
    size_t position = 0;
    do {
        const size_t count = std::min<size_t>(data.size() - position, 65535);
        const auto size = static_cast<uint32_t>(count);
        stream += Bytes({position + count == data.size() ? 1u : 0u}) + U16(size) + U16(~size);
        stream += data.substr(position, count);
        position += count;
    } while (position < data.size());
    return stream + BigU32(Adler32(data));
}

std::string WithFilterBytes(const std::string& rows, unsigned height)
{
    const size_t rowBytes = height != 0 ? rows.size() / height : 0;
    std::string filtered;
    for (unsigned y = 0; y < height; ++y)
        filtered += Bytes({0}) + rows.substr(y * rowBytes, rowBytes);
    return filtered;
}

// Writes bits, highest first, and pads the last byte with ones.
class BitWriter {
public:
    void Put(unsigned value, int count)
    {
        for (int bit = count - 1; bit >= 0; --bit) {
            last = last << 1 | (value >> bit & 1);
            if (++used == 8)
                Flush();
        }
    }

    std::string Take()
    {
        while (used != 0)
            Put(1, 1);
        return bytes;
    }

private:
    void Flush()
    {
        bytes += Bytes({last});
        if ((last & 0xFF) == 0xFF)
            bytes += Bytes({0}); // a stuffed byte distinguishes it from a marker
        last = 0;
        used = 0;
    }

    std::string bytes;
    unsigned last = 0;
    int used = 0;
};

std::string JpegSegment(unsigned marker, const std::string& data)
{
    return Bytes({0xFF, marker}) + BigU16(static_cast<uint32_t>(data.size() + 2)) + data;
}

// A table with a single one-bit code, 0, for `symbol`.
std::string OneCodeTable(unsigned tableClass, unsigned symbol)
{
    return JpegSegment(0xC4, Bytes({tableClass, 1}) + Repeated(15, 0) + Bytes({symbol}));
}

// For each component its 7-bit code, its 7 bits, and, unless the file is progressive, the
// end-of-block code.
std::string JpegScan(const JpegParts& parts)
{
    BitWriter bits;
    for (const int mean : parts.components) {
        bits.Put(0, 1);
        bits.Put(static_cast<unsigned>(mean > 0 ? mean : mean + 127), 7);
        if (!parts.progressive)
            bits.Put(0, 1);
    }
    return bits.Take();
}

} // namespace

std::string Bytes(std::initializer_list<unsigned> values)
{
    std::string bytes;
    for (const unsigned value : values)
        bytes += static_cast<char>(static_cast<uint8_t>(value));
    return bytes;
}

std::string Repeated(size_t count, unsigned value)
{
    return std::string(count, static_cast<char>(static_cast<uint8_t>(value)));
}

std::string U16(uint32_t value)
{
    return Bytes({value, value >> 8});
}

std::string U32(uint32_t value)
{
    return U16(value) + U16(value >> 16);
}

std::string PngChunk(const std::string& name, const std::string& data)
{
    return BigU32(static_cast<uint32_t>(data.size())) + name + data + BigU32(Crc32(name + data));
}

std::string PngFile(const PngParts& parts)
{
    const std::string header =
        BigU32(parts.width) + BigU32(parts.height) +
        Bytes({parts.bitDepth, static_cast<unsigned>(parts.colour), 0, 0, parts.interlaced});
    const std::string filtered =
        parts.interlaced ? parts.rows : WithFilterBytes(parts.rows, parts.height);
    return Bytes({0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A}) + PngChunk("IHDR", header) +
           parts.chunks + PngChunk("IDAT", StoredStream(filtered)) + PngChunk("IEND", "");
}

std::string JpegFile(const JpegParts& parts)
{
    const auto count = static_cast<unsigned>(parts.components.size());
    std::string frame = Bytes({8}) + BigU16(parts.height) + BigU16(parts.width) + Bytes({count});
    std::string scan = Bytes({count});
    for (unsigned i = 1; i <= count; ++i) {
        frame += Bytes({i, 0x11, 0});
        scan += Bytes({i, 0});
    }
    scan += Bytes({0, parts.progressive ? 0u : 63u, 0});
    return Bytes({0xFF, 0xD8}) + JpegSegment(0xDB, Bytes({0}) + Repeated(64, 8)) +
           JpegSegment(parts.progressive ? 0xC2 : 0xC0, frame) + OneCodeTable(0x00, 7) +
           OneCodeTable(0x10, 0) + JpegSegment(0xDA, scan) + JpegScan(parts) + Bytes({0xFF, 0xD9});
}

std::string TgaFile(const TgaParts& parts)
{
    return Bytes({static_cast<unsigned>(parts.id.size()), parts.paletteCount != 0 ? 1u : 0u,
                  parts.type}) +
           U16(parts.paletteFirst) + U16(parts.paletteCount) + Bytes({parts.paletteBits}) + U16(0) +
           U16(0) + U16(parts.width) + U16(parts.height) + Bytes({parts.bits, parts.descriptor}) +
           parts.id + parts.palette + parts.pixels;
}

std::string BmpFile(const BmpParts& parts)
{
    const auto offset = static_cast<uint32_t>(54 + parts.tables.size());
    const auto size = static_cast<uint32_t>(parts.pixels.size());
    return "BM" + U32(offset + size) + U32(0) + U32(offset) + U32(40) +
           U32(static_cast<uint32_t>(parts.width)) + U32(static_cast<uint32_t>(parts.height)) +
           U16(1) + U16(parts.bits) + U32(parts.compression) + U32(size) + U32(0) + U32(0) +
           U32(parts.paletteCount) + U32(0) + parts.tables + parts.pixels;
}

std::string DdsFile(const DdsParts& parts)
{
    constexpr uint32_t kPlainFlags = 0x1007; // caps, height, width, pixel format
    const bool hasFourCC = !parts.fourCC.empty();
    std::string file = "DDS " + U32(124) + U32(kPlainFlags | (parts.levels != 0 ? 0x20000u : 0u)) +
                       U32(parts.height) + U32(parts.width) + U32(0) + U32(parts.depth) +
                       U32(parts.levels) + Repeated(44, 0) + U32(32) +
                       U32(hasFourCC ? 4 : parts.formatFlags) +
                       (hasFourCC ? parts.fourCC : U32(0)) + U32(parts.bits);
    for (const uint32_t mask : parts.masks)
        file += U32(mask);
    return file + U32(parts.levels > 1 ? 0x401008 : 0x1000) + U32(parts.caps2) + U32(0) + U32(0) +
           U32(0) + parts.pixels;
}

DdsParts ArgbDds(unsigned width, unsigned height, const std::string& pixels)
{
    DdsParts parts = {width, height, pixels};
    parts.formatFlags = kDdsColour | kDdsAlpha;
    parts.bits = 32;
    parts.masks[0] = 0xFF0000;
    parts.masks[1] = 0xFF00;
    parts.masks[2] = 0xFF;
    parts.masks[3] = 0xFF000000;
    return parts;
}

std::string ColourBlock(unsigned c0, unsigned c1, uint32_t codes)
{
    return U16(c0) + U16(c1) + U32(codes);
}
