#include "platform/headless/d3dx/Resample.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>

namespace headless {

namespace {

struct WeightedTap {
    UINT index;
    float weight;
};

// Which source pixels contribute to each target pixel along one axis, and with what weight.
class AxisTaps {
public:
    bool Build(DWORD kind, bool mirrored, UINT sourceSize, UINT targetSize);

    const WeightedTap* Begin(UINT target) const { return taps.get() + size_t{target} * most; }
    const WeightedTap* End(UINT target) const { return Begin(target) + counts[target]; }

private:
    void Add(UINT target, long index, float weight);
    void AddPoint(UINT target, double scale);
    void AddCovered(UINT target, double scale);
    void AddTriangle(UINT target, double scale, double halfWidth);
    void Normalize(UINT target);

    long size = 0;
    bool mirror = false;
    size_t most = 0; // capacity per target pixel
    std::unique_ptr<WeightedTap[]> taps;
    std::unique_ptr<UINT[]> counts;
};

bool AxisTaps::Build(DWORD kind, bool mirrored, UINT sourceSize, UINT targetSize)
{
    const double scale = static_cast<double>(sourceSize) / targetSize;
    size = static_cast<long>(sourceSize);
    mirror = mirrored;
    most = static_cast<size_t>(2 * std::max(scale, 1.0)) + 3;
    taps.reset(new (std::nothrow) WeightedTap[most * targetSize]);
    counts.reset(new (std::nothrow) UINT[targetSize]());
    if (!taps || !counts)
        return false;

    for (UINT target = 0; target < targetSize; ++target) {
        if (kind == D3DX_FILTER_POINT)
            AddPoint(target, scale);
        else if (kind == D3DX_FILTER_BOX)
            AddCovered(target, scale);
        else
            AddTriangle(target, scale, kind == D3DX_FILTER_LINEAR ? 1.0 : std::max(scale, 1.0));
        Normalize(target);
    }
    return true;
}

// An index outside the picture wraps or is mirrored back into it.
void AxisTaps::Add(UINT target, long index, float weight)
{
    const long period = mirror ? 2 * size : size;
    long folded = index % period;
    if (folded < 0)
        folded += period;
    if (folded >= size)
        folded = period - 1 - folded;
    if (weight > 0.0f && counts[target] < most)
        taps[target * most + counts[target]++] = {static_cast<UINT>(folded), weight};
}

void AxisTaps::AddPoint(UINT target, double scale)
{
    Add(target, static_cast<long>((target + 0.5) * scale), 1.0f);
}

void AxisTaps::AddCovered(UINT target, double scale)
{
    const double begin = target * scale;
    const double end = begin + scale;
    for (auto i = static_cast<long>(begin); static_cast<double>(i) < end; ++i) {
        const double from = std::max(begin, static_cast<double>(i));
        const double to = std::min(end, static_cast<double>(i) + 1);
        Add(target, std::min(i, size - 1), static_cast<float>(to - from));
    }
}

// A weight that falls linearly from the centre to 0 at `halfWidth` pixels.
void AxisTaps::AddTriangle(UINT target, double scale, double halfWidth)
{
    const double centre = (target + 0.5) * scale - 0.5;
    const auto first = static_cast<long>(std::ceil(centre - halfWidth));
    const auto last = static_cast<long>(std::floor(centre + halfWidth));
    for (long i = first; i <= last; ++i) {
        const double distance = std::abs(static_cast<double>(i) - centre);
        Add(target, i, static_cast<float>(1.0 - distance / halfWidth));
    }
}

void AxisTaps::Normalize(UINT target)
{
    WeightedTap* begin = taps.get() + target * most;
    float sum = 0.0f;
    for (UINT i = 0; i < counts[target]; ++i)
        sum += begin[i].weight;
    for (UINT i = 0; i < counts[target]; ++i)
        begin[i].weight /= sum;
}

struct Sums {
    float channel[4];
};

void AddPixel(Sums& sums, uint32_t pixel, float weight)
{
    for (int i = 0; i < 4; ++i)
        sums.channel[i] += weight * static_cast<float>(pixel >> (8 * i) & 0xFF);
}

uint32_t PixelOf(const Sums& sums)
{
    uint32_t pixel = 0;
    for (int i = 0; i < 4; ++i) {
        const auto value = static_cast<uint32_t>(sums.channel[i] + 0.5f);
        pixel |= std::min(value, 255u) << (8 * i);
    }
    return pixel;
}

// The weighted sum of source rows for one target row, not yet scaled horizontally.
void SumRows(const uint32_t* source, UINT width, const AxisTaps& down, UINT y, Sums* rowOut)
{
    std::memset(rowOut, 0, sizeof(Sums) * width);
    for (const WeightedTap* tap = down.Begin(y); tap != down.End(y); ++tap) {
        const uint32_t* row = source + size_t{tap->index} * width;
        for (UINT x = 0; x < width; ++x)
            AddPixel(rowOut[x], row[x], tap->weight);
    }
}

void SumColumns(const Sums* row, const AxisTaps& across, UINT targetWidth, uint32_t* targetOut)
{
    for (UINT x = 0; x < targetWidth; ++x) {
        Sums sums = {};
        for (const WeightedTap* tap = across.Begin(x); tap != across.End(x); ++tap) {
            for (int i = 0; i < 4; ++i)
                sums.channel[i] += tap->weight * row[tap->index].channel[i];
        }
        targetOut[x] = PixelOf(sums);
    }
}

void CopyCorner(const uint32_t* source, UINT sourceWidth, UINT sourceHeight, UINT targetWidth,
                UINT targetHeight, uint32_t* targetOut)
{
    const UINT width = std::min(sourceWidth, targetWidth);
    for (UINT y = 0; y < targetHeight; ++y) {
        uint32_t* row = targetOut + size_t{y} * targetWidth;
        const UINT copied = y < sourceHeight ? width : 0;
        std::copy_n(source + (copied ? size_t{y} * sourceWidth : 0), copied, row);
        std::fill(row + copied, row + targetWidth, 0u);
    }
}

} // namespace

void HalveExactly(const void* source, size_t sourcePitchBytes, UINT targetWidth, UINT targetHeight,
                  void* targetOut, size_t targetPitchBytes)
{
    constexpr uint32_t kEven = 0x00FF00FF;
    constexpr uint32_t kHalf = 0x00020002; // for rounding
    for (UINT y = 0; y < targetHeight; ++y) {
        const auto* upper = static_cast<const uint8_t*>(source) + 2 * y * sourcePitchBytes;
        auto* row = static_cast<uint8_t*>(targetOut) + y * targetPitchBytes;
        for (size_t x = 0; x < targetWidth; ++x) {
            uint32_t pixels[4];
            std::memcpy(pixels, upper + x * 8, 8);
            std::memcpy(pixels + 2, upper + sourcePitchBytes + x * 8, 8);
            uint32_t even = kHalf;
            uint32_t odd = kHalf;
            for (const uint32_t pixel : pixels) {
                even += pixel & kEven;
                odd += pixel >> 8 & kEven;
            }
            const uint32_t mean = (even >> 2 & kEven) | (odd >> 2 & kEven) << 8;
            std::memcpy(row + x * 4, &mean, 4);
        }
    }
}

bool ResampleArgb(const uint32_t* source, UINT sourceWidth, UINT sourceHeight, DWORD filter,
                  UINT targetWidth, UINT targetHeight, uint32_t* targetOut)
{
    const DWORD kind = filter & kFilterKindMask;
    if (kind == D3DX_FILTER_NONE || (sourceWidth == targetWidth && sourceHeight == targetHeight)) {
        CopyCorner(source, sourceWidth, sourceHeight, targetWidth, targetHeight, targetOut);
        return true;
    }
    if (kind == D3DX_FILTER_BOX && sourceWidth == 2 * targetWidth &&
        sourceHeight == 2 * targetHeight) {
        HalveExactly(source, size_t{sourceWidth} * 4, targetWidth, targetHeight, targetOut,
                     size_t{targetWidth} * 4);
        return true;
    }

    AxisTaps across;
    AxisTaps down;
    std::unique_ptr<Sums[]> row(new (std::nothrow) Sums[sourceWidth]);
    if (!row ||
        !across.Build(kind, (filter & D3DX_FILTER_MIRROR_U) != 0, sourceWidth, targetWidth) ||
        !down.Build(kind, (filter & D3DX_FILTER_MIRROR_V) != 0, sourceHeight, targetHeight))
        return false;
    for (UINT y = 0; y < targetHeight; ++y) {
        SumRows(source, sourceWidth, down, y, row.get());
        SumColumns(row.get(), across, targetWidth, targetOut + size_t{y} * targetWidth);
    }
    return true;
}

} // namespace headless
