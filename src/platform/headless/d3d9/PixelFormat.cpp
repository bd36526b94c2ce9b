#include "platform/headless/d3d9/PixelFormat.h"

#include "platform/LittleEndian.h"
#include "platform/headless/d3d9/BlockCodec.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace headless {

namespace {

constexpr PixelKind kColour = PixelKind::Colour;
constexpr PixelKind kGrey = PixelKind::Luminance;
constexpr PixelKind kSigned = PixelKind::Signed;
constexpr PixelKind kBlocks = PixelKind::Compressed;
constexpr PixelKind kDepth = PixelKind::Depth;

constexpr PixelFormat kFormats[] = {
    // format, kind, bytes, alpha or stencil, red or grey or depth or U, green or V, blue
    {D3DFMT_R8G8B8, kColour, 3, {0, 0}, {16, 8}, {8, 8}, {0, 8}},
    {D3DFMT_A8R8G8B8, kColour, 4, {24, 8}, {16, 8}, {8, 8}, {0, 8}},
    {D3DFMT_X8R8G8B8, kColour, 4, {0, 0}, {16, 8}, {8, 8}, {0, 8}},
    {D3DFMT_A8B8G8R8, kColour, 4, {24, 8}, {0, 8}, {8, 8}, {16, 8}},
    {D3DFMT_X8B8G8R8, kColour, 4, {0, 0}, {0, 8}, {8, 8}, {16, 8}},
    {D3DFMT_R5G6B5, kColour, 2, {0, 0}, {11, 5}, {5, 6}, {0, 5}},
    {D3DFMT_X1R5G5B5, kColour, 2, {0, 0}, {10, 5}, {5, 5}, {0, 5}},
    {D3DFMT_A1R5G5B5, kColour, 2, {15, 1}, {10, 5}, {5, 5}, {0, 5}},
    {D3DFMT_A4R4G4B4, kColour, 2, {12, 4}, {8, 4}, {4, 4}, {0, 4}},
    {D3DFMT_X4R4G4B4, kColour, 2, {0, 0}, {8, 4}, {4, 4}, {0, 4}},
    {D3DFMT_R3G3B2, kColour, 1, {0, 0}, {5, 3}, {2, 3}, {0, 2}},
    {D3DFMT_A8R3G3B2, kColour, 2, {8, 8}, {5, 3}, {2, 3}, {0, 2}},
    {D3DFMT_A8, kColour, 1, {0, 8}, {0, 0}, {0, 0}, {0, 0}},
    {D3DFMT_L8, kGrey, 1, {0, 0}, {0, 8}, {0, 0}, {0, 0}},
    {D3DFMT_A8L8, kGrey, 2, {8, 8}, {0, 8}, {0, 0}, {0, 0}},
    {D3DFMT_A4L4, kGrey, 1, {4, 4}, {0, 4}, {0, 0}, {0, 0}},
    {D3DFMT_V8U8, kSigned, 2, {0, 0}, {0, 8}, {8, 8}, {0, 0}},
    {D3DFMT_DXT1, kBlocks, 8, {0, 0}, {0, 0}, {0, 0}, {0, 0}},
    {D3DFMT_DXT2, kBlocks, 16, {0, 0}, {0, 0}, {0, 0}, {0, 0}},
    {D3DFMT_DXT3, kBlocks, 16, {0, 0}, {0, 0}, {0, 0}, {0, 0}},
    {D3DFMT_DXT4, kBlocks, 16, {0, 0}, {0, 0}, {0, 0}, {0, 0}},
    {D3DFMT_DXT5, kBlocks, 16, {0, 0}, {0, 0}, {0, 0}, {0, 0}},
    {D3DFMT_D16, kDepth, 2, {0, 0}, {0, 16}, {0, 0}, {0, 0}},
    {D3DFMT_D16_LOCKABLE, kDepth, 2, {0, 0}, {0, 16}, {0, 0}, {0, 0}},
    {D3DFMT_D24S8, kDepth, 4, {0, 8}, {8, 24}, {0, 0}, {0, 0}},
    {D3DFMT_D24X8, kDepth, 4, {0, 0}, {8, 24}, {0, 0}, {0, 0}},
    {D3DFMT_D32, kDepth, 4, {0, 0}, {0, 32}, {0, 0}, {0, 0}},
};

constexpr uint32_t MaxOf(PixelChannel channel)
{
    return channel.bits == 32 ? 0xFFFFFFFFu : (1u << channel.bits) - 1;
}

constexpr uint32_t MaskOf(PixelChannel channel)
{
    return channel.bits == 0 ? 0 : MaxOf(channel) << channel.shift;
}

uint32_t Field(uint32_t word, PixelChannel channel)
{
    return (word >> channel.shift) & MaxOf(channel);
}

/// Widens a field of n bits to 0..255, rounded to nearest.
uint32_t To8Bits(uint32_t word, PixelChannel channel)
{
    const uint32_t max = MaxOf(channel);
    return (Field(word, channel) * 255 * 2 + max) / (2 * max);
}

/// Narrows 0..255 to a field of n bits, already shifted; an absent channel gives no bits.
uint32_t From8Bits(uint32_t value, PixelChannel channel)
{
    const uint32_t max = MaxOf(channel);
    return channel.bits == 0 ? 0 : ((value * max * 2 + 255) / 510) << channel.shift;
}

float ClampUnit(float value, float low)
{
    if (!(value > low)) // also true for NaN
        return std::isnan(value) ? 0.0f : low;
    return value < 1.0f ? value : 1.0f;
}

float ToFloat(uint32_t word, PixelChannel channel, float absent)
{
    if (channel.bits == 0)
        return absent;
    return static_cast<float>(static_cast<double>(Field(word, channel)) / MaxOf(channel));
}

uint32_t FromFloat(float value, PixelChannel channel)
{
    if (channel.bits == 0)
        return 0;
    const double scaled = static_cast<double>(ClampUnit(value, 0.0f)) * MaxOf(channel);
    return static_cast<uint32_t>(std::floor(scaled + 0.5)) << channel.shift;
}

/// Two's complement: both -2^(n-1) and the step above it mean -1.
float ToSignedFloat(uint32_t word, PixelChannel channel)
{
    const int half = (1 << channel.bits) / 2;
    int value = static_cast<int>(Field(word, channel));
    if (value >= half)
        value -= 2 * half;
    return std::max(-1.0f, static_cast<float>(value) / static_cast<float>(half - 1));
}

uint32_t FromSignedFloat(float value, PixelChannel channel)
{
    const int half = (1 << channel.bits) / 2;
    const double steps = half - 1;
    const double rounded = std::floor(static_cast<double>(ClampUnit(value, -1.0f)) * steps + 0.5);
    const auto field = static_cast<uint32_t>(static_cast<int32_t>(rounded));
    return (field & MaxOf(channel)) << channel.shift;
}

uint32_t UnusedBits(const PixelFormat& format)
{
    const uint32_t all = format.unitBytes == 4 ? 0xFFFFFFFFu : (1u << 8 * format.unitBytes) - 1;
    return all & ~(MaskOf(format.a) | MaskOf(format.r) | MaskOf(format.g) | MaskOf(format.b));
}

bool IsPlain(const PixelFormat& format)
{
    return format.kind != PixelKind::Compressed && format.kind != PixelKind::Depth;
}

/// The luminance weights from the public documentation.
float Grey(const Float4& colour)
{
    return 0.2125f * colour.r + 0.7154f * colour.g + 0.0721f * colour.b;
}

uint32_t ToByte(float value)
{
    return static_cast<uint32_t>(ClampUnit(value, 0.0f) * 255.0f + 0.5f);
}

Float4 ArgbToFloat4(uint32_t argb)
{
    return {static_cast<float>((argb >> 16) & 0xFF) / 255.0f,
            static_cast<float>((argb >> 8) & 0xFF) / 255.0f,
            static_cast<float>(argb & 0xFF) / 255.0f, static_cast<float>(argb >> 24) / 255.0f};
}

/// The block at column `bx`, row `by` of a picture; past the edge the last pixels repeat.
void GatherBlock(const uint32_t* argb, UINT width, UINT height, UINT bx, UINT by,
                 uint32_t* blockOut)
{
    for (UINT i = 0; i < 16; ++i) {
        const UINT x = std::min(bx * 4 + i % 4, width - 1);
        const UINT y = std::min(by * 4 + i / 4, height - 1);
        blockOut[i] = argb[static_cast<size_t>(y) * width + x];
    }
}

void ScatterBlock(const uint32_t* block, UINT width, UINT height, UINT bx, UINT by,
                  uint32_t* argbOut)
{
    const UINT columns = std::min(4u, width - bx * 4);
    const UINT rows = std::min(4u, height - by * 4);
    for (UINT row = 0; row < rows; ++row)
        std::memcpy(argbOut + static_cast<size_t>(by * 4 + row) * width + bx * 4, block + row * 4,
                    columns * sizeof *block);
}

} // namespace

