#pragma once

#include <d3dx9.h>

#include "import/Model.h"

/// Turns rotations from rest into those of the text, each about an axis in the parent's space and relative to
/// the one before, against the right-hand rule. Each is computed from what the reader has after the last one, in
/// its own arithmetic, so that rounding does not add up.
class RotationChain {
public:
    struct Step {
        float axis[3];
        float angle;
    };

    Step Next(const ModelQuaternion& wanted);

private:
    D3DXQUATERNION read = {0, 0, 0, 1};
    bool isFirst = true;
};

/// The same for a single rotation, as a transform block has it.
RotationChain::Step WrittenRotation(const ModelQuaternion& rotation);
