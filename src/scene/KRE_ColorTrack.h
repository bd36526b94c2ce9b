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
    /// `loopEnd`. `derivativeOut`, if given, takes the change of red, green and blue in a second,
    /// and is left alone by linear tracks and where the first or last key holds.
    /// QUIRK: alpha is not weighted between keys. Bezier tracks sum both keys' alphas and tangents,
    /// so that the importer's 1 becomes 2; linear ones take the next key's alpha at once.
    D3DCOLORVALUE Evaluate(float time, D3DCOLORVALUE* derivativeOut = nullptr);
    /// As in QSB files.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);
};
