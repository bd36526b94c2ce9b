// What a compiled effect declares: parameters, annotations, techniques and passes.

#include "tests/platform/d3dx/CompiledEffectFixture.h"

#include <gmock/gmock.h>

#include <bit>

using testing::ElementsAre;
using Typed = EffectFile::Typed;

namespace {

class CompiledEffect : public CompiledEffectFixture {};

uint32_t BitsOf(float value)
{
    return std::bit_cast<uint32_t>(value);
}

} // namespace

TEST_F(CompiledEffect, NumbersHaveTheirTypesAndValues)
{
    file.AddParameter(
        {file.Put(file.NumberType(D3DXPT_BOOL, D3DXPC_SCALAR, "on", 1, 1)), file.Put({1})});
    file.AddParameter(file.Int("count", -7));
    file.AddParameter(file.Float("size", 2.5f));
    file.AddParameter(file.Floats("tint", {0.25f, 0.5f, 0.75f}));
    AddPass({});
    ASSERT_TRUE(Load());
    BOOL on = FALSE;
    EXPECT_EQ(effect->GetBool("on", &on), D3D_OK);
    EXPECT_TRUE(on);
    int count = 0;
    EXPECT_EQ(effect->GetInt("count", &count), D3D_OK);
    EXPECT_EQ(count, -7);
    float size = 0.0f;
    EXPECT_EQ(effect->GetFloat("size", &size), D3D_OK);
    EXPECT_EQ(size, 2.5f);
    D3DXVECTOR4 tint(0, 0, 0, 0);
    EXPECT_EQ(effect->GetVector("tint", &tint), D3D_OK);
    EXPECT_EQ(tint.y, 0.5f);
    const D3DXPARAMETER_DESC desc = Describe(Handle("tint"));
    EXPECT_EQ(desc.Class, D3DXPC_VECTOR);
    EXPECT_EQ(desc.Type, D3DXPT_FLOAT);
    EXPECT_EQ(desc.Rows, 1u);
    EXPECT_EQ(desc.Columns, 3u);
    EXPECT_EQ(desc.Bytes, 12u);
}

TEST_F(CompiledEffect, MatricesAndArraysOfThem)
{
    std::vector<float> numbers;
    for (int i = 0; i < 32; ++i)
        numbers.push_back(static_cast<float>(i));
    file.AddParameter(file.Matrix("bones", numbers, 2));
    AddPass({});
    ASSERT_TRUE(Load());
    const D3DXPARAMETER_DESC desc = Describe(Handle("bones"));
    EXPECT_EQ(desc.Elements, 2u);
    EXPECT_EQ(desc.Bytes, 128u);
    D3DXMATRIX matrices[2];
    ASSERT_EQ(effect->GetMatrixArray("bones", matrices, 2), D3D_OK);
    EXPECT_EQ(matrices[0]._12, 1.0f);
    EXPECT_EQ(matrices[1]._21, 20.0f);
    ASSERT_EQ(effect->GetMatrix(effect->GetParameterElement("bones", 1), &matrices[0]), D3D_OK);
    EXPECT_EQ(matrices[0]._44, 31.0f);
}

TEST_F(CompiledEffect, StructsHaveTheirMembersInOneValue)
{
    const auto type =
        file.StructType("lamp", {file.NumberType(D3DXPT_FLOAT, D3DXPC_SCALAR, "reach", 1, 1),
                                 file.NumberType(D3DXPT_FLOAT, D3DXPC_VECTOR, "place", 1, 3),
                                 file.NumberType(D3DXPT_INT, D3DXPC_SCALAR, "kinds", 1, 1, 2)});
    file.AddParameter(
        {file.Put(type), file.Put({BitsOf(9.0f), BitsOf(1.0f), BitsOf(2.0f), BitsOf(3.0f), 5, 6})});
    AddPass({});
    ASSERT_TRUE(Load());
    const D3DXHANDLE lamp = Handle("lamp");
    EXPECT_EQ(Describe(lamp).Class, D3DXPC_STRUCT);
    EXPECT_EQ(Describe(lamp).StructMembers, 3u);
    EXPECT_EQ(Describe(lamp).Bytes, 24u);
    float reach = 0.0f;
    EXPECT_EQ(effect->GetFloat(effect->GetParameterByName(lamp, "reach"), &reach), D3D_OK);
    EXPECT_EQ(reach, 9.0f);
    int kinds[2] = {};
    EXPECT_EQ(effect->GetIntArray(effect->GetParameter(lamp, 2), kinds, 2), D3D_OK);
    EXPECT_THAT(kinds, ElementsAre(5, 6));
}

