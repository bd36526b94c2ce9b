#pragma once

#include "scene/KRE_ArrayTrack.h"

/// A key of a float track. Tangents point away from the key.
struct KRE_FloatKey {
    float time = 0.0f; ///< seconds
    float value = 0.0f;
    float inTangent = 0.0f;
    float outTangent = 0.0f;
};

class File;
class QSB_InputFile;

/// A float that changes over time: the opacity of a material, a number of a texture matrix.
class KRE_FloatTrack : public KRE_ArrayTrack<KRE_FloatKey> {
public:
    /// The value at a time in seconds; 0 without keys. A looping track may raise its `loopEnd`.
    /// `derivativeOut`, if given, gets the change per second; linear tracks leave it unchanged, and
    /// so do times at which the first or last key is held.
    float Evaluate(float time, float* derivativeOut = nullptr);
    /// As in QSB files.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);
};