const PixelFormat* FindPixelFormat(D3DFORMAT format)
{
    for (const PixelFormat& row : kFormats)
        if (row.format == format)
            return &row;
    return nullptr;
}

size_t RowBytes(const PixelFormat& format, UINT width)
{
    const UINT side = format.UnitSide();
    return (static_cast<size_t>(width) + side - 1) / side * format.unitBytes;
}

UINT RowCount(const PixelFormat& format, UINT height)
{
    return height / format.UnitSide() + (height % format.UnitSide() != 0);
}

size_t ImageBytes(const PixelFormat& format, UINT width, UINT height)
{
    return RowBytes(format, width) * RowCount(format, height);
}

uint32_t LoadPixelWord(const PixelFormat& format, const void* pixel)
{
    return LoadPixelBytes(pixel, std::min<size_t>(format.unitBytes, sizeof(uint32_t)));
}

void StorePixelWord(const PixelFormat& format, uint32_t word, void* pixelOut)
{
    StorePixelBytes(pixelOut, word, std::min<size_t>(format.unitBytes, sizeof word));
}

uint32_t UnpackArgb(const PixelFormat& format, const void* pixel)
{
    if (!IsPlain(format))
        return 0;
    if (format.kind == PixelKind::Signed) {
        const Float4 colour = UnpackFloat4(format, pixel);
        return 0xFF0000FFu | ToByte(colour.r) << 16 | ToByte(colour.g) << 8;
    }
    const uint32_t word = LoadPixelWord(format, pixel);
    const uint32_t a = format.a.bits ? To8Bits(word, format.a) : 255;
    if (format.r.bits == 0) // alpha alone: the colour is black
        return a << 24;
    const uint32_t r = To8Bits(word, format.r);
    if (format.kind == PixelKind::Luminance)
        return a << 24 | r << 16 | r << 8 | r;
    return a << 24 | r << 16 | To8Bits(word, format.g) << 8 | To8Bits(word, format.b);
}

