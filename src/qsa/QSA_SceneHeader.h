#pragma once

#include "base/String.h"

/// What a scene file says of time and sound. A saved scene takes it along.
struct QSA_SceneHeader {
    String soundFile;         ///< stored and saved only
    String scriptFile;        ///< stored and saved only
    float frameSpeed = 30.0f; ///< frames a second
    float firstFrame = 0.0f;
    float lastFrame = 100.0f;
};
