#pragma once

#include <d3dx9.h>

// From the scene's axes, Z up, to those of glTF, Y up: (x, y, z) becomes (x, z, -y). Both are
// right-handed, so neither faces nor the sense of rotations change. A node is turned in its own space as
// well as in its parent's, so that all spaces of the file have Y up; cameras and lights look along -Z in
// both formats, so they are turned in their parent's space only.

enum class NodeAxes { kTurned, kView };

inline D3DXVECTOR3 ToYUp(const D3DXVECTOR3& point)
{
    return {point.x, point.z, -point.y};
}

/// The matrix between two turned spaces.
D3DXMATRIX ToYUp(const D3DXMATRIX& matrix);
/// The rotation of a node. Of length 1, whatever `rotation` is; one without a length is no rotation.
D3DXQUATERNION ToYUp(const D3DXQUATERNION& rotation, NodeAxes axes);
/// The factors of a node.
D3DXVECTOR3 ScaleToYUp(const D3DXVECTOR3& scale, NodeAxes axes);
/// The rotation that turns a view which is the child of a turned node.
D3DXQUATERNION ViewInTurnedNode();
