#pragma once

#include <d3d9.h>

#include "scene/KRE_ArrayTrack.h"

/// A key of a colour track. Tangents point away from the key.
struct KRE_ColorKey {
    float time = 0.0f; ///< seconds
    D3DCOLORVALUE value{};
    D3DCOLORVALUE inTangent{};
    D3DCOLORVALUE outTangent{};
};

class File;
class QSB_InputFile;

/// A colour of a material that changes over time.
class KRE_ColorTrack : public KRE_ArrayTrack<KRE_ColorKey> {
public:
    /// The colour at a time in seconds; all 0 without keys. A looping track may raise its
    /// `loopEnd`. `derivativeOut`, if given, gets the change of red, green and blue per second;
    /// linear tracks leave it unchanged, and so do times at which the first or last key is held.
    /// QUIRK: alpha is not interpolated between keys. Bezier tracks sum both keys' alphas and
    /// tangents, so the importer's 1 becomes 2; linear ones take the next key's alpha at once.
    D3DCOLORVALUE Evaluate(float time, D3DCOLORVALUE* derivativeOut = nullptr);
    /// As in QSB files.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);
};
