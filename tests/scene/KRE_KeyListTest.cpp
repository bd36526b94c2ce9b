#include "scene/KRE_KeyList.h"

#include <limits>
#include <random>
#include <vector>

#include "scene/KRE_KeyTracks.h"
#include "tests/scene/SceneTesting.h"

using PosKeys = KRE_KeyList<KRE_PosKeyData>;
static constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
static constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// The values of `value.x` in list order; fails the test unless the list is linked both ways.
static std::vector<float> Values(const PosKeys& keys)
{
    std::vector<float> values;
    const KRE_PosKeyData* before = nullptr;
    for (const KRE_PosKeyData* key = keys.Head(); key; key = key->next) {
        EXPECT_EQ(key->prev, before);
        values.push_back(key->value.x);
        before = key;
    }
    EXPECT_EQ(keys.Tail(), before);
    return values;
}

static PosKeys Listed(std::initializer_list<float> times)
{
    PosKeys keys;
    for (const float time : times)
        keys.Insert(PosKey(time, time));
    return keys;
}

TEST(KRE_KeyList, InsertKeepsTimeOrder)
{
    EXPECT_THAT(Values(Listed({0, 1, 2})), testing::ElementsAre(0.0f, 1.0f, 2.0f));
    EXPECT_THAT(Values(Listed({0, 5, 3, 4, 1, 9, 2})),
                testing::ElementsAre(0.0f, 1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 9.0f));
}

TEST(KRE_KeyList, OfKeysWithEqualTimesTheNewestIsLast)
{
    PosKeys keys;
    float number = 0;
    for (const float time : {0.0f, 2.0f, 1.0f, 1.0f, 0.0f, 2.0f, 1.0f})
        keys.Insert(PosKey(time, number++));
    EXPECT_THAT(Values(keys), testing::ElementsAre(0.0f, 4.0f, 2.0f, 3.0f, 6.0f, 1.0f, 5.0f));
}

TEST(KRE_KeyList, QuirkAKeyBeforeTheHeadIsLost)
{
    PosKeys keys = Listed({2, 3});
    EXPECT_EQ(keys.Insert(PosKey(1, 1)), nullptr);
    EXPECT_THAT(Values(keys), testing::ElementsAre(2.0f, 3.0f));
}

TEST(KRE_KeyList, ATimeThatIsNotANumberGoesLastAndIsSkipped)
{
    PosKeys keys = Listed({0, 5});
    keys.Insert(PosKey(kNaN, 100));
    keys.Insert(PosKey(3, 3));
    keys.Insert(PosKey(7, 7));
    EXPECT_THAT(Values(keys), testing::ElementsAre(0.0f, 3.0f, 5.0f, 100.0f, 7.0f));

    PosKeys odd;
    odd.Insert(PosKey(kNaN, 100));
    for (const float time : {2.0f, 1.0f, -kInfinity, kInfinity})
        odd.Insert(PosKey(time, time));
    EXPECT_THAT(Values(odd), testing::ElementsAre(100.0f, -kInfinity, 1.0f, 2.0f, kInfinity));
}

/// The rule in its simplest form: walk past every key that is not later.
static void InsertByWalk(std::vector<std::pair<float, float>>& keys, float time, float number)
{
    size_t at = 0;
    if (!keys.empty() && keys[0].first > time)
        return;
    while (at < keys.size() && !(keys[at].first > time))
        ++at;
    keys.insert(keys.begin() + static_cast<ptrdiff_t>(at), {time, number});
}

TEST(KRE_KeyList, InsertAgreesWithAPlainWalkOnRandomTimes)
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        PosKeys keys;
        std::vector<std::pair<float, float>> walked;
        for (int i = 0; i < 60; ++i) {
            float time = static_cast<float>(random() % 40);
            if (random() % 20 == 0)
                time = kNaN;
            const float number = static_cast<float>(i);
            // Some lists come from files unchanged, in no order at all.
            if (round % 2 && i < 20) {
                keys.Append(PosKey(time, number));
                walked.push_back({time, number});
            } else {
                keys.Insert(PosKey(time, number));
                InsertByWalk(walked, time, number);
            }
        }
        std::vector<float> expected;
        for (const auto& key : walked)
            expected.push_back(key.second);
        ASSERT_EQ(Values(keys), expected) << "round " << round;
    }
}

