#pragma once

#include <string>
#include <vector>

#include <d3d9.h>

/// Pixels as 0xAARRGGBB, row by row from the top.
struct Picture {
    UINT width = 0;
    UINT height = 0;
    std::vector<DWORD> pixels;
};

/// How two pictures differ. `pixels` counts those in which a channel differs by more than the allowed
/// step, `largestStep` is the largest difference of any channel. Pictures of different sizes differ in
/// every pixel, by 255.
struct PictureDifference {
    size_t pixels = 0;
    int largestStep = 0;
};

PictureDifference ComparePictures(const Picture& a, const Picture& b, int allowedStep);

/// Opaque, with the difference of each channel multiplied by eight. For pictures of equal size.
Picture DifferencePicture(const Picture& a, const Picture& b);

/// Writes all pixels as little-endian words without a header. False if the file cannot be written.
bool WriteRawPicture(const std::string& path, const Picture& picture);

/// False if the file cannot be written.
bool WritePngPicture(IDirect3DDevice9* device, const std::string& path, const Picture& picture);

/// Empty if there is no such file or it cannot be read.
Picture ReadPngPicture(IDirect3DDevice9* device, const std::string& path);
