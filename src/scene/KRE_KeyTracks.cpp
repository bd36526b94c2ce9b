#include "scene/KRE_KeyTracks.h"

/// A copy of a list whose counter did not match has no index, because the source has none.
template <class T>
static void IndexLike(const KRE_KeyIndex<T>& source, KRE_KeyIndex<T>& indexOut,
                      const KRE_KeyList<T>& keys, int32_t count)
{
    if (source)
        indexOut.Build(keys, count);
}

KRE_KeyTracks::KRE_KeyTracks(const KRE_KeyTracks& other)
    : posKeys(other.posKeys),
      scaleKeys(other.scaleKeys),
      rotKeys(other.rotKeys),
      rotKeyCount(other.rotKeyCount),
      scaleKeyCount(other.scaleKeyCount),
      posKeyCount(other.posKeyCount)
{
    IndexLike(other.scaleIndex, scaleIndex, scaleKeys, scaleKeyCount);
    IndexLike(other.rotIndex, rotIndex, rotKeys, rotKeyCount);
    IndexLike(other.posIndex, posIndex, posKeys, posKeyCount);
}

KRE_KeyTracks& KRE_KeyTracks::operator=(const KRE_KeyTracks& other)
{
    return *this = KRE_KeyTracks(other);
}

void KRE_KeyTracks::AddPosKey(const KRE_PosKeyData& key)
{
    if (posIndex)
        posIndex.Free();
    posKeys.Insert(key);
    ++posKeyCount;
}

void KRE_KeyTracks::AddScaleKey(const KRE_ScaleKeyData& key)
{
    if (scaleIndex)
        scaleIndex.Free();
    scaleKeys.Insert(key);
    ++scaleKeyCount;
}

void KRE_KeyTracks::AddRotKey(const KRE_RotKeyData& key)
{
    if (rotIndex)
        rotIndex.Free();
    if (KRE_RotKeyData* added = rotKeys.Insert(key))
        AccumulateRotation(*added);
    ++rotKeyCount;
}

template <class T>
static void TrimTrack(KRE_KeyList<T>& keys, KRE_KeyIndex<T>& index, int32_t& count, float from,
                      float to)
{
    const bool hadIndex = static_cast<bool>(index);
    index.Free();
    count -= keys.Trim(from, to);
    if (hadIndex)
        index.Build(keys, count);
}

void KRE_KeyTracks::TrimKeys(float from, float to)
{
    TrimTrack(posKeys, posIndex, posKeyCount, from, to);
    TrimTrack(rotKeys, rotIndex, rotKeyCount, from, to);
    TrimTrack(scaleKeys, scaleIndex, scaleKeyCount, from, to);
}

void KRE_KeyTracks::ClearKeys()
{
    *this = KRE_KeyTracks();
}
