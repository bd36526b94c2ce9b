#include "tests/support/CompiledEffect.h"

#include <algorithm>

namespace {

constexpr uint32_t kCullMode = 0x08; // operations of states
constexpr uint32_t kVertexShader = 0x92;
constexpr uint32_t kPixelShader = 0x93;
constexpr uint32_t kTexture = 0xA4;
constexpr uint32_t kUnknownVersion = 0xFFFF0900; // a pixel shader 9.0, which does not exist

} // namespace

void CompiledEffect::AddFloat(const std::string& semantic, float value)
{
    file.semantic = semantic;
    file.AddParameter(file.Float(semantic, value));
    file.semantic = "";
}

void CompiledEffect::AddInt(const std::string& semantic, int32_t value)
{
    file.semantic = semantic;
    file.AddParameter(file.Int(semantic, value));
    file.semantic = "";
}

/// Rows of four numbers, all 0.
void CompiledEffect::AddNumbers(const std::string& semantic, D3DXPARAMETER_CLASS kind, UINT rows,
                                UINT elements)
{
    file.semantic = semantic;
    const auto type = file.Put(file.NumberType(D3DXPT_FLOAT, kind, semantic, rows, 4, elements));
    file.AddParameter(
        {type, file.Put(EffectFile::Words(size_t{4} * rows * std::max(elements, 1u)))});
    file.semantic = "";
}

void CompiledEffect::AddVector(const std::string& semantic, UINT elements)
{
    AddNumbers(semantic, D3DXPC_VECTOR, 1, elements);
}

void CompiledEffect::AddMatrix(const std::string& semantic, UINT elements)
{
    AddNumbers(semantic, D3DXPC_MATRIX_ROWS, 4, elements);
}

void CompiledEffect::AddTexture(const std::string& semantic, const char* resourceName)
{
    file.semantic = semantic;
    const auto texture = file.Object(D3DXPT_TEXTURE, semantic);
    file.AddContent(file.lastObject, "");
    file.semantic = "";
    std::vector<EffectFile::Typed> annotations;
    if (resourceName)
        annotations.push_back(file.String("ResourceName", resourceName));
    file.AddParameter(texture, 0, annotations);
}

EffectFile::Pass CompiledEffect::PassOf(const Pass& pass, uint32_t number)
{
    EffectFile::Pass written = {"p" + std::to_string(number), {}, {}};
    if (pass.renderTarget)
        written.annotations.push_back(file.String("RenderTarget", pass.renderTarget));
    if (pass.cullMode != 0)
        written.states.push_back({kCullMode, 0, file.Int("", static_cast<int32_t>(pass.cullMode))});
    const auto add = [&](uint32_t operation, D3DXPARAMETER_TYPE type, uint32_t usage,
                         const std::string& content) {
        const auto state = static_cast<uint32_t>(written.states.size());
        written.states.push_back({operation, 0, file.Object(type, "")});
        file.AddResource({techniqueCount, number, EffectFile::kNone, state, usage}, content);
    };
    if (pass.hasVertexShader)
        add(kVertexShader, D3DXPT_VERTEXSHADER, EffectFile::kCode,
            BytesOfWords(PlainVertexShader()));
    if (pass.hasUnknownShader) {
        std::vector<uint32_t> words = PlainPixelShader();
        words[0] = kUnknownVersion;
        add(kPixelShader, D3DXPT_PIXELSHADER, EffectFile::kCode, BytesOfWords(words));
    }
    if (pass.texture)
        add(kTexture, D3DXPT_TEXTURE, EffectFile::kReference, std::string(pass.texture) + '\0');
    return written;
}

void CompiledEffect::AddTechnique(const std::vector<Pass>& passes)
{
    std::vector<EffectFile::Pass> written;
    for (uint32_t i = 0; i < passes.size(); ++i)
        written.push_back(PassOf(passes[i], i));
    file.AddTechnique("t" + std::to_string(techniqueCount++), written);
}
