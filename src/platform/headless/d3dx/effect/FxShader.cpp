#include "platform/headless/d3dx/effect/FxShader.h"

#include "platform/headless/shader/Assembler.h"

#include <algorithm>

namespace headless::fx {

namespace {

/// The block as text, each word on its line and, if possible, in its column, so that places in it are
/// places in the file. `;` begins a comment, but separates instructions in a block on one line.
std::string TextOf(std::span<const FxToken> block)
{
    const bool isOneLine = std::none_of(block.begin(), block.end(),
                                        [](const FxToken& word) { return word.startsLine; });
    std::string text;
    uint32_t line = block.empty() ? 1 : block[0].place.line;
    size_t lineStart = 0;
    bool isComment = false;
    for (const FxToken& word : block) {
        isComment = isComment && !word.startsLine;
        if (word.Is(";"))
            isComment = !isOneLine;
        for (; line < word.place.line; ++line) {
            text += '\n';
            lineStart = text.size();
        }
        if (isComment || word.Is(";"))
            continue;
        while (text.size() - lineStart + 1 < word.place.column)
            text += ' ';
        if (word.spaceBefore && text.size() > lineStart && text.back() != ' ')
            text += ' ';
        text += word.text;
    }
    return text;
}

} // namespace

void AssembleFxShader(std::span<const FxToken> block, bool isVertex, FxShader& shaderOut)
{
    std::vector<shader::Word> words;
    shader::AssemblyFault fault;
    const bool isMade = shader::Assemble(TextOf(block), words, fault);
    const bool isOfKind = isMade && (words[0] >> 16 == 0xFFFE) == isVertex;
    if (isMade && !isOfKind)
        fault = {isVertex ? "it is a pixel shader" : "it is a vertex shader", 1, 1};
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
        shaderOut.place.column = static_cast<uint32_t>(fault.column);
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
