#pragma once

#include "platform/headless/shader/Machine.h"

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace headless::shader {

using Four = std::array<float, 4>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// The words of a text that must assemble.
std::vector<Word> WordsOf(const std::string& text);

/// The reason for which a text, its bytecode taken without the assembler's own checks, is refused; ""
/// if it is accepted.
std::string RefusalOf(const std::string& text);

/// A program made from text, with its constants, inputs and results. Lane `i` is vertex `i`, or the
/// pixel in column i % 4 and row i / 4 of a block of two quads.
class ShaderRun {
public:
    explicit ShaderRun(const std::string& text);
    explicit ShaderRun(const std::vector<Word>& words);

    void SetFloats(unsigned number, Four values);
    void SetInts(unsigned number, int x, int y, int z);
    void SetBool(unsigned number, bool value);
    /// The same value for all lanes, or one for each of eight lanes.
    void SetInput(Word usage, Word usageIndex, Four values);
    void SetInput(Word usage, Word usageIndex, const std::array<Four, 8>& values);

    void Run();

    /// Of lane `lane` after a run.
    Four Output(Word usage, Word usageIndex, int lane = 0);
    /// The colour of a pixel shader.
    Four Colour(int lane = 0) { return Output(0, 0, lane); }
    Four At(uint32_t place, int lane);
    bool IsKilled(int lane);

    Program program;
    Machine machine;

private:
    std::vector<float> floats;
    std::vector<int> ints;
    std::vector<int> bools;
    struct Input {
        Word usage, usageIndex;
        std::array<Four, 8> values;
    };
    std::vector<Input> inputs;
};

/// Runs "ps_3_0" code that leaves its result in r0, with constants c0 to c3.
Four ResultOf(const std::string& body, const std::array<Four, 4>& constants);

} // namespace headless::shader
