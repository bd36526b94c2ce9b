#include "platform/headless/d3d9/TexelCache.h"

#include "platform/headless/d3d9/Audience.h"

#include <algorithm>

namespace headless {

namespace {

/// Signed formats need their own conversion, because UnpackArgb clamps negative values to 0. The
/// lowest value means the same as the next one above it.
uint32_t SignedWord(const PixelFormat& format, const uint8_t* pixel)
{
    const uint32_t word = LoadPixelWord(format, pixel);
    const auto biased = [word](PixelChannel channel) {
        const uint32_t byte = (word >> channel.shift & 0xFF) ^ 0x80;
        return std::max(byte, 1u);
    };
    return 0xFF0000FF | biased(format.r) << 16 | biased(format.g) << 8;
}

void Unpack(const PixelBuffer& pixels, uint32_t* wordsOut)
{
    if (pixels.format->kind != PixelKind::Signed) {
        UnpackImage(*pixels.format, pixels.width, pixels.height, pixels.bytes.get(),
                    pixels.pitchBytes, wordsOut);
        return;
    }
    for (UINT y = 0; y < pixels.height; ++y)
        for (UINT x = 0; x < pixels.width; ++x)
            *wordsOut++ = SignedWord(*pixels.format, pixels.At(x, y));
}

} // namespace

bool TexelCache::Read(const PixelBuffer& pixels, Texels& texelsOut)
{
    texelsOut.width = static_cast<int>(pixels.width);
    texelsOut.height = static_cast<int>(pixels.height);
    const D3DFORMAT format = pixels.format->format;
    if (format == D3DFMT_A8R8G8B8 || format == D3DFMT_X8R8G8B8) {
        texelsOut.words = reinterpret_cast<const uint32_t*>(pixels.bytes.get());
        texelsOut.pitch = static_cast<int>(pixels.pitchBytes / 4);
        return true;
    }
    if (!words || changes != pixels.changes) {
        if (!words)
            words = AllocateZeroed(size_t{pixels.width} * pixels.height * 4);
        if (!words)
            return false;
        if (HasAudience()) {
            Unpack(pixels, reinterpret_cast<uint32_t*>(words.get()));
            changes = pixels.changes;
        }
    }
    texelsOut.words = reinterpret_cast<const uint32_t*>(words.get());
    texelsOut.pitch = texelsOut.width;
    return true;
}

} // namespace headless
