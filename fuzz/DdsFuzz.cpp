// Any DDS file: its header, and each level that it declares, of all faces and slices, read to the last byte.

#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3dx/ImageDecoders.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

using namespace headless;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // The magic word is fixed, so that no time is spent on finding it.
    std::vector<uint8_t> bytes = {'D', 'D', 'S', ' '};
    bytes.insert(bytes.end(), data, data + size);
    DecodedImage image;
    if (FAILED(DecodeDds(bytes, false, image)))
        return 0;

    const PixelFormat* layout = FindPixelFormat(image.format);
    if (!layout || image.info.MipLevels > kMaxImageLevels)
        std::abort();
    for (UINT i = 0; i < image.info.MipLevels; ++i) {
        const ImageLevel& level = image.levels[i];
        const size_t sliceBytes = ImageBytes(*layout, level.width, level.height);
        const UINT slices = std::max(image.info.Depth >> i, 1u);
        std::vector<uint32_t> pixels(size_t{level.width} * level.height);
        for (UINT picture = 0; picture < image.faceCount * slices; ++picture) {
            const uint8_t* bits =
                level.bits + image.faceBytes * (picture / slices) + sliceBytes * (picture % slices);
            if (!UnpackImage(*layout, level.width, level.height, bits, level.pitchBytes,
                             pixels.data()))
                std::abort();
        }
    }
    return 0;
}
