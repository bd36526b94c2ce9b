#pragma once

#include <d3dx9.h>

#include "scene/KRE_ObjectFields.h"

/// What a transform block of the text gives, in the order of the node's fields.
struct QSA_Transform {
    D3DXMATRIX initTM = IdentityMatrix();
    D3DXVECTOR3 mirror = {1.0f, 1.0f, 1.0f};
    D3DXVECTOR3 position = {0.0f, 0.0f, 0.0f};
    D3DXVECTOR3 scale = {1.0f, 1.0f, 1.0f};
    D3DXVECTOR3 rotationAxis = {0.0f, 0.0f, 0.0f};
    float rotationAngle = 0.0f; ///< radians
};
