// Any text as an effect.

#include "fuzz/EffectUse.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    UseEffect(data, size, true);
    return 0;
}
