#pragma once

#include "platform/headless/d3d9/PixelBuffer.h"

namespace headless {

/// A picture as the sampler reads it: A8R8G8B8 words. Signed channels are stored as value * 127 +
/// 128, so that they too can be interpolated as bytes.
struct Texels {
    const uint32_t* words = nullptr; ///< not owned
    int width = 0;
    int height = 0; ///< of a slice, if there are several
    int pitch = 0;  ///< from row to row, in words
    // Of a volume:
    int depth = 1;
    int sliceRows = 0; ///< from slice to slice, in rows
};

/// Holds a picture unpacked for the sampler and refreshes it when the picture changes. Pictures
/// already stored as A8R8G8B8 words are read in place.
class TexelCache {
public:
    /// False if memory runs out. The result is valid until `pixels` change or are destroyed.
    bool Read(const PixelBuffer& pixels, Texels& texelsOut);

private:
    ZeroedBytes words;
    uint32_t changes = 0; ///< of the picture when it was unpacked
};

/// A picture with its copy for the sampler.
struct SampledPicture {
    PixelBuffer pixels;
    TexelCache texels;

    /// False if memory runs out.
    bool Read(Texels& texelsOut) { return texels.Read(pixels, texelsOut); }
};

} // namespace headless
