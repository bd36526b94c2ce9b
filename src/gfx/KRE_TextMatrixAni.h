#pragma once

#include <cstdint>

#include "base/HeapArray.h"
#include "base/KRE_Base.h"
#include "scene/KRE_FloatTrack.h"

/// How the texture matrix of one map slot changes over time. A track without keys stays at its
/// constant.
class KRE_TextMatrixAni : public KRE_Base {
public:
    /// The tracks in file order. Offsets are in widths of the picture, angles in radians.
    enum Track : int32_t { kOffsetU, kOffsetV, kTileU, kTileV, kAngle, kTrackCount };

    KRE_TextMatrixAni();

    /// The value of a track at a time in seconds, or its constant.
    float Evaluate(Track track, float time);
    /// As in QSB files.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);

    KRE_FloatTrack tracks[kTrackCount];
    float constants[kTrackCount] = {0.0f, 0.0f, 1.0f, 1.0f, 0.0f};
};

/// The animations of a texture's map slots. Most textures are not animated, and scenes hold very
/// many of them, so memory is allocated only on the first request for write access.
class KRE_SlotAnimations {
public:
    static constexpr int32_t kSlots = 4;

    KRE_SlotAnimations() = default;
    KRE_SlotAnimations(const KRE_SlotAnimations& other) { *this = other; }
    KRE_SlotAnimations& operator=(const KRE_SlotAnimations& other);

    /// Whether any are allocated; if not, all slots stay at the defaults.
    explicit operator bool() const { return static_cast<bool>(all); }
    /// Not checked: 0 <= slot < kSlots and, for const access, that any are allocated.
    const KRE_TextMatrixAni& operator[](int32_t slot) const { return all[slot]; }
    KRE_TextMatrixAni& operator[](int32_t slot) { return *(begin() + slot); }
    KRE_TextMatrixAni* begin();
    KRE_TextMatrixAni* end() { return begin() + kSlots; }

private:
    HeapArray<KRE_TextMatrixAni> all; ///< owned; `kSlots` of them, or none
};
