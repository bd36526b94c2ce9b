// Compiled effects that are cut or damaged: they are refused or read, and what is read can be applied.

#include "platform/EffectListing.h"
#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/support/EffectFile.h"
#include "tests/support/HostCost.h"

#include <bit>

using Typed = EffectFile::Typed;

namespace {

constexpr uint32_t kNone = EffectFile::kNone;

std::string NumbersFile()
{
    EffectFile file;
    file.semantic = "Size";
    file.AddParameter(file.Float("size", 2.0f), 1);
    file.AddParameter(file.Matrix("bones", std::vector<float>(32, 1.0f), 2));
    file.AddParameter(file.Floats("tint", {1.0f, 2.0f, 3.0f}), 0, {file.Int("order", 3)});
    file.AddTechnique("t", {{"p", {}, {}}});
    return file.Bytes();
}

std::string StructFile()
{
    EffectFile file;
    const auto inner =
        file.StructType("inner", {file.NumberType(D3DXPT_INT, D3DXPC_SCALAR, "n", 1, 1, 2)});
    const auto type = file.StructType(
        "lamp", {file.NumberType(D3DXPT_FLOAT, D3DXPC_VECTOR, "place", 1, 3), inner}, 2);
    file.AddParameter({file.Put(type), file.Put(EffectFile::Words(10, 0x3F800000))});
    file.AddTechnique("t", {{"p", {{0x94, 0, file.Floats("", {1.0f, 2.0f})}}, {}}});
    return file.Bytes();
}

std::string TextFile()
{
    EffectFile file;
    file.AddParameter(file.String("author", "Ada"));
    const Typed map = file.Object(D3DXPT_TEXTURE, "map");
    file.AddContent(file.lastObject, "");
    file.AddParameter(map, 0, {file.String("ResourceName", "sand.png")});
    file.AddTechnique("t", {{"p", {}, {file.String("RenderTarget", "r")}}, {"q", {}, {}}});
    return file.Bytes();
}

std::string StatesFile()
{
    EffectFile file;
    file.AddTechnique("t", {{"p",
                             {{0x08, 0, file.Int("", 1)},
                              {0x67, 3, file.Int("", 2)},
                              {0x7B, 0, file.Matrix("", std::vector<float>(16, 1.0f))},
                              {0x84, 1, file.Int("", 1)},
                              {0x88, 1, file.Floats("", {1.0f, 2.0f, 3.0f})},
                              {0x91, 1, file.Int("", 1)}},
                             {}}});
    return file.Bytes();
}

std::string ReferenceFile()
{
    EffectFile file;
    file.AddParameter(file.Int("cull", 1));
    file.AddTechnique("t", {{"p", {{0x08, 0, file.Int("", 0)}}, {}}});
    file.AddResource({0, 0, kNone, 0, EffectFile::kReference}, std::string("cull\0", 5));
    return file.Bytes();
}

const TableConstant kInputConstant = {"v", 2, 0, 1, D3DXPC_VECTOR, D3DXPT_FLOAT, 1, 4, 1, {}};

std::string ComputationFile()
{
    EffectFile file;
    file.AddParameter(file.Floats("v", {1.0f, 2.0f, 3.0f, 4.0f}));
    file.AddTechnique("t", {{"p", {{0x3C, 0, file.Float("", 0.0f)}}, {}}});
    file.AddResource({0, 0, kNone, 0, EffectFile::kCode},
                     BytesOfWords(ComputationWords({kInputConstant}, {2.0}, 2,
                                                   {0xA0500004u, 2, 0, 1, 0, 1, 2, 0, 2, 0, 0, 7, 0,
                                                    0x50000004u, 2, 0, 7, 0, 0, 7, 0, 0, 4, 0})));
    return file.Bytes();
}

std::string SamplerFile()
{
    EffectFile file;
    file.AddParameter(file.Object(D3DXPT_TEXTURE, "map"));
    file.AddContent(1, "");
    const Typed none = file.Object(D3DXPT_TEXTURE, "");
    const Typed wrap = file.Int("", 3);
    file.AddParameter(
        {file.Put(file.ObjectType(D3DXPT_SAMPLER2D, "look")),
         file.Put({2, 0xA4, 0, none.type, none.value, 0xA5, 0, wrap.type, wrap.value})});
    file.AddResource({kNone, 1, kNone, 0, EffectFile::kReference}, std::string("map\0", 4));
    file.AddTechnique("t", {{"p", {{0x93, 0, file.Object(D3DXPT_PIXELSHADER, "")}}, {}}});
    const auto table =
        ConstantTableWords({{"look", 3, 2, 1, D3DXPC_OBJECT, D3DXPT_SAMPLER2D, 1, 1, 1, {}}});
    file.AddResource({0, 0, kNone, 0, EffectFile::kCode},
                     ShaderBytes(PlainPixelShader(), ProgramComment("CTAB", table)));
    return file.Bytes();
}

std::string ShaderFile()
{
    EffectFile file;
    const auto type =
        file.StructType("lamp", {file.NumberType(D3DXPT_FLOAT, D3DXPC_SCALAR, "reach", 1, 1),
                                 file.NumberType(D3DXPT_FLOAT, D3DXPC_MATRIX_ROWS, "turn", 2, 2)});
    file.AddParameter({file.Put(type), file.Put(EffectFile::Words(5, 0x3F800000))});
    file.AddTechnique("t", {{"p", {{0x92, 0, file.Object(D3DXPT_VERTEXSHADER, "")}}, {}}});
    const auto table = ConstantTableWords(
        {{"lamp",
          2,
          3,
          3,
          D3DXPC_STRUCT,
          D3DXPT_VOID,
          1,
          5,
          1,
          {{"reach", 2, 0, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}},
           {"turn", 2, 0, 2, D3DXPC_MATRIX_COLUMNS, D3DXPT_FLOAT, 2, 2, 1, {}}}}});
    file.AddResource({0, 0, kNone, 0, EffectFile::kCode},
                     ShaderBytes(PlainVertexShader(), ProgramComment("CTAB", table)));
    return file.Bytes();
}

