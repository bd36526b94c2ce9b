#include "platform/headless/d3d9/PixelBuffer.h"

#include "platform/headless/d3d9/Lanes.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace headless {

namespace {

/// A sample position along one axis: two neighbours and the weight of the second.
struct Tap {
    UINT first;
    UINT second;
    float weight;
};

/// Maps the centre of target pixel `i` of `toSize` to a position among `fromSize` source pixels.
Tap MakeTap(LONG i, LONG toSize, LONG fromStart, LONG fromSize, bool linear)
{
    const double centre = (i + 0.5) * static_cast<double>(fromSize) / static_cast<double>(toSize);
    const double last = static_cast<double>(fromSize - 1);
    const auto start = static_cast<UINT>(fromStart);
    if (!linear) {
        const UINT at = start + static_cast<UINT>(std::clamp(std::floor(centre), 0.0, last));
        return {at, at, 0.0f};
    }
    const double place = std::clamp(centre - 0.5, 0.0, last);
    const double low = std::floor(place);
    const UINT first = start + static_cast<UINT>(low);
    const UINT second = start + static_cast<UINT>(std::min(low + 1.0, last));
    return {first, second, static_cast<float>(place - low)};
}

Float4 Mix(const Float4& a, const Float4& b, float weight)
{
    return {a.r + (b.r - a.r) * weight, a.g + (b.g - a.g) * weight, a.b + (b.b - a.b) * weight,
            a.a + (b.a - a.a) * weight};
}

Float4 Sample(const PixelBuffer& from, const Tap& x, const Tap& y)
{
    const PixelFormat& format = *from.format;
    const Float4 top = Mix(UnpackFloat4(format, from.At(x.first, y.first)),
                           UnpackFloat4(format, from.At(x.second, y.first)), x.weight);
    const Float4 bottom = Mix(UnpackFloat4(format, from.At(x.first, y.second)),
                              UnpackFloat4(format, from.At(x.second, y.second)), x.weight);
    return Mix(top, bottom, y.weight);
}

bool OnBlockBorder(LONG place, UINT side, UINT size)
{
    return static_cast<UINT>(place) % side == 0 || static_cast<UINT>(place) == size;
}

/// The word of a pixel of 1, 2 or 4 bytes, as often as it fits into four bytes.
uint32_t RepeatWord(uint32_t word, UINT unitBytes)
{
    if (unitBytes == 1)
        return (word & 0xFF) * 0x01010101u;
    return unitBytes == 2 ? (word & 0xFFFF) * 0x00010001u : word;
}

void FillRow(const PixelFormat& format, uint8_t* row, UINT columns, uint32_t word, uint32_t mask)
{
    const UINT unitBytes = format.unitBytes;
    UINT x = 0;
    if (16 % unitBytes == 0) {
        const auto repeated = [unitBytes](uint32_t bits) {
            return SplatInt(static_cast<int>(RepeatWord(bits, unitBytes)));
        };
        const IntLanes kept = repeated(~mask);
        const IntLanes added = repeated(word & mask);
        for (const UINT step = 16 / unitBytes; columns - x >= step; x += step, row += 16)
            StoreInts(row, (LoadInts(row) & kept) | added);
    }
    for (; x < columns; ++x, row += unitBytes)
        StorePixelWord(format, (LoadPixelWord(format, row) & ~mask) | (word & mask), row);
}

} // namespace

bool PixelBuffer::Allocate(const PixelFormat& pixelFormat, UINT pixelWidth, UINT pixelHeight)
{
    const size_t pitch = (RowBytes(pixelFormat, pixelWidth) + 3) / 4 * 4;
    const size_t size = pitch * RowCount(pixelFormat, pixelHeight);
    bytes = AllocateZeroed(size);
    if (!bytes)
        return false;
    format = &pixelFormat;
    width = pixelWidth;
    height = pixelHeight;
    pitchBytes = pitch;
    return true;
}

uint8_t* PixelBuffer::At(UINT x, UINT y)
{
    const UINT side = format->UnitSide();
    return bytes.get() + pitchBytes * (y / side) + size_t{x / side} * format->unitBytes;
}

const uint8_t* PixelBuffer::At(UINT x, UINT y) const
{
    return const_cast<PixelBuffer*>(this)->At(x, y);
}

bool IsValidArea(const PixelBuffer& pixels, const RECT& rect)
{
    if (rect.left < 0 || rect.top < 0 || rect.left >= rect.right || rect.top >= rect.bottom)
        return false;
    if (static_cast<UINT>(rect.right) > pixels.width ||
        static_cast<UINT>(rect.bottom) > pixels.height)
        return false;
    const UINT side = pixels.format->UnitSide();
    return OnBlockBorder(rect.left, side, pixels.width) &&
           OnBlockBorder(rect.right, side, pixels.width) &&
           OnBlockBorder(rect.top, side, pixels.height) &&
           OnBlockBorder(rect.bottom, side, pixels.height);
}

void CopyArea(const PixelBuffer& from, const RECT& area, PixelBuffer& to, UINT x, UINT y)
{
    const UINT side = from.format->UnitSide();
    const auto left = static_cast<UINT>(area.left);
    const auto top = static_cast<UINT>(area.top);
    const size_t rowBytes = RowBytes(*from.format, static_cast<UINT>(area.right) - left);
    ++to.changes;
    if (from.isBlank) {
        to.isBlank = true;
        return;
    }
    for (UINT row = 0; row < static_cast<UINT>(area.bottom) - top; row += side)
        std::memcpy(to.At(x, y + row), from.At(left, top + row), rowBytes);
}

void StretchArea(const PixelBuffer& from, const RECT& fromArea, PixelBuffer& to, const RECT& toArea,
                 bool linear)
{
    ++to.changes;
    if (from.isBlank) {
        to.isBlank = true;
        return;
    }
    const LONG fromWidth = fromArea.right - fromArea.left;
    const LONG fromHeight = fromArea.bottom - fromArea.top;
    const LONG toWidth = toArea.right - toArea.left;
    const LONG toHeight = toArea.bottom - toArea.top;
    for (LONG y = 0; y < toHeight; ++y) {
        const Tap yTap = MakeTap(y, toHeight, fromArea.top, fromHeight, linear);
        for (LONG x = 0; x < toWidth; ++x) {
            const Tap xTap = MakeTap(x, toWidth, fromArea.left, fromWidth, linear);
            PackFloat4(
                *to.format, Sample(from, xTap, yTap),
                to.At(static_cast<UINT>(toArea.left + x), static_cast<UINT>(toArea.top + y)));
        }
    }
}

void FillArea(PixelBuffer& pixels, const RECT& area, uint32_t word, uint32_t mask)
{
    ++pixels.changes;
    const auto columns = static_cast<UINT>(area.right - area.left);
    for (LONG y = area.top; y < area.bottom; ++y)
        FillRow(*pixels.format, pixels.At(static_cast<UINT>(area.left), static_cast<UINT>(y)),
                columns, word, mask);
}

} // namespace headless
