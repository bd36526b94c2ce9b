#include "scene/KRE_KeyEvaluation.h"

#include "scene/HermiteWeights.h"
#include "scene/KRE_KeyMath.h"

namespace {

template <class T>
struct Segment {
    const T* key;
    const T* next; ///< null after the last key
};

} // namespace

/// The key for `time` and the one after it. An index gives both at once, so a long track does not
/// wait for the first key's memory to find the second one.
template <class T>
static Segment<T> SegmentAt(const KRE_KeyList<T>& keys, const KRE_KeyIndex<T>& index, float time)
{
    if (!index) {
        const T* key = keys.FindKey(time);
        return {key, key->next};
    }
    const KRE_KeyPair<T> found = index.Find(time);
    return {found.key, found.next};
}

template <class T>
static D3DXVECTOR3 Hermite(const T& from, const T& to, float u)
{
    const HermiteWeights h = HermiteAt(u);
    return from.value * h.h00 + from.outTangent * h.h10 - to.inTangent * h.h11 + to.value * h.h01;
}

template <class T>
static D3DXVECTOR3 EvaluateVectorKeys(const KRE_KeyList<T>& keys, const KRE_KeyIndex<T>& index,
                                      float time, const KRE_KeyLoop& loop)
{
    const Segment<T> segment = SegmentAt(keys, index, time);
    const T& key = *segment.key;
    const T* next = segment.next ? segment.next : loop.loop ? keys.Head() : nullptr;
    if (time < key.time || !next)
        return key.value;

    const float u = SegmentRatio(time, key.time, segment.next ? next->time : loop.loopEnd);
    if (key.interpolation == kKeyBezier)
        return Hermite(key, *next, u);
    return key.value + (next->value - key.value) * u;
}

// De Casteljau's construction on quaternions between two keys and their inner controls.
static D3DXQUATERNION EvaluateTcbSegment(const KRE_RotKeyData& from, const KRE_RotKeyData& to,
                                         float u)
{
    const float s = EaseRatio(u, from.easeOut, to.easeIn);
    const float a = from.continuity + 1;
    const float b = (1 + to.continuity) * s;
    const float c = 1 - (1 - s) * a;
    const D3DXQUATERNION q1 = Slerp(from.rotation, from.outControl, b);
    const D3DXQUATERNION q2 = Slerp(from.outControl, to.inControl, s);
    const D3DXQUATERNION q3 = Slerp(to.inControl, to.rotation, c);
    const D3DXQUATERNION q4 = Slerp(q1, q2, b);
    const D3DXQUATERNION q5 = Slerp(q2, q3, c);
    return Slerp(q4, q5, s);
}

D3DXVECTOR3 EvaluateKeys(const KRE_KeyList<KRE_PosKeyData>& keys,
                         const KRE_KeyIndex<KRE_PosKeyData>& index, float time,
                         const KRE_KeyLoop& loop)
{
    return EvaluateVectorKeys(keys, index, time, loop);
}

D3DXVECTOR3 EvaluateKeys(const KRE_KeyList<KRE_ScaleKeyData>& keys,
                         const KRE_KeyIndex<KRE_ScaleKeyData>& index, float time,
                         const KRE_KeyLoop& loop)
{
    return EvaluateVectorKeys(keys, index, time, loop);
}

D3DXQUATERNION EvaluateKeys(const KRE_KeyList<KRE_RotKeyData>& keys,
                            const KRE_KeyIndex<KRE_RotKeyData>& index, float time,
                            const KRE_KeyLoop& loop)
{
    const Segment<KRE_RotKeyData> segment = SegmentAt(keys, index, time);
    const KRE_RotKeyData& key = *segment.key;
    if (time < key.time)
        return RelativeRotation(key);
    if (const KRE_RotKeyData* next = segment.next) {
        const float u = SegmentRatio(time, key.time, next->time);
        if (key.interpolation == kKeyTcb)
            return EvaluateTcbSegment(key, *next, u);
        return Slerp(key.rotation, next->rotation, u);
    }
    if (loop.loop) {
        const float u = SegmentRatio(time, key.time, loop.loopEnd);
        return Slerp(key.rotation, keys.Head()->rotation, u);
    }
    return key.rotation;
}
