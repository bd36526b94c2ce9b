#include "platform/headless/d3dx/ImageDecoders.h"

#include <algorithm>

namespace headless {

// The binary portable maps: P5 is grey, P6 is red, green, blue. Written here, like BMP and TGA,
// because the small decoders at hand complete a truncated file with invented pixels.

namespace {

constexpr uint32_t kMaxSample = 65535;

bool IsBlank(uint8_t c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Walks the text of the header. White space and comments separate numbers.
class PnmHeader {
public:
    explicit PnmHeader(ImageFile bytes) : file(bytes) {}

    // False if there is no number, or it exceeds `most`.
    bool Number(uint32_t most, uint32_t& valueOut)
    {
        SkipBlanks();
        const size_t start = position;
        uint32_t value = 0;
        for (; position < file.size() && file[position] >= '0' && file[position] <= '9';
             ++position) {
            value = value * 10 + (file[position] - '0');
            if (value > most)
                return false;
        }
        valueOut = value;
        return position > start;
    }

    // One white space byte ends the header; everything after it is samples.
    bool End() { return position < file.size() && IsBlank(file[position++]); }

    size_t Position() const { return position; }

private:
    void SkipBlanks()
    {
        bool inComment = false;
        for (; position < file.size(); ++position) {
            const uint8_t c = file[position];
            if (c == '#')
                inComment = true;
            else if (c == '\n')
                inComment = false;
            else if (!inComment && !IsBlank(c))
                return;
        }
    }

    ImageFile file;
    size_t position = 2;
};

// Samples above 255 take two bytes, the high one first.
uint8_t ReadSample(const uint8_t* source, uint32_t most)
{
    const uint32_t value = most > 255 ? source[0] * 256u + source[1] : source[0];
    return static_cast<uint8_t>((std::min(value, most) * 255 + most / 2) / most);
}

void ReadPixels(const uint8_t* source, size_t count, bool grey, uint32_t most, uint8_t* out)
{
    const size_t sampleBytes = most > 255 ? 2 : 1;
    for (size_t i = 0; i < count; ++i) {
        if (grey) {
            *out++ = ReadSample(source, most);
            source += sampleBytes;
            continue;
        }
        *out++ = ReadSample(source + 2 * sampleBytes, most);
        *out++ = ReadSample(source + sampleBytes, most);
        *out++ = ReadSample(source, most);
        *out++ = 0xFF;
        source += 3 * sampleBytes;
    }
}

} // namespace

bool IsPnm(ImageFile file)
{
    return file.size() >= 3 && file[0] == 'P' && (file[1] == '5' || file[1] == '6') &&
           (IsBlank(file[2]) || file[2] == '#');
}

HRESULT DecodePnm(ImageFile file, bool infoOnly, DecodedImage& imageOut)
{
    const bool grey = file[1] == '5';
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t most = 0;
    PnmHeader header(file);
    if (!header.Number(kMaxImageSide, width) || !header.Number(kMaxImageSide, height) ||
        !header.Number(kMaxSample, most) || !header.End() || !IsImageSize(width, height) ||
        most == 0)
        return D3DXERR_INVALIDDATA;

    const size_t count = size_t{width} * height;
    const size_t pixelBytes = (grey ? 1u : 3u) * (most > 255 ? 2u : 1u);
    if (count * pixelBytes > file.size() - header.Position())
        return D3DXERR_INVALIDDATA;

    const D3DFORMAT format = grey ? D3DFMT_L8 : D3DFMT_X8R8G8B8;
    imageOut.info = PlainImageInfo(width, height, format, D3DXIFF_PPM);
    if (infoOnly)
        return D3D_OK;

    uint8_t* pixels = imageOut.Allocate(format);
    if (!pixels)
        return E_OUTOFMEMORY;
    ReadPixels(file.data() + header.Position(), count, grey, most, pixels);
    return D3D_OK;
}

} // namespace headless
