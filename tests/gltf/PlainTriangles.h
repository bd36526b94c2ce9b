#pragma once

#include <string>

#include "tests/gltf/GltfDocument.h"

/// Compares the triangles of two files as multisets: the colour of the material, positions and u to the bit, the
/// sense of rotation, and v within 2^-24; nodes and names do not count. Gives what differs, or nothing. A
/// file without triangles is a difference.
std::string TrianglesDiffer(const GltfDocument& before, const GltfDocument& after);
