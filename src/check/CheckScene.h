#pragma once

#include <string>

#include "check/SceneFaults.h"
#include "scene/KRE_3dScene.h"

/// Finds everything that is wrong with a loaded scene. What a loader and the passes after it promise:
/// lists whose counters, slots and orders agree; keys linked both ways, counted and indexed; parents,
/// targets and bones inside the scene, no object its own ancestor; meshes whose indices, attributes,
/// bones and bounds fit; opaque meshes ahead of transparent ones; pictures and meshes shared under
/// good ids; nothing locked. Changes nothing but what look-ups cache.
void FindSceneFaults(KRE_3dScene& scene, SceneFaults& faults);

/// The same as text, a line for each fault; empty for a sound scene.
std::string CheckScene(KRE_3dScene& scene);
