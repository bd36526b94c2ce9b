#pragma once

#include <cstdint>

#include "scene/KRE_KeyData.h"
#include "scene/KRE_KeyIndex.h"
#include "scene/KRE_KeyList.h"

/// How a track continues after its last key.
struct KRE_KeyLoop {
    int32_t loop = 0;  ///< not 0: towards the first key, repeated at `loopEnd`
    float loopEnd = 0; ///< seconds
};

/// The value of a track at `time` in seconds, already folded into one period for a looping track.
/// The list has at least one key; with an empty index the list is walked. Before the first key the
/// value is the first key's, after the last one the last key's.
D3DXVECTOR3 EvaluateKeys(const KRE_KeyList<KRE_PosKeyData>& keys,
                         const KRE_KeyIndex<KRE_PosKeyData>& index, float time,
                         const KRE_KeyLoop& loop);
D3DXVECTOR3 EvaluateKeys(const KRE_KeyList<KRE_ScaleKeyData>& keys,
                         const KRE_KeyIndex<KRE_ScaleKeyData>& index, float time,
                         const KRE_KeyLoop& loop);
/// QUIRK: before the first key only its axis and angle count, not its `rotation`; the closing
/// segment of a loop is a plain slerp, even for TCB keys.
D3DXQUATERNION EvaluateKeys(const KRE_KeyList<KRE_RotKeyData>& keys,
                            const KRE_KeyIndex<KRE_RotKeyData>& index, float time,
                            const KRE_KeyLoop& loop);
