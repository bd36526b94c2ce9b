#pragma once

#include "platform/headless/d3d9/PixelBuffer.h"

namespace headless {

/// A picture as the sampler reads it: A8R8G8B8 words. Signed channels are kept as value * 127 + 128,
/// so that they too can be mixed as bytes.
struct Texels {
    const std::uint32_t* words = nullptr; ///< not owned
    int width = 0;
    int height = 0;
    int pitch = 0; ///< from row to row, in words
};

/// Holds a picture unpacked for the sampler and notices when the picture has changed since. Formats
/// that are stored that way already are read where they are.
class TexelCache {
public:
    /// False if there is no memory. The result is good until `pixels` change or go.
    bool Read(const PixelBuffer& pixels, Texels& texelsOut);

private:
    ZeroedBytes words;
    std::uint32_t changes = 0; ///< of the picture when it was unpacked
};

/// A picture with its copy for the sampler.
struct SampledPicture {
    PixelBuffer pixels;
    TexelCache texels;

    /// False if there is no memory.
    bool Read(Texels& texelsOut) { return texels.Read(pixels, texelsOut); }
};

} // namespace headless
