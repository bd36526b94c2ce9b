#pragma once

#include "tests/platform/pictures/PictureStage.h"

#include <string>

/// The place of an effect of tests/studio, without extension.
std::string StudioFile(const std::string& name);

/// Draws an effect, as a text or compiled, over what its name asks for: a ball, a flag, a bent column or the
/// whole target. All parameters that the effect has are set by their names, with the same values on
/// every host. Errors of the effect are a failure of the test.
void DrawStudioEffect(PictureStage& stage, const std::string& name, const std::string& effectFile);

/// The names of all effects of tests/studio, sorted.
const std::vector<std::string>& StudioEffects();
