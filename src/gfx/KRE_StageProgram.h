#pragma once

#include <cstdint>

#include <d3d9.h>

#include "gfx/KRE_StateCache.h"

/// One state of a texture stage.
struct KRE_StageState {
    int32_t stage;
    D3DTEXTURESTAGESTATETYPE type;
    DWORD value;
};

/// The stage states of a material while it is bound. Maps change what the maps below them have set;
/// collected here, each state reaches the device once, with its last value, and only if that value
/// is new there.
class KRE_StageProgram {
public:
    static constexpr int32_t kStages = KRE_StateCache::kStages;
    static constexpr int32_t kTypes = KRE_StateCache::kStageStates;

    /// Stores the last value of a state; states keep the order in which they were first stored.
    /// Stage and type must be within the tables of `KRE_StateCache`.
    void Put(int32_t stage, D3DTEXTURESTAGESTATETYPE type, DWORD value);
    void Clear() { count = 0; }

    const KRE_StageState* begin() const { return states; }
    const KRE_StageState* end() const { return states + count; }

private:
    KRE_StageState states[kStages * kTypes];
    int16_t places[kStages][kTypes]{}; // where a state may be in `states`
    int32_t count = 0;
};
