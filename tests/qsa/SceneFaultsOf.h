#pragma once

#include <string>

#include "scene/KRE_3dScene.h"

/// What is wrong with a loaded scene; empty for a sound one. A clone whose own material has no parts
/// has one material, however many attributes the shared geometry has: that is no fault.
/// Of bad input, what a file is free to say is no fault either: rotations about no axis, nodes that
/// name themselves, clones of one of two meshes of the same name.
std::string FaultsOf(KRE_3dScene& scene, bool isBadInput = false);
