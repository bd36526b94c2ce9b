// Where the keys of a list are.

#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "scene/KRE_KeyData.h"
#include "scene/KRE_KeyList.h"

namespace {

KRE_PosKeyData KeyAt(float time)
{
    KRE_PosKeyData key;
    key.time = time;
    key.value = {time, 0, 0};
    return key;
}

} // namespace

// Over the ends of several blocks of all sizes.
TEST(KRE_KeyMemoryTest, KeysStayWhereTheyAreAndKeepTheirValues)
{
    constexpr int kKeys = 1000;
    KRE_KeyMemory<KRE_PosKeyData> memory;
    std::vector<const KRE_PosKeyData*> keys;
    for (int i = 0; i < kKeys; ++i)
        keys.push_back(memory.Add(KeyAt(static_cast<float>(i))));
    for (int i = 0; i < kKeys; ++i) {
        EXPECT_EQ(keys[static_cast<size_t>(i)]->time, static_cast<float>(i));
        EXPECT_EQ(keys[static_cast<size_t>(i)]->value.x, static_cast<float>(i));
        EXPECT_EQ(keys[static_cast<size_t>(i)]->next, nullptr);
    }
    EXPECT_EQ(std::set<const KRE_PosKeyData*>(keys.begin(), keys.end()).size(), size_t{kKeys});
}

TEST(KRE_KeyMemoryTest, ListThatWasMovedFromBeginsAnew)
{
    KRE_KeyList<KRE_PosKeyData> first;
    for (int i = 0; i < 100; ++i)
        first.Append(KeyAt(static_cast<float>(i)));
    KRE_KeyList<KRE_PosKeyData> second = std::move(first);
    EXPECT_EQ(first.Head(), nullptr); // NOLINT(bugprone-use-after-move)
    const KRE_PosKeyData* const added = first.Append(KeyAt(7));
    EXPECT_EQ(added, first.Head());
    EXPECT_EQ(second.Tail()->time, 99.0f);
}

// Each of the lists that change places is whole: its last key, too.
TEST(KRE_KeyMemoryTest, ListsMayChangePlaces)
{
    KRE_KeyList<KRE_PosKeyData> one;
    one.Append(KeyAt(1));
    KRE_KeyList<KRE_PosKeyData> two;
    two.Append(KeyAt(1));
    two.Append(KeyAt(2));
    std::swap(one, two);
    EXPECT_EQ(one.Tail()->time, 2.0f);
    EXPECT_EQ(two.Tail()->time, 1.0f);
    const KRE_PosKeyData* const last = two.Append(KeyAt(3));
    EXPECT_EQ(last->prev, two.Head());
    const KRE_PosKeyData* const between = one.Insert(KeyAt(1.5f));
    EXPECT_EQ(between->next, one.Tail());
}
