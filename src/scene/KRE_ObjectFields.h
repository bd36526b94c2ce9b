#pragma once

#include <cstddef>
#include <cstdint>

#include <d3dx9.h>

#include "base/String.h"
#include "scene/KRE_KeyTracks.h"

class KRE_3dObject;

inline D3DXMATRIX IdentityMatrix()
{
    D3DXMATRIX matrix;
    D3DXMatrixIdentity(&matrix);
    return matrix;
}

/// The kind of a node, with the file formats' numbers.
enum ObjectKind : int32_t {
    kObjectPlain = 0,
    kObjectMesh = 1,
    kObjectBone = 2,
    kObjectHelper = 4, ///< or the target of a camera or light
    kObjectCamera = 8,
    kObjectLight = 32,
};

/// All fields of a node that a copy takes over. A copy has its own keys.
struct KRE_ObjectFields : KRE_KeyTracks {
    int32_t objectKind = kObjectPlain;
    D3DXMATRIX worldTM = IdentityMatrix(); ///< of the last evaluation, parents included
    /// Not part of `worldTM`: object space to world is `pivotTM * worldTM`.
    D3DXMATRIX pivotTM = IdentityMatrix();

    // From here to `rotationAngle`: the pose.
    D3DXMATRIX initTM = IdentityMatrix(); ///< the pose of the file
    D3DXVECTOR3 mirror = {1, 1, 1};       ///< sign per axis
    D3DXVECTOR3 position = {0, 0, 0};     ///< used if there are no position keys
    D3DXVECTOR3 scale = {1, 1, 1};        ///< used if there are no scale keys
    D3DXVECTOR3 rotationAxis = {0, 0, 0}; ///< used if there are no rotation keys
    float rotationAngle = 0;              ///< radians

    int32_t frozen = 0;  ///< not 0: evaluations do not change the matrices
    int32_t dirty = 1;   ///< not 0: the next evaluation is not skipped
    double lastTime = 0; ///< seconds, of the last evaluation, after looping
    D3DXMATRIX translationTM = IdentityMatrix();
    D3DXMATRIX rotationTM = IdentityMatrix();
    D3DXMATRIX scalingTM = IdentityMatrix(); ///< mirror included
    D3DXVECTOR3 currentPosition = {0, 0, 0};
    D3DXVECTOR3 currentScale = {1, 1, 1};
    D3DXQUATERNION currentRotation = {0, 0, 0, 1};
    String name = "*undefined*";
    KRE_3dObject* parent = nullptr; ///< not owned, lives in the scene; null for a root
    String parentName;              ///< as the file has it
    int32_t inheritPosition = 1;
    int32_t inheritScale = 1;
    int32_t inheritRotation = 1;
    int32_t inheritMirror = 1;
    int32_t loop = 0;                  ///< not 0: the animation repeats
    float loopEnd = 100.0f;            ///< seconds
    int32_t reservedWords[2] = {0, 0}; ///< no operation reads them
};

inline constexpr size_t kStoredPoseSize = 116; ///< bytes from `initTM` to `rotationAngle`
