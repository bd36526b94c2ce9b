#pragma once

#include <string>

#include "check/SceneFaults.h"
#include "scene/KRE_3dScene.h"

/// Finds everything that is wrong with a loaded scene. Checks what a loader and the passes after it
/// guarantee: counters, slots and orders of lists agree; keys are linked both ways, counted and
/// indexed; parents, targets and bones are in the scene, and no object is its own ancestor;
/// indices, attributes, bones and bounds of meshes fit; opaque meshes come before transparent ones;
/// pictures and meshes are shared under valid ids; nothing is locked. Changes nothing except what
/// look-ups cache.
void FindSceneFaults(KRE_3dScene& scene, SceneFaults& faults);

/// The same as text, one line per fault; empty for a sound scene.
std::string CheckScene(KRE_3dScene& scene);
