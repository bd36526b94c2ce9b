#include "import/PictureKinds.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include <png.h>

#include "base/Ascii.h"
#include "import/PsdPicture.h"
#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3dx/ImageDecoders.h"

#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#define STBI_NO_HDR
#define STBI_NO_JPEG
#define STBI_NO_PNG
#define STBI_NO_PNM
#define STBI_NO_PSD
#define STBI_NO_LINEAR
#define STBI_MAX_DIMENSIONS 16384
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_image.h>
#pragma GCC diagnostic pop

namespace {

// A picture that announces more pixels than this for its bytes is not decoded, which takes up to 9 bytes for each.
constexpr int64_t kMostPixels = 16 << 20;
constexpr int64_t kPixelsAtLeast = 4 << 20;
constexpr int64_t kPixelsPerByte = 8;
constexpr int64_t kPngPixelsPerByte = 64; // plain ones pack well

struct Decoded {
    std::unique_ptr<stbi_uc, void (*)(void*)> pixels{nullptr, stbi_image_free};
    int width = 0;
    int height = 0;

    size_t Count() const { return static_cast<size_t>(width) * static_cast<size_t>(height); }
    void Allocate(uint32_t newWidth, uint32_t newHeight)
    {
        width = static_cast<int>(newWidth);
        height = static_cast<int>(newHeight);
        pixels.reset(static_cast<stbi_uc*>(std::malloc(Count() * 4)));
        if (!pixels)
            throw std::bad_alloc();
    }
};

const stbi_uc* BytesOf(const std::string& bytes)
{
    return reinterpret_cast<const stbi_uc*>(bytes.data());
}

/// Kinds that the host decodes. With damaged files of these kinds, stb_image writes past the end of its memory or
/// unpacks far more than the header announces, so it is built without them.
bool IsOfHost(headless::ImageFile file)
{
    return headless::IsJpeg(file) || headless::IsPng(file) || headless::IsPnm(file);
}

headless::ImageFile FileOf(const std::string& bytes)
{
    return {BytesOf(bytes), bytes.size()};
}

/// As the header announces them; 0 for what is no picture.
int64_t PixelsOf(const std::string& bytes)
{
    int width = 0, height = 0, channels = 0;
    if (IsOfHost(FileOf(bytes))) {
        D3DXIMAGE_INFO info = {};
        const bool isRead = SUCCEEDED(headless::ReadImageInfo(FileOf(bytes), info));
        return isRead ? int64_t{info.Width} * info.Height : 0;
    }
    if (IsPsd(bytes)) {
        PsdPicture psd;
        return ReadPsdSize(bytes, psd) ? int64_t{psd.width} * psd.height : 0;
    }
    if (bytes.size() > INT32_MAX ||
        !stbi_info_from_memory(BytesOf(bytes), static_cast<int>(bytes.size()), &width, &height,
                               &channels))
        return 0;
    return int64_t{width} * height;
}

/// Without pixels if the file is damaged.
Decoded DecodeByHost(const std::string& bytes)
{
    Decoded decoded;
    headless::DecodedImage image;
    const HRESULT result = headless::DecodeImage(FileOf(bytes), image);
    if (result == E_OUTOFMEMORY)
        throw std::bad_alloc();
    if (FAILED(result))
        return decoded;
    const headless::PixelFormat* const format = headless::FindPixelFormat(image.format);
    std::vector<uint32_t> argb(size_t{image.info.Width} * image.info.Height);
    if (!format ||
        !headless::UnpackImage(*format, image.info.Width, image.info.Height, image.levels[0].bits,
                               image.levels[0].pitchBytes, argb.data()))
        return decoded;
    decoded.Allocate(image.info.Width, image.info.Height);
    stbi_uc* out = decoded.pixels.get();
    for (const uint32_t pixel : argb) {
        for (const int shift : {16, 8, 0, 24})
            *out++ = static_cast<stbi_uc>(pixel >> shift);
    }
    return decoded;
}

bool BeginsWith(const std::string& bytes, const std::string& start)
{
    return bytes.compare(0, start.size(), start) == 0;
}

Decoded Decode(const std::string& bytes)
{
    if (IsOfHost(FileOf(bytes)))
        return DecodeByHost(bytes);
    Decoded decoded;
    if (IsPsd(bytes)) {
        PsdPicture psd;
        if (ReadPsd(bytes, psd)) {
            decoded.Allocate(psd.width, psd.height);
            std::copy(psd.rgba.begin(), psd.rgba.end(), decoded.pixels.get());
        }
        return decoded;
    }
    int channels = 0;
    decoded.pixels.reset(stbi_load_from_memory(BytesOf(bytes), static_cast<int>(bytes.size()),
                                               &decoded.width, &decoded.height, &channels, 4));
    return decoded;
}

bool IsTga(const std::string& bytes, const std::string& name)
{
    std::string end = name.size() < 4 ? "" : name.substr(name.size() - 4);
    for (char& byte : end)
        byte = ToLowerAscii(byte);
    // The format has no mark of its own; others bear its name at times.
    return end == ".tga" && !BeginsWith(bytes, "GIF8") && !BeginsWith(bytes, "8BPS");
}

/// The end of the name for a kind that scenes have; null for others.
const char* ReadableExtension(const std::string& bytes, const std::string& name)
{
    if (BeginsWith(bytes, "\x89PNG"))
        return ".png";
    if (BeginsWith(bytes, "\xFF\xD8\xFF"))
        return ".jpg";
    if (BeginsWith(bytes, "BM"))
        return ".bmp";
    if (BeginsWith(bytes, "DDS "))
        return ".dds";
    return IsTga(bytes, name) ? ".tga" : nullptr;
}

bool HasAlpha(const Decoded& decoded)
{
    const stbi_uc* pixels = decoded.pixels.get();
    for (size_t i = 0; i < decoded.Count(); ++i) {
        if (pixels[i * 4 + 3] != 255)
            return true;
    }
    return false;
}

/// Empty if it cannot be written.
std::string PngOf(const Decoded& decoded, bool dropsAlpha)
{
    std::vector<uint8_t> pixels;
    pixels.reserve(decoded.Count() * (dropsAlpha ? 3 : 4));
    for (size_t i = 0; i < decoded.Count(); ++i) {
        const stbi_uc* pixel = decoded.pixels.get() + i * 4;
        pixels.insert(pixels.end(), pixel, pixel + (dropsAlpha ? 3 : 4));
    }
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(decoded.width);
    image.height = static_cast<png_uint_32>(decoded.height);
    image.format = dropsAlpha ? PNG_FORMAT_RGB : PNG_FORMAT_RGBA;
    png_alloc_size_t size = 0;
    if (!png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr))
        return "";
    std::string png(size, '\0');
    if (!png_image_write_to_memory(&image, png.data(), &size, 0, pixels.data(), 0, nullptr))
        return "";
    png.resize(size);
    return png;
}

} // namespace

