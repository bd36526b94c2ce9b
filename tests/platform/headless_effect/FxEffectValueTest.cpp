#include <cmath>

#include "tests/platform/headless_effect/EffectTest.h"

namespace {

using FxEffectValueTest = EffectTest;

const char kAllTypes[] =
    "bool b = true; int i = -3; float f = 2.5; float3 v3 = {1, 2, 3}; float4 v4 = 4;\n"
    "int4 iv = {1, 2, 3, 4}; float4x4 m = {1,2,3,4, 5,6,7,8, 9,10,11,12, 13,14,15,16};\n"
    "float3x2 m32 = {1,2, 3,4, 5,6}; float fa[3] = {1, 2, 3}; float4 va[2]; bool ba[2];\n"
    "float4x4 ma[2]; string s = \"a\" \"b\\n\"; texture t; sampler smp; texture ta[2];";

} // namespace

TEST_F(FxEffectValueTest, OneNumberConvertsBetweenTypes)
{
    const Com<ID3DXEffect> effect = Make(kAllTypes);
    EXPECT_EQ(FloatOf(effect.Get(), "b"), 1.0f);
    EXPECT_EQ(FloatOf(effect.Get(), "i"), -3.0f);
    EXPECT_EQ(IntOf(effect.Get(), "f"), 2);
    BOOL truth = FALSE;
    ASSERT_EQ(effect->GetBool("f", &truth), D3D_OK);
    EXPECT_EQ(truth, TRUE);

    static const struct {
        const char* what;
        float given;
        int expected;
    } cases[] = {
        {"down", 2.9f, 2},
        {"towards 0", -2.9f, -2},
        {"not a number", NAN, 0},
        {"too large", 1e20f, 2147483647},
        {"too small", -1e20f, -2147483647 - 1},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(effect->SetFloat("i", c.given), D3D_OK);
        EXPECT_EQ(IntOf(effect.Get(), "i"), c.expected) << c.what;
    }
    ASSERT_EQ(effect->SetInt("b", 77), D3D_OK);
    EXPECT_EQ(IntOf(effect.Get(), "b"), 1);
    ASSERT_EQ(effect->SetBool("f", 5), D3D_OK);
    EXPECT_EQ(FloatOf(effect.Get(), "f"), 1.0f);
    EXPECT_EQ(effect->SetFloat("v3", 1.0f), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetFloat("fa", 1.0f), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetFloat("s", 1.0f), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetFloat("none", 1.0f), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetFloat(nullptr, 1.0f), D3DERR_INVALIDCALL);
    ASSERT_EQ(effect->SetFloat("fa[1]", 9.0f), D3D_OK);
    EXPECT_EQ(FloatOf(effect.Get(), "fa[1]"), 9.0f);
}

/// 255 * 0.5 + 0.5 is 128 = 0x80.
TEST_F(FxEffectValueTest, AVectorOfFloatsTakesAnIntegerAsAColour)
{
    const Com<ID3DXEffect> effect = Make(kAllTypes);
    ASSERT_EQ(effect->SetInt("v4", static_cast<int>(0x330000FFu)), D3D_OK);
    D3DXVECTOR4 color;
    ASSERT_EQ(effect->GetVector("v4", &color), D3D_OK);
    EXPECT_EQ(color.x, 0.0f);
    EXPECT_EQ(color.z, 1.0f);
    EXPECT_FLOAT_EQ(color.w, 0.2f); // 0x33 = 51 = 255 / 5
    color = {0.5f, 2.0f, -1.0f, 1.0f};
    ASSERT_EQ(effect->SetVector("v4", &color), D3D_OK);
    EXPECT_EQ(static_cast<DWORD>(IntOf(effect.Get(), "v4")), 0xFF80FF00u);
    ASSERT_EQ(effect->SetVector("v3", &color), D3D_OK);
    EXPECT_EQ(static_cast<DWORD>(IntOf(effect.Get(), "v3")), 0x0080FF00u);
    ASSERT_EQ(effect->SetVector("i", &color), D3D_OK);
    EXPECT_EQ(static_cast<DWORD>(IntOf(effect.Get(), "i")), 0xFF80FF00u);
}

