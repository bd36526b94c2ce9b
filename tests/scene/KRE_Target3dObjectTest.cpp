#include "scene/KRE_Target3dObject.h"

#include <vector>

#include "tests/scene/SceneTesting.h"

/// Records each notification of changed vectors.
class NotingTarget : public KRE_Target3dObject {
public:
    void UpdateLightData(const D3DXMATRIX* extraTM) override { extras.push_back(extraTM); }

    std::vector<const D3DXMATRIX*> extras;
};

TEST(KRE_Target3dObject, StartsWithItsDefaults)
{
    const KRE_Target3dObject object;
    EXPECT_EQ(object.target, nullptr);
    EXPECT_TRUE(object.targetName.IsEmpty());
    ExpectVector(object.direction, 0, 1, 0);
    ExpectVector(object.up, 0, 0, 1);
    ExpectVector(object.worldPosition, 0, 0, 0);
}

TEST(KRE_Target3dObject, WithoutATargetItLooksAlongTheTransformedMinusZ)
{
    // A quarter turn about x takes y to z and z to -y, so -z to y; scale 2 makes both vectors twice
    // as long.
    KRE_Target3dObject object;
    object.position = {1, 2, 3};
    object.scale = {2, 2, 2};
    object.rotationAxis = {1, 0, 0};
    object.rotationAngle = kPi / 2;
    EXPECT_EQ(object.Evaluate(1, 1, 0), 1);
    ExpectVector(object.worldPosition, 1, 2, 3);
    ExpectVector(object.direction, 0, 2, 0);
    ExpectVector(object.up, 0, 0, 2);
}

TEST(KRE_Target3dObject, WithATargetItLooksAtItAndKeepsItsUpVector)
{
    KRE_3dObject target;
    target.AddPosKey(PosKey(0, 0, 0, 0));
    target.AddPosKey(PosKey(2, 8, 4, 2));
    KRE_Target3dObject object;
    object.position = {1, 0, 0};
    object.target = &target;
    object.SetUp(0, 3, 4);
    object.Evaluate(1, 1, 0); // the target is evaluated too: it is at (4, 2, 1)
    ExpectVector(object.direction, 3, 2, 1);
    ExpectVector(object.up, 0, 0.6f, 0.8f);
}

TEST(KRE_Target3dObject, TheTargetIsEvaluatedAtTheTimeAsGivenAndWithItsParents)
{
    KRE_3dObject root;
    root.position = {0, 5, 0};
    KRE_3dObject target;
    target.parent = &root;
    KRE_Target3dObject object;
    object.target = &target;
    object.SetLoop(1);
    object.SetLoopEnd(2);
    object.Evaluate(5, 0, 0);
    EXPECT_EQ(object.lastTime, 1.0);
    EXPECT_EQ(target.lastTime, 5.0);
    ExpectVector(object.direction, 0, 5, 0);
}

TEST(KRE_Target3dObject, FrozenKeepsTheMatrixButRecomputesTheVectors)
{
    KRE_Target3dObject object;
    object.Evaluate(1, 1, 0);
    object.frozen = 1;
    object.worldTM._41 = 7;
    object.Evaluate(2, 1, 0);
    EXPECT_EQ(object.worldTM._41, 7.0f);
    ExpectVector(object.worldPosition, 7, 0, 0);
    ExpectVector(object.direction, 0, 0, -1);
}

TEST(KRE_Target3dObject, SetPositionStoresBothPositions)
{
    NotingTarget object;
    EXPECT_EQ(object.SetPosition(1, 2, 3), 1);
    ExpectVector(object.position, 1, 2, 3);
    ExpectVector(object.worldPosition, 1, 2, 3);
    EXPECT_EQ(object.worldTM._42, 2.0f);
    EXPECT_THAT(object.extras, testing::ElementsAre(nullptr));
}

TEST(KRE_Target3dObject, DirectionAndUpAreNormalised)
{
    NotingTarget object;
    EXPECT_EQ(object.SetDirection(0, 3, -4), 1);
    EXPECT_EQ(object.SetUp(2, 0, 0), 1);
    ExpectVector(object.direction, 0, 0.6f, -0.8f);
    ExpectVector(object.up, 1, 0, 0);
    EXPECT_EQ(object.extras.size(), 2u);
}

TEST(KRE_Target3dObject, EachChangeOfTheVectorsIsReported)
{
    NotingTarget object;
    object.Evaluate(1, 1, 0);
    object.Evaluate(1, 1, 0); // skipped, but the vectors are still written
    EXPECT_EQ(object.extras.size(), 2u);
    object.Reset();
    EXPECT_THAT(object.extras, testing::ElementsAre(nullptr, nullptr, nullptr));
}

TEST(KRE_Target3dObject, ResetRestoresItsOwnFields)
{
    KRE_3dObject target;
    KRE_Target3dObject object;
    object.target = &target;
    object.targetName = "Buoy";
    object.name = "Lamp";
    object.SetPosition(1, 2, 3);
    object.SetDirection(1, 0, 0);
    object.SetUp(1, 0, 0);
    object.Reset();
    EXPECT_EQ(object.target, nullptr);
    EXPECT_TRUE(object.targetName.IsEmpty());
    EXPECT_STREQ(object.name.c_str(), "*undefined*");
    ExpectVector(object.worldPosition, 0, 0, 0);
    ExpectVector(object.direction, 0, 1, 0);
    ExpectVector(object.up, 0, 0, 1);
}
