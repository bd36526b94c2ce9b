#pragma once

#include <string>

#include "scene/KRE_3dScene.h"

/// What is wrong with a loaded scene; empty for a sound one. A clone whose own material has no
/// parts has one material, whatever the number of attributes of the shared geometry: that is not a
/// fault.
/// For bad input, anything that a file is allowed to contain is not a fault either: rotations about
/// no axis, nodes that name themselves, clones of one of two meshes of the same name.
std::string FaultsOf(KRE_3dScene& scene, bool isBadInput = false);
