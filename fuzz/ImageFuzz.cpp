// Any image file, byte for byte: PNG, JPEG, BMP, TGA, PPM and PGM.

#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3dx/ImageDecoders.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

using namespace headless;

namespace {

// Keeps one input below a second and the process within its memory; larger pictures are no different.
constexpr uint64_t kMaxPixels = 4u << 20;

uint32_t BigU32(const uint8_t* bytes)
{
    return bytes[0] * 0x1000000u + bytes[1] * 0x10000u + bytes[2] * 0x100u + bytes[3];
}

uint32_t Crc32(const uint8_t* bytes, size_t size)
{
    uint32_t crc = 0xFFFFFFFF;
    for (size_t i = 0; i < size; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320u : crc >> 1;
    }
    return ~crc;
}

// Nearly every change to a PNG file breaks a checksum and is refused for that alone. So the
// checksums are corrected first.
void MendChecksums(std::vector<uint8_t>& file)
{
    size_t at = 8; // of a chunk: length, name, data, checksum
    while (file.size() - at >= 12 && BigU32(&file[at]) <= file.size() - at - 12) {
        const size_t covered = BigU32(&file[at]) + size_t{4};
        const uint32_t crc = Crc32(&file[at + 4], covered);
        for (int i = 0; i < 4; ++i)
            file[at + 4 + covered + static_cast<unsigned>(i)] =
                static_cast<uint8_t>(crc >> (24 - 8 * i));
        at += 8 + covered;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::vector<uint8_t> file(data, data + size);
    if (IsPng(file))
        MendChecksums(file);
    D3DXIMAGE_INFO info = {};
    if (FAILED(ReadImageInfo(file, info)) || uint64_t{info.Width} * info.Height > kMaxPixels)
        return 0;

    DecodedImage image;
    if (FAILED(DecodeImage(file, image)))
        return 0;
    if (image.info.Width != info.Width || image.info.Height != info.Height)
        std::abort();
    // Reads each byte that the decoder declares.
    std::vector<uint32_t> pixels(size_t{info.Width} * info.Height);
    const PixelFormat* layout = FindPixelFormat(image.format);
    if (!layout || !UnpackImage(*layout, info.Width, info.Height, image.levels[0].bits,
                                image.levels[0].pitchBytes, pixels.data()))
        std::abort();
    return 0;
}
