#pragma once

#include "base/ErrorClass.h"
#include "scene/KRE_3dScene.h"

/// Gives each clone of a scene the geometry of the mesh that it names; a clone of a clone is
/// resolved after its source. Name, visibility, node and materials stay the clone's own. A missing
/// source, and a cycle of clones, are an `Error` of `reporter`.
void ResolveClones(KRE_3dScene& scene, ErrorClassSimple& reporter);
