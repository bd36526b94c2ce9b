#pragma once

#include <cstdint>
#include <functional>
#include <string>

/// Scenes whose frames can be computed by hand. A wall of 20 by 20 is in the plane of x and z with
/// its middle at the origin; u goes from 0 at x = -10 to 1 at x = 10, and v from 0 at the top. The
/// free camera looks at it along +y from about 40 away, so in a frame of 160 by 120 a unit is about
/// 3.6 pixels.
namespace frame_scene {

/// A TGA file of `side` by `side` pixels with alpha, 0xAARRGGBB by column and row from the top left.
std::string Tga(unsigned side, const std::function<uint32_t(unsigned, unsigned)>& pixelAt);

/// The left half red, the right half blue.
std::string RedAndBlue();

/// One map of a material: `kind` is "DIFFUSE" or "REFLECT", `values` are further keywords of the
/// map.
std::string Map(const char* kind, const char* picture, const char* values = "");

/// The wall with a two-sided material of these maps, and the nodes. `scene` is added to the scene
/// block.
std::string Wall(const std::string& maps, const std::string& nodes = "", const char* scene = "");

} // namespace frame_scene
