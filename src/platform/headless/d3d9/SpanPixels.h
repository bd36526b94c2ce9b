#pragma once

#include "platform/headless/d3d9/LaneMath.h"
#include "platform/headless/d3d9/PixelBuffer.h"
#include "platform/headless/d3d9/Planes.h"

#include <cstring>

namespace headless {

/// Where the rows of some pixels start: the value of all planes at the origin's x and the rows' y.
template <typename F>
struct RowStart {
    typename F::Floats varying[kMaxVaryings];
    typename F::Floats depth;
    typename F::Floats reciprocalW;
    float bias; ///< of the depth, for the whole primitive
};

/// Some adjacent pixels of a primitive: four of each row.
template <typename F>
struct SpanPixels {
    const RowStart<F>* rows; ///< not owned; so are the planes
    const Planes* planes;
    int x, y;                      ///< of the first one
    int counts[F::kRows];          ///< pixels of each row that are in the picture
    typename F::Ints mask;         ///< those still to be drawn
    typename F::Floats fromOrigin; ///< distance of each pixel from the planes' origin along x
    typename F::Floats depth;
    typename F::Floats w;

    /// A varying divided by w, as the planes give it.
    typename F::Floats Linear(int varying) const
    {
        return rows->varying[varying] + fromOrigin * F::Splat(planes->dx[varying]);
    }

    Rgba<F> Colour(int varying) const
    {
        Rgba<F> colour;
        for (int c = 0; c < 4; ++c)
            colour.c[c] = Saturate(Linear(varying + c) * w);
        return colour;
    }
};

/// The stored pixels of a picture where some pixels are drawn. Rows that the picture lacks, and the end of
/// those that it cuts off, are elsewhere in memory until they are stored, so that each row can be read and
/// written whole.
template <typename F>
class PixelWindow {
public:
    PixelWindow(const PixelRows& pictureRows, int x, int y, const int (&existing)[F::kRows])
        : pixelBytes(pictureRows.pixelBytes)
    {
        for (int i = 0; i < F::kRows; ++i) {
            isCut[i] = existing[i] < 4;
            rows[i] = isCut[i] ? spare[i] : pictureRows.At(x, y + i);
            if (!isCut[i])
                continue;
            cutBytes[i] = static_cast<size_t>(existing[i]) * pixelBytes;
            home[i] = existing[i] > 0 ? pictureRows.At(x, y + i) : nullptr;
            if (cutBytes[i] != 0)
                std::memcpy(spare[i], home[i], cutBytes[i]);
        }
    }

    /// Brings what was stored beside the picture to its place.
    void Close()
    {
        for (int i = 0; i < F::kRows; ++i)
            if (isCut[i] && cutBytes[i] != 0)
                std::memcpy(home[i], spare[i], cutBytes[i]);
    }

    uint8_t* rows[F::kRows];

    typename F::Ints Words() const { return F::LoadWords(rows); }
    void StoreWords(typename F::Ints words) { F::StoreWords(rows, words); }
    typename F::Ints Halves() const { return F::LoadHalves(rows); }
    void StoreHalves(typename F::Ints halves)
    {
        alignas(32) int32_t values[F::kCount];
        F::Store(values, halves);
        for (int i = 0; i < F::kCount; ++i) {
            const auto half = static_cast<uint16_t>(values[i]);
            std::memcpy(rows[i / 4] + i % 4 * 2, &half, 2);
        }
    }

private:
    static constexpr size_t kRowBytes = 16; ///< four pixels of up to 32 bits

    size_t pixelBytes;
    bool isCut[F::kRows];
    size_t cutBytes[F::kRows];
    uint8_t* home[F::kRows];
    uint8_t spare[F::kRows][kRowBytes];
};

} // namespace headless
