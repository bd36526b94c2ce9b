#include "scene/KRE_Light.h"

#include <cstring>

#include "tests/scene/SceneTesting.h"

TEST(KRE_Light, StartsClearedExceptForTheFalloff)
{
    const KRE_Light light;
    EXPECT_EQ(light.objectKind, 32);
    EXPECT_EQ(light.lightMode, 1);
    EXPECT_EQ(light.lightOn, 1);
    D3DLIGHT9 expected;
    std::memset(&expected, 0, sizeof expected);
    expected.Falloff = 1.0f;
    EXPECT_EQ(std::memcmp(&light.light, &expected, sizeof expected), 0);
}

TEST(KRE_Light, SetDirectionalIgnoresTheAlphas)
{
    KRE_Light light;
    light.light.Theta = 5;
    EXPECT_EQ(light.SetDirectional(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13), 1);
    D3DLIGHT9 expected;
    std::memset(&expected, 0, sizeof expected);
    expected.Type = D3DLIGHT_DIRECTIONAL;
    expected.Diffuse = {1, 2, 3, 0};
    expected.Specular = {5, 6, 7, 0};
    expected.Ambient = {9, 10, 11, 0};
    expected.Range = 13;
    EXPECT_EQ(std::memcmp(&light.light, &expected, sizeof expected), 0);
    EXPECT_EQ(light.lightMode, 0);
}

TEST(KRE_Light, AnEvaluationWritesAChangedPosition)
{
    KRE_Light light;
    light.position = {1, 2, 3};
    light.Evaluate(1, 1, 0);
    ExpectVector(light.light.Position, 1, 2, 3);
    ExpectVector(light.light.Direction, 0, 0, -1);
    light.position = {4, 5, 6}; // no call reports this
    light.Evaluate(2, 1, 0);
    ExpectVector(light.light.Position, 4, 5, 6);
}

TEST(KRE_Light, SettersWriteTheLightAtOnce)
{
    KRE_Light light;
    light.SetPosition(1, 2, 3);
    light.SetDirection(0, 0, 5);
    ExpectVector(light.light.Position, 1, 2, 3);
    ExpectVector(light.light.Direction, 0, 0, 1);
}

TEST(KRE_Light, QuirkAPivotMovesTheDirectionAsAPoint)
{
    // inverse(W) * P * W, with a W that only translates and a P that translates by (0, 0, 2), is
    // that translation; it is added to both the position and the direction (0, 0, -1).
    KRE_Light light;
    light.pivotTM._43 = 2;
    light.position = {1, 2, 3};
    light.Evaluate(1, 1, 0);
    ExpectVector(light.light.Position, 1, 2, 5);
    ExpectVector(light.light.Direction, 0, 0, 1);
}

TEST(KRE_Light, TheExtraMatrixTransformsBothVectors)
{
    KRE_Light light;
    light.SetPosition(1, 2, 3);
    light.SetDirection(0, 1, 0);
    D3DXMATRIX extra;
    D3DXMatrixScaling(&extra, 2, 3, 4);
    light.UpdateLightData(&extra);
    ExpectVector(light.light.Position, 2, 6, 12);
    ExpectVector(light.light.Direction, 0, 3, 0);
}

TEST(KRE_Light, TheDirectionToATargetIsNotNormalised)
{
    KRE_3dObject target;
    target.position = {0, 0, 8};
    KRE_Light light;
    light.target = &target;
    light.Evaluate(1, 1, 0);
    ExpectVector(light.light.Direction, 0, 0, 8);
}

TEST(KRE_Light, TypeOutsideTheEnumerationIsReadAsANumber)
{
    KRE_Light light;
    for (const uint32_t number : {0x7F900000u, 0xAA900000u, 0u, 4u}) {
        std::memcpy(&light.light.Type, &number, sizeof number);
        EXPECT_EQ(light.TypeNumber(), number);
        EXPECT_FALSE(light.HasDeviceType()) << number;
    }
}

TEST(KRE_Light, PointSpotAndDirectionalAreDeviceTypes)
{
    KRE_Light light;
    for (const D3DLIGHTTYPE type : {D3DLIGHT_POINT, D3DLIGHT_SPOT, D3DLIGHT_DIRECTIONAL}) {
        light.light.Type = type;
        EXPECT_TRUE(light.HasDeviceType()) << type;
    }
}

TEST(KRE_Light, ResetRestoresItsFields)
{
    KRE_Light light;
    light.SetDirectional(1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1);
    light.lightOn = 0;
    light.objectKind = 3;
    light.Reset();
    EXPECT_EQ(light.objectKind, 32);
    EXPECT_EQ(light.lightMode, 1);
    EXPECT_EQ(light.lightOn, 1);
    EXPECT_EQ(light.light.Diffuse.r, 0.0f);
    EXPECT_EQ(light.light.Falloff, 1.0f);
    // The reset ends by writing the vectors: the default direction is +Y.
    ExpectVector(light.light.Direction, 0, 1, 0);
}
