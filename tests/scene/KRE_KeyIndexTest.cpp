#include "scene/KRE_KeyIndex.h"

#include <limits>
#include <random>

#include "tests/scene/SceneTesting.h"

using PosKeys = KRE_KeyList<KRE_PosKeyData>;
using PosIndex = KRE_KeyIndex<KRE_PosKeyData>;

TEST(KRE_KeyIndex, HoldsEveryKeyWithItsTime)
{
    PosKeys keys;
    for (const float time : {1.0f, 2.0f, 4.0f})
        keys.Insert(PosKey(time, time));
    PosIndex index;
    ASSERT_TRUE(index.Build(keys, 3));
    ASSERT_EQ(index.Count(), 3);
    EXPECT_EQ(index.Entries()[0].key, keys.Head());
    EXPECT_EQ(index.Entries()[2].key, keys.Tail());
    EXPECT_EQ(index.Entries()[1].time, 2.0f);
}

TEST(KRE_KeyIndex, RefusesAWrongCountWhateverItsSize)
{
    PosKeys keys;
    keys.Insert(PosKey(0, 0));
    PosIndex index;
    for (const int32_t count : {-1, 0, 2, INT32_MAX}) {
        EXPECT_FALSE(index.Build(keys, count)) << count;
        EXPECT_FALSE(index) << count;
    }
}

TEST(KRE_KeyIndex, AnEmptyListNeedsNoIndex)
{
    PosIndex index;
    EXPECT_TRUE(index.Build(PosKeys(), 0));
    EXPECT_FALSE(index);
}

TEST(KRE_KeyIndex, CopyIsEmptyAlsoWhereThereWasAnIndex)
{
    PosKeys keys;
    keys.Insert(PosKey(0, 0));
    PosIndex index;
    PosIndex target;
    ASSERT_TRUE(index.Build(keys, 1));
    ASSERT_TRUE(target.Build(keys, 1));
    EXPECT_FALSE(PosIndex(index));
    target = index;
    EXPECT_FALSE(target);
    EXPECT_EQ(target.Count(), 0);
    const PosIndex& itself = index;
    index = itself;
    EXPECT_EQ(index.Count(), 1) << "its keys are its own";
}

TEST(FindKey, BisectsToTheLastKeyThatIsNotLater)
{
    PosKeys keys;
    for (const float time : {1.0f, 2.0f, 2.0f, 4.0f})
        keys.Insert(PosKey(time, time));
    PosIndex index;
    ASSERT_TRUE(index.Build(keys, 4));
    static const struct {
        const char* what;
        float time;
        int32_t expected;
    } cases[] = {
        {"before the first", 0, 0},
        {"on the first", 1, 0},
        {"between", 1.5f, 0},
        {"equal times: the later", 2, 2},
        {"just before the last", 3.9f, 2},
        {"behind", 9, 3},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FindKey(c.time, index.Entries(), index.Count()), index.Entries()[c.expected].key)
            << c.what;
}

TEST(FindKey, StartsAtTheGivenEntry)
{
    PosKeys keys;
    for (const float time : {1.0f, 2.0f, 3.0f})
        keys.Insert(PosKey(time, time));
    PosIndex index;
    ASSERT_TRUE(index.Build(keys, 3));
    EXPECT_EQ(FindKey(0.0f, index.Entries(), 3, 1)->time, 2.0f);
    EXPECT_EQ(FindKey(9.0f, index.Entries(), 3, 2)->time, 3.0f);
}

TEST(FindKey, AgreesWithTheWalkOnRandomLists)
{
    std::mt19937 random(3);
    for (int round = 0; round < 100; ++round) {
        PosKeys keys;
        const int32_t count = 1 + static_cast<int32_t>(random() % 50);
        float time = 0;
        for (int32_t i = 0; i < count; ++i) {
            keys.Insert(PosKey(time, static_cast<float>(i)));
            time += static_cast<float>(random() % 3);
        }
        PosIndex index;
        ASSERT_TRUE(index.Build(keys, count));
        for (float t = -1; t < time + 1; t += 0.25f)
            ASSERT_EQ(FindKey(t, index.Entries(), index.Count()), keys.FindKey(t)) << t;
    }
}

TEST(KRE_KeyIndex, LongListInOrderHasFewEntriesAndFindsEveryKey)
{
    std::mt19937 random(4);
    for (const int32_t count : {63, 64, 65, 79, 80, 81, 400}) {
        PosKeys keys;
        float time = 0;
        for (int32_t i = 0; i < count; ++i) {
            keys.Insert(PosKey(time, static_cast<float>(i)));
            time += static_cast<float>(random() % 3);
        }
        PosIndex index;
        ASSERT_TRUE(index.Build(keys, count));
        EXPECT_EQ(index.Count(), count);
        EXPECT_EQ(index.EntryCount(), count < 64 ? count : (count + 15) / 16) << count;
        for (float t = -1; t < time + 1; t += 0.5f) {
            const auto found = index.Find(t);
            ASSERT_EQ(found.key, keys.FindKey(t)) << t << " of " << count;
            ASSERT_EQ(found.next, found.key->next) << t << " of " << count;
        }
    }
}

TEST(KRE_KeyIndex, LongListOutOfOrderHasAllEntries)
{
    for (const float odd : {-5.0f, std::numeric_limits<float>::quiet_NaN()}) {
        PosKeys keys;
        for (int32_t i = 0; i < 100; ++i)
            keys.Append(PosKey(i == 50 ? odd : static_cast<float>(i), 0));
        PosIndex index;
        ASSERT_TRUE(index.Build(keys, 100));
        EXPECT_EQ(index.EntryCount(), 100);
        // Which key is found depends on the places that the bisection looks at.
        for (float t = 0; t < 100; t += 0.5f) {
            const KRE_PosKeyData* const key = FindKey(t, index.Entries(), 100);
            EXPECT_EQ(index.Find(t).key, key) << t;
            EXPECT_EQ(index.Find(t).next, key->next) << t;
        }
    }
}