TEST(KRE_KeyList, FindKeyGivesTheLastKeyThatIsNotLater)
{
    const PosKeys keys = Listed({1, 2, 4});
    static const struct {
        const char* what;
        float time, expected;
    } cases[] = {
        {"before the first", 0, 1}, {"on the first", 1, 1}, {"between", 1.5f, 1},
        {"on a key", 2, 2},         {"behind", 9, 4},
    };
    for (const auto& c : cases)
        EXPECT_EQ(keys.FindKey(c.time)->time, c.expected) << c.what;
    EXPECT_EQ(PosKeys().FindKey(0), nullptr);
}

TEST(KRE_KeyList, ACopyHasKeysOfItsOwn)
{
    PosKeys keys = Listed({0, 1, 2});
    PosKeys copy(keys);
    copy.Head()->value.x = 50;
    copy.Append(PosKey(3, 3));
    EXPECT_THAT(Values(keys), testing::ElementsAre(0.0f, 1.0f, 2.0f));
    EXPECT_THAT(Values(copy), testing::ElementsAre(50.0f, 1.0f, 2.0f, 3.0f));
    keys = copy;
    EXPECT_THAT(Values(keys), testing::ElementsAre(50.0f, 1.0f, 2.0f, 3.0f));
}

TEST(KRE_KeyList, AMovedListStaysUsable)
{
    PosKeys keys = Listed({0, 1});
    PosKeys moved(std::move(keys));
    EXPECT_EQ(keys.Tail(), nullptr);
    keys.Insert(PosKey(9, 9));
    EXPECT_THAT(Values(keys), testing::ElementsAre(9.0f));
    EXPECT_THAT(Values(moved), testing::ElementsAre(0.0f, 1.0f));
}

TEST(KRE_KeyList, TrimKeepsTheWindowAndAKeyToStartFrom)
{
    static const struct {
        const char* what;
        std::initializer_list<float> times;
        float from, to;
        std::vector<float> timesLeft;
    } cases[] = {
        {"one before the window stays", {0, 1, 2, 3}, 1.5f, 9, {-0.5f, 0.5f, 1.5f}},
        {"a key on its start is the start", {0, 1, 2, 3}, 2, 9, {0, 1}},
        {"keys behind it go, the last key stays", {0, 1, 2, 3}, 0, 1, {0, 1, 3}},
        {"all before it: the last stays", {0, 1, 2}, 5, 9, {-3}},
        {"all behind it: the last stays", {7, 8, 9}, 1, 2, {8}},
        {"one key", {4}, 1, 2, {3}},
        {"no keys", {}, 1, 2, {}},
    };
    for (const auto& c : cases) {
        PosKeys keys = Listed(c.times);
        const int32_t removed = keys.Trim(c.from, c.to);
        std::vector<float> times;
        for (KRE_PosKeyData* key = keys.Head(); key; key = key->next)
            times.push_back(key->time);
        EXPECT_EQ(times, c.timesLeft) << c.what;
        EXPECT_EQ(removed, static_cast<int32_t>(c.times.size() - times.size())) << c.what;
        Values(keys);
    }
}

TEST(KRE_KeyList, InsertFollowsTimesChangedInPlace)
{
    PosKeys keys = Listed({0, 4, 2});
    for (KRE_PosKeyData* key = keys.Head(); key; key = key->next)
        key->time *= 0.5f;
    keys.TimesChanged();
    keys.Insert(PosKey(1.5f, 50)); // between the keys of 1 and 2 seconds
    keys.Insert(PosKey(3, 60));
    EXPECT_THAT(Values(keys), testing::ElementsAre(0.0f, 2.0f, 50.0f, 4.0f, 60.0f));
}
