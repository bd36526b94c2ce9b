#pragma once

#include <cstdint>

#include "base/KRE_Base.h"
#include "scene/KRE_FloatTrack.h"

/// How the texture matrix of one map slot changes over time. A track without keys stands still at
/// its constant.
class KRE_TextMatrixAni : public KRE_Base {
public:
    /// The tracks in the order of files. Offsets are in widths of the picture, angles in radians.
    enum Track : int32_t { kOffsetU, kOffsetV, kTileU, kTileV, kAngle, kTrackCount };

    KRE_TextMatrixAni();

    /// The value of a track at a time in seconds, or its constant.
    float Evaluate(Track track, float time);
    /// As in QSB files.
    void Save(File& file) const;
    void Load(File& file);

    KRE_FloatTrack tracks[kTrackCount];
    float constants[kTrackCount] = {0.0f, 0.0f, 1.0f, 1.0f, 0.0f};
};
