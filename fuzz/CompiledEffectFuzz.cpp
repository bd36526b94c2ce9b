// Any bytes behind the first word of a compiled effect. Several parameters may have one name.

#include "fuzz/EffectUse.h"
#include "platform/EffectListing.h"

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string file("\x01\x09\xFF\xFE", 4);
    file.append(reinterpret_cast<const char*>(data), size);
    UseEffect(file.data(), file.size(), false);
    std::string listing;
    ListEffect("a.fxo", file, listing);
    return 0;
}
