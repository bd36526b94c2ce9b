#pragma once

#include "import/Model.h"
#include "import/SceneSpace.h"

/// The extent of a model with skins, in the scene's space: at rest and at some times of its animation. A scene
/// has to state it, because bones move vertices out of any box. None for a model without skins.
std::optional<std::array<ModelVector, 2>> BoundsOfSkins(const Model& model,
                                                        const SceneSpace& space);
