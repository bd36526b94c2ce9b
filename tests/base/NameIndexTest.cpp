#include "base/NameIndex.h"

#include <set>

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

// Cells are taken by the low bits, and a product's low bits come from the factors' low bits only.
TEST(NameIndex, NamesThatDifferInHighBitsOnlyDifferInTheLowBitsOfTheirHashes)
{
    constexpr uint32_t kLowBits = 15; // of a byte, and of an index of 16 cells
    std::set<uint32_t> cells;
    for (const char* name : {"!", "1", "A", "Q", "a", "q"}) {
        ASSERT_EQ(static_cast<uint32_t>(name[0]) & kLowBits, 1u) << name;
        cells.insert(HashName(name, false) & kLowBits);
    }
    EXPECT_GT(cells.size(), 1u);
}

} // namespace
