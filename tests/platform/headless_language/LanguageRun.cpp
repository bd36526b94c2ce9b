#include "tests/platform/headless_language/LanguageRun.h"

#include <gtest/gtest.h>

#include "platform/headless/d3dx/effect/FxCompiledWords.h"
#include "platform/headless/d3dx/effect/FxPreprocessor.h"
#include "platform/headless/shader/Disassembler.h"

namespace headless::hl {

CompiledText CompileText(const std::string& text, const std::string& profile,
                         const std::string& arguments)
{
    const std::string whole = text + "\ncompile " + profile + " main(" + arguments + ")";
    fx::FxDiagnostics diagnostics;
    fx::FxSources sources(nullptr, false);
    fx::FxPreprocessor preprocessor(sources, diagnostics);
    std::vector<FxToken> words;
    EXPECT_TRUE(preprocessor.Define(nullptr) && preprocessor.Run("a.fx", whole, words))
        << diagnostics.Text();
    size_t at = words.size();
    while (at > 0 && !words[at - 1].Is("compile"))
        --at;
    HlCompiler compiler(words);
    CompiledText result;
    result.shader = compiler.Compile(words[at], words[at + 1], at + 2);
    for (const HlMessage& message : result.shader->messages)
        result.messages +=
            (message.isWarning ? "warning " : "") + std::to_string(message.place.line) + "," +
            std::to_string(message.place.column) + " X" +
            std::to_string(static_cast<int>(message.kind)) + ": " + message.text + "\n";
    return result;
}

std::string ListingOf(const HlShader& made)
{
    shader::Bytecode code;
    shader::Fault fault;
    return shader::ReadBytecode(made.words, code, fault) ? shader::Disassemble(code) : fault.reason;
}

LanguageRun::LanguageRun(const std::string& text, const std::string& profile,
                         const std::string& arguments)
    : made(CompileText(text, profile, arguments))
{
    EXPECT_TRUE(IsMade()) << profile << '\n' << text << '\n' << made.messages;
    if (!IsMade())
        return;
    run = std::make_unique<shader::ShaderRun>(made.shader->words);
    const std::vector<DWORD> words(made.shader->words.begin(), made.shader->words.end());
    size_t rows = 1000;
    const auto table = fx::FxFindComment(words, "CTAB");
    EXPECT_TRUE(table && fx::FxReadConstantTable(*table, rows, constants));
}

const fx::FxConstant* LanguageRun::Find(const std::string& name) const
{
    for (const fx::FxConstant& constant : constants)
        if (constant.name == name)
            return &constant;
    return nullptr;
}

void LanguageRun::Set(const std::string& name, const std::vector<Four>& registers)
{
    const fx::FxConstant* const constant = Find(name);
    for (UINT i = 0; constant && i < std::min<UINT>(constant->registerCount,
                                                    static_cast<UINT>(registers.size()));
         ++i)
        run->SetFloats(constant->firstRegister + i, registers[i]);
}

void LanguageRun::SetWhole(const std::string& name, int value)
{
    for (const fx::FxConstant& constant : constants)
        if (constant.name == name && constant.set == fx::FxRegisterSet::Whole)
            run->SetInts(constant.firstRegister, value, 0, 1);
}

Four LanguageRun::Result()
{
    if (!run)
        return {};
    run->Run();
    return run->program.version.isPixel ? run->Colour() : run->Output(5, 0);
}

std::string TextOf(const std::string& declarations, const std::string& expression,
                   const std::string& profile)
{
    if (profile.starts_with("ps"))
        return declarations + "\nfloat4 main() : COLOR { return " + expression + "; }";
    return declarations +
           "\nvoid main(out float4 place : POSITION, out float4 result : TEXCOORD0) { place = 0; result = " +
           expression + "; }";
}

} // namespace headless::hl