std::string BeforehandFile()
{
    EffectFile file;
    file.AddParameter(file.Floats("v", {1.0f, 2.0f, 3.0f, 4.0f}));
    file.AddTechnique("t", {{"p", {{0x92, 0, file.Object(D3DXPT_VERTEXSHADER, "")}}, {}}});
    const auto program =
        ComputationWords({kInputConstant}, {2.0}, 3,
                         {0xA0500004u, 2, 0, 1, 0, 0,           2, 0, 0, 4, 12, 0x10000001u, 1, 0,
                          2,           0, 0, 5, 4, 0x10000001u, 1, 0, 2, 1, 0,  6,           8});
    file.AddResource({0, 0, kNone, 0, EffectFile::kCode},
                     ShaderBytes(PlainVertexShader(), ProgramComment("PRES", program)));
    return file.Bytes();
}

std::string SelectorFile()
{
    EffectFile file;
    file.AddParameter(file.Float("v", 1.0f));
    file.lastObject = 2;
    file.AddParameter(
        {file.Put(file.ObjectType(D3DXPT_PIXELSHADER, "looks", 2)), file.Put({1, 2})});
    file.AddContent(1, BytesOfWords(PlainPixelShader()));
    file.AddContent(2, BytesOfWords(PlainPixelShader()));
    file.AddTechnique("t", {{"p", {{0x93, 0, file.Object(D3DXPT_PIXELSHADER, "")}}, {}}});
    std::vector<uint32_t> selector = {8};
    for (const auto& words :
         {WordsOfBytes(std::string("looks\0\0\0", 8)),
          ComputationWords({kInputConstant}, {}, 1, {0x10000001u, 1, 0, 2, 0, 0, 4, 0})})
        selector.insert(selector.end(), words.begin(), words.end());
    file.AddResource({0, 0, kNone, 0, EffectFile::kSelector}, BytesOfWords(selector));
    return file.Bytes();
}

class CompiledDamage : public EffectTest {
protected:
    /// Whether the bytes are an effect; if so, it is listed and all its passes are applied.
    bool Use(const std::string& bytes)
    {
        Com<ID3DXEffect> effect;
        const HRESULT result =
            D3DXCreateEffect(device.Get(), bytes.data(), static_cast<UINT>(bytes.size()), nullptr,
                             nullptr, 0, nullptr, effect.Out(), nullptr);
        EXPECT_EQ(SUCCEEDED(result), static_cast<bool>(effect));
        EXPECT_TRUE(SUCCEEDED(result) || result == D3DXERR_INVALIDDATA);
        std::string listing;
        EXPECT_EQ(ListEffect("memory", bytes, listing).empty(), SUCCEEDED(result));
        EXPECT_EQ(listing.empty(), FAILED(result));
        if (!effect)
            return false;
        D3DXEFFECT_DESC desc = {};
        effect->GetDesc(&desc);
        for (UINT t = 0; t < desc.Techniques; ++t)
            Apply(*effect.Get(), effect->GetTechnique(t));
        device->SetVertexShader(nullptr);
        device->SetPixelShader(nullptr);
        return true;
    }

    const std::string files[10] = {NumbersFile(),    StructFile(),      TextFile(),    StatesFile(),
                                   ReferenceFile(),  ComputationFile(), SamplerFile(), ShaderFile(),
                                   BeforehandFile(), SelectorFile()};

private:
    static void Apply(ID3DXEffect& effect, D3DXHANDLE technique)
    {
        UINT passes = 0;
        effect.SetTechnique(technique);
        effect.ValidateTechnique(technique);
        EXPECT_EQ(effect.Begin(&passes, 0), D3D_OK);
        for (UINT pass = 0; pass < passes; ++pass) {
            effect.BeginPass(pass);
            effect.CommitChanges();
            effect.EndPass();
        }
        effect.End();
    }
};

} // namespace

TEST_F(CompiledDamage, TheWholeFilesAreEffects)
{
    for (const std::string& bytes : files)
        EXPECT_TRUE(Use(bytes)) << &bytes - files;
}

TEST_F(CompiledDamage, EveryCutIsRefused)
{
    for (const std::string& bytes : files)
        for (size_t size = 4; size < bytes.size(); ++size)
            EXPECT_FALSE(Use(bytes.substr(0, size))) << &bytes - files << " cut at " << size;
}

TEST_F(CompiledDamage, EveryChangedByteIsReadOrRefused)
{
    size_t read = 0, refused = 0;
    const auto step = static_cast<size_t>(5 / AffordableCases(5));
    testing::internal::CaptureStderr();
    for (const std::string& bytes : files) {
        for (size_t at = 4; at < bytes.size(); at += step) {
            for (const char change : {'\x01', '\x80', '\xFF'}) {
                std::string damaged = bytes;
                damaged[at] = static_cast<char>(damaged[at] ^ change);
                ++(Use(damaged) ? read : refused);
            }
        }
    }
    testing::internal::GetCapturedStderr();
    EXPECT_GT(read, static_cast<size_t>(AffordableCases(1000)));
    EXPECT_GT(refused, static_cast<size_t>(AffordableCases(1000)));
}
