// Any text as an effect to be compiled: what is compiled can be listed, which reads all of it.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/support/MemoryDisk.h"
#include "fuzz/support/Mutation.h"
#include "platform/EffectCompiler.h"
#include "platform/EffectListing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool isPut = (PutMemoryFile("other.fxh", "float o; // included\n"), true);
    PutMemoryFile("input.fx", TextOf(data, size));
    std::string compiled, listing;
    if (!isPut || !CompileEffect("input.fx", compiled).empty())
        return 0;
    if (!IsCompiledEffect(compiled) || !ListEffect("a.fxo", compiled, listing).empty())
        std::abort();
    return 0;
}
