#pragma once

#include <d3dx9.h>

/// The position of `time` between `start` and `end`, 0 to 1; 0 if the two are equal.
float SegmentRatio(float time, float start, float end);

/// Eases `ratio`, 0 to 1: a motion accelerates over the share `easeFrom` and slows down over the
/// share `easeTo`. Shares that add up to more than 1 are scaled down to 1.
float EaseRatio(float ratio, float easeFrom, float easeTo);

/// `D3DXQuaternionSlerp` by value.
D3DXQUATERNION Slerp(const D3DXQUATERNION& from, const D3DXQUATERNION& to, float ratio);
