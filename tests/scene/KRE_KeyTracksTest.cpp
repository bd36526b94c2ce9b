#include "scene/KRE_KeyTracks.h"

#include "scene/KRE_KeyEvaluation.h"
#include "tests/scene/SceneTesting.h"

TEST(KRE_KeyTracks, AddsCountEveryKey)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(0, 1));
    tracks.AddPosKey(PosKey(1, 2));
    tracks.AddScaleKey(ScaleKey(0, 1, 2, 3));
    tracks.AddRotKey(RotKey(0, 1));
    EXPECT_EQ(tracks.posKeyCount, 2);
    EXPECT_EQ(tracks.scaleKeyCount, 1);
    EXPECT_EQ(tracks.rotKeyCount, 1);
    EXPECT_EQ(tracks.posKeys.Tail()->value.x, 2.0f);
    EXPECT_EQ(tracks.scaleKeys.Head()->value.z, 3.0f);
}

TEST(KRE_KeyTracks, QuirkAKeyBeforeTheHeadIsStillCounted)
{
    KRE_KeyTracks tracks;
    tracks.AddRotKey(RotKey(2, 1));
    tracks.AddRotKey(RotKey(1, 1));
    EXPECT_EQ(tracks.rotKeyCount, 2);
    EXPECT_EQ(tracks.rotKeys.Head(), tracks.rotKeys.Tail());
}

TEST(KRE_KeyTracks, RotationsAreCumulative)
{
    KRE_KeyTracks tracks;
    tracks.AddRotKey(RotKey(0, 1));
    tracks.AddRotKey(RotKey(1, 0.5f));
    tracks.AddRotKey(RotKey(2, 0.25f));
    ExpectTurnAboutZ(tracks.rotKeys.Head()->rotation, 1);
    ExpectTurnAboutZ(tracks.rotKeys.Head()->next->rotation, 1.5);
    ExpectTurnAboutZ(tracks.GetLastRotKey()->rotation, 1.75);
}

TEST(KRE_KeyTracks, ThePreviousTurnIsAppliedFirst)
{
    // A quarter turn about z takes x to y; a quarter turn about x takes y to z. Together they take
    // x to z, so the product's matrix has (0, 0, 1) in its first row.
    KRE_KeyTracks tracks;
    tracks.AddRotKey(RotKey(0, kPi / 2));
    KRE_RotKeyData about = RotKey(1, kPi / 2);
    about.axis = {1, 0, 0};
    tracks.AddRotKey(about);
    D3DXMATRIX matrix;
    D3DXMatrixRotationQuaternion(&matrix, &tracks.GetLastRotKey()->rotation);
    ExpectVector({matrix._11, matrix._12, matrix._13}, 0, 0, 1);
}

TEST(KRE_KeyTracks, QuirkTheSignFollowsTheRelativeTurn)
{
    // Half angles 2 and 0.1: the dot product of the two is cos 1.9 < 0, so the turn is negated and
    // with it the result, although cos 0.1 between the two cumulative rotations would not require
    // it.
    KRE_KeyTracks tracks;
    tracks.AddRotKey(RotKey(0, 4));
    tracks.AddRotKey(RotKey(1, 0.2f));
    ExpectQuaternion(tracks.GetLastRotKey()->rotation, 0, 0, -std::sin(2.1), -std::cos(2.1));
}

TEST(KRE_KeyTracks, GetLastRotKeyOfNoKeysIsNull)
{
    EXPECT_EQ(KRE_KeyTracks().GetLastRotKey(), nullptr);
}

TEST(KRE_KeyTracks, AnAddFreesTheIndexOfItsTrack)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(0, 0));
    tracks.AddScaleKey(ScaleKey(0, 1, 1, 1));
    ASSERT_TRUE(tracks.posIndex.Build(tracks.posKeys, 1));
    ASSERT_TRUE(tracks.scaleIndex.Build(tracks.scaleKeys, 1));
    tracks.AddPosKey(PosKey(1, 1));
    EXPECT_FALSE(tracks.posIndex);
    EXPECT_TRUE(tracks.scaleIndex);
}