TEST_F(CompiledEffect, ArraysOfStructsRepeatTheirMembers)
{
    const auto type =
        file.StructType("lamps", {file.NumberType(D3DXPT_FLOAT, D3DXPC_SCALAR, "reach", 1, 1)}, 3);
    file.AddParameter({file.Put(type), file.Put({BitsOf(1.0f), BitsOf(2.0f), BitsOf(3.0f)})});
    AddPass({});
    ASSERT_TRUE(Load());
    const D3DXHANDLE third = effect->GetParameterElement("lamps", 2);
    float reach = 0.0f;
    EXPECT_EQ(effect->GetFloat(effect->GetParameterByName(third, "reach"), &reach), D3D_OK);
    EXPECT_EQ(reach, 3.0f);
}

TEST_F(CompiledEffect, SemanticsAreFoundWithoutRegardToCase)
{
    file.semantic = "World";
    file.AddParameter(file.Matrix("w", std::vector<float>(16)));
    file.semantic = "";
    file.AddParameter(file.Float("f", 1.0f));
    AddPass({});
    ASSERT_TRUE(Load());
    EXPECT_EQ(effect->GetParameterBySemantic(nullptr, "WORLD"), Handle("w"));
    EXPECT_EQ(effect->GetParameterBySemantic(nullptr, "View"), nullptr);
    EXPECT_EQ(Describe(Handle("f")).Semantic, nullptr);
}

TEST_F(CompiledEffect, StringsAndAnnotations)
{
    file.AddParameter(file.String("author", "Ada"));
    const Typed picture = file.Object(D3DXPT_TEXTURE, "map");
    file.AddContent(file.lastObject, "");
    file.AddParameter(picture, 0,
                      {file.String("ResourceName", "maps\\sand.png"), file.Int("n", 4)});
    AddPass({});
    ASSERT_TRUE(Load());
    const char* text = nullptr;
    EXPECT_EQ(effect->GetString("author", &text), D3D_OK);
    EXPECT_STREQ(text, "Ada");
    const D3DXHANDLE name = effect->GetAnnotationByName("map", "ResourceName");
    EXPECT_EQ(effect->GetString(name, &text), D3D_OK);
    EXPECT_STREQ(text, "maps\\sand.png");
    int n = 0;
    EXPECT_EQ(effect->GetInt(effect->GetAnnotation("map", 1), &n), D3D_OK);
    EXPECT_EQ(n, 4);
    EXPECT_EQ(Describe(Handle("map")).Type, D3DXPT_TEXTURE);
}

TEST_F(CompiledEffect, TechniquesAndPassesWithAnnotations)
{
    file.AddTechnique("first", {{"one", {}, {file.Int("order", 3)}}, {"two", {}, {}}});
    file.AddTechnique("second", {{"", {}, {}}});
    ASSERT_TRUE(Load());
    D3DXEFFECT_DESC desc = {};
    ASSERT_EQ(effect->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Techniques, 2u);
    const D3DXHANDLE second = effect->GetTechniqueByName("second");
    EXPECT_EQ(second, effect->GetTechnique(1));
    D3DXTECHNIQUE_DESC technique = {};
    ASSERT_EQ(effect->GetTechniqueDesc(effect->GetTechnique(0), &technique), D3D_OK);
    EXPECT_EQ(technique.Passes, 2u);
    const D3DXHANDLE pass = effect->GetPassByName(effect->GetTechnique(0), "one");
    int order = 0;
    EXPECT_EQ(effect->GetInt(effect->GetAnnotationByName(pass, "order"), &order), D3D_OK);
    EXPECT_EQ(order, 3);
}

TEST_F(CompiledEffect, SharedParametersOfAPoolHaveOneValue)
{
    Com<ID3DXEffectPool> pool;
    ASSERT_EQ(D3DXCreateEffectPool(pool.Out()), S_OK);
    file.AddParameter(file.Float("common", 1.0f), 1);
    AddPass({});
    ASSERT_TRUE(Load(pool.Get()));
    Com<ID3DXEffect> first = std::move(effect);
    ASSERT_TRUE(Load(pool.Get()));
    ASSERT_EQ(first->SetFloat("common", 4.0f), D3D_OK);
    float value = 0.0f;
    EXPECT_EQ(effect->GetFloat("common", &value), D3D_OK);
    EXPECT_EQ(value, 4.0f);
}

TEST_F(CompiledEffect, AnotherVersionIsRefused)
{
    AddPass({});
    std::string bytes = file.Bytes();
    bytes[1] = 8;
    EXPECT_TRUE(FAILED(LoadBytes(bytes)));
}
