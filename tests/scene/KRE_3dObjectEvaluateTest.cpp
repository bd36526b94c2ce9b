#include <limits>
#include <random>

#include "scene/KRE_3dObject.h"
#include "scene/KRE_Camera.h"
#include "tests/scene/SceneTesting.h"

static D3DXVECTOR3 Where(const KRE_3dObject& object)
{
    D3DXVECTOR3 position;
    object.GetWorldPosition(position);
    return position;
}

static void Pose(KRE_3dObject& object, const D3DXVECTOR3& position, const D3DXVECTOR3& scale,
                 const D3DXVECTOR3& axis, float angle)
{
    object.position = position;
    object.scale = scale;
    object.rotationAxis = axis;
    object.rotationAngle = angle;
}

TEST(Evaluate, WithoutKeysIsScaleRotationTranslationAtAnyTime)
{
    // As in the test of RebuildInitTM: rows of a quarter turn about z, times the scale and mirror.
    KRE_3dObject object;
    Pose(object, {5, 6, 7}, {2, 3, 4}, {0, 0, 1}, kPi / 2);
    const float plain[4][4] = {{0, 2, 0, 0}, {-3, 0, 0, 0}, {0, 0, 4, 0}, {5, 6, 7, 1}};
    const float mirrored[4][4] = {{0, -2, 0, 0}, {-3, 0, 0, 0}, {0, 0, 4, 0}, {5, 6, 7, 1}};
    for (const double time : {0.0, 1.0, -3.0, 1e6}) {
        object.mirror = {1, 1, 1};
        EXPECT_EQ(object.Evaluate(time, 1, 1), 1);
        ExpectMatrix(object.worldTM, plain, "plain");
        object.mirror = {-1, 1, 1};
        object.Evaluate(time, 1, 1);
        ExpectMatrix(object.worldTM, mirrored, "mirrored");
    }
    ExpectTurnAboutZ(object.currentRotation, kPi / 2);
    EXPECT_EQ(object.scalingTM._11, -2.0f);
    EXPECT_EQ(object.translationTM._42, 6.0f);
}

TEST(Evaluate, KeysReplaceTheStaticFieldsOneTrackAtATime)
{
    KRE_3dObject object;
    Pose(object, {5, 6, 7}, {2, 2, 2}, {0, 0, 1}, kPi / 2);
    object.AddPosKey(PosKey(0, 0));
    object.AddPosKey(PosKey(2, 8));
    object.BuildKeyIndex();
    object.Evaluate(1, 1, 0);
    const float position[4][4] = {{0, 2, 0, 0}, {-2, 0, 0, 0}, {0, 0, 2, 0}, {4, 0, 0, 1}};
    ExpectMatrix(object.worldTM, position, "position keys");
    object.AddRotKey(RotKey(0, kPi));
    object.Evaluate(1, 1, 1);
    const float rotation[4][4] = {{-2, 0, 0, 0}, {0, -2, 0, 0}, {0, 0, 2, 0}, {4, 0, 0, 1}};
    ExpectMatrix(object.worldTM, rotation, "rotation keys too");
    object.AddScaleKey(ScaleKey(0, 1, 3, 5));
    object.mirror = {1, 1, -1};
    object.Evaluate(1, 1, 1);
    const float all[4][4] = {{-1, 0, 0, 0}, {0, -3, 0, 0}, {0, 0, -5, 0}, {4, 0, 0, 1}};
    ExpectMatrix(object.worldTM, all, "all three, mirrored");
    ExpectVector(object.currentScale, 1, 3, 5, "without the mirror");
}

TEST(Evaluate, ANegativeTimeCountsAsZeroUnlessTheObjectLoops)
{
    KRE_3dObject object;
    object.AddPosKey(PosKey(-2, 10));
    object.AddPosKey(PosKey(2, 20));
    object.Evaluate(-1, 1, 0);
    EXPECT_EQ(Where(object).x, 15.0f);
    EXPECT_EQ(object.lastTime, 0.0);
    object.SetLoop(1);
    object.SetLoopEnd(4);
    object.Evaluate(-3, 1, 1); // 1 second into the loop
    EXPECT_EQ(Where(object).x, 17.5f);
    EXPECT_EQ(object.lastTime, 1.0);
}

