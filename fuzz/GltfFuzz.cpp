// Any glTF document: one file, or a text, a zero and the bytes of its buffer, which need no lengths of their
// own. What is read becomes a scene.

#include <cstdint>
#include <string>

#include "fuzz/ModelUse.h"
#include "fuzz/support/MemoryDisk.h"
#include "fuzz/support/Mutation.h"
#include "import/ReadGltf.h"

namespace {

std::string Word(size_t value)
{
    std::string word;
    for (int shift = 0; shift < 32; shift += 8)
        word += static_cast<char>(value >> shift & 0xFF);
    return word;
}

std::string DocumentOf(const std::string& input)
{
    const size_t end = input.find('\0');
    if (input.compare(0, 4, "glTF") == 0 || end == std::string::npos)
        return input;
    const std::string body = input.substr(end + 1);
    return "glTF" + Word(2) + Word(28 + end + body.size()) + Word(end) + "JSON" +
           input.substr(0, end) + Word(body.size()) + std::string("BIN\0", 4) + body;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    PutMemoryFile("fuzz.glb", DocumentOf(std::string(TextOf(data, size))));
    try {
        NoticeList notices;
        UseModel(ReadGltf("fuzz.glb", "", notices));
    } catch (const ModelFault&) {}
    return 0;
}
