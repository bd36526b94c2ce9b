#include "gfx/KRE_StageProgram.h"

void KRE_StageProgram::Put(int32_t stage, D3DTEXTURESTAGESTATETYPE type, DWORD value)
{
    // A place is valid only if the state there has this stage and type, so nothing needs to be
    // cleared.
    int16_t& place = places[stage][type];
    const bool isKnown =
        place < count && states[place].stage == stage && states[place].type == type;
    if (!isKnown)
        place = static_cast<int16_t>(count++);
    states[place] = {stage, type, value};
}