TEST(Evaluate, IsSkippedForTheSameTimeUnlessDirtyOrForced)
{
    KRE_3dObject object;
    object.Evaluate(1, 1, 0);
    EXPECT_EQ(object.dirty, 0);
    object.position = {9, 0, 0};
    EXPECT_EQ(object.Evaluate(1, 1, 0), 1);
    EXPECT_EQ(Where(object).x, 0.0f) << "the same time";
    object.Evaluate(1, 1, 1);
    EXPECT_EQ(Where(object).x, 9.0f) << "forced";
    object.position = {10, 0, 0};
    object.dirty = 1;
    object.Evaluate(1, 1, 0);
    EXPECT_EQ(Where(object).x, 10.0f) << "dirty";
    object.position = {11, 0, 0};
    object.Evaluate(2, 1, 0);
    EXPECT_EQ(Where(object).x, 11.0f) << "another time";
}

TEST(Evaluate, FrozenLeavesTheMatricesAlone)
{
    KRE_3dObject object;
    object.Evaluate(1, 1, 0);
    object.frozen = 1;
    object.position = {9, 0, 0};
    object.dirty = 1;
    EXPECT_EQ(object.Evaluate(2, 1, 1), 1);
    EXPECT_EQ(Where(object).x, 0.0f);
    EXPECT_EQ(object.lastTime, 1.0);
}

TEST(Evaluate, AChildThatInheritsAllGetsExactlyLocalTimesParent)
{
    std::mt19937 random(9);
    std::uniform_real_distribution<float> value(-2, 2);
    for (int i = 0; i < 200; ++i) {
        KRE_3dObject parent;
        KRE_3dObject child;
        KRE_3dObject local;
        for (KRE_3dObject* object : {&parent, &child})
            Pose(*object, {value(random), value(random), value(random)},
                 {value(random), value(random), value(random)}, {value(random), value(random), 1},
                 value(random));
        local.Assign(child);
        child.parent = &parent;
        child.Evaluate(1, 1, 0);
        local.Evaluate(1, 1, 0);
        D3DXMATRIX product;
        D3DXMatrixMultiply(&product, &local.worldTM, &parent.worldTM);
        ASSERT_TRUE(child.worldTM == product) << i; // bit for bit
        ExpectProduct(child.worldTM, local.worldTM, parent.worldTM, "by hand");
    }
}

TEST(Evaluate, InheritsOnlyWhatItsSwitchesSay)
{
    // The parent has scale 2 and turns x to y, at (10, 0, 0): its rows are (0, 2, 0), (-2, 0, 0),
    // (0, 0, 2). The child is at (1, 0, 0), its own first row is (1, 0, 0).
    static const struct {
        const char* what;
        int32_t position, scale, rotation, mirror;
        D3DXVECTOR3 row, where;
    } cases[] = {
        {"all", 1, 1, 1, 1, {0, 2, 0}, {10, 2, 0}},
        {"none", 0, 0, 0, 0, {1, 0, 0}, {1, 0, 0}},
        {"only position", 1, 0, 0, 0, {1, 0, 0}, {11, 0, 0}},
        {"only scale", 0, 1, 0, 0, {2, 0, 0}, {2, 0, 0}},
        {"only rotation", 0, 0, 1, 0, {0, 1, 0}, {0, 1, 0}},
        {"only mirror", 0, 0, 0, 1, {1, 0, 0}, {1, 0, 0}},
        {"all but mirror", 1, 1, 1, 0, {0, 2, 0}, {10, 2, 0}},
        {"position and rotation", 1, 0, 1, 0, {0, 1, 0}, {10, 1, 0}},
    };
    for (const auto& c : cases) {
        KRE_3dObject parent;
        Pose(parent, {10, 0, 0}, {2, 2, 2}, {0, 0, 1}, kPi / 2);
        KRE_3dObject child;
        child.position = {1, 0, 0};
        child.parent = &parent;
        child.inheritPosition = c.position;
        child.inheritScale = c.scale;
        child.inheritRotation = c.rotation;
        child.inheritMirror = c.mirror;
        child.Evaluate(1, 1, 0);
        ExpectVector({child.worldTM._11, child.worldTM._12, child.worldTM._13}, c.row.x, c.row.y,
                     c.row.z, c.what);
        ExpectVector(Where(child), c.where.x, c.where.y, c.where.z, c.what);
    }
}