TEST(KRE_KeyTracks, EachKindOfKeyFreesTheIndexOfItsOwnTrackOnly)
{
    const struct {
        const char* what;
        void (*add)(KRE_KeyTracks& tracks);
        bool hasPos, hasScale, hasRot;
    } cases[] = {
        {"position", [](KRE_KeyTracks& t) { t.AddPosKey(PosKey(1, 1)); }, false, true, true},
        {"scale", [](KRE_KeyTracks& t) { t.AddScaleKey(ScaleKey(1, 1, 1, 1)); }, true, false, true},
        {"rotation", [](KRE_KeyTracks& t) { t.AddRotKey(RotKey(1, 1)); }, true, true, false},
    };
    for (const auto& c : cases) {
        KRE_KeyTracks tracks;
        tracks.AddPosKey(PosKey(0, 0));
        tracks.AddScaleKey(ScaleKey(0, 1, 1, 1));
        tracks.AddRotKey(RotKey(0, 0));
        ASSERT_TRUE(tracks.posIndex.Build(tracks.posKeys, 1));
        ASSERT_TRUE(tracks.scaleIndex.Build(tracks.scaleKeys, 1));
        ASSERT_TRUE(tracks.rotIndex.Build(tracks.rotKeys, 1));
        c.add(tracks);
        EXPECT_EQ(static_cast<bool>(tracks.posIndex), c.hasPos) << c.what;
        EXPECT_EQ(static_cast<bool>(tracks.scaleIndex), c.hasScale) << c.what;
        EXPECT_EQ(static_cast<bool>(tracks.rotIndex), c.hasRot) << c.what;
    }
}

TEST(KRE_KeyTracks, TrimKeysCutsAllThreeTracks)
{
    KRE_KeyTracks tracks;
    for (const float time : {0.0f, 1.0f, 2.0f}) {
        tracks.AddPosKey(PosKey(time, time));
        tracks.AddRotKey(RotKey(time, 0.1f));
        tracks.AddScaleKey(ScaleKey(time, 1, 1, 1));
    }
    ASSERT_TRUE(tracks.posIndex.Build(tracks.posKeys, 3));
    tracks.TrimKeys(1, 9);
    EXPECT_EQ(tracks.posKeyCount, 2);
    EXPECT_EQ(tracks.rotKeyCount, 2);
    EXPECT_EQ(tracks.scaleKeyCount, 2);
    ASSERT_EQ(tracks.posIndex.Count(), 2);
    EXPECT_EQ(tracks.posIndex.Entries()[1].time, 1.0f);
    EXPECT_FALSE(tracks.rotIndex);
    // The cumulative rotation of removed keys stays in the remaining ones.
    ExpectTurnAboutZ(tracks.rotKeys.Head()->rotation, 0.2);
}

TEST(KRE_KeyTracks, ACopyHasAnIndexWhereTheSourceHasOne)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(0, 0));
    tracks.AddScaleKey(ScaleKey(0, 1, 1, 1));
    ASSERT_TRUE(tracks.posIndex.Build(tracks.posKeys, 1));
    const KRE_KeyTracks copy(tracks);
    EXPECT_EQ(copy.posKeyCount, 1);
    EXPECT_EQ(copy.posIndex.Entries()[0].key, copy.posKeys.Head());
    EXPECT_NE(copy.posKeys.Head(), tracks.posKeys.Head());
    EXPECT_FALSE(copy.scaleIndex);
}

TEST(KRE_KeyTracks, ClearKeysLeavesNothing)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(0, 0));
    tracks.AddRotKey(RotKey(0, 0));
    ASSERT_TRUE(tracks.posIndex.Build(tracks.posKeys, 1));
    tracks.ClearKeys();
    EXPECT_FALSE(tracks.posKeys);
    EXPECT_FALSE(tracks.rotKeys);
    EXPECT_FALSE(tracks.posIndex);
    EXPECT_EQ(tracks.posKeyCount, 0);
    EXPECT_EQ(tracks.rotKeyCount, 0);
}