void PackArgb(const PixelFormat& format, uint32_t argb, void* pixelOut)
{
    if (format.kind != PixelKind::Colour) {
        PackFloat4(format, ArgbToFloat4(argb), pixelOut);
        return;
    }
    const uint32_t word = UnusedBits(format) | From8Bits(argb >> 24, format.a) |
                          From8Bits((argb >> 16) & 0xFF, format.r) |
                          From8Bits((argb >> 8) & 0xFF, format.g) |
                          From8Bits(argb & 0xFF, format.b);
    StorePixelWord(format, word, pixelOut);
}

Float4 UnpackFloat4(const PixelFormat& format, const void* pixel)
{
    if (!IsPlain(format))
        return {};
    const uint32_t word = LoadPixelWord(format, pixel);
    if (format.kind == PixelKind::Signed)
        return {ToSignedFloat(word, format.r), ToSignedFloat(word, format.g), 1.0f, 1.0f};
    const float a = ToFloat(word, format.a, 1.0f);
    const float r = ToFloat(word, format.r, 0.0f);
    if (format.kind == PixelKind::Luminance)
        return {r, r, r, a};
    return {r, ToFloat(word, format.g, 0.0f), ToFloat(word, format.b, 0.0f), a};
}

void PackFloat4(const PixelFormat& format, const Float4& colour, void* pixelOut)
{
    if (!IsPlain(format))
        return;
    uint32_t word = UnusedBits(format);
    if (format.kind == PixelKind::Signed)
        word |= FromSignedFloat(colour.r, format.r) | FromSignedFloat(colour.g, format.g);
    else if (format.kind == PixelKind::Luminance)
        word |= FromFloat(colour.a, format.a) | FromFloat(Grey(colour), format.r);
    else
        word |= FromFloat(colour.a, format.a) | FromFloat(colour.r, format.r) |
                FromFloat(colour.g, format.g) | FromFloat(colour.b, format.b);
    StorePixelWord(format, word, pixelOut);
}

