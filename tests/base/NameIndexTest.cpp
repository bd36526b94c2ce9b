#include "base/NameIndex.h"

#include <gtest/gtest.h>

namespace {

TEST(NameIndex, FindsWhatWasAddedThroughAllGrowth)
{
    NameIndex index;
    for (int32_t i = 0; i < 1000; ++i)
        index.Add(static_cast<uint32_t>(i % 37), i); // many share a hash
    for (int32_t i = 0; i < 1000; ++i) {
        const auto isWanted = [i](int32_t number) { return number == i; };
        EXPECT_EQ(index.Find(static_cast<uint32_t>(i % 37), isWanted), i);
    }
}

TEST(NameIndex, NumberZeroKeepsItsPlaceBesideOthersOfItsHash)
{
    NameIndex index;
    index.Add(5, 0);
    index.Add(5, 1);
    EXPECT_EQ(index.Find(5, [](int32_t number) { return number == 0; }), 0);
    EXPECT_EQ(index.Find(5, [](int32_t number) { return number == 1; }), 1);
}

TEST(NameIndex, GivesMinusOneForWhatIsNotThere)
{
    NameIndex index;
    const auto any = [](int32_t) { return true; };
    EXPECT_EQ(index.Find(5, any), -1) << "empty";
    index.Add(5, 1);
    EXPECT_EQ(index.Find(6, any), -1) << "another hash";
    EXPECT_EQ(index.Find(5, [](int32_t) { return false; }), -1) << "no number accepted";
    index.Clear();
    EXPECT_EQ(index.Find(5, any), -1) << "cleared";
}

TEST(NameIndex, HashesAreEqualForTextsThatDifferInCaseOnly)
{
    EXPECT_EQ(HashName("BoaT", true), HashName("bOAt", true));
    EXPECT_NE(HashName("BoaT", false), HashName("bOAt", false));
    EXPECT_NE(HashName("boat", true), HashName("boas", true));
}

} // namespace
