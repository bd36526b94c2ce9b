#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

// Image files built byte by byte, so that a test knows every pixel without using a library.

/// The low bytes of `values`, in order.
std::string Bytes(std::initializer_list<unsigned> values);

/// `count` times the same byte.
std::string Repeated(size_t count, unsigned value);

/// Little-endian numbers.
std::string U16(uint32_t value);
std::string U32(uint32_t value);

enum class PngColour : unsigned { Grey = 0, Rgb = 2, Palette = 3, GreyAlpha = 4, Rgba = 6 };

/// One chunk with its length and checksum.
std::string PngChunk(const std::string& name, const std::string& data);

struct PngParts {
    unsigned width;
    unsigned height;
    unsigned bitDepth;
    PngColour colour;
    /// Rows without filter bytes, all of equal length; for interlaced files the passes, with filter
    /// bytes.
    std::string rows;
    std::string chunks = ""; ///< whole chunks to put before the pixels, such as the palette
    bool interlaced = false;
};

/// A PNG file whose pixels are stored without compression.
std::string PngFile(const PngParts& parts);

struct JpegParts {
    unsigned width = 8; ///< at most 8, like the height: the file holds one block
    unsigned height = 8;
    /// Mean of the block minus 128, per component: 64 to 127 or -127 to -64.
    std::vector<int> components;
    bool progressive = false;
};

/// A JPEG file of one block of equal pixels. Its quantiser is 8, so the stored mean is exactly the
/// pixel's distance from 128.
std::string JpegFile(const JpegParts& parts);

struct TgaParts {
    unsigned type; ///< 1 palette, 2 colour, 3 grey; plus 8 for runs
    unsigned width;
    unsigned height;
    unsigned bits;
    std::string pixels;
    unsigned descriptor = 0x20; ///< 0x20: top row first
    unsigned paletteFirst = 0;
    unsigned paletteCount = 0;
    unsigned paletteBits = 0;
    std::string palette = "";
    std::string id = "";
};

std::string TgaFile(const TgaParts& parts);

struct BmpParts {
    int width;
    int height; ///< negative: top row first
    unsigned bits;
    std::string pixels; ///< rows padded to 4 bytes
    unsigned compression = 0;
    std::string tables = ""; ///< bytes between header and pixels: masks, palette
    unsigned paletteCount = 0;
};

std::string BmpFile(const BmpParts& parts);

struct DdsParts {
    unsigned width;
    unsigned height;
    std::string pixels;
    std::string fourCC = ""; ///< or:
    unsigned formatFlags = 0;
    unsigned bits = 0;
    uint32_t masks[4] = {}; ///< red, green, blue, alpha
    unsigned levels = 0;    ///< 0: the header has no level count
    uint32_t caps2 = 0;
    unsigned depth = 0;
};

inline constexpr unsigned kDdsAlpha = 0x1;
inline constexpr unsigned kDdsColour = 0x40;
inline constexpr unsigned kDdsGrey = 0x20000;
inline constexpr unsigned kDdsSigned = 0x80000;

std::string DdsFile(const DdsParts& parts);

/// The A8R8G8B8 layout, for `DdsParts`.
DdsParts ArgbDds(unsigned width, unsigned height, const std::string& pixels);

/// A DXT colour block: two R5G6B5 end points and sixteen 2-bit codes, the first in the lowest bits.
std::string ColourBlock(unsigned c0, unsigned c1, uint32_t codes);
