// Any assembler text: it may be refused; what is accepted disassembles, and the text of that
// assembles again.

#include "platform/headless/shader/Assembler.h"
#include "platform/headless/shader/Disassembler.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace headless::shader;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count)
{
    std::vector<Word> words, again;
    AssemblyFault fault;
    if (!Assemble({reinterpret_cast<const char*>(bytes), count}, words, fault))
        return 0;
    Bytecode code;
    Fault found;
    if (!ReadBytecode(words, code, found))
        std::abort();
    if (!AssembleUnchecked(Disassemble(code), again, fault))
        std::abort();
    return 0;
}
