#include "import/PictureKinds.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>
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

// A picture that announces more pixels than this for its bytes is not decoded, which takes up to 12 bytes for each.
constexpr int64_t kMostPixels = 16 << 20;
constexpr int64_t kPixelsAtLeast = 4 << 20;
constexpr int64_t kPixelsPerByte = 8;
constexpr int64_t kPngPixelsPerByte = 64; // plain ones pack well

struct Decoded {
    uint32_t width = 0; ///< pixels
    uint32_t height = 0;
    std::vector<uint8_t> rgba; ///< row by row from the top; empty if the file is damaged
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

Decoded DecodeByHost(const std::string& bytes)
{
    headless::DecodedImage image;
    const HRESULT result = headless::DecodeImage(FileOf(bytes), image);
    if (result == E_OUTOFMEMORY)
        throw std::bad_alloc();
    if (FAILED(result))
        return {};
    const headless::PixelFormat* const format = headless::FindPixelFormat(image.format);
    std::vector<uint32_t> argb(size_t{image.info.Width} * image.info.Height);
    if (!format ||
        !headless::UnpackImage(*format, image.info.Width, image.info.Height, image.levels[0].bits,
                               image.levels[0].pitchBytes, argb.data()))
        return {};
    Decoded decoded = {image.info.Width, image.info.Height, {}};
    decoded.rgba.reserve(argb.size() * 4);
    for (const uint32_t pixel : argb) {
        for (const int shift : {16, 8, 0, 24})
            decoded.rgba.push_back(static_cast<uint8_t>(pixel >> shift));
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
    if (IsPsd(bytes)) {
        PsdPicture psd;
        return ReadPsd(bytes, psd) ? Decoded{psd.width, psd.height, std::move(psd.rgba)}
                                   : Decoded();
    }
    int width = 0, height = 0, channels = 0;
    const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
        stbi_load_from_memory(BytesOf(bytes), static_cast<int>(bytes.size()), &width, &height,
                              &channels, 4),
        stbi_image_free);
    if (!pixels)
        return {};
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height) * 4;
    return {static_cast<uint32_t>(width),
            static_cast<uint32_t>(height),
            {pixels.get(), pixels.get() + count}};
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
    for (size_t i = 3; i < decoded.rgba.size(); i += 4) {
        if (decoded.rgba[i] != 255)
            return true;
    }
    return false;
}

/// Empty if it cannot be written.
std::string PngOf(const Decoded& decoded, bool dropsAlpha)
{
    const size_t kept = dropsAlpha ? 3 : 4;
    std::vector<uint8_t> pixels;
    pixels.reserve(decoded.rgba.size() / 4 * kept);
    for (size_t i = 0; i < decoded.rgba.size(); i += 4)
        pixels.insert(pixels.end(), &decoded.rgba[i], &decoded.rgba[i] + kept);
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = decoded.width;
    image.height = decoded.height;
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
    if (decoded.rgba.empty())
        return {Result::kDamaged, "", ""};
    if (readable && !(isPng && dropsAlpha && HasAlpha(decoded)))
        return {Result::kTaken, readable, ""};
    std::string png = PngOf(decoded, dropsAlpha);
    if (png.empty())
        return {Result::kDamaged, "", ""};
    return {Result::kTaken, ".png", std::move(png)};
}
