#pragma once

#include <string>

/// What ends the run in a scene, and so the batch.
enum class SceneEnding { None, Lights, BadMap, BadEffect };

/// The text of a scene from a seed: valid for the most part, with a fault here and there. Its pictures and effects
/// are those of `examples` and `examples/effects`, and some that do not exist; for the endings `BadMap` and
/// `BadEffect`, "broken.png" and "broken.fx". The same seed gives the same text on every machine.
std::string WriteScene(unsigned seed, SceneEnding ending);
