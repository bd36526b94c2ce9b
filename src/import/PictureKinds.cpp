#include "import/PictureKinds.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include <png.h>

#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#define STBI_NO_HDR
#define STBI_NO_LINEAR
#define STBI_MAX_DIMENSIONS 16384
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_image.h>
#pragma GCC diagnostic pop

namespace {

/// A small file can announce a huge picture; larger ones than this are not decoded to look at them.
constexpr int64_t kMostPixels = 4096 * 4096;
constexpr int64_t kPixelsPerByte = 1024; // the best that the packed kinds do
constexpr int64_t kPixelsAtLeast = 1 << 20;

struct Decoded {
    std::unique_ptr<stbi_uc, void (*)(void*)> pixels{nullptr, stbi_image_free};
    int width = 0;
    int height = 0;
};

const stbi_uc* BytesOf(const std::string& bytes)
{
    return reinterpret_cast<const stbi_uc*>(bytes.data());
}

bool HasSize(const std::string& bytes, int64_t& pixelsOut)
{
    int width = 0, height = 0, channels = 0;
    if (bytes.size() > INT32_MAX ||
        !stbi_info_from_memory(BytesOf(bytes), static_cast<int>(bytes.size()), &width, &height,
                               &channels))
        return false;
    pixelsOut = int64_t{width} * height;
    return pixelsOut > 0;
}

Decoded Decode(const std::string& bytes)
{
    Decoded decoded;
    int64_t pixels = 0;
    if (!HasSize(bytes, pixels) ||
        pixels > kPixelsAtLeast + static_cast<int64_t>(bytes.size()) * kPixelsPerByte)
        return decoded;
    int channels = 0;
    decoded.pixels.reset(stbi_load_from_memory(BytesOf(bytes), static_cast<int>(bytes.size()),
                                               &decoded.width, &decoded.height, &channels, 4));
    return decoded;
}

bool BeginsWith(const std::string& bytes, const char* start, size_t size)
{
    return bytes.size() >= size && std::memcmp(bytes.data(), start, size) == 0;
}

const char* ReadableExtension(const std::string& bytes)
{
    if (BeginsWith(bytes, "\x89PNG", 4))
        return ".png";
    if (BeginsWith(bytes, "\xFF\xD8\xFF", 3))
        return ".jpg";
    if (BeginsWith(bytes, "BM", 2))
        return ".bmp";
    return BeginsWith(bytes, "DDS ", 4) ? ".dds" : nullptr;
}

} // namespace

PictureFacts InspectPicture(const std::string& bytes)
{
    const char* extension = ReadableExtension(bytes);
    if (extension && std::strcmp(extension, ".dds") == 0)
        return {PictureKind::kReadable, extension}; // not decoded here
    int64_t pixels = 0;
    if (!HasSize(bytes, pixels))
        return {};
    if (pixels <= kMostPixels && !Decode(bytes).pixels)
        return {};
    if (extension)
        return {PictureKind::kReadable, extension};
    return {PictureKind::kConvertible, ".png"};
}

bool HasAlphaPixels(const std::string& bytes)
{
    if (!BeginsWith(bytes, "\x89PNG", 4))
        return false;
    const Decoded decoded = Decode(bytes);
    const int64_t count = int64_t{decoded.width} * decoded.height;
    for (int64_t i = 0; decoded.pixels && i < count; ++i) {
        if (decoded.pixels.get()[i * 4 + 3] != 255)
            return true;
    }
    return false;
}

std::string PngOfPicture(const std::string& bytes, bool dropsAlpha)
{
    const Decoded decoded = Decode(bytes);
    if (!decoded.pixels)
        return "";
    const size_t count = static_cast<size_t>(decoded.width) * static_cast<size_t>(decoded.height);
    std::vector<uint8_t> pixels;
    for (size_t i = 0; i < count; ++i) {
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