/// The formats of frames and of most pictures without alpha need no look at each channel.
static void UnpackRow(const PixelFormat& format, const uint8_t* pixel, UINT width,
                      uint32_t* argbOut)
{
    for (UINT x = 0; x < width; ++x, pixel += format.unitBytes) {
        if (format.format == D3DFMT_X8R8G8B8)
            argbOut[x] = 0xFF000000 | LoadPixelBytes(pixel, 4);
        else if (format.format == D3DFMT_R8G8B8)
            argbOut[x] = 0xFF000000 | LoadPixelBytes(pixel, 3);
        else
            argbOut[x] = UnpackArgb(format, pixel);
    }
}

bool UnpackImage(const PixelFormat& format, UINT width, UINT height, const void* bits,
                 size_t pitchBytes, uint32_t* argbOut)
{
    if (format.kind == PixelKind::Depth)
        return false;
    const auto* row = static_cast<const uint8_t*>(bits);
    for (UINT y = 0; y < RowCount(format, height); ++y, row += pitchBytes) {
        if (format.format == D3DFMT_A8R8G8B8) {
            std::memcpy(argbOut + static_cast<size_t>(y) * width, row, RowBytes(format, width));
        } else if (format.kind == PixelKind::Compressed) {
            uint32_t block[16];
            for (UINT x = 0; x < (width + 3) / 4; ++x) {
                DecodeBlock(format.format, row + size_t{x} * format.unitBytes, block);
                ScatterBlock(block, width, height, x, y, argbOut);
            }
        } else {
            UnpackRow(format, row, width, argbOut + static_cast<size_t>(y) * width);
        }
    }
    return true;
}

bool PackImage(const PixelFormat& format, UINT width, UINT height, const uint32_t* argb,
               void* bitsOut, size_t pitchBytes)
{
    if (format.kind == PixelKind::Depth)
        return false;
    auto* row = static_cast<uint8_t*>(bitsOut);
    for (UINT y = 0; y < RowCount(format, height); ++y, row += pitchBytes) {
        const uint32_t* in = argb + static_cast<size_t>(y) * width;
        if (format.format == D3DFMT_A8R8G8B8) {
            std::memcpy(row, in, RowBytes(format, width));
        } else if (format.kind == PixelKind::Compressed) {
            uint32_t block[16];
            for (UINT x = 0; x < (width + 3) / 4; ++x) {
                GatherBlock(argb, width, height, x, y, block);
                EncodeBlock(format.format, block, row + size_t{x} * format.unitBytes);
            }
        } else {
            for (UINT x = 0; x < width; ++x)
                PackArgb(format, in[x], row + size_t{x} * format.unitBytes);
        }
    }
    return true;
}

uint32_t PackDepth(const PixelFormat& format, float depth, uint32_t stencil)
{
    return FromFloat(depth, format.r) | ((stencil & MaxOf(format.a)) << format.a.shift);
}

uint32_t DepthMask(const PixelFormat& format)
{
    return MaskOf(format.r);
}

uint32_t StencilMask(const PixelFormat& format)
{
    return MaskOf(format.a);
}

} // namespace headless
