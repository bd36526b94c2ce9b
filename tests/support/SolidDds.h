#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

/// A DDS file of A8R8G8B8 with one level: a cube whose faces, of 4 by 4 texels, each have one colour.
std::string CubeDds(std::initializer_list<uint32_t> faces);

/// A volume whose slices, of 4 by 4 texels, each have one colour.
std::string VolumeDds(std::initializer_list<uint32_t> slices);
