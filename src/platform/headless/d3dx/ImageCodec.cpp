#include "platform/headless/d3dx/ImageCodec.h"

#include "platform/LittleEndian.h"
#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3dx/ImageDecoders.h"

#include <algorithm>
#include <new>

namespace headless {

namespace {

struct ImageDecoder {
    bool (*matches)(ImageFile file);
    HRESULT (*decode)(ImageFile file, bool infoOnly, DecodedImage& imageOut);
};

// TGA is last: any bytes may look like one.
const ImageDecoder kDecoders[] = {
    {IsPng, DecodePng}, {IsJpeg, DecodeJpeg}, {IsDds, DecodeDds},
    {IsBmp, DecodeBmp}, {IsPnm, DecodePnm},   {IsTga, DecodeTga},
};

HRESULT Decode(ImageFile file, bool infoOnly, DecodedImage& imageOut)
{
    for (const ImageDecoder& decoder : kDecoders) {
        if (decoder.matches(file))
            return decoder.decode(file, infoOnly, imageOut);
    }
    return D3DXERR_INVALIDDATA;
}

} // namespace

size_t DecodedImage::StoredBytes() const
{
    return faceBytes != 0 ? faceBytes * faceCount
                          : ImageBytes(*FindPixelFormat(format), info.Width, info.Height);
}

uint8_t* DecodedImage::Allocate(D3DFORMAT pixelFormat)
{
    const PixelFormat* layout = FindPixelFormat(pixelFormat);
    if (!layout)
        return nullptr;

    const size_t size = ImageBytes(*layout, info.Width, info.Height);
    memory.reset(new (std::nothrow) uint8_t[size]);
    format = pixelFormat;
    levels[0] = {info.Width, info.Height, RowBytes(*layout, info.Width), memory.get()};
    return memory.get();
}

D3DXIMAGE_INFO PlainImageInfo(UINT width, UINT height, D3DFORMAT format,
                              D3DXIMAGE_FILEFORMAT fileFormat)
{
    return {width, height, 1, 1, format, D3DRTYPE_TEXTURE, fileFormat};
}

HRESULT ReadImageInfo(ImageFile file, D3DXIMAGE_INFO& infoOut)
{
    DecodedImage image;
    const HRESULT result = Decode(file, true, image);
    if (SUCCEEDED(result))
        infoOut = image.info;
    return result;
}

HRESULT DecodeImage(ImageFile file, DecodedImage& imageOut)
{
    const HRESULT result = Decode(file, false, imageOut);
    return SUCCEEDED(result) ? PutInMemoryOrder(std::endian::native, imageOut) : result;
}

HRESULT PutInMemoryOrder(std::endian order, DecodedImage& imageInOut)
{
    DecodedImage& image = imageInOut;
    const PixelFormat& format = *FindPixelFormat(image.format);
    const size_t unit = format.unitBytes;
    if (order == std::endian::little || format.kind == PixelKind::Compressed ||
        (unit != 2 && unit != 4))
        return D3D_OK;
    const size_t size = image.StoredBytes();
    if (!image.memory) {
        const uint8_t* stored = image.levels[0].bits;
        image.memory.reset(new (std::nothrow) uint8_t[size]);
        if (!image.memory)
            return E_OUTOFMEMORY;
        std::copy_n(stored, size, image.memory.get());
        for (ImageLevel& level : image.levels)
            level.bits = level.bits ? image.memory.get() + (level.bits - stored) : nullptr;
    }
    ReverseWords(image.memory.get(), unit, size / unit);
    return D3D_OK;
}

} // namespace headless
