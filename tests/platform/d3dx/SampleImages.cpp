#include "tests/platform/d3dx/SampleImages.h"

#include "tests/platform/d3dx/ImageBytes.h"

namespace {

const uint32_t kRed = 0xFFFF0000;
const uint32_t kGreen = 0xFF00FF00;
const uint32_t kBlue = 0xFF0000FF;
const uint32_t kWhite = 0xFFFFFFFF;

std::vector<SampleImage> PngSamples()
{
    const std::string palette = PngChunk("PLTE", Bytes({255, 0, 0, 0, 255, 0, 0, 0, 255}));
    return {
        {"PNG, 24 bits",
         PngFile({2, 1, 8, PngColour::Rgb, Bytes({0x11, 0x22, 0x33, 0xFE, 0xDC, 0xBA})}),
         D3DXIFF_PNG,
         D3DFMT_X8R8G8B8,
         2,
         1,
         {0xFF112233, 0xFFFEDCBA}},
        {"PNG, 32 bits",
         PngFile({1, 2, 8, PngColour::Rgba, Bytes({0x11, 0x22, 0x33, 0x80, 1, 2, 3, 0})}),
         D3DXIFF_PNG,
         D3DFMT_A8R8G8B8,
         1,
         2,
         {0x80112233, 0x00010203}},
        {"PNG, grey",
         PngFile({3, 1, 8, PngColour::Grey, Bytes({0, 0x7F, 0xFF})}),
         D3DXIFF_PNG,
         D3DFMT_L8,
         3,
         1,
         {0xFF000000, 0xFF7F7F7F, kWhite}},
        {"PNG, palette of 8 bits",
         PngFile({3, 1, 8, PngColour::Palette, Bytes({2, 1, 0}), palette}),
         D3DXIFF_PNG,
         D3DFMT_A8R8G8B8,
         3,
         1,
         {kBlue, kGreen, kRed}},
    };
}

// Colour: by the JFIF formulas, Y 192, Cb 192, Cr 64 give R = 192 - 1.402 * 64 = 102.3, G = 192 -
// 0.34414 * 64 + 0.71414 * 64 = 215.7, B = 192 + 1.772 * 64 = 305.4, clamped to 255.
std::vector<SampleImage> JpegSamples()
{
    const std::vector<uint32_t> grey(64, 0xFFC0C0C0);
    const std::vector<uint32_t> colour(64, 0xFF66D8FF);
    return {
        {"JPEG, grey", JpegFile({8, 8, {64}}), D3DXIFF_JPG, D3DFMT_L8, 8, 8, grey, 1},
        {"JPEG, colour", JpegFile({8, 8, {64, 64, -64}}), D3DXIFF_JPG, D3DFMT_X8R8G8B8, 8, 8,
         colour, 1},
        {"JPEG, progressive", JpegFile({8, 8, {64, 64, -64}, true}), D3DXIFF_JPG, D3DFMT_X8R8G8B8,
         8, 8, colour, 1},
    };
}

std::vector<SampleImage> TgaSamples()
{
    const std::string bgr = Bytes({0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255});
    const std::vector<uint32_t> topDown = {kRed, kGreen, kBlue, kWhite};
    const std::vector<uint32_t> bottomUp = {kBlue, kWhite, kRed, kGreen};
    return {
        {"TGA, top row first", TgaFile({2, 2, 2, 24, bgr}), D3DXIFF_TGA, D3DFMT_X8R8G8B8, 2, 2,
         topDown},
        {"TGA, bottom row first", TgaFile({2, 2, 2, 24, bgr, 0}), D3DXIFF_TGA, D3DFMT_X8R8G8B8, 2,
         2, bottomUp},
        {"TGA, 32 bits",
         TgaFile({2, 1, 1, 32, Bytes({3, 2, 1, 0x80}), 0x28}),
         D3DXIFF_TGA,
         D3DFMT_A8R8G8B8,
         1,
         1,
         {0x80010203}},
        {"TGA, grey",
         TgaFile({3, 2, 1, 8, Bytes({0x10, 0xF0})}),
         D3DXIFF_TGA,
         D3DFMT_L8,
         2,
         1,
         {0xFF101010, 0xFFF0F0F0}},
        {"TGA, runs", // one pixel four times in red, then two literal pixels
         TgaFile({10, 3, 2, 24, Bytes({0x83, 0, 0, 255, 0x01, 0, 255, 0, 255, 0, 0})}),
         D3DXIFF_TGA,
         D3DFMT_X8R8G8B8,
         3,
         2,
         {kRed, kRed, kRed, kRed, kGreen, kBlue}},
    };
}

std::vector<SampleImage> BmpSamples()
{
    return {
        {"BMP, 24 bits", // two rows of one pixel and one byte of padding, bottom first
         BmpFile({1, 2, 24, Bytes({255, 0, 0, 0, 0, 0, 255, 0})}),
         D3DXIFF_BMP,
         D3DFMT_X8R8G8B8,
         1,
         2,
         {kRed, kBlue}},
        {"BMP, 32 bits",
         BmpFile({1, 1, 32, Bytes({3, 2, 1, 0})}),
         D3DXIFF_BMP,
         D3DFMT_X8R8G8B8,
         1,
         1,
         {0xFF010203}},
        {"BMP, palette of 8 bits",
         BmpFile({2, 1, 8, Bytes({1, 0, 0, 0}), 0, Bytes({0, 0, 255, 0, 0, 255, 0, 0}), 2}),
         D3DXIFF_BMP,
         D3DFMT_A8R8G8B8,
         2,
         1,
         {kGreen, kRed}},
    };
}

std::vector<SampleImage> DdsSamples()
{
    DdsParts dxt1 = {4, 4, ColourBlock(0xF800, 0x001F, 0x00000001)};
    dxt1.fourCC = "DXT1";
    std::vector<uint32_t> blueThenRed(16, kRed);
    blueThenRed[0] = kBlue;
    return {
        {"DDS, A8R8G8B8",
         DdsFile(ArgbDds(2, 1, Bytes({3, 2, 1, 0x40, 0, 0, 255, 255}))),
         D3DXIFF_DDS,
         D3DFMT_A8R8G8B8,
         2,
         1,
         {0x40010203, kRed}},
        {"DDS, DXT1", DdsFile(dxt1), D3DXIFF_DDS, D3DFMT_DXT1, 4, 4, blueThenRed},
    };
}

} // namespace

std::vector<SampleImage> SampleImages()
{
    std::vector<SampleImage> all;
    for (const auto& kind : {PngSamples(), JpegSamples(), TgaSamples(), BmpSamples(), DdsSamples()})
        all.insert(all.end(), kind.begin(), kind.end());
    return all;
}
