#include "platform/ShaderListing.h"

#include "platform/headless/shader/Assembler.h"
#include "platform/headless/shader/Disassembler.h"

#include <cstring>

namespace headless::shader {

namespace {

/// The words of a file; false if it does not begin with a version.
bool TakeWords(std::string_view bytes, std::vector<Word>& wordsOut)
{
    Word first = 0;
    Version version;
    if (bytes.size() < sizeof first)
        return false;
    std::memcpy(&first, bytes.data(), sizeof first);
    if (!ReadVersion(first, version))
        return false;
    wordsOut.resize(bytes.size() / sizeof(Word));
    std::memcpy(wordsOut.data(), bytes.data(), wordsOut.size() * sizeof(Word));
    return true;
}

} // namespace

} // namespace headless::shader

std::string ListShader(std::string_view bytes, std::string& listingOut)
{
    using namespace headless::shader;
    std::vector<Word> words;
    AssemblyFault fault;
    if (!TakeWords(bytes, words) && !Assemble(bytes, words, fault))
        return "(" + std::to_string(fault.line) + "," + std::to_string(fault.column) +
               "): " + fault.reason;
    Bytecode code;
    Fault found;
    if (!ReadBytecode(words, code, found))
        return "word " + std::to_string(found.word) + ": " + found.reason;
    listingOut = Disassemble(code);
    return "";
}
