#pragma once

#include <string>
#include <vector>

#include "import/QsaScene.h"

/// The text of a scene. `pictures` has the leaf for each image of the model, empty for one that is not there.
std::string WriteQsa(const QsaScene& scene, const Model& model,
                     const std::vector<std::string>& pictures);
