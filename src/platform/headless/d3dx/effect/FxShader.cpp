#include "platform/headless/d3dx/effect/FxShader.h"

#include "platform/headless/d3dx/effect/FxCompiledWords.h"
#include "platform/headless/d3dx/effect/FxNumber.h"
#include "platform/headless/d3dx/language/HlCompiler.h"
#include "platform/headless/shader/Assembler.h"
#include "platform/headless/shader/Bytecode.h"

#include <algorithm>
#include <utility>

namespace headless::fx {

namespace {

/// Columns before the first word of a block, which `TextOf` leaves out of its first line: a file may have
/// very many blocks in one long line.
size_t FirstColumns(std::span<const FxToken> block)
{
    return block.empty() ? 0 : block[0].place.column - 1;
}

/// The block as text, each word on its line and, if possible, in its column, so that places in it are
/// places in the file, apart from `FirstColumns` in the first line. `;` begins a comment, but separates instructions in a block on one line.
std::string TextOf(std::span<const FxToken> block)
{
    const bool isOneLine = std::none_of(block.begin(), block.end(),
                                        [](const FxToken& word) { return word.startsLine; });
    std::string text;
    uint32_t line = block.empty() ? 1 : block[0].place.line;
    size_t lineStart = 0;
    size_t leftOut = FirstColumns(block); // of the current line
    bool isComment = false;
    for (const FxToken& word : block) {
        isComment = isComment && !word.startsLine;
        if (word.Is(";"))
            isComment = !isOneLine;
        for (; line < word.place.line; ++line) {
            text += '\n';
            lineStart = text.size();
            leftOut = 0;
        }
        if (isComment || word.Is(";"))
            continue;
        while (text.size() - lineStart + leftOut + 1 < word.place.column)
            text += ' ';
        if (word.spaceBefore && text.size() > lineStart && text.back() != ' ')
            text += ' ';
        text += word.text;
    }
    return text;
}

std::string KindFault(bool isVertex)
{
    return isVertex ? "it is a pixel shader" : "it is a vertex shader";
}

/// Sets registers of one kind of constants.
HRESULT SetFloats(IDirect3DDevice9& device, bool isVertex, UINT first, const float* values,
                  UINT count)
{
    return isVertex ? device.SetVertexShaderConstantF(first, values, count)
                    : device.SetPixelShaderConstantF(first, values, count);
}
HRESULT SetWholes(IDirect3DDevice9& device, bool isVertex, UINT first, const int* values,
                  UINT count)
{
    return isVertex ? device.SetVertexShaderConstantI(first, values, count)
                    : device.SetPixelShaderConstantI(first, values, count);
}
HRESULT SetTruths(IDirect3DDevice9& device, bool isVertex, UINT first, const BOOL* values,
                  UINT count)
{
    return isVertex ? device.SetVertexShaderConstantB(first, values, count)
                    : device.SetPixelShaderConstantB(first, values, count);
}

HRESULT SetNumber(IDirect3DDevice9& device, bool isVertex, const FxNumberBinding& row)
{
    HRESULT first = D3D_OK;
    for (UINT i = 0; i < row.registerCount; ++i) {
        const UINT place = row.firstRegister + i;
        HRESULT result = D3D_OK;
        if (row.set == FxRegisterSet::Truth) {
            const BOOL truth = row.Value(i, 0, D3DXPT_BOOL) != 0 ? TRUE : FALSE;
            result = SetTruths(device, isVertex, place, &truth, 1);
        } else if (row.set == FxRegisterSet::Whole) {
            int wholes[4];
            for (UINT c = 0; c < 4; ++c)
                wholes[c] = static_cast<int>(row.Value(i, c, D3DXPT_INT));
            result = SetWholes(device, isVertex, place, wholes, 1);
        } else {
            float floats[4];
            for (UINT c = 0; c < 4; ++c)
                floats[c] = FxFloatOfCell(row.Value(i, c, D3DXPT_FLOAT), D3DXPT_FLOAT);
            result = SetFloats(device, isVertex, place, floats, 1);
        }
        first = FAILED(first) ? first : result;
    }
    return first;
}

/// What was computed beforehand, a register after the other.
HRESULT SetOutputs(IDirect3DDevice9& device, bool isVertex, const FxProgram& program)
{
    HRESULT first = D3D_OK;
    const auto keep = [&](HRESULT result) { first = FAILED(first) ? first : result; };
    for (const UINT place : program.Written(FxProgramTable::FloatOut)) {
        float floats[4];
        for (UINT c = 0; c < 4; ++c)
            floats[c] = static_cast<float>(program.Output(FxProgramTable::FloatOut, place * 4 + c));
        keep(SetFloats(device, isVertex, place, floats, 1));
    }
    for (const UINT place : program.Written(FxProgramTable::WholeOut)) {
        int wholes[4];
        for (UINT c = 0; c < 4; ++c)
            wholes[c] = FxTruncate(program.Output(FxProgramTable::WholeOut, place * 4 + c));
        keep(SetWholes(device, isVertex, place, wholes, 1));
    }
    for (const UINT place : program.Written(FxProgramTable::TruthOut)) {
        const BOOL truth =
            program.Output(FxProgramTable::TruthOut, place * 4) != 0.0 ? TRUE : FALSE;
        keep(SetTruths(device, isVertex, place, &truth, 1));
    }
    return first;
}

} // namespace

bool ReadFxShader(std::string_view code, bool isVertex, const FxParameterNames& parameters,
                  size_t& rowsLeftInOut, FxShader& shaderOut)
{
    std::vector<DWORD> words = FxWordsOf(code);
    shader::Bytecode bytecode;
    shader::Fault fault;
    const std::vector<shader::Word> checked(words.begin(), words.end());
    if (!shader::ReadBytecode(checked, bytecode, fault) ||
        !shader::CheckBytecode(bytecode, fault)) {
        shaderOut.fault = fault.reason;
        return true;
    }
    if (bytecode.version.isPixel == isVertex) {
        shaderOut.fault = KindFault(isVertex);
        return true;
    }
    std::vector<FxConstant> constants;
    if (const auto table = FxFindComment(words, "CTAB"))
        if (!FxReadConstantTable(*table, rowsLeftInOut, constants) ||
            !shaderOut.inputs.Bind(constants, parameters, rowsLeftInOut))
            return false;
    if (const auto before = FxFindComment(words, "PRES")) {
        shaderOut.beforehand = std::make_shared<FxProgram>();
        if (!shaderOut.beforehand->Read(*before, parameters, rowsLeftInOut))
            return false;
    }
    shaderOut.words = std::move(words);
    return true;
}

HRESULT FxShader::SetConstants(IDirect3DDevice9& device, bool isVertex)
{
    HRESULT first = D3D_OK;
    for (const FxNumberBinding& row : inputs.numbers) {
        const HRESULT result = SetNumber(device, isVertex, row);
        first = FAILED(first) ? first : result;
    }
    if (!beforehand)
        return first;
    beforehand->Run();
    const HRESULT result = SetOutputs(device, isVertex, *beforehand);
    return FAILED(first) ? first : result;
}

bool FxShader::Reads(const FxParameter& parameter) const
{
    return inputs.Reads(parameter) || (beforehand && beforehand->inputs.Reads(parameter));
}

uint64_t FxShader::Newest() const
{
    return std::max(inputs.Newest(), beforehand ? beforehand->inputs.Newest() : 0);
}

void TakeFxShader(const hl::HlShader& made, bool isVertex, const FxParameterNames& parameters,
                  const FxDiagnostics& files, size_t& rowsLeftInOut, FxShader& shaderOut)
{
    shaderOut.place.line = 0;
    for (const hl::HlMessage& message : made.messages) {
        const std::string text =
            "X" + std::to_string(static_cast<int>(message.kind)) + ": " + message.text;
        if (message.isWarning) {
            shaderOut.warnings.push_back(files.PlaceText(message.place) + ": warning " + text);
        } else if (shaderOut.fault.empty()) {
            shaderOut.fault = "error " + text;
            shaderOut.place = message.place;
        } else {
            shaderOut.fault += "; " + files.PlaceText(message.place) + ": error " + text;
        }
    }
    if (!made.IsMade())
        return;
    std::string code;
    for (const shader::Word word : made.words)
        for (int shift = 0; shift < 32; shift += 8)
            code += static_cast<char>(word >> shift & 0xFF);
    if (!ReadFxShader(code, isVertex, parameters, rowsLeftInOut, shaderOut)) {
        shaderOut.fault = "the shaders of the effect read too many parameters";
        return;
    }
    // Values are stored row by row, whatever order their declaration names; the table knows the order of
    // the registers.
    for (FxNumberBinding& row : shaderOut.inputs.numbers)
        if (row.parameter->kind == D3DXPC_MATRIX_COLUMNS)
            row.isTransposed = !row.isTransposed;
}

void AssembleFxShader(std::span<const FxToken> block, bool isVertex, FxShader& shaderOut)
{
    std::vector<shader::Word> words;
    shader::AssemblyFault fault;
    const bool isMade = shader::Assemble(TextOf(block), words, fault);
    const bool isOfKind = isMade && (words[0] >> 16 == 0xFFFE) == isVertex;
    if (isMade && !isOfKind)
        fault = {KindFault(isVertex), 1, 1};
    if (isOfKind) {
        shaderOut.words.assign(words.begin(), words.end());
        return;
    }
    shaderOut.fault = fault.reason;
    if (!block.empty()) {
        shaderOut.place = block[0].place;
        if (isMade || fault.line == 0)
            return;
        shaderOut.place.line += static_cast<uint32_t>(fault.line - 1);
        shaderOut.place.column = static_cast<uint32_t>(static_cast<size_t>(fault.column) +
                                                       (fault.line == 1 ? FirstColumns(block) : 0));
    }
}

HRESULT FxShader::Set(IDirect3DDevice9& device, bool isVertex)
{
    HRESULT result = D3D_OK;
    if (isVertex) {
        if (!vertexShader)
            result = device.CreateVertexShader(words.data(), vertexShader.Out());
        return FAILED(result) ? result : device.SetVertexShader(vertexShader.Get());
    }
    if (!pixelShader)
        result = device.CreatePixelShader(words.data(), pixelShader.Out());
    return FAILED(result) ? result : device.SetPixelShader(pixelShader.Get());
}

} // namespace headless::fx
