#include "scene/KRE_KeyData.h"

#include "scene/KRE_KeyTracks.h"
#include "tests/scene/SceneTesting.h"

/// A list of TCB keys whose cumulative rotations are turns about z by the given angles. Between
/// turns about one axis a slerp is linear in the angle, which makes expected values plain sums.
static void AddTcbKeys(KRE_KeyTracks& tracks, std::initializer_list<double> angles, double tension)
{
    float time = 0;
    double before = 0;
    for (const double angle : angles) {
        KRE_RotKeyData key = RotKey(time++, static_cast<float>(angle - before));
        key.tension = static_cast<float>(tension);
        key.interpolation = kKeyTcb;
        tracks.AddRotKey(key);
        before = angle;
    }
}

TEST(KRE_PosKeyData, StartsAsALinearKeyAtTheOriginWithoutTangents)
{
    const KRE_PosKeyData key;
    for (const D3DXVECTOR3& vector : {key.value, key.inTangent, key.outTangent})
        ExpectVector(vector, 0, 0, 0);
    EXPECT_EQ(key.interpolation, kKeyLinear);
}

TEST(KRE_ScaleKeyData, StartsAsALinearKeyWithoutTangents)
{
    const KRE_ScaleKeyData key;
    for (const D3DXVECTOR3& vector : {key.value, key.inTangent, key.outTangent})
        ExpectVector(vector, 0, 0, 0);
    EXPECT_EQ(key.interpolation, kKeyLinear);
}

TEST(KRE_RotKeyData, StartsAsALinearKeyWithoutAnyTurnOrBend)
{
    const KRE_RotKeyData key;
    for (const float value :
         {key.angle, key.tension, key.continuity, key.bias, key.easeIn, key.easeOut})
        EXPECT_EQ(value, 0.0f);
    ExpectVector(key.axis, 0, 0, 0);
    for (const D3DXQUATERNION& turn : {key.rotation, key.inControl, key.outControl})
        ExpectQuaternion(turn, 0, 0, 0, 0);
    EXPECT_EQ(key.interpolation, kKeyLinear);
}

TEST(ComputeInnerControls, OfAKeyAloneAreItsRotation)
{
    KRE_KeyTracks tracks;
    AddTcbKeys(tracks, {0.5}, 0.25);
    KRE_RotKeyData& key = *tracks.rotKeys.Head();
    ComputeInnerControls(key);
    ExpectTurnAboutZ(key.inControl, 0.5);
    ExpectTurnAboutZ(key.outControl, 0.5);
}

TEST(ComputeInnerControls, BetweenTwoKeysFollowTheMeanDirection)
{
    // Angles 0, 1, 1.6. A third away from the one before: 1 + 1/3; a third towards the next: 1.2;
    // the mean m = 19/15. With tension 0.25 the reach is 0.2: in = 1 - 0.8 * 4/15, out = 1 + 0.8 *
    // 4/15.
    KRE_KeyTracks tracks;
    AddTcbKeys(tracks, {0, 1, 1.6}, 0.25);
    KRE_RotKeyData& key = *tracks.rotKeys.Head()->next;
    ComputeInnerControls(key);
    ExpectTurnAboutZ(key.inControl, 1 - 0.8 * 4 / 15);
    ExpectTurnAboutZ(key.outControl, 1 + 0.8 * 4 / 15);
}

TEST(ComputeInnerControls, AtTheEndsReachPartOfTheWayToTheNeighbour)
{
    // Tension 0.25 times 0.63 is 0.1575. Last key: from 0 to 1 by (1 + 0.1575) / 2 of the way.
    // First key: by (1 - 0.1575) / 2 of it.
    KRE_KeyTracks tracks;
    AddTcbKeys(tracks, {0, 1}, 0.25);
    KRE_RotKeyData& first = *tracks.rotKeys.Head();
    KRE_RotKeyData& last = *tracks.rotKeys.Tail();
    ComputeInnerControls(first);
    ComputeInnerControls(last);
    ExpectTurnAboutZ(first.inControl, 0);
    ExpectTurnAboutZ(first.outControl, 0.42125);
    ExpectTurnAboutZ(last.inControl, 0.57875);
    ExpectTurnAboutZ(last.outControl, 1);
}

TEST(ComputeInnerControls, OfKeysThatAreNotTcbStayZero)
{
    KRE_KeyTracks tracks;
    AddTcbKeys(tracks, {0, 1, 2}, 0.25);
    for (const int kind : {0, 1, 3, 65535}) {
        KRE_RotKeyData& key = *tracks.rotKeys.Head()->next;
        key.interpolation = static_cast<uint16_t>(kind);
        ComputeInnerControls(key);
        ExpectQuaternion(key.inControl, 0, 0, 0, 0);
        ExpectQuaternion(key.outControl, 0, 0, 0, 0);
    }
}

TEST(ComputeInnerControls, ContinuityAndBiasHaveNoEffect)
{
    KRE_KeyTracks tracks;
    AddTcbKeys(tracks, {0, 1, 1.6}, 0.25);
    KRE_RotKeyData& key = *tracks.rotKeys.Head()->next;
    key.continuity = 0.75f;
    key.bias = -0.5f;
    ComputeInnerControls(key);
    ExpectTurnAboutZ(key.outControl, 1 + 0.8 * 4 / 15);
}
