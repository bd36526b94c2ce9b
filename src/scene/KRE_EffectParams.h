#pragma once

#include <cstdint>

#include "base/String.h"

/// One of the numbered values that a material passes to its effect.
struct KRE_EffectParam {
    uint8_t hasFloat = 0;  ///< not 0: `floatValue` is given
    uint8_t hasVector = 0; ///< not 0: `vectorValue` is given
    float floatValue = 0.0f;
    float vectorValue[3] = {0.0f, 0.0f, 0.0f};
};

class File;
class QSB_InputFile;

/// The effect that a material names, and the values that it passes to it.
struct KRE_EffectParams {
    static constexpr int32_t kParams = 8;

    String name; ///< of the effect's file; empty for none
    KRE_EffectParam params[kParams];

    /// As in QSB files.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);
};
