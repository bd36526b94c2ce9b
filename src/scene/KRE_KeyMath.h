#pragma once

#include <d3dx9.h>

/// Where `time` stands between `start` and `end`, 0 to 1; 0 where the two agree.
float SegmentRatio(float time, float start, float end);

/// Bends `ratio`, 0 to 1, so that a motion starts slowly over the share `easeFrom` of it and comes
/// to rest over the share `easeTo`. Shares that add up to more than 1 are scaled down to 1.
float EaseRatio(float ratio, float easeFrom, float easeTo);

/// `D3DXQuaternionSlerp` by value.
D3DXQUATERNION Slerp(const D3DXQUATERNION& from, const D3DXQUATERNION& to, float ratio);
