#pragma once

#include <string>

#include "scene/KRE_3dScene.h"

/// Everything that is wrong with a loaded scene, a line each; empty for a sound one. What a loader
/// and the passes after it promise: lists whose counters, slots and orders agree; keys linked both
/// ways, counted and indexed; parents, targets and bones inside the scene; meshes whose indices,
/// attributes, bones and bounds fit; opaque meshes ahead of transparent ones; pictures and meshes
/// shared under good ids; nothing locked. Changes nothing but what look-ups cache.
std::string CheckScene(KRE_3dScene& scene);