TEST_F(FxEffectValueTest, VectorsTakeWhatTheyHaveRoomFor)
{
    const Com<ID3DXEffect> effect = Make(kAllTypes);
    const D3DXVECTOR4 given = {1.5f, 2.5f, 3.5f, 4.5f};
    D3DXVECTOR4 taken = {9, 9, 9, 9};
    ASSERT_EQ(effect->SetVector("v3", &given), D3D_OK);
    ASSERT_EQ(effect->GetVector("v3", &taken), D3D_OK);
    EXPECT_EQ(taken.z, 3.5f);
    EXPECT_EQ(taken.w, 0.0f);
    ASSERT_EQ(effect->SetVector("iv", &given), D3D_OK);
    ASSERT_EQ(effect->GetVector("iv", &taken), D3D_OK);
    EXPECT_EQ(taken.w, 4.0f);
    EXPECT_EQ(effect->SetVector("m", &given), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetVector("va", &given), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetVector("v3", nullptr), D3DERR_INVALIDCALL);

    const D3DXVECTOR4 two[] = {{1, 2, 3, 4}, {5, 6, 7, 8}};
    D3DXVECTOR4 back[2];
    ASSERT_EQ(effect->SetVectorArray("va", two, 2), D3D_OK);
    ASSERT_EQ(effect->GetVectorArray("va", back, 2), D3D_OK);
    EXPECT_EQ(back[1].w, 8.0f);
    EXPECT_EQ(effect->SetVectorArray("va", two, 3), D3DERR_INVALIDCALL) << "more than there are";
    EXPECT_EQ(effect->SetVectorArray("v4", two, 1), D3DERR_INVALIDCALL) << "no array";
}

TEST_F(FxEffectValueTest, MatricesKeepTheirRows)
{
    const Com<ID3DXEffect> effect = Make(kAllTypes);
    D3DXMATRIX matrix;
    ASSERT_EQ(effect->GetMatrix("m", &matrix), D3D_OK);
    EXPECT_EQ(matrix._12, 2.0f);
    ASSERT_EQ(effect->GetMatrixTranspose("m", &matrix), D3D_OK);
    EXPECT_EQ(matrix._12, 5.0f);
    ASSERT_EQ(effect->GetMatrix("m32", &matrix), D3D_OK);
    EXPECT_EQ(matrix._31, 5.0f);
    EXPECT_EQ(matrix._13, 0.0f);
    EXPECT_EQ(matrix._44, 0.0f);
    ASSERT_EQ(effect->GetMatrix("m", &matrix), D3D_OK);
    ASSERT_EQ(effect->SetMatrixTranspose("m32", &matrix), D3D_OK);
    EXPECT_EQ(effect->GetMatrix("m32", &matrix), D3D_OK);
    EXPECT_EQ(matrix._31, 3.0f); // row 1, column 3 of the source
    EXPECT_EQ(effect->GetMatrix("v4", &matrix), D3DERR_INVALIDCALL);

    D3DXMATRIX two[2] = {};
    two[1]._23 = 5.0f;
    ASSERT_EQ(effect->SetMatrixArray("ma", two, 2), D3D_OK);
    ASSERT_EQ(effect->GetMatrix("ma[1]", &matrix), D3D_OK);
    EXPECT_EQ(matrix._23, 5.0f);
    EXPECT_EQ(effect->SetMatrixArray("ma", two, 3), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetMatrixArray("m", two, 1), D3DERR_INVALIDCALL);
    const D3DXMATRIX* pointers[] = {&two[1], &two[0]};
    ASSERT_EQ(effect->SetMatrixTransposePointerArray("ma", pointers, 2), D3D_OK);
    D3DXMATRIX back[2];
    ASSERT_EQ(effect->GetMatrixArray("ma", back, 2), D3D_OK);
    EXPECT_EQ(back[0]._32, 5.0f);
}

