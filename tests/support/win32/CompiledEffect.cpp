#include "tests/support/win32/CompiledEffect.h"

#include "platform/ComPointer.h"

#include <bit>
#include <cstring>
#include <string_view>

namespace {

using Words = std::vector<uint32_t>;

constexpr uint32_t kMagic = 0xFEFF0901;
constexpr uint32_t kNoElement = 0xFFFFFFFF;
constexpr uint32_t kShaderCode = 0; // usages of a resource
constexpr uint32_t kParameterName = 1;
constexpr uint32_t kCullMode = 0x08; // operations of states
constexpr uint32_t kVertexShader = 0x92;
constexpr uint32_t kPixelShader = 0x93;
constexpr uint32_t kTexture = 0xA4;
constexpr uint32_t kUnknownPixelShader = 0xFFFF0900; // version 9 does not exist

void Append(Words& target, const Words& words)
{
    target.insert(target.end(), words.begin(), words.end());
}

/// Appends the bytes, padded to a multiple of four.
void AppendBytes(Words& target, const std::string& bytes)
{
    const size_t first = target.size();
    target.resize(first + (bytes.size() + 3) / 4);
    if (!bytes.empty())
        std::memcpy(&target[first], bytes.data(), bytes.size());
}

std::string Assemble(std::string_view text)
{
    ComPointer<ID3DXBuffer> code;
    ComPointer<ID3DXBuffer> errors;
    if (FAILED(D3DXAssembleShader(text.data(), static_cast<UINT>(text.size()), nullptr, nullptr, 0,
                                  code.Out(), errors.Out())))
        return {};
    return {static_cast<const char*>(code->GetBufferPointer()), code->GetBufferSize()};
}

} // namespace

uint32_t CompiledEffect::AddWords(const Words& words)
{
    const auto offset = static_cast<uint32_t>(pool.size() * sizeof(uint32_t));
    Append(pool, words);
    return offset;
}

uint32_t CompiledEffect::AddText(const std::string& text)
{
    if (text.empty())
        return 0;
    Words words = {static_cast<uint32_t>(text.size() + 1)};
    AppendBytes(words, text + '\0');
    return AddWords(words);
}

uint32_t CompiledEffect::AddType(D3DXPARAMETER_TYPE type, D3DXPARAMETER_CLASS kind,
                                 const std::string& name, const std::string& semantic,
                                 UINT elements, const Words& extent)
{
    Words words = {static_cast<uint32_t>(type), static_cast<uint32_t>(kind), AddText(name),
                   AddText(semantic), elements};
    Append(words, extent);
    return AddWords(words);
}

uint32_t CompiledEffect::AddObject(std::string text)
{
    strings.push_back(std::move(text));
    hasString.push_back(true);
    return AddWords({static_cast<uint32_t>(strings.size())});
}

void CompiledEffect::AddParameter(uint32_t typeOffset, uint32_t valueOffset,
                                  const Words& annotations)
{
    Append(parameters, {typeOffset, valueOffset, 0, static_cast<uint32_t>(annotations.size() / 2)});
    Append(parameters, annotations);
    ++parameterCount;
}

void CompiledEffect::AddFloat(const std::string& semantic, float value)
{
    const uint32_t type = AddType(D3DXPT_FLOAT, D3DXPC_SCALAR, semantic, semantic, 0, {1, 1});
    AddParameter(type, AddWords({std::bit_cast<uint32_t>(value)}));
}

void CompiledEffect::AddInt(const std::string& semantic, int32_t value)
{
    const uint32_t type = AddType(D3DXPT_INT, D3DXPC_SCALAR, semantic, semantic, 0, {1, 1});
    AddParameter(type, AddWords({static_cast<uint32_t>(value)}));
}

void CompiledEffect::AddVector(const std::string& semantic, UINT elements)
{
    const uint32_t type =
        AddType(D3DXPT_FLOAT, D3DXPC_VECTOR, semantic, semantic, elements, {4, 1});
    AddParameter(type, AddWords(Words(elements ? 4 * elements : 4)));
}

void CompiledEffect::AddMatrix(const std::string& semantic, UINT elements)
{
    const uint32_t type =
        AddType(D3DXPT_FLOAT, D3DXPC_MATRIX_ROWS, semantic, semantic, elements, {4, 4});
    AddParameter(type, AddWords(Words(elements ? 16 * elements : 16)));
}

