#pragma once

#include <d3dx9.h>

#include "platform/ComPointer.h"

/// What all users of one effect file share. Registered with the engine's effect manager.
struct ShaderEffectData {
    ComPointer<ID3DXEffect> effect;
};
