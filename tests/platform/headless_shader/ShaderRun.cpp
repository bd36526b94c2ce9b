#include "tests/platform/headless_shader/ShaderRun.h"

#include "platform/headless/shader/Assembler.h"
#include "platform/headless/shader/RegisterTable.h"

#include <gtest/gtest.h>

namespace headless::shader {

std::vector<Word> WordsOf(const std::string& text)
{
    std::vector<Word> words;
    AssemblyFault fault;
    EXPECT_TRUE(Assemble(text, words, fault))
        << text << "\n(" << fault.line << "," << fault.column << ") " << fault.reason;
    return words;
}

std::string RefusalOf(const std::string& text)
{
    std::vector<Word> words;
    AssemblyFault assembly;
    if (!AssembleUnchecked(text, words, assembly))
        return "not assembled: " + assembly.reason;
    Bytecode code;
    Fault fault;
    if (ReadBytecode(words, code, fault))
        CheckBytecode(code, fault);
    return fault.reason;
}

ShaderRun::ShaderRun(const std::string& text) : ShaderRun(WordsOf(text))
{}

ShaderRun::ShaderRun(const std::vector<Word>& words)
    : floats(kSoftwareConstants * 4),
      ints(kSoftwareSwitches * 4),
      bools(kSoftwareSwitches)
{
    Bytecode code;
    Fault fault;
    EXPECT_TRUE(ReadBytecode(words, code, fault)) << fault.reason;
    BuildProgram(code, program);
}

void ShaderRun::SetFloats(unsigned number, Four values)
{
    std::copy(values.begin(), values.end(), floats.begin() + number * 4);
}

void ShaderRun::SetInts(unsigned number, int x, int y, int z)
{
    ints[number * 4] = x;
    ints[number * 4 + 1] = y;
    ints[number * 4 + 2] = z;
}

void ShaderRun::SetBool(unsigned number, bool value)
{
    bools[number] = value ? 1 : 0;
}

void ShaderRun::SetInput(Word usage, Word usageIndex, Four values)
{
    std::array<Four, 8> all;
    all.fill(values);
    SetInput(usage, usageIndex, all);
}

void ShaderRun::SetInput(Word usage, Word usageIndex, const std::array<Four, 8>& values)
{
    inputs.push_back({usage, usageIndex, values});
}

void ShaderRun::Run()
{
    machine.Prepare(program, {floats, ints, bools});
    for (const Input& input : inputs)
        for (const Binding& binding : program.inputs) {
            if (binding.usage != input.usage || binding.usageIndex != input.usageIndex)
                continue;
            for (uint32_t c = 0; c < 4; ++c)
                for (uint32_t lane = 0; lane < 8; ++lane)
                    reinterpret_cast<float*>(machine.At(binding.at + c * kMaxGroups))[lane] =
                        input.values[lane][c];
        }
    machine.Run(2);
}

Four ShaderRun::At(uint32_t place, int lane)
{
    Four values;
    for (uint32_t c = 0; c < 4; ++c)
        values[c] = reinterpret_cast<float*>(machine.At(place + c * kMaxGroups))[lane];
    return values;
}

Four ShaderRun::Output(Word usage, Word usageIndex, int lane)
{
    for (const Binding& output : program.outputs)
        if (output.usage == usage && output.usageIndex == usageIndex)
            return At(output.at, lane);
    ADD_FAILURE() << "no such output";
    return {};
}

bool ShaderRun::IsKilled(int lane)
{
    return (LaneBits(machine.At(program.kill)[lane / 4]) >> (lane % 4) & 1) != 0;
}

Four ResultOf(const std::string& body, const std::array<Four, 4>& constants)
{
    ShaderRun run("ps_3_0\n" + body + "\nmov oC0, r0");
    for (unsigned i = 0; i < 4; ++i)
        run.SetFloats(i, constants[i]);
    run.Run();
    return run.Colour();
}

} // namespace headless::shader
