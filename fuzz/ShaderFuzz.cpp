// Any bytecode: it may be refused; what is accepted runs, whatever its inputs and constants are.

#include "platform/headless/shader/Machine.h"

#include <array>
#include <cstdint>
#include <cstring>

using namespace headless::shader;

namespace {

constexpr size_t kMostWords = 2000; // keeps an input below a second

std::vector<Word> WordsOf(const uint8_t* bytes, size_t count)
{
    std::vector<Word> words(std::min(count / sizeof(Word), kMostWords));
    if (!words.empty())
        std::memcpy(words.data(), bytes, words.size() * sizeof(Word));
    return words;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count)
{
    std::vector<Word> words = WordsOf(bytes, count);
    words.push_back(kEndWord);
    Bytecode code;
    Fault fault;
    if (!ReadBytecode(words, code, fault) || !CheckBytecode(code, fault))
        return 0;
    Program program;
    BuildProgram(code, program);
    static constexpr std::array<float, 16> kFloats = {1, -2, 0.5f, 1e30f, 0, 300, -7, 3};
    static constexpr std::array<int, 8> kInts = {255, 7, -3, 0, 3, -9, 1000, 0};
    static constexpr std::array<int, 2> kBools = {1, 0};
    Machine machine;
    machine.Prepare(program, {kFloats, kInts, kBools});
    machine.Run(2);
    return 0;
}
