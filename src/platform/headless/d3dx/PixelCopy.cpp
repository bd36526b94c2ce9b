#include "platform/headless/d3dx/PixelCopy.h"

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3dx/Resample.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace headless {

namespace {

using ArgbPixels = std::unique_ptr<uint32_t[]>;

ArgbPixels NewPixels(UINT width, UINT height)
{
    return ArgbPixels(new (std::nothrow) uint32_t[size_t{width} * height]);
}

bool IsSameLayout(const PixelTarget& target, const PixelSource& source)
{
    return target.format == source.format && target.width == source.width &&
           target.height == source.height;
}

void CopyRows(const PixelTarget& target, const PixelSource& source)
{
    const size_t rowBytes = RowBytes(*source.format, source.width);
    const UINT rows = RowCount(*source.format, source.height);
    auto* to = static_cast<uint8_t*>(target.bits);
    const auto* from = static_cast<const uint8_t*>(source.bits);
    if (rowBytes == target.pitchBytes && rowBytes == source.pitchBytes) {
        std::memcpy(to, from, rowBytes * rows);
        return;
    }
    for (UINT y = 0; y < rows; ++y)
        std::memcpy(to + y * target.pitchBytes, from + y * source.pitchBytes, rowBytes);
}

// Formats with four 8-bit channels are halved without unpacking.
bool CanHalve(const PixelTarget& target, const PixelSource& source, DWORD filter)
{
    return target.format == source.format && source.format->kind == PixelKind::Colour &&
           source.format->unitBytes == 4 && (filter & kFilterKindMask) == D3DX_FILTER_BOX &&
           source.width == 2 * target.width && source.height == 2 * target.height;
}

// Two's complement channels are scaled with their zero moved to the middle: flipping the top bit of
// each byte converts in both directions.
constexpr uint32_t kSignBits = 0x8080;

void LoadOpaque(const PixelSource& source, uint32_t* argbOut)
{
    for (UINT y = 0; y < source.height; ++y, argbOut += source.width) {
        std::memcpy(argbOut, static_cast<const uint8_t*>(source.bits) + y * source.pitchBytes,
                    size_t{source.width} * 4);
        for (UINT x = 0; x < source.width; ++x)
            argbOut[x] |= 0xFF000000u;
    }
}

// From this size on, converting each possible word once is faster.
constexpr size_t kWordCount = 65536;
constexpr size_t kPixelsForWordTable = 4 * kWordCount;

bool UsesWordTable(const PixelSource& source)
{
    return source.format->kind == PixelKind::Colour && source.format->unitBytes == 2 &&
           size_t{source.width} * source.height >= kPixelsForWordTable;
}

bool LoadByWordTable(const PixelSource& source, uint32_t* argbOut)
{
    const ArgbPixels table(new (std::nothrow) uint32_t[kWordCount]);
    if (!table)
        return false;
    for (size_t i = 0; i < kWordCount; ++i) {
        const auto word = static_cast<uint16_t>(i);
        table[i] = UnpackArgb(*source.format, &word);
    }
    for (UINT y = 0; y < source.height; ++y) {
        const auto* row = static_cast<const uint8_t*>(source.bits) + y * source.pitchBytes;
        for (UINT x = 0; x < source.width; ++x) {
            uint16_t word = 0;
            std::memcpy(&word, row + size_t{x} * 2, 2);
            *argbOut++ = table[word];
        }
    }
    return true;
}

bool LoadPixels(const PixelSource& source, bool keepSign, uint32_t* argbOut)
{
    if (source.format->format == D3DFMT_X8R8G8B8) {
        LoadOpaque(source, argbOut);
        return true;
    }
    if (UsesWordTable(source) && LoadByWordTable(source, argbOut))
        return true;
    if (!keepSign)
        return UnpackImage(*source.format, source.width, source.height, source.bits,
                           source.pitchBytes, argbOut);
    for (UINT y = 0; y < source.height; ++y) {
        const auto* row = static_cast<const uint8_t*>(source.bits) + y * source.pitchBytes;
        for (UINT x = 0; x < source.width; ++x)
            *argbOut++ = LoadPixelWord(*source.format, row + size_t{x} * 2) ^ kSignBits;
    }
    return true;
}

// The stored bits for each value of each channel: four look-ups instead of arithmetic. Faster from
// some thousand pixels on.
class PackTables {
public:
    explicit PackTables(const PixelFormat& format)
    {
        for (uint32_t value = 0; value < 256; ++value) {
            for (int channel = 0; channel < 4; ++channel) {
                uint8_t pixel[4];
                PackArgb(format, value << (8 * channel), pixel);
                words[channel][value] = LoadPixelWord(format, pixel);
            }
        }
    }

    uint32_t Pack(uint32_t argb) const
    {
        return words[0][argb & 0xFF] | words[1][argb >> 8 & 0xFF] | words[2][argb >> 16 & 0xFF] |
               words[3][argb >> 24];
    }

private:
    uint32_t words[4][256] = {};
};

constexpr size_t kManyPixels = 4096;

bool UsesPackTables(const PixelTarget& target)
{
    return target.format->kind == PixelKind::Colour && target.format->format != D3DFMT_A8R8G8B8 &&
           size_t{target.width} * target.height >= kManyPixels;
}

void StoreByTables(const PixelTarget& target, const uint32_t* argb)
{
    const PackTables tables(*target.format);
    const size_t pixelBytes = target.format->unitBytes;
    for (UINT y = 0; y < target.height; ++y) {
        auto* row = static_cast<uint8_t*>(target.bits) + y * target.pitchBytes;
        if (pixelBytes == 2) { // the common case: a fixed-size copy is faster
            for (UINT x = 0; x < target.width; ++x) {
                const auto word = static_cast<uint16_t>(tables.Pack(*argb++));
                std::memcpy(row + size_t{x} * 2, &word, 2);
            }
            continue;
        }
        for (UINT x = 0; x < target.width; ++x)
            StorePixelWord(*target.format, tables.Pack(*argb++), row + x * pixelBytes);
    }
}

bool StorePixels(const PixelTarget& target, bool keepSign, const uint32_t* argb)
{
    if (UsesPackTables(target)) {
        StoreByTables(target, argb);
        return true;
    }
    if (!keepSign)
        return PackImage(*target.format, target.width, target.height, argb, target.bits,
                         target.pitchBytes);
    for (UINT y = 0; y < target.height; ++y) {
        auto* row = static_cast<uint8_t*>(target.bits) + y * target.pitchBytes;
        for (UINT x = 0; x < target.width; ++x)
            StorePixelWord(*target.format, (*argb++ ^ kSignBits) & 0xFFFF, row + size_t{x} * 2);
    }
    return true;
}

void ApplyColorKey(uint32_t* pixels, size_t count, D3DCOLOR colorKey)
{
    for (size_t i = 0; i < count; ++i) {
        if (pixels[i] == colorKey)
            pixels[i] = 0;
    }
}

// Quantises an 8-bit channel to `bits` bits, rounding by the threshold of its place in the pattern,
// and widens the result back to 8 bits.
uint32_t DitherChannel(uint32_t value, unsigned bits, uint32_t threshold)
{
    if (bits == 0 || bits >= 8)
        return value;
    const uint32_t most = (1u << bits) - 1;
    // The threshold ranges over 1/32 .. 31/32 of a step.
    const uint32_t step = (value * most * 32 + (2 * threshold + 1) * 255) / (255 * 32);
    return (step * 255 + most / 2) / most;
}

// The published 4 by 4 ordered dither.
void DitherPixels(const PixelTarget& target, uint32_t* pixels)
{
    static const uint8_t kPattern[4][4] = {
        {0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
    const PixelFormat& format = *target.format;
    if (format.kind != PixelKind::Colour)
        return;
    for (UINT y = 0; y < target.height; ++y) {
        for (UINT x = 0; x < target.width; ++x) {
            const uint32_t pixel = *pixels;
            const uint32_t threshold = kPattern[y % 4][x % 4];
            *pixels++ = DitherChannel(pixel >> 24, format.a.bits, threshold) << 24 |
                        DitherChannel(pixel >> 16 & 0xFF, format.r.bits, threshold) << 16 |
                        DitherChannel(pixel >> 8 & 0xFF, format.g.bits, threshold) << 8 |
                        DitherChannel(pixel & 0xFF, format.b.bits, threshold);
        }
    }
}

} // namespace

HRESULT CheckFilter(DWORD filter, DWORD fallback, DWORD& filterOut)
{
    constexpr DWORD kModelled = kFilterKindMask | D3DX_FILTER_MIRROR | D3DX_FILTER_DITHER;
    constexpr DWORD kKnown = kModelled | D3DX_FILTER_DITHER_DIFFUSION | D3DX_FILTER_SRGB;
    filterOut = filter == D3DX_DEFAULT ? fallback : filter;
    const DWORD kind = filterOut & kFilterKindMask;
    if (kind < D3DX_FILTER_NONE || kind > D3DX_FILTER_BOX || (filterOut & ~kKnown) != 0)
        return D3DERR_INVALIDCALL;
    if ((filterOut & ~kModelled) != 0)
        return Unmodelled("D3DX_FILTER", filterOut);
    return D3D_OK;
}

HRESULT CopyPixels(const PixelTarget& target, const PixelSource& source, DWORD filter,
                   D3DCOLOR colorKey)
{
    if (IsSameLayout(target, source) && colorKey == 0) {
        CopyRows(target, source);
        return D3D_OK;
    }
    if (colorKey == 0 && CanHalve(target, source, filter)) {
        HalveExactly(source.bits, source.pitchBytes, target.width, target.height, target.bits,
                     target.pitchBytes);
        return D3D_OK;
    }
    const bool keepSign =
        target.format == source.format && source.format->format == D3DFMT_V8U8 && colorKey == 0;
    ArgbPixels loaded = NewPixels(source.width, source.height);
    if (!loaded)
        return E_OUTOFMEMORY;
    if (!LoadPixels(source, keepSign, loaded.get()))
        return D3DERR_INVALIDCALL;
    if (colorKey != 0)
        ApplyColorKey(loaded.get(), size_t{source.width} * source.height, colorKey);

    ArgbPixels scaled;
    if (target.width != source.width || target.height != source.height) {
        scaled = NewPixels(target.width, target.height);
        if (!scaled || !ResampleArgb(loaded.get(), source.width, source.height, filter,
                                     target.width, target.height, scaled.get()))
            return E_OUTOFMEMORY;
    } else {
        scaled = std::move(loaded);
    }
    if ((filter & D3DX_FILTER_DITHER) != 0 && !keepSign)
        DitherPixels(target, scaled.get());
    return StorePixels(target, keepSign, scaled.get()) ? D3D_OK : D3DERR_INVALIDCALL;
}

} // namespace headless
