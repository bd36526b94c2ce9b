#include "base/HeapArray.h"

#include <limits>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

namespace {

TEST(HeapArray, StartsNullAndIsFreedAgain)
{
    HeapArray<int32_t> array;
    EXPECT_FALSE(array);
    EXPECT_EQ(array.Get(), nullptr);
    array = HeapArray<int32_t>(3);
    EXPECT_TRUE(array);
    array.Free();
    EXPECT_FALSE(array);
}

TEST(HeapArray, ElementsStartValueInitialised)
{
    HeapArray<int32_t> array(100);
    for (int32_t i = 0; i < 100; ++i)
        EXPECT_EQ(array[i], 0);
    array[7] = 5;
    EXPECT_EQ(array.Get()[7], 5);
}

TEST(HeapArray, ConstArrayDoesNotLendItsElementsForWriting)
{
    using Array = HeapArray<int32_t>;
    using Element = decltype(std::declval<const Array&>()[0]);
    using Elements = decltype(std::declval<const Array&>().Get());
    EXPECT_TRUE((std::is_same_v<Element, const int32_t&>));
    EXPECT_TRUE((std::is_same_v<Elements, const int32_t*>));
}

TEST(HeapArray, OfNoElementsIsNotNull)
{
    EXPECT_TRUE(HeapArray<char>(0));
    EXPECT_TRUE(HeapArray<char>::Try(0));
}

TEST(HeapArray, TryGivesNullForACountBelowZero)
{
    EXPECT_FALSE(HeapArray<char>::Try(-1));
    EXPECT_FALSE(HeapArray<char>::Try(std::numeric_limits<int32_t>::min()));
}

} // namespace