TEST(Evaluate, PartialInheritanceLosesTheShear)
{
    // A parent matrix with rows (2, 0, 0) and (3, 4, 0): lengths 2 and 5, unit rows (1, 0, 0) and
    // (0.6, 0.8, 0). Scale times rotation gives the same rows back; rotation alone the unit ones.
    KRE_3dObject parent;
    parent.Evaluate(1, 1, 0);
    parent.worldTM._11 = 2;
    parent.worldTM._21 = 3;
    parent.worldTM._22 = 4;
    KRE_3dObject child;
    child.parent = &parent;
    child.inheritScale = 0;
    child.Evaluate(1, 0, 0);
    const float expected[4][4] = {{1, 0, 0, 0}, {0.6f, 0.8f, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    ExpectMatrix(child.worldTM, expected);
}

TEST(Evaluate, TheParentIsEvaluatedFirstAtTheChildsWrappedTime)
{
    KRE_3dObject parent;
    parent.AddPosKey(PosKey(0, 0));
    parent.AddPosKey(PosKey(10, 10));
    KRE_3dObject child;
    child.parent = &parent;
    child.SetLoop(1);
    child.SetLoopEnd(4);
    child.Evaluate(9, 1, 0); // wraps to 1
    EXPECT_EQ(parent.lastTime, 1.0);
    EXPECT_EQ(Where(child).x, 1.0f);
    child.Evaluate(10, 0, 0); // without `updateParent` the parent is unchanged
    EXPECT_EQ(parent.lastTime, 1.0);
    EXPECT_EQ(Where(child).x, 1.0f);
}

TEST(Evaluate, AParentThatIsUpToDateIsNotEvaluatedAgain)
{
    KRE_3dObject parent;
    KRE_3dObject child;
    child.parent = &parent;
    child.Evaluate(1, 1, 0);
    parent.position = {5, 0, 0};
    child.Evaluate(1, 1, 1); // force applies to the child alone
    EXPECT_EQ(Where(child).x, 0.0f);
    parent.dirty = 1;
    child.Evaluate(1, 1, 1);
    EXPECT_EQ(Where(child).x, 5.0f);
}

TEST(Evaluate, ARingOfParentsEndsInTheSecondRound)
{
    // A at (1, 0, 0) and B at (0, 1, 0) are each other's parents. From A: B is reached when A has
    // its own matrix, so B becomes b * a, and A a * (b * a).
    for (const int32_t dirty : {0, 1}) {
        KRE_3dObject a;
        KRE_3dObject b;
        a.position = {1, 0, 0};
        b.position = {0, 1, 0};
        a.parent = &b;
        b.parent = &a;
        a.dirty = b.dirty = dirty;
        a.Evaluate(3, 1, 0);
        ExpectVector(Where(b), 1, 1, 0, "b");
        ExpectVector(Where(a), 2, 1, 0, "a");
    }
}

TEST(Evaluate, AnObjectThatIsItsOwnParentEnds)
{
    KRE_3dObject object;
    object.position = {1, 0, 0};
    object.parent = &object;
    object.Evaluate(3, 1, 0);
    EXPECT_EQ(Where(object).x, 2.0f);
}

TEST(Evaluate, ARingOfTargetsEnds)
{
    KRE_Camera a;
    KRE_Camera b;
    a.position = {1, 0, 0};
    b.position = {0, 1, 0};
    a.target = &b;
    b.target = &a;
    a.Evaluate(3, 1, 0);
    ExpectVector(a.direction, -1, 1, 0);
    ExpectVector(b.direction, 1, -1, 0);
    KRE_Camera own;
    own.position = {1, 0, 0};
    own.target = &own;
    own.Evaluate(3, 1, 0);
    ExpectVector(own.direction, 0, 0, 0);
}

TEST(Evaluate, TimesThatAreNotNumbersCountAsZero)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    static const struct {
        const char* what;
        double time;
        int32_t loop;
        float loopEnd;
    } cases[] = {
        {"no number", kNaN, 0, 100},
        {"no number, looping", kNaN, 1, 4},
        {"endless time, looping", kInfinity, 1, 4},
        {"loop of length 0", 3, 1, 0},
        {"loop without an end", 3, 1, kInfinity},
        {"loop length no number", 3, 1, static_cast<float>(kNaN)},
    };
    for (const auto& c : cases) {
        KRE_3dObject object;
        object.AddPosKey(PosKey(0, 1));
        object.AddPosKey(PosKey(5, 2));
        object.SetLoop(c.loop);
        object.SetLoopEnd(c.loopEnd);
        object.Evaluate(c.time, 1, 0);
        EXPECT_EQ(object.lastTime, 0.0) << c.what;
        EXPECT_EQ(Where(object).x, 1.0f) << c.what;
    }
}

TEST(EvaluateInPass, SeesChangesSinceThePreviousPass)
{
    KRE_3dObject object;
    KRE_3dObject parent;
    object.parent = &parent;
    object.SetLoop(1);
    object.SetLoopEnd(2);
    KRE_3dObject::BeginPass();
    object.EvaluateInPass(5, 1, 0);
    parent.position = {7, 0, 0};
    parent.dirty = 1;
    object.EvaluateInPass(5, 1, 0);
    EXPECT_EQ(Where(object).x, 0.0f) << "nothing was evaluated since: left alone";
    KRE_3dObject::BeginPass();
    object.EvaluateInPass(5, 1, 0);
    EXPECT_EQ(Where(object).x, 7.0f);
}

TEST(EvaluateInPass, AgreesWithSeparateEvaluationsOnRandomHierarchies)
{
    // Random parents and targets, cycles included; objects may loop. One pass over all must give
    // the same result as single evaluations in the same order.
    std::mt19937 random(21);
    for (int round = 0; round < 100; ++round) {
        constexpr int kCount = 12;
        KRE_Camera one[kCount];
        KRE_Camera other[kCount];
        for (int i = 0; i < kCount; ++i) {
            const auto parent = random() % (kCount + 4);
            const auto target = random() % (kCount * 2);
            const float loopEnd = static_cast<float>(1 + random() % 3);
            const int32_t loop = static_cast<int32_t>(random() % 2);
            const float x = static_cast<float>(random() % 10);
            for (KRE_Camera* cameras : {one, other}) {
                // Parents come after their children: cycles only through targets.
                if (parent<kCount&& static_cast<int>(parent)> i)
                    cameras[i].parent = &cameras[parent];
                if (target < kCount)
                    cameras[i].target = &cameras[target];
                cameras[i].SetLoop(loop);
                cameras[i].SetLoopEnd(loopEnd);
                cameras[i].AddPosKey(PosKey(0, x));
                cameras[i].AddPosKey(PosKey(5, 3, x));
            }
        }
        for (const double time : {0.0, 2.5, 4.0}) {
            KRE_3dObject::BeginPass();
            for (int i = 0; i < kCount; ++i) {
                one[i].EvaluateInPass(time, 1, 0);
                other[i].Evaluate(time, 1, 0);
            }
            for (int i = 0; i < kCount; ++i) {
                ASSERT_TRUE(one[i].worldTM == other[i].worldTM) << round << " " << i;
                ASSERT_TRUE(one[i].direction == other[i].direction) << round << " " << i;
            }
        }
    }
}

/// A node that moves along x only, evaluated by plain recursion.
struct PlainNode {
    float start = 0;   ///< x at 0 s; at 5 s it is 3
    float loopEnd = 0; ///< 0: no loop
    PlainNode* parent = nullptr;
    PlainNode* target = nullptr;
    double lastTime = 0;
    bool dirty = true;
    float world = 0;
    float direction = 0;

    void Evaluate(double time)
    {
        if (time != lastTime || dirty) {
            const double local = loopEnd > 0 ? std::fmod(time, loopEnd) : time;
            lastTime = local;
            world = start + (3 - start) * static_cast<float>(std::min(local, 5.0) / 5);
            if (parent) {
                parent->Evaluate(local);
                world += parent->world;
            }
            dirty = false;
        }
        if (target) {
            target->Evaluate(time);
            direction = target->world - world;
        }
    }
};

TEST(EvaluateInPass, AgreesWithPlainRecursion)
{
    std::mt19937 random(4);
    for (int round = 0; round < 200; ++round) {
        constexpr unsigned kCount = 10;
        PlainNode plain[kCount];
        KRE_Camera cameras[kCount];
        for (unsigned i = 0; i < kCount; ++i) {
            plain[i].start = static_cast<float>(random() % 10);
            plain[i].loopEnd = static_cast<float>(random() % 4);
            cameras[i].AddPosKey(PosKey(0, plain[i].start));
            cameras[i].AddPosKey(PosKey(5, 3));
            cameras[i].SetLoop(plain[i].loopEnd > 0);
            cameras[i].SetLoopEnd(plain[i].loopEnd);
            const unsigned parent = i + 1 + static_cast<unsigned>(random() % 6);
            const unsigned target = i + 1 + static_cast<unsigned>(random() % 6);
            if (parent < kCount) {
                plain[i].parent = &plain[parent];
                cameras[i].parent = &cameras[parent];
            }
            if (target < kCount) {
                plain[i].target = &plain[target];
                cameras[i].target = &cameras[target];
            }
        }
        for (const double time : {0.0, 2.5, 2.5, 4.25}) {
            KRE_3dObject::BeginPass();
            for (unsigned i = 0; i < kCount; ++i) {
                cameras[i].EvaluateInPass(time, 1, 0);
                plain[i].Evaluate(time);
            }
            for (unsigned i = 0; i < kCount; ++i) {
                ASSERT_NEAR(Where(cameras[i]).x, plain[i].world, 1e-4f) << round << " " << i;
                if (cameras[i].target) {
                    ASSERT_NEAR(cameras[i].direction.x, plain[i].direction, 1e-4f) << round;
                }
            }
        }
    }
}
