#include "scene/KRE_3dObject.h"

#include "tests/scene/SceneTesting.h"

TEST(KRE_3dObject, StartsWithItsDefaults)
{
    const float identity[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    KRE_3dObject object;
    EXPECT_EQ(object.objectKind, 0);
    EXPECT_EQ(object.IsMesh(), 0);
    EXPECT_STREQ(object.name.c_str(), "*undefined*");
    EXPECT_TRUE(object.parentName.IsEmpty());
    EXPECT_EQ(object.parent, nullptr);
    for (const D3DXMATRIX* matrix : {&object.worldTM, &object.pivotTM, &object.initTM,
                                     &object.translationTM, &object.rotationTM, &object.scalingTM})
        ExpectMatrix(*matrix, identity, "", 0);
    ExpectVector(object.mirror, 1, 1, 1);
    ExpectVector(object.position, 0, 0, 0);
    ExpectVector(object.scale, 1, 1, 1);
    ExpectVector(object.rotationAxis, 0, 0, 0);
    EXPECT_EQ(object.rotationAngle, 0.0f);
    ExpectVector(object.currentPosition, 0, 0, 0);
    ExpectVector(object.currentScale, 1, 1, 1);
    ExpectQuaternion(object.currentRotation, 0, 0, 0, 1);
    EXPECT_EQ(object.frozen, 0);
    EXPECT_EQ(object.dirty, 1);
    EXPECT_EQ(object.lastTime, 0.0);
    EXPECT_EQ(object.inheritPosition, 1);
    EXPECT_EQ(object.inheritScale, 1);
    EXPECT_EQ(object.inheritRotation, 1);
    EXPECT_EQ(object.inheritMirror, 1);
    EXPECT_EQ(object.loop, 0);
    EXPECT_EQ(object.loopEnd, 100.0f);
    EXPECT_EQ(object.resourceId, -1);
}

TEST(KRE_3dObject, ThePoseFieldsAreInOneBlock)
{
    const KRE_3dObject object;
    const auto offset = [&object](const void* field) {
        return static_cast<const char*>(field) - reinterpret_cast<const char*>(&object.initTM);
    };
    EXPECT_EQ(offset(&object.mirror), 64);
    EXPECT_EQ(offset(&object.position), 76);
    EXPECT_EQ(offset(&object.scale), 88);
    EXPECT_EQ(offset(&object.rotationAxis), 100);
    EXPECT_EQ(offset(&object.rotationAngle), 112);
    EXPECT_EQ(offset(&object.rotationAngle + 1), static_cast<ptrdiff_t>(kStoredPoseSize));
}

TEST(KRE_3dObject, ErrorsAndWarningsCarryItsName)
{
    const LogScope log;
    KRE_3dObject object;
    object.name = "Mast";
    EXPECT_EQ(RaisedBy([&] { object.Error("too high: %i", 7); }), "Mast: too high: 7");
    EXPECT_EQ(object.errorHappened, 1);
    object.Warning("wobbles");
    EXPECT_THAT(log.Text(), testing::HasSubstr("Error:KRE_3dObject: Mast: too high: 7"));
    EXPECT_THAT(log.Text(), testing::HasSubstr("Warning:KRE_3dObject: Mast: wobbles"));
}

TEST(KRE_3dObject, APercentSignInTheNameIsText)
{
    const LogScope log;
    KRE_3dObject object;
    object.name = "100%s";
    EXPECT_EQ(RaisedBy([&] { object.Error("bad"); }), "100%s: bad");
}

TEST(KRE_3dObject, ARotationKeyBeforeTheHeadEndsInTheCountCheck)
{
    const LogScope log;
    KRE_3dObject object;
    object.name = "Boom";
    object.AddRotKey(RotKey(2, 1));
    object.AddRotKey(RotKey(1, 1));
    EXPECT_EQ(RaisedBy([&] { object.BuildKeyIndex(); }),
              "Boom: Check: Rot key numbers don't match");
}

TEST(KRE_3dObject, EachTrackHasItsCountCheck)
{
    const LogScope log;
    KRE_3dObject position;
    position.AddPosKey(PosKey(2, 0));
    position.AddPosKey(PosKey(1, 0));
    EXPECT_EQ(RaisedBy([&] { position.BuildKeyIndex(); }),
              "*undefined*: Check: Pos key numbers don't match");
    KRE_3dObject scaled;
    scaled.AddScaleKey(ScaleKey(2, 1, 1, 1));
    scaled.AddScaleKey(ScaleKey(1, 1, 1, 1));
    EXPECT_EQ(RaisedBy([&] { scaled.BuildKeyIndex(); }),
              "*undefined*: Check: Scale key numbers don't match");
}

TEST(KRE_3dObject, TheCountChecksComeInTheOrderPositionRotationScale)
{
    const LogScope log;
    KRE_3dObject object;
    object.posKeyCount = 1;
    object.rotKeyCount = 1;
    object.scaleKeyCount = 1;
    EXPECT_THAT(RaisedBy([&] { object.BuildKeyIndex(); }), testing::HasSubstr("Pos"));
    object.posKeyCount = 0;
    EXPECT_THAT(RaisedBy([&] { object.BuildKeyIndex(); }), testing::HasSubstr("Rot"));
    object.rotKeyCount = 0;
    EXPECT_THAT(RaisedBy([&] { object.BuildKeyIndex(); }), testing::HasSubstr("Scale"));
    object.scaleKeyCount = 0;
    EXPECT_EQ(RaisedBy([&] { object.BuildKeyIndex(); }), "no error");
}

TEST(KRE_3dObject, RebuildInitTMMultipliesScaleRotationTranslation)
{
    // A quarter turn about z has the rows (0, 1, 0), (-1, 0, 0), (0, 0, 1). Scale (2, 3, 4) and a
    // mirrored y multiply its rows by 2, -3 and 4; the translation is row 4.
    KRE_3dObject object;
    object.position = {5, 6, 7};
    object.scale = {2, 3, 4};
    object.mirror = {1, -1, 1};
    object.rotationAxis = {0, 0, 1};
    object.rotationAngle = kPi / 2;
    object.dirty = 0;
    object.RebuildInitTM();
    const float expected[4][4] = {{0, 2, 0, 0}, {3, 0, 0, 0}, {0, 0, 4, 0}, {5, 6, 7, 1}};
    ExpectMatrix(object.initTM, expected, "initTM");
    ExpectMatrix(object.worldTM, expected, "worldTM");
    ExpectVector(object.currentPosition, 5, 6, 7);
    EXPECT_EQ(object.dirty, 1);
    EXPECT_EQ(object.scalingTM._22, -3.0f);
}

TEST(KRE_3dObject, SetPositionRebuildsOrLeavesItToTheNextEvaluation)
{
    KRE_3dObject object;
    D3DXVECTOR3 where;
    object.dirty = 0;
    EXPECT_EQ(object.SetPosition(1, 2, 3, 0), 1);
    object.GetWorldPosition(where);
    ExpectVector(where, 0, 0, 0, "not yet");
    EXPECT_EQ(object.dirty, 1);
    EXPECT_EQ(object.SetPosition(1, 2, 3, 1), 1);
    object.GetWorldPosition(where);
    ExpectVector(where, 1, 2, 3, "rebuilt");
}

TEST(KRE_3dObject, ResetRestoresEverything)
{
    KRE_3dObject object;
    KRE_3dObject parent;
    object.objectKind = kObjectBone;
    object.name = "Rib";
    object.parentName = "Keel";
    object.parent = &parent;
    object.AddPosKey(PosKey(0, 1));
    object.SetLoop(1);
    object.SetLoopEnd(3);
    object.inheritScale = 0;
    object.SetPosition(1, 2, 3, 1);
    object.ResetKeys();
    EXPECT_EQ(object.objectKind, 0);
    EXPECT_STREQ(object.name.c_str(), "*undefined*");
    EXPECT_TRUE(object.parentName.IsEmpty());
    EXPECT_EQ(object.parent, nullptr);
    EXPECT_FALSE(object.posKeys);
    EXPECT_EQ(object.posKeyCount, 0);
    EXPECT_EQ(object.loop, 0);
    EXPECT_EQ(object.loopEnd, 100.0f);
    EXPECT_EQ(object.inheritScale, 1);
    ExpectVector(object.position, 0, 0, 0);
    EXPECT_EQ(object.worldTM._41, 0.0f);
}

TEST(KRE_3dObject, AssignCopiesFieldsAndKeysButNotTheSharedResource)
{
    KRE_3dObject parent;
    KRE_3dObject source;
    source.resourceId = 5;
    source.name = "Sail";
    source.parent = &parent;
    source.loopEnd = 7;
    source.AddPosKey(PosKey(0, 1));
    KRE_3dObject object;
    object.Assign(source);
    source.name = "Other";
    source.posKeys.Head()->value.x = 9;
    EXPECT_STREQ(object.name.c_str(), "Sail");
    EXPECT_EQ(object.parent, &parent);
    EXPECT_EQ(object.loopEnd, 7.0f);
    EXPECT_EQ(object.posKeyCount, 1);
    EXPECT_EQ(object.posKeys.Head()->value.x, 1.0f);
    EXPECT_EQ(object.resourceId, -1);
    object.Assign(object);
    EXPECT_EQ(object.posKeyCount, 1);
}

TEST(KRE_3dObject, CloneKeysGivesCopiesWithAnIndexOrNoKeysAtAll)
{
    KRE_3dObject source;
    source.AddPosKey(PosKey(0, 1));
    source.AddPosKey(PosKey(1, 2));
    source.AddRotKey(RotKey(0, 1));
    KRE_3dObject target;
    target.name = "Target";
    target.AddScaleKey(ScaleKey(0, 1, 1, 1));
    source.CloneKeys(target, 1);
    EXPECT_EQ(target.posKeyCount, 2);
    EXPECT_EQ(target.posIndex.Count(), 2);
    EXPECT_EQ(target.rotIndex.Count(), 1);
    EXPECT_NE(target.posKeys.Head(), source.posKeys.Head());
    EXPECT_FALSE(target.scaleKeys);
    EXPECT_STREQ(target.name.c_str(), "Target");
    source.CloneKeys(target, 0);
    EXPECT_FALSE(target.posKeys);
    EXPECT_FALSE(target.posIndex);
    EXPECT_EQ(target.posKeyCount, 0);
    EXPECT_EQ(source.posKeyCount, 2);
}

TEST(KRE_3dObject, CloneKeysChecksTheCounters)
{
    const LogScope log;
    KRE_3dObject source;
    source.AddPosKey(PosKey(0, 1));
    source.posKeyCount = 5;
    KRE_3dObject target;
    EXPECT_EQ(RaisedBy([&] { source.CloneKeys(target, 1); }),
              "*undefined*: Check: Pos key numbers don't match");
}

TEST(KRE_3dObject, CorrectionTMWithoutPivotAndExtraMatrixIsTheIdentity)
{
    KRE_3dObject object;
    object.scale = {2, 1, 4};
    object.rotationAxis = {0, 0, 1};
    object.rotationAngle = kPi / 2;
    object.SetPosition(5, 6, 7, 1);
    const float identity[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    ExpectMatrix(object.CorrectionTM(nullptr), identity);
}

TEST(KRE_3dObject, CorrectionTMAppliesThePivotThroughTheWorldMatrix)
{
    // W turns x to y, so inverse(W) * P * W, with P a translation by (1, 0, 0), is a translation by
    // (0, 1, 0).
    KRE_3dObject object;
    object.rotationAxis = {0, 0, 1};
    object.rotationAngle = kPi / 2;
    object.SetPosition(5, 6, 7, 1);
    object.pivotTM._41 = 1;
    const float moved[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 1, 0, 1}};
    ExpectMatrix(object.CorrectionTM(nullptr), moved);
    D3DXMATRIX extra;
    D3DXMatrixScaling(&extra, 2, 3, 4);
    const float scaled[4][4] = {{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 4, 0}, {0, 3, 0, 1}};
    ExpectMatrix(object.CorrectionTM(&extra), scaled);
}

TEST(KRE_3dObject, CorrectionTMOfASingularMatrixLeavesTheInverseOut)
{
    KRE_3dObject object;
    object.scale = {0, 1, 1};
    object.SetPosition(5, 6, 7, 1);
    const float expected[4][4] = {{0, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {5, 6, 7, 1}};
    ExpectMatrix(object.CorrectionTM(nullptr), expected);
}
