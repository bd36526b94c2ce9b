#pragma once

#include <cstdint>

#include "scene/KRE_KeyData.h"
#include "scene/KRE_KeyIndex.h"
#include "scene/KRE_KeyList.h"

/// The three animation tracks of an object with their indexes and counters. A copy has its own
/// keys, and indexes where the source has them.
struct KRE_KeyTracks {
    KRE_KeyTracks() = default;
    KRE_KeyTracks(const KRE_KeyTracks& other);
    KRE_KeyTracks& operator=(const KRE_KeyTracks& other);
    KRE_KeyTracks(KRE_KeyTracks&&) noexcept = default;
    KRE_KeyTracks& operator=(KRE_KeyTracks&&) noexcept = default;
    ~KRE_KeyTracks() = default;

    /// Insert a copy of `key` as `KRE_KeyList::Insert` does and count it, even if it is dropped
    /// because it is before the head. The track's index becomes invalid and is freed.
    void AddPosKey(const KRE_PosKeyData& key);
    void AddScaleKey(const KRE_ScaleKeyData& key);
    /// Also fills the new key's `rotation` from the previous key. Later keys are not changed.
    void AddRotKey(const KRE_RotKeyData& key);
    /// The last rotation key, owned by the list, or null.
    KRE_RotKeyData* GetLastRotKey() const { return rotKeys.Tail(); }

    /// Trims the tracks to a window in seconds, which then starts at 0. The last key before the
    /// window is kept as its start, at a time below 0, and the last key of a track is always kept.
    /// A track that had an index gets a new one.
    void TrimKeys(float from, float to);
    /// Removes all keys and indexes and sets the counters to 0.
    void ClearKeys();

    KRE_KeyList<KRE_PosKeyData> posKeys;
    KRE_KeyList<KRE_ScaleKeyData> scaleKeys;
    KRE_KeyList<KRE_RotKeyData> rotKeys;
    KRE_KeyIndex<KRE_ScaleKeyData> scaleIndex;
    KRE_KeyIndex<KRE_RotKeyData> rotIndex;
    KRE_KeyIndex<KRE_PosKeyData> posIndex;
    int32_t rotKeyCount = 0; ///< maintained by the adds and by loading, not by the list
    int32_t scaleKeyCount = 0;
    int32_t posKeyCount = 0;
};
