#pragma once

#include "base/ErrorClass.h"
#include "scene/KRE_3dScene.h"

/// Gives each clone of a scene the geometry of the mesh that it names; a clone of a clone comes
/// after its source. Name, visibility, node and materials stay the clone's own. A source that is
/// not there, and clones that name each other in a ring, are an `Error` of `reporter`.
void ResolveClones(KRE_3dScene& scene, ErrorClassSimple& reporter);