CompiledEffect::Words CompiledEffect::StringAnnotation(const std::string& name,
                                                       const std::string& text)
{
    const uint32_t type = AddType(D3DXPT_STRING, D3DXPC_OBJECT, name, "", 0, {});
    return {type, AddObject(text + '\0')};
}

void CompiledEffect::AddTexture(const std::string& semantic, const char* resourceName)
{
    const uint32_t type = AddType(D3DXPT_TEXTURE, D3DXPC_OBJECT, semantic, semantic, 0, {});
    const uint32_t value = AddObject("");
    AddParameter(type, value,
                 resourceName ? StringAnnotation("ResourceName", resourceName) : Words());
}

void CompiledEffect::AddObjectState(Words& states, uint32_t operation, D3DXPARAMETER_TYPE type,
                                    const Resource& resource)
{
    const uint32_t typeOffset = AddType(type, D3DXPC_OBJECT, "", "", 0, {});
    const uint32_t valueOffset = AddObject("");
    hasString.back() = false;
    Append(states, {operation, 0, typeOffset, valueOffset});
    resources.push_back(resource);
}

void CompiledEffect::AddTechnique(const std::vector<Pass>& passes)
{
    Append(techniques, {AddText("t" + std::to_string(techniqueCount)), 0,
                        static_cast<uint32_t>(passes.size())});
    for (uint32_t i = 0; i < passes.size(); ++i) {
        const Pass& pass = passes[i];
        const Words annotations =
            pass.renderTarget ? StringAnnotation("RenderTarget", pass.renderTarget) : Words();
        Words states; // four words each
        if (pass.cullMode != 0) {
            const uint32_t type = AddType(D3DXPT_INT, D3DXPC_SCALAR, "", "", 0, {1, 1});
            Append(states, {kCullMode, 0, type, AddWords({pass.cullMode})});
        }
        if (pass.hasVertexShader)
            AddObjectState(states, kVertexShader, D3DXPT_VERTEXSHADER,
                           {techniqueCount, i, static_cast<uint32_t>(states.size() / 4),
                            kShaderCode, Assemble("vs_1_1\ndcl_position v0\nmov oPos, v0\n")});
        if (pass.hasUnknownShader) {
            std::string code = Assemble("ps_2_0\ndef c0, 0, 0, 0, 0\nmov oC0, c0\n");
            std::memcpy(code.data(), &kUnknownPixelShader, sizeof kUnknownPixelShader);
            AddObjectState(
                states, kPixelShader, D3DXPT_PIXELSHADER,
                {techniqueCount, i, static_cast<uint32_t>(states.size() / 4), kShaderCode, code});
        }
        if (pass.texture)
            AddObjectState(states, kTexture, D3DXPT_TEXTURE,
                           {techniqueCount, i, static_cast<uint32_t>(states.size() / 4),
                            kParameterName, std::string(pass.texture) + '\0'});
        Append(techniques,
               {AddText("p" + std::to_string(i)), static_cast<uint32_t>(annotations.size() / 2),
                static_cast<uint32_t>(states.size() / 4)});
        Append(techniques, annotations);
        Append(techniques, states);
    }
    ++techniqueCount;
}

std::string CompiledEffect::Bytes() const
{
    Words file = {kMagic, static_cast<uint32_t>(pool.size() * sizeof(uint32_t))};
    Append(file, pool);
    Append(file, {parameterCount, techniqueCount, 0, static_cast<uint32_t>(strings.size() + 1)});
    Append(file, parameters);
    Append(file, techniques);
    Words stringWords;
    uint32_t stringCount = 0;
    for (uint32_t i = 0; i < strings.size(); ++i) {
        if (!hasString[i])
            continue;
        Append(stringWords, {i + 1, static_cast<uint32_t>(strings[i].size())});
        AppendBytes(stringWords, strings[i]);
        ++stringCount;
    }
    Append(file, {stringCount, static_cast<uint32_t>(resources.size())});
    Append(file, stringWords);
    for (const Resource& resource : resources) {
        Append(file, {resource.technique, resource.pass, kNoElement, resource.state, resource.usage,
                      static_cast<uint32_t>(resource.content.size())});
        AppendBytes(file, resource.content);
    }
    return {reinterpret_cast<const char*>(file.data()), file.size() * sizeof(uint32_t)};
}
