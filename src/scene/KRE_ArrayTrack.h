#pragma once

#include <algorithm>
#include <cstdint>
#include <new>

#include "base/HeapArray.h"
#include "base/ParseNumber.h"
#include "scene/WrapTime.h"

/// Common base of the material tracks: a flat array of keys in order of time, and the search in it.
/// Times are seconds from the start of the scene. A key has the fields `time`, `value`, `inTangent`
/// and `outTangent`. Nothing here relies on valid keys: whatever their times, a search stays within
/// the array.
template <class KeyData>
class KRE_ArrayTrack {
public:
    static constexpr int32_t kLinear = 0; ///< so is every other value except `kBezier`
    static constexpr int32_t kBezier = 1;

    KRE_ArrayTrack() = default;
    KRE_ArrayTrack(const KRE_ArrayTrack& other) { *this = other; }
    KRE_ArrayTrack& operator=(const KRE_ArrayTrack& other);

    int32_t GetKeyCount() const { return keyCount; }
    /// Replaces the old keys by `count` empty ones. Below 1, or out of memory, the track has none.
    void SetKeyCount(int32_t count);
    /// Keeps the first keys, as many as fit; added ones are empty. Clears the second flag.
    void Resize(int32_t count);
    /// Not checked: 0 <= i < GetKeyCount().
    KeyData& Key(int32_t i) { return keys[i]; }
    const KeyData& Key(int32_t i) const { return keys[i]; }
    /// All keys in a row, or null; owned by the track.
    KeyData* Keys() { return keys.Get(); }
    const KeyData* Keys() const { return keys.Get(); }

private:
    int32_t keyCount = 0; ///< entries of `keys`

public:
    int32_t interpolation = kBezier;
    uint8_t loop = 0;
    uint8_t secondFlag = 0; ///< stored in files, but unused
    float loopEnd = 0.0f;   ///< seconds; a looping track raises it to its last key

protected:
    /// The position of a time: between two keys, or at one whose value is held.
    struct Place {
        const KeyData* from;
        const KeyData* to;   ///< null if the value of `from` is held
        float ratio;         ///< 0 at `from`, 1 at `to`
        float lengthSeconds; ///< of the segment
    };

    /// Finds the place of a time; all null without keys. Raises `loopEnd` of a looping track.
    Place Locate(float time);

private:
    float TimeAt(int32_t i) const { return i == keyCount ? loopEnd : keys[i].time; }
    float Fold(float time);
    int32_t Probe(int32_t low, int32_t high, float time) const;

    HeapArray<KeyData> keys; ///< owned
};

template <class KeyData>
KRE_ArrayTrack<KeyData>& KRE_ArrayTrack<KeyData>::operator=(const KRE_ArrayTrack& other)
{
    if (this == &other)
        return *this;
    SetKeyCount(other.keyCount);
    if (keyCount != other.keyCount)
        throw std::bad_alloc(); // a copy without keys would be saved as if there never were any
    std::copy_n(other.keys.Get(), keyCount, keys.Get());
    interpolation = other.interpolation;
    loop = other.loop;
    secondFlag = other.secondFlag;
    loopEnd = other.loopEnd;
    return *this;
}

template <class KeyData>
void KRE_ArrayTrack<KeyData>::SetKeyCount(int32_t count)
{
    keys.Free();
    if (count > 0)
        keys = HeapArray<KeyData>::Try(count);
    keyCount = keys ? count : 0;
}

template <class KeyData>
void KRE_ArrayTrack<KeyData>::Resize(int32_t count)
{
    const HeapArray<KeyData> old = std::move(keys);
    const int32_t oldCount = keyCount;
    SetKeyCount(count);
    std::copy_n(old.Get(), std::min(oldCount, keyCount), keys.Get());
    secondFlag = 0;
}

/// Folds a time into the track's loop.
template <class KeyData>
float KRE_ArrayTrack<KeyData>::Fold(float time)
{
    const float first = keys[0].time;
    loopEnd = std::max(loopEnd, keys[keyCount - 1].time);
    return first + WrapTime(time, loopEnd - first);
}

/// Interpolation search: a guess strictly between `low` and `high`, in proportion to `time`.
template <class KeyData>
int32_t KRE_ArrayTrack<KeyData>::Probe(int32_t low, int32_t high, float time) const
{
    const float span = TimeAt(high) - TimeAt(low);
    const float steps = (time - TimeAt(low)) / span * static_cast<float>(high - low);
    const int64_t probe = int64_t{low} + ToInt32(steps);
    // Keys out of order could move the guess out of the bracket.
    return static_cast<int32_t>(std::clamp<int64_t>(probe, int64_t{low} + 1, int64_t{high} - 1));
}

template <class KeyData>
typename KRE_ArrayTrack<KeyData>::Place KRE_ArrayTrack<KeyData>::Locate(float time)
{
    if (!keys)
        return {};
    if (loop) {
        time = Fold(time);
    } else {
        // Written so that NaN holds the first key.
        if (!(time > keys[0].time))
            return {&keys[0], nullptr, 0.0f, 0.0f};
        if (time >= keys[keyCount - 1].time)
            return {&keys[keyCount - 1], nullptr, 0.0f, 0.0f};
    }
    int32_t low = 0;
    int32_t high = loop ? keyCount : keyCount - 1;
    while (high > low + 1) {
        const int32_t probe = Probe(low, high, time);
        (TimeAt(probe) <= time ? low : high) = probe;
    }
    const float length = TimeAt(high) - keys[low].time;
    // A loop of one key that ends at the key has length 0.
    const float ratio = length == 0.0f ? 0.0f : (time - keys[low].time) / length;
    return {&keys[low], &keys[high == keyCount ? 0 : high], ratio, length};
}
