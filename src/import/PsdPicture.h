#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// The merged picture of a PSD file with red, green and blue of 8 or 16 bits, and alpha if there is a fourth
/// channel; layers are not read. Written here because stb_image computes colours under alpha that leave the range of
/// a byte.
struct PsdPicture {
    uint32_t width = 0; ///< pixels
    uint32_t height = 0;
    std::vector<uint8_t> rgba; ///< row by row from the top; empty after `ReadPsdSize`
};

bool IsPsd(std::string_view bytes);

/// Reads only the header. False if it is not that of such a picture.
bool ReadPsdSize(std::string_view bytes, PsdPicture& pictureOut);

/// Reads the picture. False if the file is damaged or of another form. Up to 6 bytes for each pixel that the header
/// announces are allocated, so check the size first.
bool ReadPsd(std::string_view bytes, PsdPicture& pictureOut);
