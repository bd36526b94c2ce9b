#include "tests/support/SolidDds.h"

namespace {

constexpr uint32_t kSide = 4;

void Append(std::string& bytes, uint32_t word)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(word >> shift & 0xFF);
}

/// The public layout: the magic word, 31 words of header, then the pixels.
std::string SolidDds(uint32_t caps2, uint32_t depth, std::initializer_list<uint32_t> pictures)
{
    constexpr uint32_t kHasCapsSizeAndFormat = 0x1007, kColourAndAlpha = 0x41, kTexture = 0x1000;
    uint32_t header[31] = {124, kHasCapsSizeAndFormat, kSide, kSide, 0, depth};
    header[18] = 32; // the pixel format begins here, with its size
    header[19] = kColourAndAlpha;
    header[21] = 32; // bits
    header[22] = 0x00FF0000;
    header[23] = 0x0000FF00;
    header[24] = 0x000000FF;
    header[25] = 0xFF000000;
    header[26] = kTexture;
    header[27] = caps2;
    std::string bytes = "DDS ";
    for (const uint32_t word : header)
        Append(bytes, word);
    for (const uint32_t colour : pictures)
        for (uint32_t i = 0; i < kSide * kSide; ++i)
            Append(bytes, colour);
    return bytes;
}

} // namespace

std::string CubeDds(std::initializer_list<uint32_t> faces)
{
    return SolidDds(0xFE00, 0, faces);
}

std::string VolumeDds(std::initializer_list<uint32_t> slices)
{
    return SolidDds(0x200000, static_cast<uint32_t>(slices.size()), slices);
}
