#pragma once

#include <cstdint>

#include <d3dx9.h>

#include "scene/KRE_KeyBase.h"

/// A key of a position.
class KRE_PosKeyData : public KRE_KeyBase<KRE_PosKeyData> {
public:
    D3DXVECTOR3 value = {0, 0, 0};
    D3DXVECTOR3 inTangent = {0, 0, 0};  ///< arrives here; points away from the key
    D3DXVECTOR3 outTangent = {0, 0, 0}; ///< leaves here
    uint16_t interpolation = kKeyLinear;
};

/// A key of the scale factors per axis.
class KRE_ScaleKeyData : public KRE_KeyBase<KRE_ScaleKeyData> {
public:
    D3DXVECTOR3 value = {0, 0, 0};
    D3DXVECTOR3 inTangent = {0, 0, 0};  ///< arrives here; points away from the key
    D3DXVECTOR3 outTangent = {0, 0, 0}; ///< leaves here
    uint16_t interpolation = kKeyLinear;
};

/// A key of an orientation. `axis` and `angle` rotate from the previous key, `rotation` from rest.
class KRE_RotKeyData : public KRE_KeyBase<KRE_RotKeyData> {
public:
    D3DXVECTOR3 axis = {0, 0, 0};
    float angle = 0; ///< radians
    float tension = 0;
    float continuity = 0;
    float bias = 0; ///< kept for files; no computation uses it
    float easeIn = 0;
    float easeOut = 0;
    D3DXQUATERNION rotation = {0, 0, 0, 0};   ///< cumulative
    D3DXQUATERNION inControl = {0, 0, 0, 0};  ///< of TCB keys only: arriving side
    D3DXQUATERNION outControl = {0, 0, 0, 0}; ///< of TCB keys only: leaving side
    uint16_t interpolation = kKeyLinear;
};

/// `axis` and `angle` as a quaternion, whatever the previous key.
D3DXQUATERNION RelativeRotation(const KRE_RotKeyData& key);

/// Fills `rotation` from `axis`, `angle` and the previous key's `rotation`, which must be filled.
void AccumulateRotation(KRE_RotKeyData& key);

/// Fills the inner control quaternions of a TCB key from its neighbours in the list; a key of any
/// other kind keeps them zero. All `rotation`s of the list must be filled; times do not matter.
void ComputeInnerControls(KRE_RotKeyData& key);