TEST_F(FxEffectValueTest, ArraysAreCopiedAsFarAsBothSidesReach)
{
    const Com<ID3DXEffect> effect = Make(kAllTypes);
    const float five[] = {7, 8, 9, 10, 11};
    ASSERT_EQ(effect->SetFloatArray("fa", five, 5), D3D_OK);
    int back[5] = {0, 0, 0, 42, 0};
    ASSERT_EQ(effect->GetIntArray("fa", back, 5), D3D_OK);
    EXPECT_EQ(back[2], 9);
    EXPECT_EQ(back[3], 42) << "behind the last element";
    ASSERT_EQ(effect->SetFloatArray("m", five, 2), D3D_OK);
    float cells[16] = {};
    ASSERT_EQ(effect->GetFloatArray("m", cells, 16), D3D_OK);
    EXPECT_EQ(cells[1], 8.0f);
    EXPECT_EQ(cells[2], 3.0f);
    const BOOL truths[] = {TRUE, 5};
    ASSERT_EQ(effect->SetBoolArray("ba", truths, 2), D3D_OK);
    EXPECT_EQ(IntOf(effect.Get(), "ba[1]"), 1);
    EXPECT_EQ(effect->SetFloatArray("s", five, 1), D3DERR_INVALIDCALL);
}

TEST_F(FxEffectValueTest, BytesNeedRoomForTheWholeValue)
{
    const Com<ID3DXEffect> effect = Make(kAllTypes);
    float three[3] = {};
    ASSERT_EQ(effect->GetValue("v3", three, sizeof three), D3D_OK);
    EXPECT_EQ(three[1], 2.0f);
    EXPECT_EQ(effect->GetValue("v3", three, 11), D3DERR_INVALIDCALL);
    three[1] = 6.0f;
    EXPECT_EQ(effect->SetValue("v3", three, 11), D3DERR_INVALIDCALL);
    ASSERT_EQ(effect->SetValue("v3", three, sizeof three), D3D_OK);
    EXPECT_EQ(FloatOf(effect.Get(), "fa[0]"), 1.0f);
    const float one = 5.0f;
    ASSERT_EQ(effect->SetRawValue("fa", &one, 8, 4), D3D_OK);
    EXPECT_EQ(FloatOf(effect.Get(), "fa[2]"), 5.0f);
    EXPECT_EQ(effect->SetRawValue("fa", &one, 9, 4), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetRawValue("fa", &one, 0xFFFFFFFF, 4), D3DERR_INVALIDCALL);
    EXPECT_EQ(effect->SetValue("s", &one, 100), D3DERR_INVALIDCALL);
}

TEST_F(FxEffectValueTest, StringsAndTexturesAreKept)
{
    const Com<ID3DXEffect> effect = Make(kAllTypes);
    EXPECT_EQ(StringOf(effect.Get(), "s"), "ab\n");
    ASSERT_EQ(effect->SetString("s", "other"), D3D_OK);
    EXPECT_EQ(StringOf(effect.Get(), "s"), "other");
    EXPECT_EQ(effect->SetString("f", "x"), D3DERR_INVALIDCALL);

    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    const ULONG before = ReferenceCount(texture.Get());
    ASSERT_EQ(effect->SetTexture("t", texture.Get()), D3D_OK);
    EXPECT_EQ(ReferenceCount(texture.Get()), before + 1);
    Com<IDirect3DBaseTexture9> back;
    ASSERT_EQ(effect->GetTexture("t", back.Out()), D3D_OK);
    EXPECT_EQ(back.Get(), texture.Get());
    ASSERT_EQ(effect->SetTexture("t", nullptr), D3D_OK);
    EXPECT_EQ(effect->SetTexture("smp", texture.Get()), D3DERR_INVALIDCALL);
    IDirect3DBaseTexture9* two[2] = {nullptr, texture.Get()};
    ASSERT_EQ(effect->SetValue("ta", two, sizeof two), D3D_OK);
    ASSERT_EQ(effect->GetTexture("ta[1]", back.Out()), D3D_OK);
    EXPECT_EQ(back.Get(), texture.Get());
}
