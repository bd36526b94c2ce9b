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
    std::size_t pixels = 0;
    int largestStep = 0;
};

PictureDifference ComparePictures(const Picture& a, const Picture& b, int allowedStep);

/// Opaque, each channel the difference of the two, made eight times as strong. For equal sizes.
Picture DifferencePicture(const Picture& a, const Picture& b);

/// The words of all pixels without a header, little-endian. False if the file can not be written.
bool WriteRawPicture(const std::string& path, const Picture& picture);

/// False if the file can not be written.
bool WritePngPicture(IDirect3DDevice9* device, const std::string& path, const Picture& picture);

/// Empty if there is no such file or it can not be read.
Picture ReadPngPicture(IDirect3DDevice9* device, const std::string& path);
