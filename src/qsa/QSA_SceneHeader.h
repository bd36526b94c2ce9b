#pragma once

#include "base/String.h"

/// What a scene file says about time and sound. Saved with the scene.
struct QSA_SceneHeader {
    String soundFile;         ///< stored and saved only
    String scriptFile;        ///< stored and saved only
    float frameSpeed = 30.0f; ///< frames per second
    float firstFrame = 0.0f;
    float lastFrame = 100.0f;
};