TakenPicture TakePicture(const std::string& bytes, const std::string& name, bool dropsAlpha,
                         PixelBudget& budget)
{
    using Result = TakenPicture::Result;
    const char* readable = ReadableExtension(bytes, name);
    const bool isPng = BeginsWith(bytes, "\x89PNG");
    if (BeginsWith(bytes, "DDS "))
        return {Result::kTaken, readable, ""}; // not decoded here
    const int64_t pixels = PixelsOf(bytes);
    if (pixels <= 0)
        return {Result::kDamaged, "", ""};
    const int64_t most = kPixelsAtLeast + static_cast<int64_t>(bytes.size()) *
                                              (isPng ? kPngPixelsPerByte : kPixelsPerByte);
    if (pixels > std::min({most, kMostPixels, budget.left}))
        return readable ? TakenPicture{Result::kTaken, readable, ""}
                        : TakenPicture{Result::kTooLarge, "", ""};
    budget.left -= pixels;
    const Decoded decoded = Decode(bytes);
    if (!decoded.pixels)
        return {Result::kDamaged, "", ""};
    if (readable && !(isPng && dropsAlpha && HasAlpha(decoded)))
        return {Result::kTaken, readable, ""};
    std::string png = PngOf(decoded, dropsAlpha);
    if (png.empty())
        return {Result::kDamaged, "", ""};
    return {Result::kTaken, ".png", std::move(png)};
}
