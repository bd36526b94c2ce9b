#include "gfx/KRE_StageProgram.h"

void KRE_StageProgram::Put(int32_t stage, D3DTEXTURESTAGESTATETYPE type, DWORD value)
{
    // A place is good only if the state there points back to it, so that nothing has to be wiped.
    int16_t& place = places[stage][type];
    const bool isKnown =
        place < count && states[place].stage == stage && states[place].type == type;
    if (!isKnown)
        place = static_cast<int16_t>(count++);
    states[place] = {stage, type, value};
}
