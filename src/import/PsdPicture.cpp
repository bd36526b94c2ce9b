#include "import/PsdPicture.h"

#include <algorithm>

namespace {

constexpr std::string_view kSignature = "8BPS";
constexpr uint32_t kRgbMode = 3;
constexpr uint32_t kMostSide = 16384; // pixels
constexpr uint32_t kColors = 3;
constexpr uint32_t kRead = 4; // channels: the colours and alpha

/// Takes big-endian numbers from the front; after the end they are 0 and `isCut` is set.
struct Front {
    std::string_view rest;
    bool isCut = false;

    uint32_t Number(size_t bytes)
    {
        uint32_t value = 0;
        for (const char byte : Bytes(bytes))
            value = value << 8 | static_cast<uint8_t>(byte);
        return value;
    }
    std::string_view Bytes(size_t count)
    {
        isCut = isCut || count > rest.size();
        const std::string_view taken = rest.substr(0, isCut ? 0 : count);
        rest.remove_prefix(taken.size());
        return taken;
    }
};

struct Header {
    uint32_t channels = 0;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t sampleBytes = 0;
};

bool ReadHeader(Front& file, Header& headerOut)
{
    constexpr size_t kReserved = 6;
    const bool isPsd = file.Bytes(kSignature.size()) == kSignature && file.Number(2) == 1;
    file.Bytes(kReserved);
    headerOut.channels = file.Number(2);
    headerOut.height = file.Number(4);
    headerOut.width = file.Number(4);
    const uint32_t bits = file.Number(2);
    headerOut.sampleBytes = bits / 8;
    const bool isRgb = file.Number(2) == kRgbMode && (bits == 8 || bits == 16);
    const auto isSide = [](uint32_t side) { return side > 0 && side <= kMostSide; };
    return isPsd && isRgb && !file.isCut && headerOut.channels >= kColors &&
           isSide(headerOut.width) && isSide(headerOut.height);
}

/// A channel that is packed in runs: a byte n up to 127 stands before n + 1 bytes, one above 128 before a byte that is
/// repeated 257 - n times; 128 is nothing.
bool Unpack(Front& file, std::vector<uint8_t>& planeOut)
{
    size_t at = 0;
    while (at < planeOut.size()) {
        const uint32_t run = file.Number(1);
        const size_t length = run == 128 ? 0 : run < 128 ? run + 1 : 257 - run;
        const std::string_view bytes = file.Bytes(run < 128 ? length : std::min<size_t>(length, 1));
        if (file.isCut || length > planeOut.size() - at)
            return false;
        for (size_t i = 0; i < length; ++i)
            planeOut[at++] = static_cast<uint8_t>(bytes[run < 128 ? i : 0]);
    }
    return true;
}

/// Reads a channel; the high bytes of its samples become one of the four bytes of each pixel.
bool ReadPlane(Front& file, bool isPacked, uint32_t sampleBytes, std::vector<uint8_t>& plane,
               uint8_t* rgbaOut)
{
    if (isPacked) {
        if (!Unpack(file, plane))
            return false;
    } else {
        const std::string_view bytes = file.Bytes(plane.size());
        if (file.isCut)
            return false;
        std::copy(bytes.begin(), bytes.end(), plane.begin());
    }
    for (size_t i = 0; i < plane.size(); i += sampleBytes, rgbaOut += kRead)
        *rgbaOut = plane[i];
    return true;
}

/// The merged picture stands on white: colour x alpha + 255 x (1 - alpha). A colour that is darker than any such
/// mixture becomes black.
void RemoveWhite(std::vector<uint8_t>& rgba)
{
    for (size_t i = 0; i < rgba.size(); i += kRead) {
        const int alpha = rgba[i + kColors];
        if (alpha == 0)
            continue;
        for (size_t c = i; c < i + kColors; ++c) {
            const int aboveWhite = std::max(rgba[c] + alpha - 255, 0);
            rgba[c] = static_cast<uint8_t>((aboveWhite * 255 + alpha / 2) / alpha);
        }
    }
}

} // namespace

bool IsPsd(std::string_view bytes)
{
    return bytes.starts_with(kSignature);
}

bool ReadPsdSize(std::string_view bytes, PsdPicture& pictureOut)
{
    Front file{bytes};
    Header header;
    if (!ReadHeader(file, header))
        return false;
    pictureOut.width = header.width;
    pictureOut.height = header.height;
    return true;
}

bool ReadPsd(std::string_view bytes, PsdPicture& pictureOut)
{
    Front file{bytes};
    Header header;
    if (!ReadHeader(file, header))
        return false;
    for (int section = 0; section < 3; ++section) // palette, resources, layers
        file.Bytes(file.Number(4));
    const uint32_t packing = file.Number(2);
    if (packing > 1)
        return false;
    if (packing == 1)
        file.Bytes(size_t{2} * header.channels * header.height); // lengths of the packed rows
    if (file.isCut)
        return false;
    pictureOut.width = header.width;
    pictureOut.height = header.height;
    const size_t pixels = size_t{header.width} * header.height;
    pictureOut.rgba.assign(pixels * kRead, 255);
    std::vector<uint8_t> plane(pixels * header.sampleBytes);
    for (uint32_t c = 0; c < std::min(header.channels, kRead); ++c) {
        if (!ReadPlane(file, packing == 1, header.sampleBytes, plane, pictureOut.rgba.data() + c))
            return false;
    }
    RemoveWhite(pictureOut.rgba);
    return true;
}
