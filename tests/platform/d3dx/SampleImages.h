#pragma once

#include <d3dx9.h>

#include <cstdint>
#include <string>
#include <vector>

/// A small file of one kind, with its known contents.
struct SampleImage {
    const char* what;
    std::string file;
    D3DXIMAGE_FILEFORMAT fileFormat;
    D3DFORMAT textureFormat; ///< of a texture requested with `D3DFMT_UNKNOWN`
    UINT width;
    UINT height;
    std::vector<uint32_t> argb;
    int tolerance = 0; ///< per channel, JPEG only
};

/// One file of each kind that all hosts load.
std::vector<SampleImage> SampleImages();
