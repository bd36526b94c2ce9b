#pragma once

#include "base/ErrorClass.h"
#include "scene/CopyBudget.h"
#include "scene/KRE_3dScene.h"

/// Gives each clone of a scene the geometry of the mesh that it names; a clone of a clone is
/// resolved after its source. Name, visibility, node and materials stay the clone's own. A missing
/// source, a cycle of clones, and more bones to copy than `budget` has, are an `Error` of `reporter`.
void ResolveClones(KRE_3dScene& scene, CopyBudget& budget, ErrorClassSimple& reporter);
