#pragma once

#include <cstdint>

#include "scene/KRE_KeyData.h"
#include "scene/KRE_KeyIndex.h"
#include "scene/KRE_KeyList.h"

/// The three animation tracks of an object with their indexes and counters. A copy has keys of its
/// own, and indexes where the source had them.
struct KRE_KeyTracks {
    KRE_KeyTracks() = default;
    KRE_KeyTracks(const KRE_KeyTracks& other);
    KRE_KeyTracks& operator=(const KRE_KeyTracks& other);
    KRE_KeyTracks(KRE_KeyTracks&&) noexcept = default;
    KRE_KeyTracks& operator=(KRE_KeyTracks&&) noexcept = default;
    ~KRE_KeyTracks() = default;

    /// Insert a copy of `key` as `KRE_KeyList::Insert` tells and count it, also where it is before
    /// the head and lost. The track's index is void then and freed.
    void AddPosKey(const KRE_PosKeyData& key);
    void AddScaleKey(const KRE_ScaleKeyData& key);
    /// Fills the new key's `rotation` too, from the key before it. Keys behind it stay as they are.
    void AddRotKey(const KRE_RotKeyData& key);
    /// The last rotation key, owned by the list, or null.
    KRE_RotKeyData* GetLastRotKey() const { return rotKeys.Tail(); }

    /// Cuts the tracks to a window of seconds, which then starts at 0. The last key before it stays
    /// to start from, at a time below 0, and the last key of a track always stays. A track that had
    /// an index gets a new one.
    void TrimKeys(float from, float to);
    /// Leaves no keys, no indexes, and counters of 0.
    void ClearKeys();

    KRE_KeyList<KRE_PosKeyData> posKeys;
    KRE_KeyList<KRE_ScaleKeyData> scaleKeys;
    KRE_KeyList<KRE_RotKeyData> rotKeys;
    KRE_KeyIndex<KRE_ScaleKeyData> scaleIndex;
    KRE_KeyIndex<KRE_RotKeyData> rotIndex;
    KRE_KeyIndex<KRE_PosKeyData> posIndex;
    int32_t rotKeyCount = 0; ///< kept by the adds and by loading, not by the list
    int32_t scaleKeyCount = 0;
    int32_t posKeyCount = 0;
};
