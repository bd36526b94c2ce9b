#include "platform/ShaderListing.h"

#include "platform/LittleEndian.h"
#include "platform/headless/shader/Assembler.h"
#include "platform/headless/shader/Disassembler.h"

#include <cstring>

namespace headless::shader {

namespace {

/// The words of a file; false if it does not begin with a version.
bool TakeWords(std::string_view bytes, std::vector<Word>& wordsOut)
{
    Version version;
    if (bytes.size() < sizeof(Word) || !ReadVersion(LoadLittle<Word>(bytes.data()), version))
        return false;
    wordsOut.resize(bytes.size() / sizeof(Word));
    std::memcpy(wordsOut.data(), bytes.data(), wordsOut.size() * sizeof(Word));
    ReorderWords(wordsOut.data(), sizeof(Word), wordsOut.size());
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
