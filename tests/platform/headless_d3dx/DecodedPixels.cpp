#include "tests/platform/headless_d3dx/DecodedPixels.h"

#include "platform/headless/d3d9/PixelFormat.h"

using namespace headless;

std::vector<uint32_t> DecodedPixels(const std::string& bytes, HRESULT* resultOut)
{
    DecodedImage image;
    const HRESULT result = DecodeImage(AsFile(bytes), image);
    if (resultOut)
        *resultOut = result;
    if (FAILED(result))
        return {};

    std::vector<uint32_t> pixels(size_t{image.info.Width} * image.info.Height);
    UnpackImage(*FindPixelFormat(image.format), image.info.Width, image.info.Height,
                image.levels[0].bits, image.levels[0].pitchBytes, pixels.data());
    return pixels;
}

D3DFORMAT ReportedFormat(const std::string& bytes)
{
    D3DXIMAGE_INFO info = {};
    return SUCCEEDED(ReadImageInfo(AsFile(bytes), info)) ? info.Format : D3DFMT_UNKNOWN;
}

bool IsRefused(const std::string& bytes)
{
    HRESULT result = S_OK;
    DecodedPixels(bytes, &result);
    return result == D3DXERR_INVALIDDATA && ReportedFormat(bytes) == D3DFMT_UNKNOWN;
}
